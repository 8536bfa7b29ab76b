#include "library_list.h"

#include <QDropEvent>
#include <QKeyEvent>
#include <QMimeData>

LibraryList::LibraryList(QWidget* parent) : QListWidget(parent) {
    setViewMode(QListView::IconMode);
    setIconSize(QSize(64, 64));
    setGridSize(QSize(92, 96));
    setResizeMode(QListView::Adjust);
    setMovement(QListView::Snap);
    setWordWrap(true);
    // Not uniform sizes: each name gets its own width, up to the cell's.
    setSelectionMode(QAbstractItemView::SingleSelection);
    setDragDropMode(QAbstractItemView::DragDrop);
    setDefaultDropAction(Qt::CopyAction);
}

namespace {
bool isEntryKey(const QKeyEvent* key) {
    return key->modifiers() == Qt::NoModifier && (key->key() == Qt::Key_F2 || key->key() == Qt::Key_Delete);
}
}  // namespace

bool LibraryList::event(QEvent* event) {
    // Claim the keys from the window's shortcuts while the grid has the focus.
    if (event->type() == QEvent::ShortcutOverride && isEntryKey(static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QListWidget::event(event);
}

void LibraryList::keyPressEvent(QKeyEvent* event) {
    if (!isEntryKey(event)) return QListWidget::keyPressEvent(event);
    if (event->key() == Qt::Key_F2)
        emit renameRequested();
    else
        emit deleteRequested();
}

QStringList LibraryList::mimeTypes() const { return {QString::fromLatin1(LibraryEntryMimeType)}; }

QMimeData* LibraryList::mimeData(const QList<QListWidgetItem*>& items) const {
    if (items.isEmpty()) return nullptr;
    auto* data = new QMimeData;
    data->setData(QString::fromLatin1(LibraryEntryMimeType), items.front()->text().toUtf8());
    return data;
}

void LibraryList::dragEnterEvent(QDragEnterEvent* event) {
    if (event->source() == this && event->mimeData()->hasFormat(QString::fromLatin1(LibraryEntryMimeType)))
        event->acceptProposedAction();
    else
        event->ignore();
}

void LibraryList::dragMoveEvent(QDragMoveEvent* event) {
    if (event->source() == this) event->acceptProposedAction();
    else event->ignore();
}

void LibraryList::dropEvent(QDropEvent* event) {
    if (event->source() != this) return event->ignore();
    const QString name = QString::fromUtf8(event->mimeData()->data(QString::fromLatin1(LibraryEntryMimeType)));
    const QListWidgetItem* target = itemAt(event->position().toPoint());
    const QString before = target ? target->text() : QString();
    // The list is rebuilt from the library by the panel; Qt moves nothing itself.
    event->setDropAction(Qt::IgnoreAction);
    event->accept();
    if (before != name) emit entryMoved(name, before);
}
