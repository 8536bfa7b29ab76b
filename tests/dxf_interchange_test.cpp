// The interchange DXF export: the file is a valid R2000 drawing that ezdxf
// audits clean and LibreCAD prints; every handle is unique and every owner
// or pointer names a record of the file; each shape kind becomes the entity
// it draws like, on its own layer with its pen; numbers keep a point in any
// locale.
#include "cad/canvas/mycad.h"
#include "cad/shapes/arc.h"
#include "cad/shapes/curve.h"
#include "cad/shapes/link.h"
#include "cad/shapes/link_point.h"
#include "cad/shapes/text.h"
#include "dxf/dxf_interchange.h"
#include "platform/ansi.h"
#include "platform/convert.h"
#include "support/shapes.h"
#include "support/test_support.h"

#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSet>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <numbers>

using namespace faroven;
using namespace faroven::test;

namespace {

constexpr double k = 96 / 25.4;

// Drawing units to the file's millimetres (y up) on a canvas 960 pixels high.
QJsonArray mm(TMyPoint p) { return {p.x / k, (960 - p.y) / k}; }
QJsonArray mm(TMyPoint a, TMyPoint b) { return {a.x / k, (960 - a.y) / k, b.x / k, (960 - b.y) / k}; }

bool near(const QJsonArray& a, const QJsonArray& b) {
    if (a.size() != b.size()) return false;
    for (int i = 0; i < a.size(); ++i)
        if (std::abs(a[i].toDouble() - b[i].toDouble()) > 1e-4) return false;
    return true;
}

// A canvas with a shape of every kind on two layers, the second hidden.
class InterchangeDxf : public ::testing::Test {
protected:
    void SetUp() override {
        cad.SetBounds(0, 0, 1200, 960);
        auto* line = AddShape<TMyLine>(cad, {{0, 0}, {96, 0}});
        line->Pen()->SetColor(clRed);
        line->Pen()->SetStyle(psDash);
        line->Pen()->SetWidth(3);
        AddShape<TMyRuleLine>(cad, {{0, 50}, {96, 50}});
        AddShape<TMyPolyLine>(cad, {{10, 300}, {60, 320}, {90, 300}});
        AddShape<TMyFreeLine>(cad, {{10, 400}, {12, 402}, {15, 401}});
        AddRect<TMyRectangle>(cad, 100, 300, 200, 350);
        AddRect<TMyEllipse>(cad, 0, 100, 192, 196);
        AddRect<TMyEllipse>(cad, 200, 100, 296, 196);
        circleArc = AddShape<TMyElliArc>(cad, {{300, 200}, {350, 150}, {400, 200}});
        circleArc->SetArcStyle(asChord);
        ellipticArc = AddShape<TMyElliArc>(cad, {{500, 200}, {500, 140}, {700, 140}});
        ellipticArc->SetArcMode(amEllipse);
        ellipticArc->SetArcStyle(asSector);
        bezier = AddShape<TMyPolyBezier>(
            cad, {{10, 500}, {40, 450}, {80, 550}, {110, 500}, {140, 450}, {170, 520}, {200, 500}});
        bline = AddShape<TMyBLine>(cad, {{300, 500}, {330, 450}, {370, 560}, {400, 470}, {450, 520}});
        auto* oneRow = AddRect<TMyText>(cad, 600, 300, 800, 340);
        oneRow->Lines()->SetLines({QString::fromUtf8("Grüße Ω")});
        AddRect<TMyLineLinkLine>(cad, 800, 100, 812, 112);
        AddShape<TMyLinkLine>(cad, {{820, 100}, {880, 100}, {880, 160}});
        AddRect<TMyLinkPoint>(cad, 900, 100, 908, 108);
        cad.AddImageShapeByCode("image", {900, 200}, *FilledBitmap(8, 8, clBlue));
        auto* a = AddRect<TMyRectangle>(cad, 900, 400, 950, 450);
        auto* b = AddRect<TMyRectangle>(cad, 960, 400, 990, 450);
        cad.GroupShapes({a, b}, false);

        cad.NewLayer("Hidden", false);
        auto* polygon = AddShape<TMyPolygon>(cad, {{10, 700}, {100, 700}, {60, 780}, {10, 700}});
        polygon->Pen()->SetColor(clBlue);
        polygon->Pen()->SetStyle(psDot);
        auto* rows = AddRect<TMyText>(cad, 300, 700, 500, 800);
        rows->Lines()->SetLines({"two", "lines"});
        rows->SetIsBorder(true);
        rows->Pen()->SetStyle(psClear);  // hides the frame, not the letters
        // Turned 30 degrees clockwise on the screen: -30 in the file, whose y is up.
        rows->RotateChangeValueByAngle(std::numbers::pi / 6);
        AddRect<TMyEllipse>(cad, 600, 700, 800, 740)->RotateChangeValueByAngle(std::numbers::pi / 6);
    }

    // Writes the export to a file in dir and returns its path.
    QString write(bool glyphs) {
        const QString path = dir.filePath(glyphs ? "glyphs.dxf" : "drawing.dxf");
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(ToAnsi(InterchangeDxfLines(cad, glyphs).join("\r\n") + "\r\n"));
        return path;
    }

    // The facts the ezdxf script prints, or an empty object (and a skip
    // reason) when ezdxf is not there.
    QJsonObject audit(const QString& path, QString& skip) {
        QProcess probe;
        probe.start("/usr/bin/python3", {"-c", "import ezdxf"});
        if (!probe.waitForFinished(60000) || probe.exitStatus() != QProcess::NormalExit || probe.exitCode() != 0) {
            skip = "python3 with ezdxf (python3-ezdxf) is not installed";
            return {};
        }
        QProcess run;
        run.start("/usr/bin/python3", {FAROVEN_TEST_DATA "/dxf/audit.py", path});
        EXPECT_TRUE(run.waitForFinished(120000));
        EXPECT_EQ(run.exitCode(), 0) << run.readAllStandardError().toStdString();
        return QJsonDocument::fromJson(run.readAllStandardOutput()).object();
    }

    TMyCAD cad;
    QTemporaryDir dir;
    TMyElliArc* circleArc = nullptr;
    TMyElliArc* ellipticArc = nullptr;
    TMyPolyBezier* bezier = nullptr;
    TMyBLine* bline = nullptr;
};

// ---- Structure, read back by the library's own reader's rules ----------------------------------

TEST_F(InterchangeDxf, HandlesAreUniqueAndEveryReferenceNamesARecord) {
    for (bool glyphs : {false, true}) {
        const QStringList lines = InterchangeDxfLines(cad, glyphs);
        ASSERT_EQ(lines.size() % 2, 0);
        QSet<QString> handles;
        QStringList references;
        int open = 0, sections = 0;
        QString seed;
        for (int i = 0; i + 1 < lines.size(); i += 2) {
            const int code = lines[i].toInt();
            const QString& value = lines[i + 1];
            if (code == 9 && value == "$HANDSEED") {
                seed = lines[i + 3];
                i += 2;
                continue;
            }
            if (code == 5 || code == 105) {
                EXPECT_FALSE(handles.contains(value)) << "handle " << value.toStdString() << " repeats";
                handles.insert(value);
            }
            if ((code == 330 || code == 340 || code == 350 || code == 390) && value != "0") references << value;
            if (code == 0 && value == "SECTION") ++open, ++sections;
            if (code == 0 && value == "ENDSEC") EXPECT_EQ(--open, 0);
        }
        EXPECT_EQ(open, 0);
        EXPECT_EQ(sections, 6) << "HEADER, CLASSES, TABLES, BLOCKS, ENTITIES, OBJECTS";
        EXPECT_EQ(lines.mid(lines.size() - 2), QStringList({"0", "EOF"}));
        for (const QString& r : references)
            EXPECT_TRUE(handles.contains(r)) << "dangling reference " << r.toStdString();
        for (const QString& h : handles) EXPECT_LT(h.toInt(nullptr, 16), seed.toInt(nullptr, 16));
    }
}

TEST_F(InterchangeDxf, NumbersKeepAPointWhateverTheDecimalSeparator) {
    const QStringList withPoint = [&] {
        const DecimalSeparatorGuard guard(u'.');
        return InterchangeDxfLines(cad);
    }();
    const DecimalSeparatorGuard guard(u',');
    EXPECT_EQ(InterchangeDxfLines(cad), withPoint);
    EXPECT_TRUE(withPoint.contains("25.4")) << "the line's end at 96 pixels";
}

// ---- What ezdxf reads ---------------------------------------------------------------------------

TEST_F(InterchangeDxf, EzdxfAuditsCleanAndReadsEveryShapeAsItsEntity) {
    QString skip;
    const QJsonObject r = audit(write(false), skip);
    if (!skip.isEmpty()) GTEST_SKIP() << skip.toStdString();
    ASSERT_FALSE(r.isEmpty());
    EXPECT_EQ(r["version"].toString(), "AC1015");
    EXPECT_EQ(r["errors"].toArray(), QJsonArray()) << QJsonDocument(r["errors"].toArray()).toJson().toStdString();
    EXPECT_EQ(r["fixes"].toArray(), QJsonArray()) << QJsonDocument(r["fixes"].toArray()).toJson().toStdString();

    QStringList entities;
    for (const QJsonValue& e : r["entities"].toArray())
        entities << e[0].toString() + "@" + e[1].toString();
    const QString l0 = "@Layer0", hidden = "@Hidden";
    EXPECT_EQ(entities, QStringList({"LINE" + l0, "LINE" + l0, "LWPOLYLINE" + l0, "LWPOLYLINE" + l0,
                                     "LWPOLYLINE" + l0, "ELLIPSE" + l0, "CIRCLE" + l0, "ARC" + l0, "LINE" + l0,
                                     "ELLIPSE" + l0, "LINE" + l0, "LINE" + l0, "SPLINE" + l0, "SPLINE" + l0,
                                     "TEXT" + l0, "CIRCLE" + l0, "CIRCLE" + l0, "LINE" + l0, "LINE" + l0,
                                     "LWPOLYLINE" + l0, "LWPOLYLINE" + l0, "LWPOLYLINE" + hidden, "LWPOLYLINE" + hidden, "MTEXT" + hidden,
                                     "ELLIPSE" + hidden}));
    const QJsonObject layers = r["layers"].toObject();
    EXPECT_EQ(layers["0"].toInt(), 7);
    EXPECT_EQ(layers["Layer0"].toInt(), 7);
    EXPECT_EQ(layers["Hidden"].toInt(), -7) << "a hidden layer is off";

    // The pen: colour number, true colour, line type and weight.
    const QJsonArray first = r["looks"].toArray()[0].toArray();
    EXPECT_EQ(first, QJsonArray({1, 0xFF0000, "DASH", 80}));
    EXPECT_EQ(r["looks"].toArray()[21].toArray(), QJsonArray({5, 0x0000FF, "DOT", 25}));
    EXPECT_EQ(r["invisible"].toArray(), QJsonArray({22})) << "only the text's frame with its clear pen";

    const QJsonArray lines = r["lines"].toArray();
    EXPECT_TRUE(near(lines[0].toArray(), {0, 254, 25.4, 254}));
    EXPECT_TRUE(near(lines[2].toArray(), mm({400, 200}, {300, 200}))) << "the chord closes the arc";
    EXPECT_TRUE(near(lines[3].toArray(), mm({700, 140}, {700, 200}))) << "the sector: end to centre";
    EXPECT_TRUE(near(lines[4].toArray(), mm({700, 200}, {500, 200}))) << "the sector: centre to start";

    // The arcs start and end at the shapes' first and last points.
    auto ends = [](const QJsonObject& o) { return QList<QJsonArray>{o["start"].toArray(), o["end"].toArray()}; };
    auto sameEnds = [&](const QJsonObject& o, TMyPoint a, TMyPoint b) {
        const auto e = ends(o);
        return (near(e[0], mm(a)) && near(e[1], mm(b))) || (near(e[0], mm(b)) && near(e[1], mm(a)));
    };
    EXPECT_TRUE(sameEnds(r["arcs"].toArray()[0].toObject(), {300, 200}, {400, 200}));
    const QJsonArray ellipses = r["ellipses"].toArray();
    EXPECT_NEAR(ellipses[0]["ratio"].toDouble(), 0.5, 1e-6);
    EXPECT_NEAR(ellipses[1]["ratio"].toDouble(), 0.3, 1e-6);
    EXPECT_TRUE(sameEnds(ellipses[1].toObject(), {500, 200}, {700, 140}));
    EXPECT_NEAR(ellipses[2]["ratio"].toDouble(), 0.2, 1e-6);
    const QJsonArray major = ellipses[2]["major"].toArray();
    const double degrees = std::atan2(major[1].toDouble(), major[0].toDouble()) * 180 / std::numbers::pi;
    EXPECT_NEAR(std::remainder(degrees, 180), -30, 1e-3) << "turned as on the screen";
    EXPECT_NEAR(std::hypot(major[0].toDouble(), major[1].toDouble()), 100 / k, 1e-4);
    EXPECT_NEAR(r["circles"].toArray()[0].toDouble(), 48 / k, 1e-6);
    EXPECT_NEAR(r["circles"].toArray()[1].toDouble(), 6 / k, 1e-6);
    EXPECT_NEAR(r["circles"].toArray()[2].toDouble(), 3 / k, 1e-6);

    // The splines follow the curves the shapes draw: at parameter 1 the
    // poly-Bézier is at its second anchor, the B-line at the first joint of
    // its Bézier form.
    const QJsonArray splines = r["splines"].toArray();
    EXPECT_EQ(splines[0]["degree"].toInt(), 3);
    EXPECT_TRUE(near(splines[0]["at1"].toArray(), mm(bezier->Points()[3])));
    EXPECT_TRUE(near(splines[1]["at1"].toArray(), mm(BSplineToPolyBezier(bline->Points())[3])));

    // Texts: decoded, turned as on the screen, and starting inside their frames.
    const QJsonArray text = r["texts"].toArray()[0].toArray(), mtext = r["mtexts"].toArray()[0].toArray();
    EXPECT_EQ(text[0].toString(), QString::fromUtf8("Grüße Ω"));
    EXPECT_NEAR(text[1].toDouble(), 0, 1e-9);
    const QJsonArray at = text[2].toArray(), topLeft = mm({600, 300}), bottomRight = mm({800, 340});
    EXPECT_TRUE(at[0].toDouble() > topLeft[0].toDouble() && at[0].toDouble() < bottomRight[0].toDouble() &&
                at[1].toDouble() < topLeft[1].toDouble() && at[1].toDouble() > bottomRight[1].toDouble());
    EXPECT_EQ(mtext[0].toString(), "two\nlines");
    EXPECT_NEAR(std::remainder(mtext[1].toDouble(), 360), -30, 1e-3);
}

TEST_F(InterchangeDxf, GlyphOutlinesReplaceTextsWithClosedPolylines) {
    QString skip;
    const QJsonObject r = audit(write(true), skip);
    if (!skip.isEmpty()) GTEST_SKIP() << skip.toStdString();
    EXPECT_EQ(r["errors"].toArray(), QJsonArray());
    EXPECT_EQ(r["fixes"].toArray(), QJsonArray());
    int onHidden = 0;
    for (const QJsonValue& e : r["entities"].toArray()) {
        EXPECT_NE(e[0].toString(), "TEXT");
        EXPECT_NE(e[0].toString(), "MTEXT");
        if (e[1].toString() == "Hidden") ++onHidden;
    }
    EXPECT_GT(onHidden, 4) << "the polygon and the outlines of \"two lines\"";
}

// Canvas layer names are free text; DXF names forbid some characters,
// compare without case and live in the file's code page.
TEST(InterchangeDxfLayers, NamesAreMadeValidAndDistinct) {
    TMyCAD cad;
    cad.SetBounds(0, 0, 400, 400);
    for (const QString& name : {QString("a/b"), QString("A/B"), QString("0"), QString::fromUtf8("Ωmega")}) {
        cad.NewLayer(name, name != "0");
        AddShape<TMyLine>(cad, {{0, 0}, {10, 10}});
    }
    QTemporaryDir dir;
    const QString path = dir.filePath("layers.dxf");
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(ToAnsi(InterchangeDxfLines(cad).join("\r\n") + "\r\n"));
    file.close();
    QProcess run;
    run.start("/usr/bin/python3", {FAROVEN_TEST_DATA "/dxf/audit.py", path});
    if (!run.waitForFinished(120000) || run.exitCode() != 0) GTEST_SKIP() << "python3 with ezdxf is not usable";
    const QJsonObject r = QJsonDocument::fromJson(run.readAllStandardOutput()).object();
    EXPECT_EQ(r["errors"].toArray(), QJsonArray()) << QJsonDocument(r["errors"].toArray()).toJson().toStdString();
    EXPECT_EQ(r["fixes"].toArray(), QJsonArray());
    QStringList layers;
    for (const QJsonValue& e : r["entities"].toArray()) layers << e[1].toString();
    EXPECT_EQ(layers, QStringList({"a_b", "A_B_2", "0", "_mega"}));
    EXPECT_EQ(r["layers"]["0"].toInt(), -7) << "the canvas's hidden layer \"0\" is the file's layer 0";
}

// ---- What LibreCAD prints -----------------------------------------------------------------------

TEST_F(InterchangeDxf, LibreCadPrintsTheDrawing) {
    const QString librecad = QStandardPaths::findExecutable("librecad");
    if (librecad.isEmpty()) GTEST_SKIP() << "LibreCAD (librecad) is not installed";
    const QString pdf = dir.filePath("drawing.pdf");
    QProcess run;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("QT_QPA_PLATFORM", "offscreen");
    run.setProcessEnvironment(env);
    // This LibreCAD names the PDF after the drawing, beside it.
    run.setWorkingDirectory(dir.path());
    run.start(librecad, {"dxf2pdf", "-a", QFileInfo(write(false)).fileName()});
    ASSERT_TRUE(run.waitForFinished(120000));
    EXPECT_EQ(run.exitCode(), 0) << run.readAllStandardError().toStdString();
    ASSERT_GT(QFileInfo(pdf).size(), 0);

    const QString pdftoppm = QStandardPaths::findExecutable("pdftoppm");
    if (pdftoppm.isEmpty()) return;
    QProcess raster;
    raster.start(pdftoppm, {"-r", "40", "-png", "-singlefile", pdf, dir.filePath("page")});
    ASSERT_TRUE(raster.waitForFinished(60000));
    const QImage page(dir.filePath("page.png"));
    ASSERT_FALSE(page.isNull());
    int ink = 0;
    for (int y = 0; y < page.height(); ++y)
        for (int x = 0; x < page.width(); ++x) ink += qGray(page.pixel(x, y)) < 200;
    EXPECT_GT(ink, 100) << "the page is blank";
}

}  // namespace
