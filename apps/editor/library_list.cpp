#include "library_list.h"

#include <QDropEvent>
#include <QMimeData>

LibraryList::LibraryList(QWidget* parent) : QListWidget(parent) {
    setViewMode(QListView::IconMode);
    setIconSize(QSize(64, 64));
    setGridSize(QSize(92, 96));
    setResizeMode(QListView::Adjust);
    setMovement(QListView::Snap);
    setWordWrap(true);
    setUniformItemSizes(true);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setDragDropMode(QAbstractItemView::DragDrop);
    setDefaultDropAction(Qt::CopyAction);
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
