#include "arrange_actions.h"

#include <QAction>
#include <QMainWindow>
#include <QMenuBar>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>
#include <algorithm>

using namespace faroven;

namespace {
bool isRootGroup(const TMyShape* s) { return s->HasChildShapes() && !s->HasParentShape(); }
}  // namespace

ArrangeActions::ArrangeActions(TMyCAD* cad, QMainWindow* window) : QObject(window), m_cad(cad), m_window(window) {
    QMenu* menu = m_menu = window->menuBar()->addMenu(tr("&Arrange"));
    window->addToolBarBreak();
    m_bar = window->addToolBar(tr("Arrange"));
    m_bar->setObjectName("Arrange");
    m_bar->setToolButtonStyle(Qt::ToolButtonTextOnly);

    using Shapes = std::vector<TMyShape*>;
    m_group = addAction(menu, tr("&Group"), tr("Group"), [this](const Shapes& s) { group(s); },
                        QKeySequence(Qt::CTRL | Qt::Key_G));
    m_ungroup = addAction(menu, tr("&Ungroup"), tr("Ungroup"), [this](const Shapes& s) { ungroup(s); },
                          QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_G));
    menu->addSeparator();
    m_bar->addSeparator();

    m_toFront = addAction(menu, tr("Bring to &Front"), tr("Front"),
                          [this](const Shapes& s) { m_cad->BringToFront(s.front()); },
                          QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_BracketRight));
    m_forward = addAction(menu, tr("Bring For&ward"), tr("Forward"),
                          [this](const Shapes& s) { m_cad->BringToFrontByStep(s.front()); },
                          QKeySequence(Qt::CTRL | Qt::Key_BracketRight));
    m_backward = addAction(menu, tr("Send Back&ward"), tr("Backward"),
                           [this](const Shapes& s) { m_cad->SendToBackByStep(s.front()); },
                           QKeySequence(Qt::CTRL | Qt::Key_BracketLeft));
    m_toBack = addAction(menu, tr("Send to &Back"), tr("Back"),
                         [this](const Shapes& s) { m_cad->SendToBack(s.front()); },
                         QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_BracketLeft));
    menu->addSeparator();
    m_bar->addSeparator();

    // Aligning and spacing sit in a submenu, which is also a drop-down button
    // on the tool bar (eight more buttons would not fit). The canvas aligns
    // its selection by itself.
    QMenu* align = menu->addMenu(tr("A&lign and distribute"));
    m_align = {
        addAction(align, tr("Align &left edges"), {}, [this](const Shapes&) { m_cad->AlignLeft(); }),
        addAction(align, tr("Align &right edges"), {}, [this](const Shapes&) { m_cad->AlignRight(); }),
        addAction(align, tr("Align &top edges"), {}, [this](const Shapes&) { m_cad->AlignTop(); }),
        addAction(align, tr("Align &bottom edges"), {}, [this](const Shapes&) { m_cad->AlignBottom(); }),
        addAction(align, tr("Align centres &horizontally"), {},
                  [this](const Shapes&) { m_cad->AlignHorizontalCenter(); }),
        addAction(align, tr("Align centres &vertically"), {}, [this](const Shapes&) { m_cad->AlignVerticalCenter(); }),
    };
    align->addSeparator();
    m_spread = {
        addAction(align, tr("Distribute h&orizontally"), {}, [this](const Shapes& s) { spread(s, false); }),
        addAction(align, tr("Distribute v&ertically"), {}, [this](const Shapes& s) { spread(s, true); }),
    };
    m_alignButton = new QToolButton(m_bar);
    m_alignButton->setText(tr("Align"));
    m_alignButton->setToolTip(tr("Align or distribute the selected shapes"));
    m_alignButton->setMenu(align);
    m_alignButton->setPopupMode(QToolButton::InstantPopup);
    m_bar->addWidget(m_alignButton);
    menu->addSeparator();
    m_bar->addSeparator();

    m_flip = {
        addAction(menu, tr("Flip &Horizontal"), tr("Flip H"), [this](const Shapes& s) { flip(s, true); }),
        addAction(menu, tr("Flip &Vertical"), tr("Flip V"), [this](const Shapes& s) { flip(s, false); }),
    };
    menu->addSeparator();
    m_bar->addSeparator();
    m_lock = addAction(menu, tr("Loc&k"), tr("Lock"), [this](const Shapes& s) { setLocked(s, true); });
    m_unlock = addAction(menu, tr("U&nlock"), tr("Unlock"), [this](const Shapes& s) { setLocked(s, false); });

    m_toFront->setToolTip(tr("Bring to front: paint the shape above every other"));
    m_toBack->setToolTip(tr("Send to back: paint the shape below every other"));
    m_forward->setToolTip(tr("Bring forward: one shape up in the stacking order"));
    m_backward->setToolTip(tr("Send backward: one shape down in the stacking order"));
    m_lock->setToolTip(tr("Lock: locked shapes cannot be deleted or ungrouped"));
    update();
}

QAction* ArrangeActions::addAction(QMenu* menu, const QString& text, const QString& shortText,
                                   const std::function<void(const std::vector<TMyShape*>&)>& run,
                                   const QKeySequence& shortcut) {
    QAction* action = menu->addAction(text);
    action->setIconText(shortText);
    action->setShortcut(shortcut);
    connect(action, &QAction::triggered, this, [this, run] {
        // A copy: most operations change the selection while they work.
        const std::vector<TMyShape*> selected = m_cad->WorkingShapes();
        if (selected.empty()) return;
        run(selected);
        emit changed();
    });
    if (!shortText.isEmpty()) m_bar->addAction(action);
    return action;
}

void ArrangeActions::group(const std::vector<TMyShape*>& selected) {
    // The new group becomes the selection.
    if (m_cad->GroupShapes(selected) < 0)
        m_window->statusBar()->showMessage(tr("Only visible shapes of one layer that are in no group can be grouped."),
                                           5000);
}

// Each selected root group is taken apart; its former members stay selected.
void ArrangeActions::ungroup(const std::vector<TMyShape*>& selected) {
    std::vector<TMyShape*> members;
    for (TMyShape* shape : selected) {
        if (!isRootGroup(shape) || shape->Locked()) continue;
        for (int no : std::as_const(*shape).ChildShapeNos())
            if (TMyShape* member = m_cad->GetShapeByNo(no)) members.push_back(member);
        m_cad->UnGroupShape(shape);
    }
    m_cad->RemoveAllWorkingShapes();
    for (TMyShape* member : members)
        if (m_cad->GetShapeNoInMyShapes(member) >= 0) m_cad->AddWorkingShapes(member);
}

// Spacing records no step of its own.
void ArrangeActions::spread(const std::vector<TMyShape*>& selected, bool vertical) {
    TUndoChangeScope step(*m_cad, selected);
    if (vertical)
        m_cad->AverageHeight(selected);
    else
        m_cad->AverageWidth(selected);
}

// One step for all the shapes flipped.
void ArrangeActions::flip(const std::vector<TMyShape*>& selected, bool horizontal) {
    if (horizontal)
        m_cad->FlipHoriz(selected);
    else
        m_cad->FlipVert(selected);
}

// Locking records no step of its own.
void ArrangeActions::setLocked(const std::vector<TMyShape*>& selected, bool locked) {
    TUndoChangeScope step(*m_cad, selected);
    for (TMyShape* shape : selected) m_cad->LockUnLockforShapes(shape, locked);
}

void ArrangeActions::update() {
    const std::vector<TMyShape*>& selected = m_cad->WorkingShapes();
    const size_t count = selected.size();

    // GroupShapes takes only visible root shapes of one layer.
    const bool groupable =
        count >= 2 && std::all_of(selected.begin(), selected.end(), [&](const TMyShape* s) {
            return !s->HasParentShape() && s->Visible() && s->LayerId() == selected.front()->LayerId();
        });
    m_group->setEnabled(groupable);
    m_ungroup->setEnabled(
        std::any_of(selected.begin(), selected.end(), [](const TMyShape* s) { return isRootGroup(s) && !s->Locked(); }));

    // Stacking moves one root shape past its neighbouring roots; with none on
    // that side there is nothing to do.
    TMyShape* single = count == 1 && !selected.front()->HasParentShape() ? selected.front() : nullptr;
    const bool canRise = single && m_cad->GetNextSingleorRootShape(single->ShapeNo());
    const bool canSink = single && m_cad->GetPrevSingleorRootShape(single->ShapeNo());
    m_toFront->setEnabled(canRise);
    m_forward->setEnabled(canRise);
    m_backward->setEnabled(canSink);
    m_toBack->setEnabled(canSink);

    for (QAction* a : m_align) a->setEnabled(count >= 2);
    m_alignButton->setEnabled(count >= 2);
    for (QAction* a : m_spread) a->setEnabled(count >= 3);
    for (QAction* a : m_flip) a->setEnabled(count >= 1);
    m_lock->setEnabled(std::any_of(selected.begin(), selected.end(), [](const TMyShape* s) { return !s->Locked(); }));
    m_unlock->setEnabled(std::any_of(selected.begin(), selected.end(), [](const TMyShape* s) { return s->Locked(); }));
}
