// The editor's layer list: a dock with every layer of the canvas (tick to
// show or hide, bold for the current one) and buttons to add, rename, delete
// and make current.
#pragma once

#include "cad/canvas/mycad.h"

#include <QDockWidget>

class QListWidget;
class QListWidgetItem;

class LayerPanel : public QDockWidget {
    Q_OBJECT
public:
    LayerPanel(faroven::TMyCAD* cad, QWidget* parent = nullptr);
    // Rebuilds the list from the canvas's layer table.
    void refresh();

signals:
    // The list was rebuilt after the layers changed (here or elsewhere).
    void layersChanged();
    // The user changed the layers here (added, deleted, renamed, shown,
    // hidden or made one current): the drawing has a change the undo
    // history does not record.
    void edited();

private:
    void addLayer();
    void renameLayer();
    void deleteLayer();
    void makeCurrent();
    void itemChanged(QListWidgetItem* item);
    void scheduleRefresh();
    // The id of the layer selected in the list, or -1.
    int selectedLayerId() const;

    faroven::TMyCAD* m_cad;
    QListWidget* m_list = nullptr;
    bool m_updating = false;
    bool m_refreshPending = false;
};
