// The DXF export: the exact lines for each shape class (transform to
// millimetres with y up, handles from 20 and their restarts, the ellipse's
// cases, texts by line or as glyph outlines), the user's decimal separator,
// and the file written in one step.
#include "cad/canvas/mycad.h"
#include "cad/shapes/arc.h"
#include "cad/shapes/curve.h"
#include "cad/shapes/line.h"
#include "cad/shapes/link.h"
#include "cad/shapes/link_point.h"
#include "cad/shapes/polyline.h"
#include "cad/shapes/text.h"
#include "dxf/dxf_export.h"
#include "platform/convert.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "support/shapes.h"
#include "tests/text_printers.h"

using namespace faroven;
using faroven::test::AddRect;
using faroven::test::AddShape;

namespace {

constexpr double k = 96 / 25.4;

struct Entity {
    QString name;
    QList<QPair<int, QString>> groups;
    QString value(int code, int nth = 0) const {
        for (const auto& [c, v] : groups)
            if (c == code && nth-- == 0) return v;
        return QStringLiteral("<none>");
    }
    double real(int code) const { return StrToFloat(value(code)); }
};

// The entities between ENTITIES and ENDSEC, checking the section frame.
std::vector<Entity> entitiesOf(const QStringList& lines) {
    EXPECT_GE(lines.size(), 8);
    EXPECT_EQ(lines.mid(0, 4), (QStringList{"0", "SECTION", "2", "ENTITIES"}));
    EXPECT_EQ(lines.mid(lines.size() - 4), (QStringList{"0", "ENDSEC", "0", "EOF"}));
    std::vector<Entity> out;
    for (qsizetype i = 4; i + 1 < lines.size() - 4; i += 2) {
        const int code = lines[i].toInt();
        if (code == 0) out.push_back(Entity{lines[i + 1], {}});
        else out.back().groups.append({code, lines[i + 1]});
    }
    return out;
}

QStringList names(const std::vector<Entity>& entities) {
    QStringList out;
    for (const Entity& e : entities) out << e.name;
    return out;
}

class DxfExport : public ::testing::Test {
protected:
    void SetUp() override { cad.resize(800, 960); }
    std::vector<Entity> exported(bool glyphs = false) {
        TDxfExportOptions options;
        options.GlyphOutlines = glyphs;
        return entitiesOf(DxfExportLines(cad, options));
    }
    DecimalSeparatorGuard point{u'.'};
    TMyCAD cad;
};

TEST_F(DxfExport, EmptyCanvasIsTheBareSection) {
    EXPECT_EQ(DxfExportLines(cad), (QStringList{"0", "SECTION", "2", "ENTITIES", "0", "ENDSEC", "0", "EOF"}));
}

TEST_F(DxfExport, LineInMillimetresWithYUp) {
    AddShape<TMyLine>(cad, {{0, 0}, {96, 0}});
    const auto e = exported();
    ASSERT_EQ(names(e), QStringList{"LINE"});
    EXPECT_EQ(e[0].groups, (QList<QPair<int, QString>>{
                               {5, "20"}, {8, "0"}, {10, "0"}, {20, "254"}, {30, "0.0"}, {11, "25.4"}, {21, "254"}, {31, "0.0"}}));
}

TEST_F(DxfExport, SegmentsAndClosedFiguresCountHandles) {
    AddShape<TMyPolyLine>(cad, {{0, 0}, {10, 0}, {10, 10}, {0, 10}});
    AddRect(cad, 0, 0, 96, 48);
    AddShape<TMyLinkLine>(cad, {{0, 0}, {48, 0}, {48, 48}});
    const auto e = exported();
    ASSERT_EQ(names(e), (QStringList{"LINE", "LINE", "LINE", "POLYLINE", "VERTEX", "VERTEX", "VERTEX", "VERTEX",
                                     "SEQEND", "LINE", "LINE"}));
    for (size_t i = 0; i < e.size(); ++i) EXPECT_EQ(e[i].value(5), QString::number(20 + i));
    // The rectangle's header is closed at the origin; its vertices are its corners in order.
    EXPECT_EQ(e[3].groups.mid(2), (QList<QPair<int, QString>>{{66, "1"}, {10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {70, "1"}}));
    EXPECT_EQ(e[5].value(10), "25.4");
    EXPECT_EQ(e[6].value(20), FloatToStr((960 - 48) / k));
    EXPECT_EQ(e[10].value(11), FloatToStr(48 / k));
}

TEST_F(DxfExport, EllipseIsACircleWithinHalfAPixelElseA181VertexPolyline) {
    AddRect<TMyEllipse>(cad, 100, 100, 200, 200.4f);
    AddRect<TMyEllipse>(cad, 100, 100, 200, 160);
    const auto e = exported();
    ASSERT_EQ(e[0].name, "CIRCLE");
    EXPECT_EQ(e[0].value(10), FloatToStr(150 / k));
    EXPECT_EQ(e[0].value(40), FloatToStr(50 / k));
    ASSERT_EQ(e.size(), 1u + 1 + 181 + 1);
    const Entity& header = e[1];
    EXPECT_EQ(header.name, "POLYLINE");
    EXPECT_EQ(header.value(70), "8");
    EXPECT_EQ(header.value(10), FloatToStr(100 / k));
    EXPECT_EQ(header.value(20), FloatToStr((960 - 130) / k));
    // Ellipse vertices carry their layer before their handle and flag 32.
    EXPECT_EQ(e[2].groups[0], (QPair<int, QString>{8, "0"}));
    EXPECT_EQ(e[2].value(70), "32");
    // Upper half forward (canvas y below the centre), lower half back to the start.
    EXPECT_NEAR(e[2 + 45].real(10), 150 / k, 1e-9);
    EXPECT_NEAR(e[2 + 45].real(20), (960 - 160) / k, 1e-9);
    EXPECT_NEAR(e[2 + 135].real(20), (960 - 100) / k, 1e-9);
    EXPECT_NEAR(e[2 + 180].real(10), 100 / k, 1e-9);
    EXPECT_EQ(e.back().name, "SEQEND");
}

TEST_F(DxfExport, ConnectorPointIsTwoCircles) {
    AddRect<TMyLineLinkLine>(cad, 100, 100, 140, 140);
    const auto e = exported();
    ASSERT_EQ(names(e), (QStringList{"CIRCLE", "CIRCLE"}));
    EXPECT_EQ(e[0].value(40), FloatToStr(20 / k));
    EXPECT_EQ(e[1].value(40), FloatToStr(10 / k));
    EXPECT_EQ(e[1].value(10), FloatToStr(120 / k));
}

TEST_F(DxfExport, ArcsAsArcOrCurveWithRestartedHandles) {
    auto* circular = AddShape<TMyElliArc>(cad, {{200, 100}, {100, 0}, {0, 100}});
    circular->SetArcMode(amCircle);
    auto* curve = AddShape<TMyElliArc>(cad, {{0, 0}, {10, 0}, {10, 10}});
    curve->SetArcMode(amEllipse);
    AddShape<TMyLine>(cad, {{0, 0}, {1, 1}});
    const auto e = exported();
    ASSERT_EQ(e[0].name, "ARC");
    EXPECT_EQ(e[0].value(10), FloatToStr(100 / k));
    EXPECT_EQ(e[0].value(20), FloatToStr((960 - 100) / k));
    EXPECT_EQ(e[0].value(40), FloatToStr(100 / k));
    EXPECT_EQ(e[0].value(50), "0");
    EXPECT_EQ(e[0].value(51), "180");
    // A = P0 - 2 P1 + 2 P2 = (0, 20): n = round(sqrt(20 * 100)) = 45 steps.
    ASSERT_EQ(e[1].name, "POLYLINE");
    EXPECT_EQ(e[1].value(5), "45");
    ASSERT_EQ(e.size(), 1u + 1 + 46 + 1 + 1);
    EXPECT_EQ(e[2].value(5), "46");
    // t = 1/45: x = round(B t / (t^2 + 1)) with B = (20, 0), y = round(20 t^2 / (t^2 + 1)) = 0.
    EXPECT_EQ(e[2].value(10), "0");
    EXPECT_EQ(e[47].name, "VERTEX");
    const double t = 46.0 / 45;
    EXPECT_EQ(e[47].value(10), FloatToStr(Round(20 * t / (t * t + 1)) / k));
    EXPECT_EQ(e.back().value(5), QString::number(45 + 48));
}

TEST_F(DxfExport, TextPerLineOrAsGlyphOutlines) {
    auto* text = AddRect<TMyText>(cad, 50, 50, 300, 150);
    TStrings lines;
    lines.SetLines({"one", "two", "three"});
    text->SetLines(lines);
    const auto e = exported();
    ASSERT_EQ(names(e), (QStringList{"TEXT", "TEXT", "TEXT"}));
    EXPECT_EQ(e[0].value(1), "one");
    EXPECT_EQ(e[2].value(1), "three");
    EXPECT_EQ(e[0].value(10), FloatToStr(50 / k));
    EXPECT_EQ(e[0].value(20), FloatToStr((960 - 150) / k));
    EXPECT_EQ(e[0].value(40), FloatToStr(std::abs(text->Font()->Height()) / k));
    EXPECT_EQ(e[0].value(50), "0");
    const double step = e[1].real(20) - e[0].real(20);
    EXPECT_GT(step, 0);
    EXPECT_NEAR(e[2].real(20) - e[1].real(20), step, 1e-9);

    text->SetWordWrap(true);
    const auto whole = exported();
    ASSERT_EQ(whole.size(), 1u);
    EXPECT_EQ(whole[0].value(1), "one two three");

    const auto outlines = exported(true);
    const QStringList kinds = names(outlines);
    EXPECT_FALSE(kinds.contains("TEXT"));
    EXPECT_GT(kinds.count("POLYLINE"), 5);
    EXPECT_GT(kinds.count("VERTEX"), kinds.count("POLYLINE"));
    // A SEQEND closes every figure but the last.
    EXPECT_EQ(kinds.count("SEQEND"), kinds.count("POLYLINE") - 1);
    EXPECT_EQ(kinds.first(), "POLYLINE");
}

TEST_F(DxfExport, OnlyExactClassesAreWritten) {
    class MyLine : public TMyLine {
    public:
        using TMyLine::TMyLine;
    };
    AddShape<MyLine>(cad, {{0, 0}, {10, 10}});
    AddRect<TMyGroup>(cad, 0, 0, 10, 10);
    AddShape<TMyBLine>(cad, {{0, 0}, {10, 10}, {20, 0}});
    EXPECT_TRUE(exported().empty());
}

TEST_F(DxfExport, CommaSeparatorAndFileWrittenInOneStep) {
    AddShape<TMyLine>(cad, {{0, 0}, {96, 0}});
    QTemporaryDir dir;
    const QString path = dir.filePath("out.dxf");
    {
        DecimalSeparatorGuard comma(u',');
        cad.SaveToDxf(path);
    }
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    EXPECT_TRUE(bytes.startsWith("0\r\nSECTION\r\n2\r\nENTITIES\r\n0\r\nLINE\r\n5\r\n20\r\n"));
    EXPECT_TRUE(bytes.contains("\r\n11\r\n25,4\r\n"));
    EXPECT_TRUE(bytes.endsWith("0\r\nENDSEC\r\n0\r\nEOF\r\n"));
    file.close();

    // A target that cannot be created raises and leaves nothing behind.
    EXPECT_THROW(cad.SaveToDxf(dir.filePath("missing/out.dxf")), EFCreateError);
    EXPECT_FALSE(QFile::exists(dir.filePath("missing/out.dxf")));
}

}  // namespace
