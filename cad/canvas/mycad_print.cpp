// TMyCAD: printing, print preview and PDF files. Each sheet of paper is a
// rendering of a rectangle of the drawing at zoom 1, scaled from screen
// pixels to the device's, so the print is the screen's picture at true size.
#include "cad/canvas/mycad.h"
#include "cad/canvas/mycad_zoom_scope.h"

#include "platform/system.h"

#include <QFileInfo>
#include <QGuiApplication>
#include <QScreen>
#include <QPageLayout>
#include <QPdfWriter>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QSaveFile>
#include <cmath>

namespace faroven {

namespace {
double pixelsPerMm() { return ScreenPixelsPerInch() / 25.4; }

// Sheet indices [first, last) that cover [from, to) with sheets of the given size.
std::pair<int64_t, int64_t> sheetSpan(double from, double to, double size) {
    return {int64_t(std::floor(from / size)), int64_t(std::ceil(to / size - 1e-9))};
}
}  // namespace

std::vector<TRect> TMyCAD::PrintSheets(QSizeF paperMm) {
    const double ppmm = pixelsPerMm();
    const double sw = paperMm.width() * ppmm, sh = paperMm.height() * ppmm;
    if (!(sw >= 1 && sh >= 1)) throw EPrinter(QStringLiteral("The paper has no size"));
    // The page in exact pixels, and the shapes less what they may overhang.
    double left = 0, top = 0, right = m_pageWidth * ppmm, bottom = m_pageHeight * ppmm;
    const TRect shapes = VisibleShapesBoundsAt(1.0);
    if (shapes.right > shapes.left || shapes.bottom > shapes.top) {
        // The painted bounds leave room for hot marks, which do not print.
        const double slack = m_hotSize + 3 + ppmm;
        left = std::min(left, shapes.left + slack);
        top = std::min(top, shapes.top + slack);
        right = std::max(right, shapes.right - slack);
        bottom = std::max(bottom, shapes.bottom - slack);
    }
    const auto [c0, c1] = sheetSpan(left, right, sw);
    const auto [r0, r1] = sheetSpan(top, bottom, sh);
    const int64_t count = (c1 - c0) * (r1 - r0);
    if (count > MaxPrintSheets)
        throw EPrinter(QStringLiteral("The drawing would take %1 sheets of paper (at most %2 are printed); "
                                      "shapes lie far outside the page")
                           .arg(count)
                           .arg(MaxPrintSheets));
    std::vector<TRect> sheets;
    for (int64_t r = r0; r < r1; ++r)
        for (int64_t c = c0; c < c1; ++c)
            sheets.push_back(TRect{Round(double(c) * sw), Round(double(r) * sh), Round(double(c + 1) * sw),
                                   Round(double(r + 1) * sh)});
    return sheets;
}

void TMyCAD::PreparePrinter(QPagedPaintDevice* device) const {
    const double w = m_pageWidth, h = m_pageHeight;
    const QPageSize size(QSizeF(std::min(w, h), std::max(w, h)), QPageSize::Millimeter, QString(),
                         QPageSize::FuzzyMatch);
    device->setPageSize(size);
    device->setPageOrientation(w > h ? QPageLayout::Landscape : QPageLayout::Portrait);
    device->setPageMargins(QMarginsF(0, 0, 0, 0), QPageLayout::Millimeter);
    if (auto* printer = dynamic_cast<QPrinter*>(device)) printer->setFullPage(true);
}

void TMyCAD::printSheet(QPainter* painter, TCanvas* canvas, const TRect& sheet, double scaleX, double scaleY) {
    painter->save();
    painter->scale(scaleX, scaleY);
    canvas->AttachPainter(painter, TRect{0, 0, sheet.Width(), sheet.Height()});
    renderArea(canvas, sheet, sheet, PageRectAt(1.0), PrintRenderOptions());
    painter->restore();
}

int TMyCAD::PrintTo(QPagedPaintDevice* device) {
    if (!device) throw EPrinter(QStringLiteral("There is no printer"));
    // A printer paints from its paper's corner, other devices from their margins.
    if (auto* printer = dynamic_cast<QPrinter*>(device)) printer->setFullPage(true);
    else device->setPageMargins(QMarginsF(0, 0, 0, 0));
    const std::vector<TRect> sheets = PrintSheets(device->pageLayout().fullRect(QPageLayout::Millimeter).size());
    const double scaleX = device->logicalDpiX() / double(ScreenPixelsPerInch());
    const double scaleY = device->logicalDpiY() / double(ScreenPixelsPerInch());

    TPrinter* printer = Printer();
    const bool onPrinter = printer->IsDevice(device);
    QPainter ownPainter;
    TCanvas ownCanvas;
    if (onPrinter) {
        printer->BeginDoc(device);
    } else if (!ownPainter.begin(device)) {
        throw EPrinter(QStringLiteral("Cannot print on the device"));
    }
    QPainter* painter = onPrinter ? printer->Painter() : &ownPainter;
    TCanvas* canvas = onPrinter ? printer->Canvas() : &ownCanvas;
    try {
        ZoomScope scope(*this, 1.0);
        for (size_t i = 0; i < sheets.size(); ++i) {
            if (i > 0 && onPrinter) printer->NewPage();
            else if (i > 0 && !device->newPage()) throw EPrinter(QStringLiteral("Cannot start page %1").arg(i + 1));
            printSheet(painter, canvas, sheets[i], scaleX, scaleY);
        }
    } catch (...) {
        if (onPrinter) printer->Abort();
        throw;
    }
    ownCanvas.DetachPainter();
    if (onPrinter) printer->EndDoc();
    else if (!ownPainter.end()) throw EPrinter(QStringLiteral("The pages could not be written"));
    return int(sheets.size());
}

void TMyCAD::Print() {
    QPrinter* printer = Printer()->Device();
    PreparePrinter(printer);
    PrintTo(printer);
}

bool TMyCAD::PrintPreview(QWidget* parent) {
    QPrinter* printer = Printer()->Device();
    PreparePrinter(printer);
    QPrintPreviewDialog dialog(printer, parent);
    dialog.setWindowTitle(QStringLiteral("Print preview"));
    // Large enough to read a page: most of the window, or of the screen.
    const QWidget* window = parent ? parent->window() : nullptr;
    const QScreen* screen = window ? window->screen() : QGuiApplication::primaryScreen();
    const QSize room = window ? window->size() * 0.9 : screen ? screen->availableSize() * 0.8 : QSize();
    if (room.isValid()) dialog.resize(room.expandedTo(QSize(640, 480)));
    connect(&dialog, &QPrintPreviewDialog::paintRequested, this, [this](QPrinter* target) {
        try {
            PrintTo(target);
        } catch (const Exception& e) {
            ShowMessage(QString::fromUtf8(e.what()));
        }
    });
    return dialog.exec() == QDialog::Accepted;
}

void TMyCAD::SaveToPdf(const QString& fileName) {
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly))
        throw EFCreateError(QStringLiteral("Cannot create file \"%1\". %2").arg(fileName, file.errorString()));
    {
        QPdfWriter pdf(&file);
        pdf.setCreator(QStringLiteral("Faroven"));
        pdf.setTitle(QFileInfo(fileName).completeBaseName());
        PreparePrinter(&pdf);
        PrintTo(&pdf);
    }
    if (!file.commit()) throw EWriteError(QStringLiteral("Cannot write file \"%1\". %2").arg(fileName, file.errorString()));
}

}  // namespace faroven
