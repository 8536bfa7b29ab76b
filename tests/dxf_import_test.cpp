// The DXF import: the mapping, each entity reader, layers, names continuing
// the canvas's ids, what is left out and flagged, all-or-nothing imports and
// the errors of broken files, the extended import on files written by ezdxf,
// export followed by import, and third-party files when they are installed.
#include "cad/canvas/mycad.h"
#include "cad/shapes/arc.h"
#include "cad/shapes/curve.h"
#include "cad/shapes/line.h"
#include "cad/shapes/polyline.h"
#include "cad/shapes/shape_factory.h"
#include "cad/shapes/text.h"
#include "dxf/dxf_export.h"
#include "dxf/dxf_import.h"
#include "fuzz/dxf_import_harness.h"
#include "platform/stream.h"

#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <cmath>
#include <map>

#include "support/shapes.h"
#include "support/test_support.h"
#include "tests/text_printers.h"

using namespace faroven;
using faroven::test::AddRect;
using faroven::test::AddShape;

namespace {

constexpr double k = 96 / 25.4;

// A DXF text from "code value" pairs separated by '|'.
QByteArray dxf(const QString& groups) {
    QByteArray out;
    for (const QString& pair : groups.split(u'|', Qt::SkipEmptyParts)) {
        const QString p = pair.trimmed();
        const qsizetype space = p.indexOf(u' ');
        out += p.left(space).toLatin1() + "\n" + p.mid(space + 1).toLatin1() + "\n";
    }
    return out;
}

QByteArray entities(const QString& groups) { return dxf("0 SECTION|2 ENTITIES|" + groups + "|0 ENDSEC|0 EOF"); }

QByteArray bytesOf(TMyCAD& cad) {
    TMemoryStream s;
    cad.SaveToStream(s);
    return s.ToByteArray();
}

QByteArray fixture(const char* name) {
    QFile f(QStringLiteral(FAROVEN_TEST_DATA "/dxf/") + name);
    EXPECT_TRUE(f.open(QIODevice::ReadOnly)) << name;
    return f.readAll();
}

std::map<QString, int> classCounts(const TMyCAD& cad) {
    std::map<QString, int> counts;
    for (TMyShape* s : cad.MyShapes()) ++counts[ShapeClassName(s)];
    return counts;
}

void expectPoints(const TMyShape* shape, std::initializer_list<TMyPoint> expected, double tolerance = 1e-4) {
    const TArrMyPoint& p = shape->Points();
    ASSERT_EQ(p.size(), expected.size()) << ShapeClassName(shape).toStdString();
    size_t i = 0;
    for (const TMyPoint& e : expected) {
        EXPECT_NEAR(p[i].x, e.x, tolerance) << "point " << i;
        EXPECT_NEAR(p[i].y, e.y, tolerance) << "point " << i;
        ++i;
    }
}

class DxfImport : public ::testing::Test {
protected:
    void import(const QByteArray& bytes, const std::function<void(TDXF2DImport&)>& setup = {}) {
        TDXF2DImport importer(bytes, &cad, QStringLiteral("test.dxf"));
        if (setup) setup(importer);
        importer.ReadDXF();
        unsupported = importer.UnsupportedContent();
        skipped = importer.Skipped();
    }
    TMyShape* shape(int i) { return cad.GetShapeByNo(i); }
    TMyCAD cad;
    bool unsupported = false;
    QStringList skipped;
};

TEST_F(DxfImport, FilesWithoutEntitiesImportNothing) {
    import(dxf("0 SECTION|2 HEADER|9 $ACADVER|1 AC1009|9 $EXTMAX|10 5|20 -3|9 $EXTMIN|10 7|20 9|0 ENDSEC|0 EOF"));
    import(QByteArray());
    import("999\nno sections here\n");
    EXPECT_EQ(cad.GetShapesCount(), 0);
    EXPECT_FALSE(unsupported);

    TDXF2DImport importer(dxf("0 SECTION|2 HEADER|9 $EXTMAX|10 5|20 -3|9 $EXTMIN|10 7|20 9|9 $ANGDIR|70 1|0 ENDSEC|0 EOF"), &cad);
    importer.ReadDXF();
    EXPECT_EQ(importer.Extents(), (TRect2D{{5, -3, 1}, {7, 9, 1}}));
    EXPECT_EQ(importer.AngleDirection(), adClockwise);
    EXPECT_TRUE(importer.GoToSection(scHeader));
    EXPECT_FALSE(importer.GoToSection(scEntities));
}

TEST_F(DxfImport, PointsGoThroughOffsetsAndScales) {
    import(entities("0 LINE|8 0|10 0|20 0|11 10|21 5"));
    ASSERT_EQ(cad.GetShapesCount(), 1);
    EXPECT_EQ(ShapeClassName(shape(0)), "TMyLine");
    expectPoints(shape(0), {{0, 0}, {10, 5}});

    import(entities("0 LINE|8 0|10 1|20 1|11 2|21 -1"), [](TDXF2DImport& i) {
        i.SetOffSetX(5);
        i.SetScalex(2);
        i.SetOffSetY(-1);
        i.SetScaley(-3);
    });
    expectPoints(shape(1), {{12, 0}, {14, 6}});

    // A destination region moves what was read to its top left corner.
    import(entities("0 LINE|10 3|20 4|11 5|21 1|0 CIRCLE|10 0|20 0|40 1"),
           [](TDXF2DImport& i) { i.SetDestRegion(TRect{100, 50, 101, 51}); });
    expectPoints(shape(2), {{104, 55}, {106, 52}});
    expectPoints(shape(3), {{100, 50}, {102, 50}, {102, 52}, {100, 52}});
}

TEST_F(DxfImport, EntityReaders) {
    import(entities("0 ARC|10 10|20 10|40 5|50 0|51 90"
                    "|0 ARC|10 0|20 0|40 2|50 270|51 90"
                    "|0 CIRCLE|10 50|20 25|40 12.5"
                    "|0 ELLIPSE|10 20|20 20|11 13|21 0|40 0.5|41 0|42 6.283185307179586"
                    "|0 ELLIPSE|10 20|20 20|11 13|21 0|40 0.5|41 0|42 3.14159"
                    "|0 SOLID|10 0|20 0|11 4|21 0|12 0|22 4|13 4|23 4"
                    "|0 LWPOLYLINE|90 3|70 1|10 0|20 0|10 10|20 0|10 10|20 10"
                    "|0 POLYLINE|66 1|70 0|10 0|20 0|0 VERTEX|10 1|20 2|0 VERTEX|10 3|20 4|0 SEQEND"
                    "|0 TEXT|10 5|20 60|40 2.5|1 Hello|50 0"
                    "|0 DIMENSION|10 0|20 5|13 0|23 0|14 10|24 0"));
    EXPECT_TRUE(unsupported);  // the partial ellipse
    ASSERT_EQ(cad.GetShapesCount(), 9);
    const float l = float(std::hypot(7, 20));
    expectPoints(shape(0), {{15, 10}, {10 + 5 * std::cos(0.7853982f), 10 + 5 * std::sin(0.7853982f)}, {10, 15}});
    EXPECT_EQ(static_cast<TMyElliArc*>(shape(0))->ArcMode(), amCircle);
    // An arc across angle 0 passes through it.
    expectPoints(shape(1), {{0, -2}, {2, 0}, {0, 2}});
    expectPoints(shape(2), {{37.5f, 12.5f}, {62.5f, 12.5f}, {62.5f, 37.5f}, {37.5f, 37.5f}});
    EXPECT_EQ(ShapeClassName(shape(2)), "TMyEllipse");
    // The axis point is taken as a point, the ratio as the half-height.
    expectPoints(shape(3), {{20 - l, 19.5f}, {20 + l, 19.5f}, {20 + l, 20.5f}, {20 - l, 20.5f}});
    expectPoints(shape(4), {{0, 0}, {4, 0}, {4, 4}, {0, 4}, {0, 0}});
    expectPoints(shape(5), {{0, 0}, {10, 0}, {10, 10}, {0, 0}});
    expectPoints(shape(6), {{1, 2}, {3, 4}});
    auto* text = static_cast<TMyText*>(shape(7));
    EXPECT_EQ(text->Info(), "Hello");
    EXPECT_NEAR(std::as_const(*text).Points()[3].x, 5, 1e-4);
    EXPECT_NEAR(std::as_const(*text).Points()[3].y, 60, 1e-4);
    expectPoints(shape(8), {{0, 0}, {10, 0}, {0, 5}});
    for (TMyShape* sh : cad.MyShapes()) EXPECT_EQ(sh->Pen()->Color(), clBlack);
}

TEST_F(DxfImport, LayersNamesAndUndo) {
    AddRect(cad, 0, 0, 10, 10);
    AddRect(cad, 0, 0, 10, 10);
    const int before = cad.GetLayersCount();
    import(dxf("0 SECTION|2 TABLES|0 TABLE|2 LAYER|0 LAYER|2 WALLS|70 0|62 1|0 ENDTAB|0 ENDSEC"
               "|0 SECTION|2 ENTITIES|0 LINE|8 WALLS|10 0|20 0|11 1|21 1|0 INSERT|2 X|10 0|20 0"
               "|0 LINE|8 NOWHERE|10 0|20 0|11 1|21 1|0 ENDSEC|0 EOF"));
    EXPECT_TRUE(unsupported);  // the INSERT
    ASSERT_EQ(cad.GetShapesCount(), 4);
    const int walls = cad.GetLayerIdByName("WALLS");
    EXPECT_EQ(cad.GetLayersCount(), before + 1);
    EXPECT_EQ(shape(2)->LayerId(), walls);
    // An unknown layer leaves the entity on the current one: the last found.
    EXPECT_EQ(shape(3)->LayerId(), walls);
    EXPECT_EQ(cad.CurrentLayerId(), walls);
    EXPECT_EQ(shape(2)->Name(), "Shape2");
    EXPECT_EQ(shape(3)->Name(), "Shape3");
    EXPECT_EQ(shape(3)->GetShapeId(), 3);
    EXPECT_EQ(shape(3)->ShapeNo(), 3);
    EXPECT_EQ(cad.NextShapeId(), 4);
    EXPECT_EQ(cad.GetSelectedShapes().size(), 2u);
    cad.Undo();
    EXPECT_EQ(cad.GetShapesCount(), 2);
}

TEST_F(DxfImport, BlockEntitiesAreOrdinaryShapes) {
    import(dxf("0 SECTION|2 BLOCKS|0 BLOCK|2 B|10 0|20 0|0 LINE|10 1|20 1|11 2|21 2|0 INSERT|2 C|0 ENDBLK"
               "|0 BLOCK|2 *Model_Space|0 ENDBLK|0 ENDSEC|0 SECTION|2 ENTITIES|0 INSERT|2 B|10 5|20 5|0 ENDSEC|0 EOF"));
    ASSERT_EQ(cad.GetShapesCount(), 1);
    expectPoints(shape(0), {{1, 1}, {2, 2}});
    EXPECT_EQ(skipped.size(), 2);
}

TEST_F(DxfImport, BrokenFilesRaiseAndLeaveTheCanvasAsItWas) {
    AddRect(cad, 0, 0, 10, 10);
    const QByteArray saved = bytesOf(cad);
    const int layers = cad.GetLayersCount(), current = cad.CurrentLayerId();
    const QByteArray broken = dxf("0 SECTION|2 TABLES|0 LAYER|2 NEW|0 ENDSEC|0 SECTION|2 ENTITIES"
                                  "|0 LINE|8 NEW|10 0|20 0|11 1|21 1"
                                  "|0 POLYLINE|70 0|0 VERTEX|10 1|20 2|0 LINE|10 0|20 0|0 ENDSEC|0 EOF");
    try {
        import(broken);
        ADD_FAILURE() << "no exception";
    } catch (const EDXFImportError& e) {
        EXPECT_EQ(e.Message(), "Invalid DXF file.");
        EXPECT_EQ(e.FileName(), "test.dxf");
        EXPECT_EQ(e.Line(), 37);  // the LINE where a VERTEX or SEQEND belongs
    }
    EXPECT_EQ(bytesOf(cad), saved);
    EXPECT_EQ(cad.GetLayersCount(), layers);
    EXPECT_EQ(cad.CurrentLayerId(), current);
    EXPECT_EQ(cad.GetLayerIdByName("NEW"), -1);

    // A bad number names its line; the file ends without a SEQEND.
    EXPECT_TRUE(test::RaisesWith<EConvertError>([&] { import(entities("0 LINE|10 1.5.2|20 0")); }, "line 8"));
    EXPECT_THROW(import(entities("0 POLYLINE|70 0|0 VERTEX|10 1|20 2")), EDXFImportError);
    EXPECT_EQ(bytesOf(cad), saved);

    // On request, what came before the failure stays.
    EXPECT_THROW(import(broken, [](TDXF2DImport& i) { i.SetKeepPartialImport(true); }), EDXFImportError);
    EXPECT_EQ(cad.GetShapesCount(), 2);
    EXPECT_EQ(cad.GetLayerIdByName("NEW"), shape(1)->LayerId());
}

TEST_F(DxfImport, SplineFramesAreFlaggedAndReportedOnRequest) {
    test::MessageRecorder recorder;
    import(fixture("kinds_r12.dxf"));
    EXPECT_TRUE(unsupported);
    EXPECT_TRUE(recorder.messages.isEmpty());
    // LINE, CIRCLE, ARC, TEXT, SOLID and the closed polyline, the block's line and circle.
    EXPECT_EQ(classCounts(cad), (std::map<QString, int>{
                                    {"TMyElliArc", 1}, {"TMyEllipse", 2}, {"TMyLine", 2}, {"TMyPolyLine", 2}, {"TMyText", 1}}));
    import(fixture("kinds_r12.dxf"), [](TDXF2DImport& i) { i.SetReportUnsupported(true); });
    EXPECT_EQ(recorder.messages, QStringList{"Spline without spline-fitting isn't supported."});
}

// ---- Extended import --------------------------------------------------------------------------

class DxfImportExtended : public DxfImport {
protected:
    void importExtended(const QByteArray& bytes) {
        import(bytes, [](TDXF2DImport& i) { i.SetExtended(true); });
    }
    TMyShape* firstOf(const char* className, int nth = 0) {
        for (TMyShape* s : cad.MyShapes())
            if (ShapeClassName(s) == className && nth-- == 0) return s;
        return nullptr;
    }
};

TEST_F(DxfImportExtended, FilesOfAnotherProgram) {
    for (const char* name : {"kinds_r2000.dxf", "kinds_r2018.dxf"}) {
        SCOPED_TRACE(name);
        cad.DeleteAllShapes();
        importExtended(fixture(name));
        // The block is expanded by its reference, not read as shapes of its own.
        EXPECT_EQ(classCounts(cad), (std::map<QString, int>{{"TMyElliArc", 1},
                                                            {"TMyEllipse", 4},
                                                            {"TMyLine", 3},
                                                            {"TMyPolyBezier", 2},
                                                            {"TMyPolyLine", 3},
                                                            {"TMyText", 2}}));
        EXPECT_EQ(skipped.size(), 2) << skipped.join('\n').toStdString();
        EXPECT_TRUE(skipped.join(' ').contains("POINT"));
        EXPECT_TRUE(skipped.join(' ').contains("HATCH"));

        // MARK's line (1,1)-(3,1), base (1,1), at (30,40) scaled 2 and turned 90 degrees.
        TMyShape* blockLine = firstOf("TMyLine", 1);
        expectPoints(blockLine, {{30, 40}, {30, 44}});
        EXPECT_EQ(blockLine->LayerId(), cad.GetLayerIdByName("0"));
        // Its circle keeps its own layer and colour; radius 0.5 scaled by 2.
        TMyShape* blockCircle = firstOf("TMyEllipse", 1);
        EXPECT_EQ(blockCircle->LayerId(), cad.GetLayerIdByName("WALLS"));
        EXPECT_EQ(blockCircle->Pen()->Color(), clRed);
        EXPECT_EQ(blockCircle->Pen()->Style(), psDash);
        expectPoints(blockCircle, {{31, 39}, {31, 41}, {29, 41}, {29, 39}}, 1e-3);

        EXPECT_FALSE(cad.IsVisibleLayerByID(cad.GetLayerIdByName("HIDDEN")));
        EXPECT_EQ(firstOf("TMyEllipse")->Pen()->Color(), clLime);  // colour 3 on the circle
        TMyShape* orange = firstOf("TMyLine", 2);
        // ezdxf writes true colours from R2004 on.
        EXPECT_EQ(orange->Pen()->Color(), QByteArray(name).contains("2018") ? RGB(255, 128, 0) : clBlack);
        EXPECT_EQ(orange->Pen()->Width(), 1);  // 0.5 mm at one unit per mm

        // A semicircle bulge from (0,0) to (10,0) dips to (5,-5) on its way.
        const TArrMyPoint& bulged = std::as_const(*firstOf("TMyPolyLine", 1)).Points();
        ASSERT_GT(bulged.size(), 10u);
        EXPECT_NEAR(bulged[bulged.size() / 2 - 1].y, -5, 0.2);
        // The turned whole ellipse: axes 8 and 2, turned by 90 degrees.
        TMyShape* turned = firstOf("TMyEllipse", 3);
        EXPECT_NEAR(turned->Angle(), std::numbers::pi / 2, 1e-6);
        expectPoints(turned, {{62, 12}, {62, 28}, {58, 28}, {58, 12}}, 1e-3);
        // The spline ends on its last control point; the fit spline passes its fit points.
        EXPECT_NEAR(std::as_const(*firstOf("TMyPolyBezier")).Points().back().x, 30, 1e-3);
        EXPECT_NEAR(std::as_const(*firstOf("TMyPolyBezier", 1)).Points()[3].y, 40, 1e-3);

        auto* mtext = static_cast<TMyText*>(firstOf("TMyText", 1));
        EXPECT_EQ(mtext->Lines()->Lines(), (QStringList{"First line", "Second bold"}));
        EXPECT_NEAR(std::as_const(*mtext).Points()[0].x, 50, 1e-3);
        EXPECT_NEAR(std::as_const(*mtext).Points()[0].y, 80, 1e-3);
    }
}

TEST_F(DxfImportExtended, ReferencesCannotMultiplyWithoutBound) {
    // Each level references the one below twice: a reference to L18 would be
    // 2^18 lines, but the lines lie deeper than references may nest.
    QString blocks = "0 SECTION|2 BLOCKS|0 BLOCK|2 L0|10 0|20 0|0 LINE|10 0|20 0|11 1|21 1|0 ENDBLK";
    for (int level = 1; level <= 18; ++level) {
        blocks += QStringLiteral("|0 BLOCK|2 L%1|10 0|20 0").arg(level);
        for (int i = 0; i < 2; ++i) blocks += QStringLiteral("|0 INSERT|2 L%1|10 %2|20 0").arg(level - 1).arg(i);
        blocks += "|0 ENDBLK";
    }
    importExtended(dxf(blocks + "|0 ENDSEC|0 SECTION|2 ENTITIES|0 INSERT|2 SELF|0 INSERT|2 L18|0 INSERT|2 L3|0 ENDSEC|0 EOF"));
    EXPECT_TRUE(unsupported);
    EXPECT_EQ(cad.GetShapesCount(), 8);
    EXPECT_TRUE(skipped.join(' ').contains("nested more than 16 deep")) << skipped.join('\n').toStdString();
    EXPECT_TRUE(skipped.join(' ').contains("\"SELF\" is not defined"));
}

// ---- Round trip and third-party files ---------------------------------------------------------

TEST_F(DxfImport, ExportThenImportGivesTheShapesBack) {
    TMyCAD source;
    source.resize(600, 500);
    AddShape<TMyLine>(source, {{10, 20}, {110, 70}});
    AddRect(source, 50, 60, 150, 100);
    AddRect<TMyEllipse>(source, 200, 200, 260, 260);
    AddShape<TMyPolyLine>(source, {{0, 0}, {30, 40}, {60, 0}});
    auto* arc = AddShape<TMyElliArc>(source, {{300, 100}, {250, 50}, {200, 100}});
    arc->SetArcMode(amCircle);
    QTemporaryDir dir;
    source.SaveToDxf(dir.filePath("a.dxf"));

    TDXF2DImport importer(dir.filePath("a.dxf"), &cad);
    importer.SetScalex(float(k));
    importer.SetScaley(float(-k));
    importer.SetOffSetY(float(-500 / k));
    importer.ReadDXF();
    EXPECT_EQ(classCounts(cad), (std::map<QString, int>{
                                    {"TMyElliArc", 1}, {"TMyEllipse", 1}, {"TMyLine", 3}, {"TMyPolyLine", 1}}));
    expectPoints(shape(0), {{10, 20}, {110, 70}}, 1e-3);
    expectPoints(shape(1), {{50, 60}, {150, 60}, {150, 100}, {50, 100}, {50, 60}}, 1e-3);
    // The circle's frame, mirrored by the turned y axis.
    expectPoints(shape(2), {{200, 260}, {260, 260}, {260, 200}, {200, 200}}, 1e-3);
    expectPoints(shape(3), {{0, 0}, {30, 40}}, 1e-3);
    // The arc comes back from its start, through its middle, to its end, in the
    // direction DXF arcs run.
    expectPoints(shape(5), {{300, 100}, {250, 50}, {200, 100}}, 1e-3);

    // The interchange form read by the extended import: one shape per shape.
    TDxfExportOptions interchange;
    interchange.Interchange = true;
    source.SaveToDxf(dir.filePath("b.dxf"), interchange);
    TMyCAD again;
    TDXF2DImport extended(dir.filePath("b.dxf"), &again);
    extended.SetExtended(true);
    extended.SetScalex(float(k));
    extended.SetScaley(float(-k));
    extended.SetOffSetY(float(-500 / k));
    extended.ReadDXF();
    EXPECT_TRUE(extended.Skipped().isEmpty()) << extended.Skipped().join('\n').toStdString();
    ASSERT_EQ(again.GetShapesCount(), 5);
    expectPoints(again.GetShapeByNo(0), {{10, 20}, {110, 70}}, 1e-3);
    expectPoints(again.GetShapeByNo(1), {{50, 60}, {150, 60}, {150, 100}, {50, 100}, {50, 60}}, 1e-3);
    expectPoints(again.GetShapeByNo(3), {{0, 0}, {30, 40}, {60, 0}}, 1e-3);
    expectPoints(again.GetShapeByNo(4), {{300, 100}, {250, 50}, {200, 100}}, 1e-3);
    EXPECT_EQ(again.GetShapeByNo(0)->LayerId(), again.GetLayerIdByName("Layer0"));
}

TEST_F(DxfImport, ThirdPartyPartLibraries) {
    const QString root = QStringLiteral("/usr/share/librecad/library");
    if (!QFile::exists(root)) GTEST_SKIP() << "librecad-data is not installed";
    int files = 0, withShapes = 0;
    QStringList failures;
    for (QDirIterator it(root, {"*.dxf"}, QDir::Files, QDirIterator::Subdirectories); it.hasNext() && files < 150;) {
        const QString path = it.next();
        ++files;
        TMyCAD canvas;
        try {
            TDXF2DImport importer(path, &canvas);
            importer.SetExtended(true);
            importer.ReadDXF();
        } catch (const Exception& e) {
            failures << path + ": " + e.Message();
        }
        if (canvas.GetShapesCount() > 0) ++withShapes;
    }
    EXPECT_GT(files, 100);
    EXPECT_TRUE(failures.isEmpty()) << failures.join('\n').toStdString();
    EXPECT_GT(withShapes, files * 9 / 10);
}

// The fuzz target's seeds and the inputs it once failed on, through its own checks.
TEST(DxfImportFuzzReplay, EveryStoredInput) {
    int replayed = 0;
    for (QDirIterator it(QStringLiteral(FAROVEN_TEST_DATA "/../../fuzz/corpus/dxf_import_fuzzer"), QDir::Files); it.hasNext();) {
        QFile file(it.next());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        SCOPED_TRACE(it.filePath().toStdString());
        faroven::fuzz::runDxfImport(reinterpret_cast<const uint8_t*>(bytes.constData()), size_t(bytes.size()));
        ++replayed;
    }
    EXPECT_GE(replayed, 4);
}

}  // namespace
