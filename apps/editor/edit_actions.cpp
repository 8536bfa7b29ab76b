#include "edit_actions.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QMainWindow>
#include <QMenuBar>
#include <QMessageBox>
#include <QStyle>
#include <QToolBar>
#include <algorithm>

using namespace faroven;

namespace {
// The words the Edit menu uses for an undo step recorded under an action name
// ("ACT_GROUP" is "Group"); an empty string for a name it does not know.
QString undoStepPhrase(const QString& action) {
    // One row per action name the canvas records under.
    static const struct {
        const char* action;
        const char* phrase;
    } kPhrases[] = {
        {ACT_ADD, QT_TRANSLATE_NOOP("EditActions", "Add")},
        {ACT_CHANGE, QT_TRANSLATE_NOOP("EditActions", "Move/Change")},
        {ACT_DELETE, QT_TRANSLATE_NOOP("EditActions", "Delete")},
        {ACT_GROUP, QT_TRANSLATE_NOOP("EditActions", "Group")},
        {ACT_UNGROUP, QT_TRANSLATE_NOOP("EditActions", "Ungroup")},
        {ACT_BRINGTOFRONT, QT_TRANSLATE_NOOP("EditActions", "Bring to Front")},
        {ACT_SENDTOBACK, QT_TRANSLATE_NOOP("EditActions", "Send to Back")},
        {ACT_BRINGTOFRONTBYSTEP, QT_TRANSLATE_NOOP("EditActions", "Bring Forward")},
        {ACT_SENDTOBACKBYSTEP, QT_TRANSLATE_NOOP("EditActions", "Send Backward")},
    };
    for (const auto& row : kPhrases)
        if (action == QLatin1String(row.action)) return EditActions::tr(row.phrase);
    return QString();
}
}  // namespace

EditActions::EditActions(TMyCAD* cad, QMainWindow* window) : QObject(window), m_cad(cad), m_window(window) {
    QMenu* menu = m_menu = window->menuBar()->addMenu(tr("&Edit"));
    QToolBar* bar = window->addToolBar(tr("Edit"));
    bar->setObjectName("Edit");
    QStyle* style = QApplication::style();

    m_undo = menu->addAction(style->standardIcon(QStyle::SP_ArrowBack), tr("&Undo"));
    m_undo->setShortcut(QKeySequence::Undo);
    connect(m_undo, &QAction::triggered, this, [this] {
        m_cad->Undo();
        emit changed();
    });
    m_redo = menu->addAction(style->standardIcon(QStyle::SP_ArrowForward), tr("&Redo"));
    // Ctrl+Y and Ctrl+Shift+Z both redo, whichever the platform names first.
    QList<QKeySequence> redoKeys = QKeySequence::keyBindings(QKeySequence::Redo);
    for (const QKeySequence& key : {QKeySequence(Qt::CTRL | Qt::Key_Y), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z)})
        if (!redoKeys.contains(key)) redoKeys.append(key);
    m_redo->setShortcuts(redoKeys);
    connect(m_redo, &QAction::triggered, this, [this] {
        m_cad->Redo();
        emit changed();
    });
    menu->addSeparator();

    // The clipboard is the system's: shapes copied in one editor window paste
    // into another, and other programs get pictures.
    m_cut = menu->addAction(tr("Cu&t"));
    m_cut->setShortcut(QKeySequence::Cut);
    m_cut->setToolTip(tr("Move the selected shapes to the clipboard (locked ones stay)"));
    connect(m_cut, &QAction::triggered, this, [this] { runClipboardCommand(tr("Cut"), [this] { m_cad->Cut(); }); });
    m_copy = menu->addAction(tr("&Copy"));
    m_copy->setShortcut(QKeySequence::Copy);
    connect(m_copy, &QAction::triggered, this, [this] { runClipboardCommand(tr("Copy"), [this] { m_cad->Copy(); }); });
    m_paste = menu->addAction(tr("&Paste"));
    m_paste->setShortcut(QKeySequence::Paste);
    m_paste->setToolTip(tr("Insert the shapes on the clipboard into the current layer"));
    connect(m_paste, &QAction::triggered, this,
            [this] { runClipboardCommand(tr("Paste"), [this] { m_cad->Paste(); }); });
    // Another window or program may fill or empty the clipboard at any time.
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, &EditActions::update);

    m_delete = menu->addAction(style->standardIcon(QStyle::SP_TrashIcon), tr("&Delete"));
    m_delete->setShortcut(QKeySequence::Delete);
    m_delete->setToolTip(tr("Delete the selected shapes (locked ones stay)"));
    connect(m_delete, &QAction::triggered, this, [this] {
        m_cad->DeleteSelectedShapes();
        emit changed();
    });
    menu->addSeparator();

    m_selectAll = menu->addAction(tr("Select &All"));
    m_selectAll->setShortcut(QKeySequence::SelectAll);
    connect(m_selectAll, &QAction::triggered, this, &EditActions::selectAll);
    m_selectNone = menu->addAction(tr("Select &None"));
    m_selectNone->setShortcut(Qt::Key_Escape);
    connect(m_selectNone, &QAction::triggered, this, &EditActions::selectNone);

    for (QAction* a : {m_undo, m_redo, m_delete}) bar->addAction(a);
    update();
}

// Clipboard data may come from another program or another version and be
// damaged: the canvas then raises an error and stays as it was.
void EditActions::runClipboardCommand(const QString& title, const std::function<void()>& command) {
    try {
        command();
    } catch (const Exception& error) {
        QMessageBox::warning(m_window, title, error.Message());
    }
    emit changed();
}

// Every shape the mouse could pick by itself: root shapes that are visible
// and on a visible layer (and on the current one unless OperateAllLayer).
void EditActions::selectAll() {
    m_cad->RemoveAllWorkingShapes();
    for (TMyShape* shape : m_cad->MyShapes())
        if (shape && !shape->HasParentShape() && m_cad->IsShapePickable(shape)) m_cad->AddWorkingShapes(shape);
    emit changed();
}

void EditActions::selectNone() {
    m_cad->RemoveAllWorkingShapes();
    emit changed();
}

void EditActions::update() {
    const QString undoPhrase = undoStepPhrase(m_cad->UndoActionName());
    m_undo->setEnabled(m_cad->CanUndo());
    m_undo->setText(undoPhrase.isEmpty() ? tr("&Undo") : tr("&Undo %1").arg(undoPhrase));
    const QString redoPhrase = undoStepPhrase(m_cad->RedoActionName());
    m_redo->setEnabled(m_cad->CanRedo());
    m_redo->setText(redoPhrase.isEmpty() ? tr("&Redo") : tr("&Redo %1").arg(redoPhrase));

    const std::vector<TMyShape*>& selected = m_cad->WorkingShapes();
    const bool anyUnlocked = std::any_of(selected.begin(), selected.end(), [](TMyShape* s) { return !s->Locked(); });
    m_delete->setEnabled(anyUnlocked);
    m_cut->setEnabled(anyUnlocked);
    m_copy->setEnabled(!selected.empty());
    m_paste->setEnabled(TMyCAD::CanPaste());
    m_selectNone->setEnabled(!selected.empty());
    const std::vector<TMyShape*>& shapes = m_cad->MyShapes();
    m_selectAll->setEnabled(std::any_of(shapes.begin(), shapes.end(), [this](TMyShape* s) {
        return s && !s->HasParentShape() && m_cad->IsShapePickable(s);
    }));
}
