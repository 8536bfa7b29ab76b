// Printing and pictures of a drawing: pixel pictures equal the screen's paint
// without marks; PDF pages rasterised by poppler match the canvas's own
// rendering, at true size, tiled in order; SVG keeps shapes and texts; hidden
// layers and marks are in no output.
#include "cad/canvas/mycad.h"
#include "cad/shapes/line.h"
#include "cad/shapes/rectangle.h"
#include "cad/shapes/text.h"
#include "platform/system.h"
#include "support/pixels.h"
#include "support/shapes.h"

#include <QApplication>
#include <QFile>
#include <QPainter>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTimer>
#include <QXmlStreamReader>
#include <gtest/gtest.h>

#include "tests/text_printers.h"

using namespace faroven;
using namespace faroven::test;

namespace {

constexpr double kPixelsPerMm = 96 / 25.4;
const TColor kHiddenColour = TColor(RGB(0xFF, 0x00, 0xFF));

// An A4 page with a header, a footer, the border, filled shapes, a text, a
// line 50 mm long and, on a hidden layer, a magenta rectangle.
class PrintedDrawing : public ::testing::Test {
protected:
    void SetUp() override {
        SetScreenPixelsPerInch(96);
        cad.SetPageHead("Head of page");
        cad.SetPageFoot("Foot of page");
        cad.SetColorOfBackGround(TColor(RGB(0xF0, 0xF0, 0xE0)));
        auto* box = AddRect<TMyRectangle>(cad, 150, 200, 350, 300);
        box->Brush()->SetColor(clRed);
        box->Brush()->SetStyle(bsSolid);
        auto* ellipse = AddRect<TMyEllipse>(cad, 400, 200, 600, 400);
        ellipse->Brush()->SetColor(clBlue);
        ellipse->Brush()->SetStyle(bsSolid);
        auto* text = AddRect<TMyText>(cad, 150, 500, 500, 560);
        text->Lines()->SetLines({"Hello printer"});
        line = AddShape<TMyLine>(cad, {{200, 700}, {float(200 + 50 * kPixelsPerMm), 700}});
        line->Pen()->SetWidth(2);
        const int shown = cad.CurrentLayerId();
        cad.NewLayer("Hidden", false);
        auto* hidden = AddRect<TMyRectangle>(cad, 150, 800, 350, 900);
        hidden->Brush()->SetColor(kHiddenColour);
        hidden->Brush()->SetStyle(bsSolid);
        cad.SetCurrentLayerId(shown);
        for (TMyShape* shape : cad.MyShapes()) cad.AddWorkingShapes(shape);
    }
    void TearDown() override { SetScreenPixelsPerInch(0); }

    // The printed page as the canvas renders it on white paper at 96 dpi.
    QImage referencePage() {
        const TRect page = cad.PageRectAt(1.0);
        QImage image(page.Width(), page.Height(), QImage::Format_RGB32);
        image.fill(Qt::white);
        cad.RenderTo(&image, page, cad.PrintRenderOptions(), 1.0);
        return image;
    }

    // Rasterises one page of a PDF with poppler; a null image when pdftoppm is missing.
    QImage rasterise(const QString& pdf, int dpi, int page = 1) {
        if (QStandardPaths::findExecutable("pdftoppm").isEmpty()) return {};
        QProcess run;
        const QString out = dir.filePath(QString("raster%1").arg(page));
        run.start("pdftoppm", {"-r", QString::number(dpi), "-f", QString::number(page), "-l", QString::number(page),
                               "-png", "-singlefile", pdf, out});
        EXPECT_TRUE(run.waitForFinished(60000));
        return QImage(out + ".png").convertToFormat(QImage::Format_RGB32);
    }

    TMyCAD cad;
    TMyLine* line = nullptr;
    QTemporaryDir dir;
};

int countColour(const QImage& image, QRgb colour, int tolerance = 0) {
    int n = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const QRgb p = image.pixel(x, y);
            n += std::abs(qRed(p) - qRed(colour)) <= tolerance && std::abs(qGreen(p) - qGreen(colour)) <= tolerance &&
                 std::abs(qBlue(p) - qBlue(colour)) <= tolerance;
        }
    return n;
}

bool inkIn(const QImage& image, QRect area) {
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x)
            if (qGray(image.pixel(x, y)) < 128) return true;
    return false;
}

int pdfPages(const QString& pdf) {
    QProcess run;
    run.start("pdfinfo", {pdf});
    run.waitForFinished(60000);
    const QString info = QString::fromUtf8(run.readAllStandardOutput());
    const int at = info.indexOf("Pages:");
    return at < 0 ? -1 : info.mid(at + 6).section('\n', 0, 0).trimmed().toInt();
}

// ---- Pixel pictures ------------------------------------------------------------------------------

TEST_F(PrintedDrawing, PixelPicturesAreTheScreenPaintWithoutMarks) {
    cad.SetZoom(1.5);
    const QImage withMarks = cad.PaintToImage();
    const QImage picture = cad.PageImage();
    cad.RemoveAllWorkingShapes();
    cad.SetShowHotLink(false);
    const QImage unmarked = cad.PaintToImage();
    ASSERT_EQ(picture.size(), QSize(cad.Width(), cad.Height()));
    EXPECT_EQ(DiffCount(picture, unmarked), 0);
    EXPECT_GT(DiffCount(picture, withMarks), 0) << "the selection's marks show on screen";
    EXPECT_EQ(countColour(picture, ToQColor(kHiddenColour).rgb()), 0);

    const QString bmp = dir.filePath("page.bmp"), png = dir.filePath("page.png"), jpg = dir.filePath("page.jpg");
    cad.SaveToBmp(bmp);
    cad.SaveToPng(png);
    cad.SaveToJpg(jpg, 95);
    QFile bmpFile(bmp);
    ASSERT_TRUE(bmpFile.open(QIODevice::ReadOnly));
    EXPECT_EQ(bmpFile.read(30).mid(28, 2), QByteArray("\x18\x00", 2)) << "24 bits a pixel";
    EXPECT_EQ(DiffCount(QImage(bmp).convertToFormat(QImage::Format_RGB32), picture), 0);
    EXPECT_EQ(DiffCount(QImage(png).convertToFormat(QImage::Format_RGB32), picture), 0);
    const QImage fromJpg = QImage(jpg).convertToFormat(QImage::Format_RGB32);
    ASSERT_EQ(fromJpg.size(), picture.size());
    double error = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x) error += std::abs(qGray(fromJpg.pixel(x, y)) - qGray(picture.pixel(x, y)));
    EXPECT_LT(error / (picture.width() * picture.height()), 2.0);
    cad.SaveToJpg(jpg + "10.jpg", 10);
    EXPECT_LT(QFileInfo(jpg + "10.jpg").size(), QFileInfo(jpg).size());
}

TEST_F(PrintedDrawing, APictureThatCannotBeWrittenNamesTheFileAndKeepsTheOldOne) {
    const QString missing = dir.filePath("no/such/dir/page.png");
    try {
        cad.SaveToPng(missing);
        FAIL() << "no error";
    } catch (const EFCreateError& e) {
        EXPECT_TRUE(QString::fromUtf8(e.what()).contains(missing));
    }
    // A page too large for memory fails before the file is touched.
    const QString kept = dir.filePath("kept.png");
    {
        QFile f(kept);
        f.open(QIODevice::WriteOnly);
        f.write("old");
    }
    cad.SetPageStyle(A0);
    cad.SetZoom(40);
    EXPECT_THROW(cad.SaveToPng(kept), EInvalidGraphic);
    QFile f(kept);
    f.open(QIODevice::ReadOnly);
    EXPECT_EQ(f.readAll(), "old");
}

// ---- Printing ------------------------------------------------------------------------------------

TEST_F(PrintedDrawing, PdfPageMatchesTheCanvasRenderingAtTrueSize) {
    const QString pdf = dir.filePath("page.pdf");
    cad.SetZoom(2);  // printing does not depend on the zoom shown
    cad.SaveToPdf(pdf);
    const QImage page = rasterise(pdf, 96);
    if (page.isNull()) GTEST_SKIP() << "pdftoppm (poppler-utils) is not installed";
    EXPECT_EQ(pdfPages(pdf), 1);
    const QImage reference = referencePage();
    ASSERT_LE(std::abs(page.width() - reference.width()), 1);
    ASSERT_LE(std::abs(page.height() - reference.height()), 1);
    // Edges differ by poppler's smoothing: at most 1 % of the pixels differ
    // by more than a third of the grey range.
    int far = 0;
    for (int y = 0; y < std::min(page.height(), reference.height()); ++y)
        for (int x = 0; x < std::min(page.width(), reference.width()); ++x)
            far += std::abs(qGray(page.pixel(x, y)) - qGray(reference.pixel(x, y))) > 85;
    EXPECT_LT(far, page.width() * page.height() / 100) << far << " pixels differ";

    // The shapes are at their place, the background is not printed, the
    // header, footer and border lie at their distances.
    EXPECT_EQ(QColor(page.pixel(250, 250)), QColor(Qt::red));
    EXPECT_EQ(QColor(page.pixel(500, 300)), QColor(Qt::blue));
    EXPECT_EQ(QColor(page.pixel(700, 1000)), QColor(Qt::white));
    const int border = int(20 * kPixelsPerMm);
    EXPECT_TRUE(inkIn(page, QRect(border - 1, 600, 3, 1))) << "left border line";
    EXPECT_TRUE(inkIn(page, QRect(200, int(15 * kPixelsPerMm), 400, 25))) << "header";
    EXPECT_TRUE(inkIn(page, QRect(400, page.height() - int(15 * kPixelsPerMm) - 25, 390, 25))) << "footer";
    EXPECT_FALSE(inkIn(page, QRect(160, 810, 180, 80))) << "the hidden layer";
    EXPECT_EQ(countColour(page, ToQColor(kHiddenColour).rgb(), 60), 0);

    // The 50 mm line measured at 600 dpi: the dark run along its row, in a
    // strip cut from the page around it.
    QProcess crop;
    crop.start("pdftoppm", {"-r", "600", "-x", "1000", "-y", "4300", "-W", "1800", "-H", "150", "-png", "-singlefile",
                            pdf, dir.filePath("strip")});
    ASSERT_TRUE(crop.waitForFinished(60000));
    const QImage strip(dir.filePath("strip.png"));
    const int row = int(std::lround(700 / 96.0 * 600)) - 4300;
    int first = -1, last = -1;
    for (int x = 0; x < strip.width(); ++x)
        if (qGray(strip.pixel(x, row)) < 128) {
            if (first < 0) first = x;
            last = x;
        }
    const double mm = (last - first + 1) * 25.4 / 600;
    EXPECT_NEAR(mm, 50.0, 0.6) << "the line prints " << mm << " mm long (its pen is 0.5 mm wide)";
}

TEST_F(PrintedDrawing, ADrawingBeyondThePageTilesOverSheetsInOrder) {
    const QSizeF a4(210, 297);
    EXPECT_EQ(cad.PrintSheets(a4).size(), 1u);
    // A pen overhanging the edge takes no sheet.
    AddRect<TMyRectangle>(cad, 700, 300, float(210 * kPixelsPerMm), 320);
    EXPECT_EQ(cad.PrintSheets(a4).size(), 1u);
    auto* far = AddRect<TMyRectangle>(cad, 900, 1200, 1000, 1300);  // right of and below the page
    far->Brush()->SetColor(clLime);
    far->Brush()->SetStyle(bsSolid);
    const std::vector<TRect> sheets = cad.PrintSheets(a4);
    ASSERT_EQ(sheets.size(), 4u);
    EXPECT_EQ(sheets[0], (TRect{0, 0, 794, 1123}));
    EXPECT_EQ(sheets[1].left, 794);
    EXPECT_EQ(sheets[1].top, 0);
    EXPECT_EQ(sheets[2].left, 0);
    EXPECT_EQ(sheets[3], (TRect{794, 1123, 1587, 2245}));
    EXPECT_EQ(cad.PrintSheets(QSizeF(105, 148.5)).size(), 9u) << "A6 paper: three columns and rows reach x 1000, y 1300";
    AddRect<TMyRectangle>(cad, -100, 10, -50, 20);
    EXPECT_EQ(cad.PrintSheets(a4).front().left, -794);

    const QString pdf = dir.filePath("tiles.pdf");
    cad.SaveToPdf(pdf);
    const QImage last = rasterise(pdf, 96, 6);
    if (last.isNull()) GTEST_SKIP() << "pdftoppm (poppler-utils) is not installed";
    EXPECT_EQ(pdfPages(pdf), 6);
    EXPECT_EQ(QColor(last.pixel(950 - 794, 1250 - 1123)), QColor(Qt::green)) << "the far shape on the last sheet";
    EXPECT_TRUE(inkIn(last, QRect(200, int(15 * kPixelsPerMm), 400, 25))) << "every sheet has the header";

    AddRect<TMyRectangle>(cad, 1e6f, 1e6f, 1e6f + 10, 1e6f + 10);
    EXPECT_THROW(cad.PrintSheets(a4), EPrinter);
}

TEST_F(PrintedDrawing, APrinterPrintsThroughItsCanvasInItsColours) {
    QPrinter* printer = Printer()->Device();
    printer->setOutputFormat(QPrinter::PdfFormat);
    const QString pdf = dir.filePath("printed.pdf");
    printer->setOutputFileName(pdf);
    Printer()->SetNumColors(2);
    cad.SetPageOrientation(poLandscape);
    cad.SetPageStyle(A5);
    cad.Print();
    Printer()->SetNumColors(16777216);
    EXPECT_FALSE(Printer()->Printing());
    const QImage page = rasterise(pdf, 96);
    if (page.isNull()) GTEST_SKIP() << "pdftoppm (poppler-utils) is not installed";
    EXPECT_EQ(page.width(), 794) << "A5 landscape";
    EXPECT_EQ(page.height(), 560);
    // A black-and-white printer gets the red fill as grey (255 + 0 + 0) / 3.
    EXPECT_EQ(QColor(page.pixel(250, 250)), QColor(85, 85, 85));
    EXPECT_THROW(Printer()->EndDoc(), EPrinter);
}

TEST_F(PrintedDrawing, PrintPreviewShowsEverySheet) {
    AddRect<TMyRectangle>(cad, 900, 100, 1000, 200);  // a second sheet to the right
    int pages = -1;
    QTimer::singleShot(0, [&] {
        QWidget* dialog = QApplication::activeModalWidget();
        ASSERT_NE(dialog, nullptr);
        auto* preview = dialog->findChild<QPrintPreviewWidget*>();
        ASSERT_NE(preview, nullptr);
        preview->updatePreview();
        pages = preview->pageCount();
        dialog->close();
    });
    EXPECT_FALSE(cad.PrintPreview());
    EXPECT_EQ(pages, 2);
}

// ---- SVG -----------------------------------------------------------------------------------------

TEST_F(PrintedDrawing, SvgKeepsShapesAndTextsAtTrueSize) {
    QXmlStreamReader svg(cad.SvgBytes());
    QStringList texts, fills;
    QString width;
    while (!svg.atEnd()) {
        if (svg.readNext() != QXmlStreamReader::StartElement) continue;
        if (svg.name() == u"svg") width = svg.attributes().value("width").toString();
        if (svg.name() == u"text") texts << svg.readElementText().simplified();
        if (svg.name() == u"g") fills << svg.attributes().value("fill").toString();
    }
    ASSERT_FALSE(svg.hasError()) << svg.errorString().toStdString();
    ASSERT_TRUE(width.endsWith("mm"));
    EXPECT_NEAR(width.chopped(2).toDouble(), 210, 0.2);
    EXPECT_TRUE(texts.contains("Hello printer")) << texts.join('|').toStdString();
    EXPECT_TRUE(texts.contains("Head of page"));
    EXPECT_TRUE(texts.contains("Foot of page"));
    EXPECT_TRUE(fills.contains("#ff0000"));
    EXPECT_TRUE(fills.contains("#0000ff"));
    EXPECT_FALSE(fills.contains("#ff00ff")) << "the hidden layer";
    EXPECT_FALSE(fills.contains("#f0f0e0")) << "the background prints only with PrintBackground";
    cad.SetPrintBackground(true);
    EXPECT_TRUE(cad.SvgBytes().contains("#f0f0e0"));
}

// ---- Windows metafiles ---------------------------------------------------------------------------

// libwmf's wmf2gd leaves META_ELLIPSE unfilled (its SVG fills it), so the
// ellipse's inside is left out of the comparison. It also scales what is
// drawn to the picture, so the page's background is printed to fill it.
TEST_F(PrintedDrawing, WmfOfThePageRendersInLibwmfLikeThePrint) {
    const QString wmf2gd = QStandardPaths::findExecutable("wmf2gd");
    if (wmf2gd.isEmpty()) GTEST_SKIP() << "libwmf-bin (wmf2gd) is not installed";
    cad.SetPrintBackground(true);
    const QString wmf = dir.filePath("page.wmf"), png = dir.filePath("page.png");
    cad.SaveToWmf(wmf);
    QProcess run;
    run.start(wmf2gd, {"-t", "png", "--maxwidth=794", "--maxheight=1123", "--maxsize", "-o", png, wmf});
    ASSERT_TRUE(run.waitForFinished(60000));
    QImage seen = QImage(png).convertToFormat(QImage::Format_RGB32);
    QImage expected = referencePage();
    ASSERT_EQ(seen.size(), expected.size());
    EXPECT_EQ(QColor(seen.pixel(250, 250)), QColor(Qt::red));
    EXPECT_FALSE(inkIn(seen, QRect(160, 810, 180, 80))) << "the hidden layer";
    EXPECT_TRUE(inkIn(seen, QRect(150, 500, 200, 40))) << "the text";
    EXPECT_TRUE(inkIn(seen, QRect(200, int(15 * kPixelsPerMm), 400, 25))) << "header";
    for (QImage* image : {&seen, &expected}) {
        QPainter(image).fillRect(410, 210, 180, 180, Qt::black);
        *image = image->scaled(image->width() / 4, image->height() / 4, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    double difference = 0;
    for (int y = 0; y < seen.height(); ++y)
        for (int x = 0; x < seen.width(); ++x) difference += std::abs(qGray(seen.pixel(x, y)) - qGray(expected.pixel(x, y)));
    EXPECT_LT(difference / (seen.width() * seen.height()), 3.0) << "mean grey difference at a quarter of the size";
}

TEST_F(PrintedDrawing, TheClipboardGetsTheMetafileWithSvgAndPictureBeside) {
    cad.CopyToClipBoardAsWmf();
    const QByteArray wmf = Clipboard()->Data("image/x-wmf");
    EXPECT_TRUE(wmf.startsWith(QByteArray("\xD7\xCD\xC6\x9A", 4)));
    EXPECT_EQ(wmf, cad.WmfBytes());
    EXPECT_TRUE(Clipboard()->Data("image/svg+xml").contains("Hello printer"));
    EXPECT_EQ(Clipboard()->Image().size(), QSize(794, 1123));

    cad.SetPageStyle(CustomerPage);
    cad.SetPageWidth(9000);  // 34016 pixels: more than a metafile holds
    EXPECT_THROW(cad.WmfBytes(), EInvalidGraphic);
}

}  // namespace
