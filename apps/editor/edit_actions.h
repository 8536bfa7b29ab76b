// The editor's Edit menu and tool bar: undo and redo (their texts name the
// step they act on), cut, copy and paste through the system clipboard,
// deleting the selection, and selecting all or nothing.
#pragma once

#include "cad/canvas/mycad.h"

#include <QObject>
#include <functional>

class QAction;
class QMainWindow;
class QMenu;

class EditActions : public QObject {
    Q_OBJECT
public:
    EditActions(faroven::TMyCAD* cad, QMainWindow* window);
    // Sets the actions' enabled states and texts from the canvas.
    void update();
    QAction* undoAction() const { return m_undo; }
    QAction* redoAction() const { return m_redo; }
    QAction* deleteAction() const { return m_delete; }
    QAction* cutAction() const { return m_cut; }
    QAction* copyAction() const { return m_copy; }
    QAction* pasteAction() const { return m_paste; }
    QMenu* menu() const { return m_menu; }

signals:
    // One of these actions changed the drawing or the selection.
    void changed();

private:
    void selectAll();
    void selectNone();
    // Runs a cut, copy or paste; an error is shown under the title.
    void runClipboardCommand(const QString& title, const std::function<void()>& command);

    faroven::TMyCAD* m_cad;
    QMainWindow* m_window;
    QAction* m_undo = nullptr;
    QAction* m_redo = nullptr;
    QAction* m_delete = nullptr;
    QAction* m_cut = nullptr;
    QAction* m_copy = nullptr;
    QAction* m_paste = nullptr;
    QAction* m_selectAll = nullptr;
    QAction* m_selectNone = nullptr;
    QMenu* m_menu = nullptr;
};
