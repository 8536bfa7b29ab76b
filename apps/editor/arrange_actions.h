// The editor's Arrange menu and tool bar: grouping, stacking order, aligning
// and spacing, flipping and locking the selected shapes.
#pragma once

#include "cad/canvas/mycad.h"

#include <QKeySequence>
#include <QObject>

#include <functional>

class QAction;
class QMainWindow;
class QMenu;
class QToolBar;
class QToolButton;

class ArrangeActions : public QObject {
    Q_OBJECT
public:
    ArrangeActions(faroven::TMyCAD* cad, QMainWindow* window);
    // Enables each action only when it would act on the current selection.
    void update();
    // The Arrange menu, with every action of the menu bar's.
    QMenu* menu() const { return m_menu; }
    QAction* lockAction() const { return m_lock; }
    QAction* unlockAction() const { return m_unlock; }

signals:
    // One of these actions changed the drawing or the selection.
    void changed();

private:
    // An action in the menu and, under a short text, on the tool bar; run
    // is called on the selection, after which changed() is emitted.
    QAction* addAction(QMenu* menu, const QString& text, const QString& shortText,
                       const std::function<void(const std::vector<faroven::TMyShape*>&)>& run,
                       const QKeySequence& shortcut = {});
    void group(const std::vector<faroven::TMyShape*>& selected);
    void ungroup(const std::vector<faroven::TMyShape*>& selected);
    void spread(const std::vector<faroven::TMyShape*>& selected, bool vertical);
    void flip(const std::vector<faroven::TMyShape*>& selected, bool horizontal);
    void setLocked(const std::vector<faroven::TMyShape*>& selected, bool locked);

    faroven::TMyCAD* m_cad;
    QMainWindow* m_window;
    QMenu* m_menu = nullptr;
    QToolBar* m_bar = nullptr;
    QAction* m_group = nullptr;
    QAction* m_ungroup = nullptr;
    QAction* m_toFront = nullptr;
    QAction* m_forward = nullptr;
    QAction* m_backward = nullptr;
    QAction* m_toBack = nullptr;
    QToolButton* m_alignButton = nullptr;
    std::vector<QAction*> m_align;  // two or more shapes
    std::vector<QAction*> m_spread;  // three or more shapes
    std::vector<QAction*> m_flip;  // one or more shapes
    QAction* m_lock = nullptr;
    QAction* m_unlock = nullptr;
};
