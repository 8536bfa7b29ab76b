// The metafile paint device: the file's structure, the records that pens,
// brushes, text and images become, and our files as libwmf renders them.
#include "platform/wmf_device.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <gtest/gtest.h>
#include <map>
#include <stdexcept>

using namespace faroven;

namespace {

int Word(const QByteArray& b, qsizetype at) { return int16_t(uint8_t(b[at]) | uint8_t(b[at + 1]) << 8); }
uint32_t DWord(const QByteArray& b, qsizetype at) { return uint16_t(Word(b, at)) | uint32_t(uint16_t(Word(b, at + 2))) << 16; }

struct TRecord {
    int function;
    QByteArray params;
    int W(int i) const { return Word(params, 2 * i); }
    QList<int> Ws(int first, int count) const {
        QList<int> out;
        for (int i = first; i < first + count; ++i) out.append(W(i));
        return out;
    }
};

// The records between the headers and the end record; fails when a size
// leads outside the file or the end record is not the file's end.
std::vector<TRecord> Records(const QByteArray& wmf, uint32_t* largest = nullptr) {
    std::vector<TRecord> records;
    for (qsizetype at = 40; at + 6 <= wmf.size();) {
        const qsizetype bytes = 2 * qsizetype(DWord(wmf, at));
        const int function = uint16_t(Word(wmf, at + 4));
        if (bytes < 6 || at + bytes > wmf.size()) break;
        if (largest) *largest = std::max(*largest, uint32_t(bytes / 2));
        if (function == 0) {
            EXPECT_EQ(at + bytes, wmf.size()) << "bytes after the end record";
            return records;
        }
        records.push_back({function, wmf.mid(at + 6, bytes - 6)});
        at += bytes;
    }
    ADD_FAILURE() << "the record chain does not reach the end record";
    return records;
}

std::vector<TRecord> Only(const std::vector<TRecord>& records, int function) {
    std::vector<TRecord> out;
    std::copy_if(records.begin(), records.end(), std::back_inserter(out), [&](auto& r) { return r.function == function; });
    return out;
}

template <class Paint>
QByteArray Metafile(Paint paint) {
    TWmfDevice device(200, 100);
    paint(*std::make_unique<QPainter>(&device));
    return device.Data();
}

// A 24-bit bitmap's rows are blue, green, red bytes, bottom row first.
QImage FromDib(const QByteArray& dib) {
    const int w = int(DWord(dib, 4)), h = int(DWord(dib, 8));
    const auto* rows = reinterpret_cast<const uchar*>(dib.constData() + 40);
    return QImage(rows, w, h, (3 * w + 3) & ~3, QImage::Format_BGR888).mirrored().convertToFormat(QImage::Format_RGB32);
}

const int kCreatePen = 0x02FA, kCreateBrush = 0x02FC, kCreateFont = 0x02FB, kExtTextOut = 0x0A32, kStretchDib = 0x0F43;

}  // namespace

TEST(WmfDevice, FileStructureAndObjectTableStayConsistent) {
    const QByteArray wmf = Metafile([](QPainter& p) {
        QImage image(20, 10, QImage::Format_RGB32);
        image.fill(Qt::cyan);
        for (int i = 0; i < 6; ++i) {
            p.setClipRect(i * 10, 0, 100, 60 + i);
            // Objects kept over some clip changes and replaced at others.
            p.setPen(QPen(QColor(i / 2 * 80, 0, 0), i / 2));
            p.setBrush(i < 3 ? QBrush(Qt::blue) : QBrush(Qt::green, Qt::CrossPattern));
            p.drawRect(5 + i, 5, 50, 30);
            p.setFont(QFont("DejaVu Sans", 8 + i / 3));
            p.drawText(10, 80, "Text");
            if (i == 3) p.setClipping(false);
            p.drawImage(150, 10 * i, image);
        }
    });
    ASSERT_GT(wmf.size(), 40);
    const TRecord headers{0, wmf.left(40)};
    EXPECT_EQ(DWord(wmf, 0), 0x9AC6CDD7u);
    EXPECT_EQ(headers.Ws(3, 5), QList<int>({0, 0, 200, 100, 96}));
    int checksum = 0;
    for (int i = 0; i < 10; ++i) checksum ^= uint16_t(headers.W(i));
    EXPECT_EQ(uint16_t(headers.W(10)), checksum);
    EXPECT_EQ(headers.Ws(11, 3), QList<int>({1, 9, 0x300}));
    EXPECT_EQ(DWord(wmf, 28), uint32_t(wmf.size() - 22) / 2);
    uint32_t largest = 0;
    const std::vector<TRecord> records = Records(wmf, &largest);
    EXPECT_EQ(DWord(wmf, 34), largest);

    // Replay the object table as a player fills it: every object goes to the
    // lowest free slot; selections and deletions name live objects; after a
    // restore, objects and the text colour are chosen again before use.
    std::vector<int> table;  // creating function per slot, 0 when free
    std::map<int, int> selected;  // creating function -> slot selected since the last restore
    bool textColorSet = true;  // black in a fresh device context
    for (const TRecord& r : records) {
        if (r.function == kCreatePen || r.function == kCreateBrush || r.function == kCreateFont) {
            const auto free = std::find(table.begin(), table.end(), 0);
            if (free == table.end()) table.push_back(r.function);
            else *free = r.function;
        } else if (r.function == 0x012D || r.function == 0x01F0) {  // select, delete
            ASSERT_LT(r.W(0), int(table.size()));
            ASSERT_NE(table[size_t(r.W(0))], 0) << "object " << r.W(0) << " is not there";
            if (r.function == 0x012D) selected[table[size_t(r.W(0))]] = r.W(0);
            else table[size_t(r.W(0))] = 0;
        } else if (r.function == 0x0127) {  // restore
            selected.clear();
            textColorSet = false;
        } else {
            textColorSet |= r.function == 0x0209;
            if (r.function == 0x041B) EXPECT_TRUE(selected.count(kCreatePen) && selected.count(kCreateBrush));
            if (r.function == kExtTextOut) EXPECT_TRUE(selected.count(kCreateFont) && textColorSet);
        }
    }
    EXPECT_EQ(headers.W(16), int(table.size()));
    EXPECT_LE(table.size(), 6u) << "replaced objects are deleted";
    EXPECT_EQ(Only(records, 0x001E).size(), Only(records, 0x0127).size()) << "every saved clip is restored";

    EXPECT_THROW(TWmfDevice(32768, 10), std::invalid_argument);
    EXPECT_THROW(TWmfDevice(10, 0), std::invalid_argument);
    QString error;
    EXPECT_FALSE(TWmfDevice(10, 10).Save("/nonexistent-dir/x.wmf", &error));
    EXPECT_FALSE(error.isEmpty());
}

TEST(WmfDevice, PensBrushesAndShapesBecomeTheirRecords) {
    const std::vector<TRecord> records = Records(Metafile([](QPainter& p) {
        p.setPen(QPen(Qt::red, 3));
        p.setBrush(Qt::blue);
        p.drawRect(10, 20, 30, 40);
        p.drawRect(50, 20, 30, 40);  // the same objects again
        p.scale(2, 2);
        p.setPen(QPen(Qt::black, 1, Qt::DashLine));
        p.setBrush(QBrush(Qt::green, Qt::BDiagPattern));
        p.setCompositionMode(QPainter::RasterOp_SourceXorDestination);
        p.drawEllipse(5, 5, 10, 10);
        p.rotate(30);
        p.drawRect(5, 5, 10, 10);
        p.drawEllipse(5, 5, 10, 10);
    }));
    const auto pens = Only(records, kCreatePen), brushes = Only(records, kCreateBrush);
    ASSERT_EQ(pens.size(), 2u);
    ASSERT_EQ(brushes.size(), 2u);
    // Solid, square caps, bevel joins, 3 wide, COLORREF 0x00BBGGRR; then
    // dashed and twice as wide as set.
    EXPECT_EQ(pens[0].Ws(0, 2), QList<int>({0x1100, 3}));
    EXPECT_EQ(DWord(pens[0].params, 6), 0x0000FFu);
    EXPECT_EQ(QList<int>({pens[1].W(0) & 0xF, pens[1].W(1)}), QList<int>({1 /* PS_DASH */, 2}));
    EXPECT_EQ(QList<int>({brushes[0].W(0), brushes[1].W(0), brushes[1].W(3)}), QList<int>({0, 2, 3 /* HS_BDIAGONAL */}));
    EXPECT_EQ(DWord(brushes[0].params, 2), 0xFF0000u);
    EXPECT_EQ(DWord(brushes[1].params, 2), 0x00FF00u);

    const auto rects = Only(records, 0x041B), ellipses = Only(records, 0x0418), polygons = Only(records, 0x0324);
    ASSERT_EQ(rects.size(), 2u);
    ASSERT_EQ(ellipses.size(), 1u);
    EXPECT_EQ(rects[0].Ws(0, 4), QList<int>({60, 40, 20, 10}));  // bottom, right, top, left
    EXPECT_EQ(ellipses[0].Ws(0, 4), QList<int>({30, 30, 10, 10}));
    // Turned, the rectangle and the ellipse are polygons.
    ASSERT_EQ(polygons.size(), 2u);
    EXPECT_EQ(polygons[0].W(0), 4);
    EXPECT_GT(polygons[1].W(0), 8);
    ASSERT_EQ(Only(records, 0x0104).size(), 1u);
    EXPECT_EQ(Only(records, 0x0104)[0].W(0), 7 /* R2_XORPEN */);
}

TEST(WmfDevice, TextIsWindows1252WithAdvancesOrGlyphOutlines) {
    QFont font("DejaVu Sans");
    font.setPixelSize(20);
    const std::vector<TRecord> records = Records(Metafile([&](QPainter& p) {
        p.setFont(font);
        p.setPen(Qt::darkGreen);
        p.drawText(10, 50, QString::fromUtf8("Aä"));
        p.translate(100, 50);
        p.rotate(-90);
        p.drawText(0, 0, "A");
        p.resetTransform();
        p.drawText(10, 90, QString::fromUtf8("中"));
    }));
    const auto texts = Only(records, kExtTextOut), fonts = Only(records, kCreateFont);
    const auto colors = Only(records, 0x0209), brushes = Only(records, kCreateBrush);
    ASSERT_EQ(texts.size(), 2u) << "the Chinese character is not text";
    ASSERT_EQ(fonts.size(), 2u);
    ASSERT_EQ(colors.size(), 1u);
    EXPECT_EQ(texts[0].Ws(0, 4), QList<int>({50, 10, 2, 0}));
    EXPECT_EQ(texts[0].params.mid(8, 2), QByteArray("\x41\xE4"));
    EXPECT_NEAR(texts[0].W(5) + texts[0].W(6), QFontMetricsF(font).horizontalAdvance(QString::fromUtf8("Aä")), 1);
    EXPECT_EQ(QList<int>({fonts[0].W(0), fonts[0].W(2), fonts[0].W(4)}), QList<int>({-20, 0, 400}));
    EXPECT_EQ(fonts[0].params.mid(18, 12), QByteArray("DejaVu Sans\0", 12));
    EXPECT_EQ(fonts[1].Ws(2, 2), QList<int>({900, 900})) << "a quarter turn to the left";
    EXPECT_EQ(DWord(colors[0].params, 0), 0x008000u);
    // The character's outlines are filled with the pen's colour.
    ASSERT_FALSE(brushes.empty());
    EXPECT_EQ(DWord(brushes.back().params, 2), 0x008000u);
    EXPECT_FALSE(Only(records, 0x0324).empty() && Only(records, 0x0538).empty());
}

TEST(WmfDevice, ImagesAreBitmapsCutToClipRegionsAndClearPixels) {
    QImage photo(50, 40, QImage::Format_ARGB32);
    for (int y = 0; y < photo.height(); ++y)
        for (int x = 0; x < photo.width(); ++x) photo.setPixel(x, y, qRgb(x * 5, y * 6, (x * y) % 256));

    auto records = Records(Metafile([&](QPainter& p) { p.drawImage(QRect(20, 10, 60, 40), photo); }));
    ASSERT_EQ(records.back().function, kStretchDib);
    const TRecord& dib = records.back();
    EXPECT_EQ(DWord(dib.params, 0), 0x00CC0020u);  // SRCCOPY
    EXPECT_EQ(dib.Ws(2, 9), QList<int>({0, 40, 50, 0, 0, 40, 60, 10, 20}));
    EXPECT_EQ(dib.Ws(11, 8), QList<int>({40, 0, 50, 0, 40, 0, 1, 24}));  // BITMAPINFOHEADER
    EXPECT_EQ(FromDib(dib.params.mid(22)), photo.convertToFormat(QImage::Format_RGB32));

    // Under an L-shaped clip, and with a clear stripe, the bitmaps give
    // exactly what QPainter draws.
    for (int x = 0; x < 10; ++x)
        for (int y = 0; y < photo.height(); ++y) photo.setPixel(x, y, qRgba(0, 0, 0, 0));
    const auto paint = [&](QPainter& p) {
        p.setClipRegion(QRegion(0, 0, 40, 25) + QRegion(25, 15, 40, 30));
        p.drawImage(10, 5, photo);
    };
    QImage expected(200, 100, QImage::Format_RGB32), played(expected.size(), QImage::Format_RGB32);
    expected.fill(Qt::gray);
    played.fill(Qt::gray);
    paint(*std::make_unique<QPainter>(&expected));
    records = Records(Metafile(paint));
    EXPECT_GT(Only(records, kStretchDib).size(), 1u);
    QPainter painter(&played);
    for (const TRecord& r : Only(records, kStretchDib))
        painter.drawImage(QRect(r.W(10), r.W(9), r.W(8), r.W(7)), FromDib(r.params.mid(22)));
    painter.end();
    EXPECT_EQ(played, expected);
}

namespace {

// A white sheet, a thick red line, a blue rectangle, a green ellipse, a text
// and a two-coloured image.
void PaintPage(QPainter&& p) {
    p.fillRect(0, 0, 400, 300, Qt::white);
    p.setPen(QPen(Qt::red, 8));
    p.drawLine(20, 30, 380, 30);
    p.setPen(Qt::black);
    p.setBrush(Qt::blue);
    p.drawRect(30, 80, 120, 80);
    p.setPen(QPen(Qt::darkGreen, 3));
    p.setBrush(Qt::green);
    p.drawEllipse(200, 80, 150, 90);
    p.setFont(QFont("DejaVu Sans", 21));  // 28 pixels at 96 units per inch
    p.setPen(Qt::black);
    p.drawText(30, 240, QString::fromUtf8("Faroven Aä"));
    QImage image(60, 40, QImage::Format_RGB32);
    image.fill(QColor(255, 128, 0));
    QPainter(&image).fillRect(30, 0, 30, 40, Qt::cyan);
    p.drawImage(300, 210, image);
}

QString RunTool(const QString& program, const QStringList& arguments) {
    QProcess run;
    run.start(program, arguments);
    if (!run.waitForFinished(60000) || run.exitCode() != 0)
        return program + " failed: " + QString::fromLocal8Bit(run.readAllStandardError());
    return QString();
}

}  // namespace

// libwmf 0.2.12 (Debian's libwmf-bin) does not show everything a metafile can
// hold: wmf2gd never fills META_ELLIPSE (polygons and chords are filled),
// ignores META_SETROP2 and the winding fill mode, turns DIB pattern brushes
// upside down, draws bitmaps one pixel high or wide as a dot and draws no
// characters above 0x7F; wmf2svg writes Windows-1252 bytes into an SVG that
// declares no encoding, and an xlink prefix it does not declare. The checks
// below stay within what it does show.
TEST(WmfDevice, LibwmfRendersThePage) {
    const QString wmf2gd = QStandardPaths::findExecutable("wmf2gd"), wmf2svg = QStandardPaths::findExecutable("wmf2svg");
    if (wmf2gd.isEmpty() || wmf2svg.isEmpty()) GTEST_SKIP() << "libwmf-bin (wmf2gd, wmf2svg) is not installed";
    QTemporaryDir dir;
    const QString wmf = dir.filePath("page.wmf"), png = dir.filePath("page.png"), svg = dir.filePath("page.svg");
    TWmfDevice device(400, 300);
    PaintPage(QPainter(&device));
    ASSERT_TRUE(device.Save(wmf));
    QImage expected(400, 300, QImage::Format_RGB32);
    PaintPage(QPainter(&expected));

    ASSERT_EQ(RunTool(wmf2gd, {"-t", "png", "--maxwidth=400", "--maxheight=300", "--maxsize", "-o", png, wmf}), QString());
    QImage seen = QImage(png).convertToFormat(QImage::Format_RGB32);
    ASSERT_EQ(seen.size(), expected.size());
    // Line, rectangle, both halves of the image, the ellipse's outline.
    for (QPoint at : {QPoint(200, 30), QPoint(90, 120), QPoint(315, 230), QPoint(345, 230), QPoint(200, 125)})
        EXPECT_EQ(seen.pixel(at), expected.pixel(at)) << "at " << at.x() << "," << at.y();
    // Quarter-size pictures, the ellipse's inside left out, differ little.
    for (QImage* image : {&seen, &expected}) {
        QPainter(image).fillRect(205, 85, 140, 80, Qt::black);
        *image = image->scaled(100, 75, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                     .convertToFormat(QImage::Format_RGB888);
    }
    double difference = 0;
    for (int y = 0; y < seen.height(); ++y)
        for (int i = 0; i < 3 * seen.width(); ++i)
            difference += std::abs(seen.constScanLine(y)[i] - expected.constScanLine(y)[i]);
    EXPECT_LT(difference / (3 * 100 * 75), 4.0) << "mean difference per channel";

    // The SVG holds the text, a character at a time, and the ellipse's fill.
    ASSERT_EQ(RunTool(wmf2svg, {"-o", svg, wmf}), QString());
    QFile file(svg);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    QXmlStreamReader xml(QString::fromLatin1(file.readAll()));
    xml.setNamespaceProcessing(false);
    QString text, ellipseStyle;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) continue;
        if (xml.name() == u"text") text += xml.readElementText();
        else if (xml.name() == u"ellipse") ellipseStyle = xml.attributes().value("style").toString();
    }
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
    EXPECT_EQ(text, QString::fromUtf8("Faroven Aä"));
    EXPECT_TRUE(ellipseStyle.contains("fill:lime")) << ellipseStyle.toStdString();
}
