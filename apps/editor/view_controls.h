// The editor's page, zoom, grid and snapping controls: a "Page" menu and a
// tool bar on the main window, and the mouse position in the user's unit in
// the status bar. They follow the canvas when something else changes it
// (the zoom actions of the main window, for one).
#pragma once

#include "cad/canvas/mycad.h"

#include <QObject>

class QAction;
class QComboBox;
class QDoubleSpinBox;
class QLabel;
class QMainWindow;
class QMenu;

class ViewControls : public QObject {
    Q_OBJECT
public:
    ViewControls(faroven::TMyCAD* cad, QMainWindow* window);
    // Sets every control from the canvas.
    void sync();
    // The snapping toggles, for other menus to show as well.
    QAction* snapAction() const { return m_snap; }
    QAction* snapShapeAction() const { return m_snapShape; }

signals:
    // The page size, orientation or unit changed: they are saved with the
    // drawing, but the undo history does not record them.
    void drawingEdited();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QAction* addToggle(QMenu* menu, const QString& text, bool checked, const std::function<void(bool)>& apply);
    void setZoomText(const QString& text);

    faroven::TMyCAD* m_cad;
    QMainWindow* m_window;
    QComboBox* m_page = nullptr;
    QComboBox* m_orientation = nullptr;
    QComboBox* m_zoom = nullptr;
    QComboBox* m_gridType = nullptr;
    QDoubleSpinBox* m_gridSpacing = nullptr;
    QComboBox* m_unit = nullptr;
    QAction* m_snap = nullptr;
    QAction* m_snapShape = nullptr;
    bool m_syncing = false;
};
