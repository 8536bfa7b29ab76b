#include "library_panel.h"

#include "library_list.h"

#include "cad/persistence/stream_io.h"
#include "platform/bitmap.h"

#include <QCoreApplication>
#include <QDir>
#include <QDragEnterEvent>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QPainter>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>
#include <algorithm>

using namespace faroven;

namespace {
constexpr int kIconSide = 64;
// Thumbnails rendered per turn of the event loop.
constexpr int kThumbnailsPerTick = 8;
const QString kFilter = QObject::tr("Faroven shape libraries (*.fvl);;All files (*)");

QString entryOf(const QMimeData* data) {
    return data->hasFormat(QString::fromLatin1(LibraryEntryMimeType))
               ? QString::fromUtf8(data->data(QString::fromLatin1(LibraryEntryMimeType)))
               : QString();
}

}  // namespace

QString DefaultLibraryFile() {
    const QString dir = QCoreApplication::applicationDirPath();
    for (const QString& candidate : {dir + QStringLiteral("/starter.fvl"), dir + QStringLiteral("/../share/faroven/starter.fvl")})
        if (QFileInfo::exists(candidate)) return QDir::cleanPath(candidate);
    return {};
}

LibraryPanel::LibraryPanel(TMyCAD* cad, QWidget* parent) : QDockWidget(parent), m_cad(cad) {
    setObjectName(QStringLiteral("LibraryPanel"));
    auto* body = new QWidget(this);
    auto* layout = new QVBoxLayout(body);
    layout->setContentsMargins(2, 2, 2, 2);
    auto* tools = new QToolBar(body);
    tools->setToolButtonStyle(Qt::ToolButtonTextOnly);
    tools->addAction(tr("New"), this, &LibraryPanel::newLibrary)->setToolTip(tr("Start an empty library"));
    tools->addAction(tr("Open…"), this, &LibraryPanel::chooseAndOpen)->setToolTip(tr("Open a library file"));
    tools->addAction(tr("Save"), this, [this] { save(); })->setToolTip(tr("Save the library"));
    tools->addAction(tr("Save as…"), this, [this] { saveAs(); })->setToolTip(tr("Save the library under another name"));
    auto* entryTools = new QToolBar(body);
    entryTools->setToolButtonStyle(Qt::ToolButtonTextOnly);
    entryTools->addAction(tr("Add selection…"), this, &LibraryPanel::addSelection)
        ->setToolTip(tr("Store the selected shapes as a new entry"));
    entryTools->addAction(tr("Rename…"), this, &LibraryPanel::renameEntry)->setToolTip(tr("Rename the entry (F2)"));
    entryTools->addAction(tr("Delete"), this, &LibraryPanel::deleteEntry)->setToolTip(tr("Delete the entry (Del)"));
    m_list = new LibraryList(body);
    m_list->setToolTip(tr("Drag an entry onto the drawing, or double-click it; drag entries here to reorder"));
    m_status = new QLabel(body);
    layout->addWidget(tools);
    layout->addWidget(entryTools);
    layout->addWidget(m_list);
    layout->addWidget(m_status);
    setWidget(body);

    m_renderTimer = new QTimer(this);
    m_renderTimer->setInterval(0);
    connect(m_renderTimer, &QTimer::timeout, this, &LibraryPanel::renderSomeThumbnails);
    connect(m_list, &LibraryList::entryMoved, this, &LibraryPanel::moveEntry);
    connect(m_list, &QListWidget::itemDoubleClicked, this, &LibraryPanel::insertAtViewCentre);
    connect(m_list, &LibraryList::renameRequested, this, &LibraryPanel::renameEntry);
    connect(m_list, &LibraryList::deleteRequested, this, &LibraryPanel::deleteEntry);
    m_list->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_list, &QWidget::customContextMenuRequested, this, &LibraryPanel::showEntryMenu);

    m_cad->setAcceptDrops(true);
    m_cad->installEventFilter(this);
    m_library = std::make_unique<TLibManager>();
    const QString starter = DefaultLibraryFile();
    if (starter.isEmpty() || !openLibrary(starter)) refresh();
}

LibraryPanel::~LibraryPanel() = default;

template <class F>
bool LibraryPanel::guarded(F&& f) {
    try {
        f();
        return true;
    } catch (const Exception& e) {
        QMessageBox::warning(this, tr("Shape library"), e.Message());
        return false;
    }
}

void LibraryPanel::setModified(bool modified) {
    m_modified = modified;
    updateTitle();
}

void LibraryPanel::updateTitle() {
    const QString name = m_fileName.isEmpty() ? tr("untitled") : QFileInfo(m_fileName).fileName();
    setWindowTitle(tr("Library — %1%2").arg(name, m_modified ? QStringLiteral("*") : QString()));
}

// ---- Files ----------------------------------------------------------------------------------------

void LibraryPanel::replaceLibrary(std::unique_ptr<TLibManager> library, const QString& fileName) {
    m_library = std::move(library);
    m_fileName = fileName;
    m_thumbnails.clear();
    setModified(false);
    refresh();
}

bool LibraryPanel::maySaveOrDiscard() {
    if (!m_modified) return true;
    const auto answer = QMessageBox::question(
        this, tr("Shape library"), tr("Save the changes to the library \"%1\"?").arg(
            m_fileName.isEmpty() ? tr("untitled") : QFileInfo(m_fileName).fileName()),
        QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
    if (answer == QMessageBox::Save) return save();
    return answer == QMessageBox::Discard;
}

void LibraryPanel::newLibrary() {
    if (maySaveOrDiscard()) replaceLibrary(std::make_unique<TLibManager>(), QString());
}

void LibraryPanel::chooseAndOpen() {
    if (!maySaveOrDiscard()) return;
    const QString file = QFileDialog::getOpenFileName(this, tr("Open shape library"), QString(), kFilter);
    if (!file.isEmpty()) openLibrary(file);
}

bool LibraryPanel::openLibrary(const QString& fileName) {
    std::unique_ptr<TLibManager> opened;
    const bool ok = guarded([&] {
        if (IsOLDZEMALibFile(fileName)) TLibManager().LoadFromOldFile(fileName);
        const QString tag = ReadLibFileTag(fileName);
        if (LibTagRecordVersion(tag).isEmpty())
            throw EFileFormatError(tr("\"%1\" is not a shape library").arg(fileName), 0);
        auto library = std::make_unique<TLibManager>(fileName);
        if (tag != QLatin1String(CurrentLibTag)) {
            const QString backup = fileName + QStringLiteral(".bak");
            QMessageBox ask(QMessageBox::Question, tr("Older library"),
                            tr("Upgrade this library to the current format? The original is kept as %1")
                                .arg(QFileInfo(backup).fileName()),
                            QMessageBox::Yes | QMessageBox::No, this);
            ask.setInformativeText(
                tr("\"%1\" is a library of an older format (%2).").arg(QFileInfo(fileName).fileName(), tag));
            if (ask.exec() != QMessageBox::Yes) return;
            QFile::remove(backup);
            if (!QFile::copy(fileName, backup))
                throw EFCreateError(tr("Cannot keep the original as \"%1\"; the library was not upgraded").arg(backup));
            library->UpgradeFrom(tag);
            library->SaveToFile(fileName);
        }
        library->GetcmbShapesCount();  // a corrupt file shows here, not half-way through the grid
        opened = std::move(library);
    });
    if (!ok || !opened) return false;
    replaceLibrary(std::move(opened), fileName);
    return true;
}

bool LibraryPanel::save() {
    if (m_fileName.isEmpty()) return saveAs();
    if (!guarded([&] { m_library->SaveToFile(m_fileName); })) return false;
    setModified(false);
    return true;
}

bool LibraryPanel::saveAs() {
    QString file = QFileDialog::getSaveFileName(this, tr("Save shape library"), m_fileName, kFilter);
    if (file.isEmpty()) return false;
    if (QFileInfo(file).suffix().isEmpty()) file += QStringLiteral(".fvl");
    m_fileName = file;
    return save();
}

// ---- Entries ----------------------------------------------------------------------------------------

void LibraryPanel::addSelection() {
    std::vector<TMyShape*> shapes;
    for (int no : m_cad->SelectionWithMembers()) shapes.push_back(m_cad->GetShapeByNo(no));
    if (shapes.empty()) {
        QMessageBox::information(this, tr("Shape library"), tr("Select the shapes to store first."));
        return;
    }
    const QString name = QInputDialog::getText(this, tr("Add to library"), tr("Name of the new entry:"));
    if (name.isEmpty()) return;
    int64_t at = 0, length = 0;
    if (m_library->GetExistShape(name, at, length)) {
        QMessageBox::warning(this, tr("Shape library"), tr("The library has an entry \"%1\" already.").arg(name));
        return;
    }
    bool added = false;
    if (!guarded([&] { added = m_library->AppendNewShape(name, shapes, nullptr); })) return;
    if (!added) {
        QMessageBox::warning(this, tr("Shape library"), tr("\"%1\" is not a valid name (at most 255 bytes).").arg(name));
        return;
    }
    setModified(true);
    refresh(name);
}

void LibraryPanel::renameEntry() {
    const QListWidgetItem* item = m_list->currentItem();
    if (!item) return;
    const QString old = item->text();
    const QString name = QInputDialog::getText(this, tr("Rename entry"), tr("New name:"), QLineEdit::Normal, old);
    if (name.isEmpty() || name == old) return;
    bool renamed = false;
    guarded([&] { renamed = m_library->RenameCmbShapeName(old, name); });
    if (!renamed) {
        QMessageBox::warning(this, tr("Shape library"), tr("\"%1\" is taken or not a valid name.").arg(name));
        return;
    }
    m_thumbnails.insert(name, m_thumbnails.take(old));
    setModified(true);
    refresh(name);
}

void LibraryPanel::deleteEntry() {
    const QListWidgetItem* item = m_list->currentItem();
    if (!item) return;
    const QString name = item->text();
    if (QMessageBox::question(this, tr("Delete entry"), tr("Delete \"%1\" from the library?").arg(name)) !=
        QMessageBox::Yes)
        return;
    if (guarded([&] { m_library->DeleteShape(name); })) {
        m_thumbnails.remove(name);
        setModified(true);
        refresh();
    }
}

void LibraryPanel::moveEntry(const QString& name, const QString& beforeName) {
    bool moved = false;
    const bool ok = guarded([&] {
        if (!beforeName.isEmpty()) {
            moved = m_library->MoveCmbShapeBeforeByName(name, beforeName);
            return;
        }
        // To the end: every entry behind it moves before it, in order (the
        // library has no move to the end).
        const QStringList names = m_library->GetCmbShapesNames();
        for (qsizetype i = names.indexOf(name) + 1; i > 0 && i < names.size(); ++i)
            moved = m_library->MoveCmbShapeBeforeByName(names[i], name) || moved;
    });
    if (!ok || !moved) return;
    setModified(true);
    refresh();
}

TMyShape* LibraryPanel::insertEntry(const QString& name, TMyPoint centre) {
    TMyShape* inserted = nullptr;
    guarded([&] {
        int w = 0, h = 0;
        if (!m_library->GetCmbShapeSize(name, w, h)) return;
        inserted = m_cad->AddUserDefineShapefromLib(*m_library, name, {centre.x - w / 2.0f, centre.y - h / 2.0f});
    });
    if (inserted) emit drawingEdited();
    return inserted;
}

void LibraryPanel::insertAtViewCentre(QListWidgetItem* item) {
    if (!item) return;
    const QPoint middle = m_cad->visibleRegion().boundingRect().center();
    const double zoom = m_cad->Zoom();
    insertEntry(item->text(), {float(middle.x() / zoom), float(middle.y() / zoom)});
}

void LibraryPanel::showEntryMenu(const QPoint& at) {
    QListWidgetItem* item = m_list->itemAt(at);
    if (!item) return;
    m_list->setCurrentItem(item);
    QMenu menu(this);
    menu.addAction(tr("Insert"), this, [this, item] { insertAtViewCentre(item); });
    // The keys are the grid's own (LibraryList), not shortcuts of the menu.
    menu.addAction(tr("Rename…\tF2"), this, &LibraryPanel::renameEntry);
    menu.addAction(tr("Delete\tDel"), this, &LibraryPanel::deleteEntry);
    menu.exec(m_list->viewport()->mapToGlobal(at));
}

bool LibraryPanel::eventFilter(QObject* watched, QEvent* event) {
    if (watched != m_cad) return QDockWidget::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::DragEnter:
    case QEvent::DragMove: {
        auto* drag = static_cast<QDragMoveEvent*>(event);
        if (entryOf(drag->mimeData()).isEmpty()) return false;
        drag->setDropAction(Qt::CopyAction);
        drag->accept();
        return true;
    }
    case QEvent::Drop: {
        auto* drop = static_cast<QDropEvent*>(event);
        const QString name = entryOf(drop->mimeData());
        if (name.isEmpty()) return false;
        const QPointF at = drop->position() / m_cad->Zoom();
        insertEntry(name, {float(at.x()), float(at.y())});
        drop->setDropAction(Qt::CopyAction);
        drop->accept();
        return true;
    }
    default:
        return false;
    }
}

// ---- The grid ---------------------------------------------------------------------------------------

void LibraryPanel::refresh(const QString& select) {
    m_renderTimer->stop();
    const QString current =
        !select.isEmpty() ? select : m_list->currentItem() ? m_list->currentItem()->text() : QString();
    m_list->clear();
    QStringList names;
    guarded([&] { names = m_library->GetCmbShapesNames(); });
    QPixmap blank(kIconSide, kIconSide);
    blank.fill(Qt::white);
    for (const QString& name : names) {
        auto* item = new QListWidgetItem(m_thumbnails.value(name, QIcon(blank)), name, m_list);
        item->setToolTip(name);
        if (name == current) {
            m_list->setCurrentItem(item);
            m_list->scrollToItem(item);
        }
    }
    m_nextThumbnail = 0;
    updateTitle();
    if (names.isEmpty()) {
        m_status->setText(tr("No entries"));
        return;
    }
    m_renderTimer->start();
}

void LibraryPanel::renderSomeThumbnails() {
    const int count = m_list->count();
    for (int k = 0; k < kThumbnailsPerTick && m_nextThumbnail < count; ++k, ++m_nextThumbnail) {
        QListWidgetItem* item = m_list->item(m_nextThumbnail);
        if (m_thumbnails.contains(item->text())) {
            --k;  // kept from before: costs nothing
            continue;
        }
        try {
            int w = 0, h = 0;
            TBitmap picture;
            if (!m_library->GetCmbShapeSize(item->text(), w, h)) continue;
            const double scale = double(kIconSide - 2 * TLibManager::kImageMargin) / std::max({w, h, 1});
            if (!m_library->GetCmbShapeImage(item->text(), scale, picture, clWhite)) continue;
            QPixmap icon(kIconSide, kIconSide);
            icon.fill(Qt::white);
            QPainter painter(&icon);
            QImage image = picture.Image();
            // Ink beyond the box (a long caption) may make the picture larger than the cell.
            if (image.width() > kIconSide || image.height() > kIconSide)
                image = image.scaled(kIconSide, kIconSide, Qt::KeepAspectRatio, Qt::SmoothTransformation);
            painter.drawImage((kIconSide - image.width()) / 2, (kIconSide - image.height()) / 2, image);
            painter.end();
            item->setIcon(QIcon(icon));
            m_thumbnails.insert(item->text(), item->icon());
        } catch (const Exception& e) {
            // A damaged entry shows its error instead of a picture.
            item->setToolTip(e.Message());
            item->setForeground(Qt::red);
        }
    }
    if (m_nextThumbnail < count) {
        m_status->setText(tr("Rendering previews %1/%2").arg(m_nextThumbnail).arg(count));
    } else {
        m_renderTimer->stop();
        m_status->setText(tr("%n entries", nullptr, count));
    }
}

void LibraryPanel::finishThumbnails() {
    while (m_renderTimer->isActive()) renderSomeThumbnails();
}
