// The canvas's context menu: undo, redo and delete, the Arrange menu, and
// locking. A right click on a shape outside the selection selects that shape
// alone first, so that the menu acts on what was clicked. The entries are
// the Edit and Arrange actions themselves, with their enabled states.
#pragma once

#include "cad/canvas/mycad.h"

#include <QObject>

class ArrangeActions;
class EditActions;

class CanvasMenu : public QObject {
    Q_OBJECT
public:
    CanvasMenu(faroven::TMyCAD* cad, EditActions* edit, ArrangeActions* arrange, QObject* parent = nullptr);

signals:
    // The right click changed the selection; the actions' enabled states are
    // to be brought up to date before the menu shows (connect directly).
    void selectionChanged();

private:
    void popUp(const QPoint& pos);

    faroven::TMyCAD* m_cad;
    EditActions* m_edit;
    ArrangeActions* m_arrange;
};
