// The editor's inspector: a dock with the component combo box, the tree of
// the canvas's shapes and groups, and the property grid, all following the
// canvas's selection (the canvas itself when nothing is selected). Double-
// clicking a value opens its editor. It also offers "User data…" for the
// selected shape or the canvas.
#pragma once

#include "cad/canvas/mycad.h"

#include <QDockWidget>

class QAction;

namespace faroven {
class TComponentComboBox;
class TComponentInspector;
class TComponentTree;
}  // namespace faroven

class InspectorPanel : public QDockWidget {
    Q_OBJECT
public:
    InspectorPanel(faroven::TMyCAD* cad, QWidget* parent = nullptr);

    faroven::TComponentInspector* inspector() const { return m_inspector; }
    faroven::TComponentComboBox* comboBox() const { return m_combo; }
    faroven::TComponentTree* tree() const { return m_tree; }
    // Edit › User data…: the selected shape's pairs (one undo step), or the canvas's.
    QAction* userDataAction() const { return m_userData; }

    // Rereads values and lists after the drawing changed elsewhere (mouse
    // edits, undo, a drawing opened).
    void refresh();
    // Opens the user-data editor for the selected shape, or the canvas when
    // nothing (or several shapes) is selected.
    void editUserData();

signals:
    // The drawing changed through the inspector. canvasOnly: only the
    // canvas's own settings changed, which the undo history does not record.
    void edited(bool canvasOnly);
    // The layer collection was edited through the inspector.
    void layersEdited();

private:
    faroven::TMyCAD* m_cad;
    faroven::TComponentComboBox* m_combo = nullptr;
    faroven::TComponentTree* m_tree = nullptr;
    faroven::TComponentInspector* m_inspector = nullptr;
    QAction* m_userData = nullptr;
    int64_t m_listedEdits = -1;
    int m_listedShapes = -1;
};
