#include "file_actions.h"

#include "dxf_actions.h"
#include "print_actions.h"
#include "recent_files.h"

#include "platform/stream.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QProgressDialog>
#include <QPushButton>
#include <QStyle>
#include <QToolBar>

using namespace faroven;

namespace {
const char* const kFilters = QT_TRANSLATE_NOOP("FileActions", "Faroven drawing (*.fvd);;All files (*)");

// Shows the progress of a load in a dialog that appears only when the load
// takes more than a moment. The canvas reports through OnLoadProgress while
// this object lives.
class LoadProgress {
public:
    LoadProgress(TMyCAD* cad, QWidget* parent, const QString& label)
        : m_cad(cad), m_previous(cad->OnLoadProgress), m_dialog(label, QString(), 0, kSteps, parent) {
        m_dialog.setWindowModality(Qt::WindowModal);
        // A load cannot stop halfway: the drawing is replaced whole or not at all.
        m_dialog.setCancelButton(nullptr);
        m_dialog.setMinimumDuration(400);
        m_dialog.setValue(0);
        m_cad->OnLoadProgress = [this](int64_t done, int64_t total) {
            if (m_previous) m_previous(done, total);
            if (total > 0) m_dialog.setValue(int(std::min<int64_t>(done * kSteps / total, kSteps - 1)));
        };
    }
    ~LoadProgress() { m_cad->OnLoadProgress = m_previous; }
    LoadProgress(const LoadProgress&) = delete;
    LoadProgress& operator=(const LoadProgress&) = delete;

private:
    static constexpr int kSteps = 1000;
    TMyCAD* m_cad;
    std::function<void(int64_t, int64_t)> m_previous;
    QProgressDialog m_dialog;
};

QString nativeName(const QString& fileName) { return QDir::toNativeSeparators(fileName); }
}  // namespace

FileActions::FileActions(TMyCAD* cad, QMainWindow* window)
    : QObject(window), m_cad(cad), m_window(window), m_document(cad) {
    QMenu* menu = window->menuBar()->addMenu(tr("&File"));
    QToolBar* bar = window->addToolBar(tr("File"));
    bar->setObjectName("File");
    QStyle* style = QApplication::style();

    QAction* newAction = menu->addAction(style->standardIcon(QStyle::SP_FileIcon), tr("&New"));
    newAction->setShortcut(QKeySequence::New);
    connect(newAction, &QAction::triggered, this, &FileActions::newDrawing);
    QAction* openAction = menu->addAction(style->standardIcon(QStyle::SP_DialogOpenButton), tr("&Open…"));
    openAction->setShortcut(QKeySequence::Open);
    connect(openAction, &QAction::triggered, this, &FileActions::open);
    m_recent = new RecentFiles(menu->addMenu(tr("Recent &files")), window);
    connect(m_recent, &RecentFiles::openRequested, this, [this](const QString& fileName) {
        if (maySaveOrDiscard()) openFile(fileName);
    });
    menu->addSeparator();
    QAction* saveAction = menu->addAction(style->standardIcon(QStyle::SP_DialogSaveButton), tr("&Save"));
    saveAction->setShortcut(QKeySequence::Save);
    connect(saveAction, &QAction::triggered, this, &FileActions::save);
    QAction* saveAsAction = menu->addAction(tr("Save &As…"));
    saveAsAction->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S));
    connect(saveAsAction, &QAction::triggered, this, &FileActions::saveAs);
    m_revert = menu->addAction(tr("&Revert"));
    m_revert->setToolTip(tr("Read the drawing again from its file, dropping the changes"));
    connect(m_revert, &QAction::triggered, this, &FileActions::revert);
    menu->addSeparator();
    QAction* blockAction = menu->addAction(tr("&Insert drawing as block…"));
    connect(blockAction, &QAction::triggered, this, &FileActions::insertBlock);
    menu->addSeparator();
    m_dxf = new DxfActions(cad, window, menu);
    connect(m_dxf, &DxfActions::changed, this, &FileActions::changed);
    QMenu* exportMenu = menu->addMenu(tr("E&xport as"));
    menu->addSeparator();
    // The pictures and PDF first, then the DXF export.
    m_print = new PrintActions(cad, &m_document, window, menu, exportMenu);
    exportMenu->addSeparator();
    exportMenu->addAction(m_dxf->exportAction());
    // Page settings are saved with the drawing but are not undo steps.
    connect(m_print, &PrintActions::pageChanged, this, [this] {
        m_document.markModified();
        emit pageChanged();
    });
    menu->addSeparator();
    QAction* quitAction = menu->addAction(tr("&Quit"));
    quitAction->setShortcut(QKeySequence::Quit);
    quitAction->setMenuRole(QAction::QuitRole);
    // Closing the window asks about unsaved changes.
    connect(quitAction, &QAction::triggered, window, &QWidget::close);

    for (QAction* a : {newAction, openAction, saveAction}) bar->addAction(a);
    update();
}

void FileActions::update() { m_revert->setEnabled(!m_document.fileName().isEmpty()); }

bool FileActions::maySaveOrDiscard() {
    const auto ask = [this] {
        const auto answer = QMessageBox::warning(
            m_window, tr("Unsaved changes"),
            tr("The drawing \"%1\" has changes that are not saved.\nSave them first?").arg(m_document.displayName()),
            QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
        if (answer == QMessageBox::Save) return UnsavedChoice::Save;
        if (answer == QMessageBox::Discard) return UnsavedChoice::Discard;
        return UnsavedChoice::Cancel;
    };
    return mayDiscardDrawing(m_document, ask, [this] { return save(); });
}

// A new drawing is what a canvas just made holds: its page, unit, one layer
// and no shapes. Loading that through a stream replaces every setting the
// file keeps, exactly as opening a file does.
void FileActions::newDrawing() {
    if (!maySaveOrDiscard()) return;
    TMemoryStream blankDrawing;
    {
        TMyCAD blank;
        blank.SaveToStream(blankDrawing);
    }
    m_cad->LoadFromStream(blankDrawing);
    m_document.markSaved(QString());
    update();
    emit drawingReplaced();
}

void FileActions::open() {
    if (!maySaveOrDiscard()) return;
    const QString fileName =
        QFileDialog::getOpenFileName(m_window, tr("Open drawing"), dialogFolder(), tr(kFilters));
    if (!fileName.isEmpty()) openFile(fileName);
}

bool FileActions::openFile(const QString& fileName) {
    if (!load(fileName)) return false;
    m_document.markSaved(fileName);
    m_recent->add(fileName);
    update();
    emit drawingReplaced();
    return true;
}

bool FileActions::load(const QString& fileName) {
    bool isDrawing = false;
    try {
        LoadProgress progress(m_cad, m_window, tr("Reading \"%1\"…").arg(QFileInfo(fileName).fileName()));
        isDrawing = m_cad->LoadFromFile(fileName);
    } catch (const Exception& error) {
        QMessageBox::critical(m_window, tr("Open drawing"),
                              tr("Cannot open \"%1\".\n\n%2").arg(nativeName(fileName), error.Message()));
        return false;
    }
    if (!isDrawing) {
        QMessageBox::critical(m_window, tr("Open drawing"),
                              tr("\"%1\" is not a Faroven drawing.").arg(nativeName(fileName)));
        return false;
    }
    return true;
}

bool FileActions::save() {
    if (m_document.fileName().isEmpty()) return saveAs();
    return saveTo(m_document.fileName());
}

bool FileActions::saveAs() {
    QString start = dialogFolder();
    if (!m_document.fileName().isEmpty()) start = m_document.fileName();
    QFileDialog dialog(m_window, tr("Save drawing as"), start, tr(kFilters));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(kExtension);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return false;
    return saveTo(dialog.selectedFiles().first());
}

bool FileActions::saveTo(const QString& fileName) {
    try {
        m_cad->SaveToFile(fileName);
    } catch (const Exception& error) {
        QMessageBox::critical(m_window, tr("Save drawing"),
                              tr("The drawing was not saved.\n\n%1").arg(error.Message()));
        return false;
    }
    m_document.markSaved(fileName);
    m_recent->add(fileName);
    update();
    emit changed();
    return true;
}

// Saving first would make reverting pointless, so only Discard or Cancel.
void FileActions::revert() {
    const QString fileName = m_document.fileName();
    if (fileName.isEmpty()) return;
    if (m_document.isModified() &&
        QMessageBox::warning(m_window, tr("Revert"),
                             tr("Drop the changes to \"%1\" and read it again from the file?")
                                 .arg(m_document.displayName()),
                             QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Cancel) != QMessageBox::Discard)
        return;
    openFile(fileName);
}

void FileActions::insertBlock() {
    const QString fileName =
        QFileDialog::getOpenFileName(m_window, tr("Insert drawing as block"), dialogFolder(), tr(kFilters));
    if (fileName.isEmpty()) return;

    QMessageBox question(QMessageBox::Question, tr("Insert drawing as block"),
                         tr("How should the layers of \"%1\" be taken over?").arg(QFileInfo(fileName).fileName()),
                         QMessageBox::Cancel, m_window);
    question.setInformativeText(tr("Merge puts every shape of the block on the current layer.\n"
                                   "Import keeps the block's layers, matched by position; "
                                   "layers the drawing lacks are added."));
    QPushButton* merge = question.addButton(tr("&Merge"), QMessageBox::AcceptRole);
    QPushButton* import = question.addButton(tr("&Import layers"), QMessageBox::AcceptRole);
    question.setDefaultButton(merge);
    question.exec();
    const TBlockLayerMode mode = question.clickedButton() == merge ? Merge : Import;
    if (question.clickedButton() != merge && question.clickedButton() != import) return;

    bool isDrawing = false;
    try {
        LoadProgress progress(m_cad, m_window, tr("Reading \"%1\"…").arg(QFileInfo(fileName).fileName()));
        isDrawing = m_cad->AddBlockfromZEMAFile(fileName, mode);
    } catch (const Exception& error) {
        QMessageBox::critical(m_window, tr("Insert drawing as block"),
                              tr("Cannot insert \"%1\".\n\n%2").arg(nativeName(fileName), error.Message()));
        return;
    }
    if (!isDrawing)
        QMessageBox::critical(m_window, tr("Insert drawing as block"),
                              tr("\"%1\" is not a Faroven drawing.").arg(nativeName(fileName)));
    emit changed();
}

QString FileActions::dialogFolder() const {
    return m_document.fileName().isEmpty() ? QString() : QFileInfo(m_document.fileName()).absolutePath();
}
