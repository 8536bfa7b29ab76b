#include "print_actions.h"

#include "page_setup_dialog.h"

#include "platform/printer.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QMenu>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrinter>

using namespace faroven;

namespace {
struct PictureKind {
    PrintActions::Picture picture;
    const char* suffix;
    const char* menuText;
    const char* name;
    const char* filter;
    // A picture of the screen's pixels, limited in size, rather than a vector file.
    bool pixels;
};

// The "Export as" items in menu order.
constexpr PictureKind kPictures[] = {
    {PrintActions::Picture::Png, "png", QT_TRANSLATE_NOOP("PrintActions", "&PNG…"), "PNG",
     QT_TRANSLATE_NOOP("PrintActions", "PNG picture (*.png)"), true},
    {PrintActions::Picture::Jpg, "jpg", QT_TRANSLATE_NOOP("PrintActions", "&JPG…"), "JPG",
     QT_TRANSLATE_NOOP("PrintActions", "JPEG picture (*.jpg *.jpeg)"), true},
    {PrintActions::Picture::Bmp, "bmp", QT_TRANSLATE_NOOP("PrintActions", "&BMP…"), "BMP",
     QT_TRANSLATE_NOOP("PrintActions", "Bitmap picture (*.bmp)"), true},
    {PrintActions::Picture::Svg, "svg", QT_TRANSLATE_NOOP("PrintActions", "&SVG…"), "SVG",
     QT_TRANSLATE_NOOP("PrintActions", "SVG drawing (*.svg)"), false},
    {PrintActions::Picture::Pdf, "pdf", QT_TRANSLATE_NOOP("PrintActions", "P&DF…"), "PDF",
     QT_TRANSLATE_NOOP("PrintActions", "PDF document (*.pdf)"), false},
    {PrintActions::Picture::Wmf, "wmf", QT_TRANSLATE_NOOP("PrintActions", "&WMF…"), "WMF",
     QT_TRANSLATE_NOOP("PrintActions", "Windows metafile (*.wmf)"), false},
};

const PictureKind& kindOf(PrintActions::Picture picture) {
    for (const PictureKind& kind : kPictures)
        if (kind.picture == picture) return kind;
    return kPictures[0];
}

// The wait cursor while an export or a print runs; gone before any message box.
class WaitCursor {
public:
    WaitCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QApplication::restoreOverrideCursor(); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};
}  // namespace

PrintActions::PrintActions(TMyCAD* cad, const DocumentState* document, QWidget* window, QMenu* menu,
                           QMenu* exportMenu)
    : QObject(window), m_cad(cad), m_document(document), m_window(window) {
    for (const PictureKind& kind : kPictures) {
        QAction* action = exportMenu->addAction(tr(kind.menuText));
        connect(action, &QAction::triggered, this, [this, picture = kind.picture] { exportPicture(picture); });
        if (kind.pixels) m_pixelActions.push_back(action);
    }
    exportMenu->setToolTipsVisible(true);
    // The zoom changes without telling: look when the submenu opens.
    connect(exportMenu, &QMenu::aboutToShow, this, &PrintActions::update);

    QAction* setupAction = menu->addAction(tr("Page set&up…"));
    setupAction->setToolTip(tr("Paper, header, footer and border of the printed page"));
    connect(setupAction, &QAction::triggered, this, &PrintActions::pageSetup);
    QAction* previewAction = menu->addAction(tr("Print pre&view…"));
    connect(previewAction, &QAction::triggered, this, &PrintActions::printPreview);
    QAction* printAction = menu->addAction(tr("&Print…"));
    printAction->setShortcut(QKeySequence::Print);
    connect(printAction, &QAction::triggered, this, &PrintActions::print);
}

void PrintActions::update() {
    const int64_t pixels = int64_t(m_cad->width()) * m_cad->height();
    const bool fits = pixels <= TMyCAD::MaxPicturePixels;
    for (QAction* action : m_pixelActions) {
        action->setEnabled(fits);
        action->setToolTip(fits ? QString() : tr("The page is too large for a picture at this zoom; zoom out first"));
    }
}

void PrintActions::pageSetup() {
    PageSetupDialog dialog(m_cad, m_window);
    if (dialog.exec() == QDialog::Accepted && dialog.changedPage()) emit pageChanged();
}

// The canvas's preview prints on the printer Print… uses.
void PrintActions::printPreview() { m_cad->PrintPreview(m_window); }

// The printer gets the page's paper first, so the dialog offers it.
void PrintActions::print() {
    QPrinter* printer = Printer()->Device();
    m_cad->PreparePrinter(printer);
    QPrintDialog dialog(printer, m_window);
    dialog.setWindowTitle(tr("Print"));
    if (dialog.exec() != QDialog::Accepted) return;
    try {
        WaitCursor wait;
        m_cad->PrintTo(printer);
    } catch (const Exception& error) {  // EPrinter among them
        showError(tr("Print"), tr("The drawing was not printed.\n\n%1").arg(error.Message()));
    }
}

QString PrintActions::suggestedFileName(Picture picture) const {
    const QString suffix = QString::fromLatin1(kindOf(picture).suffix);
    const QString drawing = m_document->fileName();
    if (drawing.isEmpty()) return m_document->displayName() + u'.' + suffix;
    const QFileInfo info(drawing);
    return info.dir().filePath(info.completeBaseName() + u'.' + suffix);
}

void PrintActions::exportPicture(Picture picture) {
    const PictureKind& kind = kindOf(picture);
    const QString title = tr("Export as %1").arg(QString::fromLatin1(kind.name));
    QString fileName =
        QFileDialog::getSaveFileName(m_window, title, suggestedFileName(picture), tr(kind.filter));
    if (fileName.isEmpty()) return;
    if (QFileInfo(fileName).suffix().isEmpty()) fileName += u'.' + QString::fromLatin1(kind.suffix);
    if (picture == Picture::Jpg) {
        bool ok = false;
        const int quality = QInputDialog::getInt(m_window, title, tr("Quality (0: smallest file, 100: best picture):"),
                                                 m_jpgQuality, 0, 100, 5, &ok);
        if (!ok) return;
        m_jpgQuality = quality;
    }
    exportTo(picture, fileName, m_jpgQuality);
}

bool PrintActions::exportTo(Picture picture, const QString& fileName, int jpgQuality) {
    try {
        WaitCursor wait;
        switch (picture) {
        case Picture::Png: m_cad->SaveToPng(fileName); break;
        case Picture::Jpg: m_cad->SaveToJpg(fileName, jpgQuality); break;
        case Picture::Bmp: m_cad->SaveToBmp(fileName); break;
        case Picture::Svg: m_cad->SaveToSvg(fileName); break;
        case Picture::Pdf: m_cad->SaveToPdf(fileName); break;
        case Picture::Wmf: m_cad->SaveToWmf(fileName); break;
        }
    } catch (const Exception& error) {
        showError(tr("Export as %1").arg(QString::fromLatin1(kindOf(picture).name)),
                  tr("Cannot export to \"%1\"; an existing file is unchanged.\n\n%2")
                      .arg(QDir::toNativeSeparators(fileName), error.Message()));
        return false;
    }
    return true;
}

void PrintActions::showError(const QString& title, const QString& message) {
    QMessageBox::critical(m_window, title, message);
}
