#include "canvas_menu.h"

#include "arrange_actions.h"
#include "edit_actions.h"

#include <QMenu>

using namespace faroven;

CanvasMenu::CanvasMenu(TMyCAD* cad, EditActions* edit, ArrangeActions* arrange, QObject* parent)
    : QObject(parent), m_cad(cad), m_edit(edit), m_arrange(arrange) {
    // The canvas leaves right presses alone; Qt asks for the menu after them.
    m_cad->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_cad, &QWidget::customContextMenuRequested, this, &CanvasMenu::popUp);
}

void CanvasMenu::popUp(const QPoint& pos) {
    TMyShape* shape = m_cad->GetShapeAtPoint(TPoint{pos.x(), pos.y()});
    if (shape && m_cad->IsInWorkingShape(shape) < 0) {
        m_cad->RemoveAllWorkingShapes();
        m_cad->AddWorkingShapes(shape);
    }
    // Also when nothing changed: the enabled states must be current.
    emit selectionChanged();

    QMenu menu;
    menu.addAction(m_edit->undoAction());
    menu.addAction(m_edit->redoAction());
    menu.addSeparator();
    menu.addAction(m_edit->cutAction());
    menu.addAction(m_edit->copyAction());
    menu.addAction(m_edit->pasteAction());
    menu.addAction(m_edit->deleteAction());
    menu.addSeparator();
    QMenu* arrange = menu.addMenu(tr("Arrange"));
    // Lock and Unlock follow at the top level instead.
    for (QAction* action : m_arrange->menu()->actions())
        if (action != m_arrange->lockAction() && action != m_arrange->unlockAction()) arrange->addAction(action);
    menu.addSeparator();
    menu.addAction(m_arrange->lockAction());
    menu.addAction(m_arrange->unlockAction());
    menu.exec(m_cad->mapToGlobal(pos));
}
