// Straight lines: the 8-pixel band and its bounding-box rule at every zoom,
// handles (last match wins, far edges out), arrow heads at the right ends
// with the byte wrap of their length, the measuring line's ticks and label in
// the canvas unit, and rubber bands that erase themselves when drawn twice.
#include "cad/canvas/mycad.h"
#include "cad/geometry/geometry.h"
#include "cad/shapes/line.h"
#include "support/pixels.h"
#include "support/shapes.h"
#include "support/test_support.h"

#include <QMetaProperty>
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

using namespace faroven;
using namespace faroven::test;

namespace {

// Exposes the pixel corners of an arrow head.
class LineProbe : public TMyLine {
public:
    using TMyLine::TMyLine;
    using TMyLine::arrowHead;
};

double distance(TPoint a, TPoint b) { return std::hypot(double(a.x) - b.x, double(a.y) - b.y); }

// ---- The hit band, at every zoom (the band itself is never scaled) --------------------------

class LineAtZoom : public ::testing::TestWithParam<double> {
protected:
    void SetUp() override { cad.SetZoom(GetParam()); }
    // A line whose zoomed, rounded end points are the given pixels.
    TMyLine* lineThroughPixels(TPoint a, TPoint b) {
        const float z = float(GetParam());
        return AddShape<TMyLine>(cad, {{a.x / z, a.y / z}, {b.x / z, b.y / z}});
    }
    TMyCAD cad;
};

INSTANTIATE_TEST_SUITE_P(Zooms, LineAtZoom, ::testing::Values(1.0, 2.0, 0.5, 3.0));

TEST_P(LineAtZoom, HorizontalBandReachesSevenPixelsAndStopsAtTheEnd) {
    auto l = lineThroughPixels({0, 0}, {100, 0});
    EXPECT_TRUE(l->IsClickedMe(nullptr, {50, -7}));
    EXPECT_TRUE(l->IsClickedMe(nullptr, {50, 7}));
    EXPECT_TRUE(l->IsClickedMe(nullptr, {50, -8})) << "the top edge of the band is in";
    EXPECT_FALSE(l->IsClickedMe(nullptr, {50, 8})) << "the bottom edge is out";
    EXPECT_FALSE(l->IsClickedMe(nullptr, {101, 0}));
    EXPECT_FALSE(l->IsClickedMe(nullptr, {100, 0})) << "the far end is out, as the band's right edge";
    EXPECT_TRUE(l->IsClickedMe(nullptr, {0, 0}));
    EXPECT_FALSE(l->IsClickedMe(nullptr, {-1, 0})) << "no band beyond the start";
}

TEST_P(LineAtZoom, VerticalBandReachesEightPixelsLeftAndSevenRight) {
    auto l = lineThroughPixels({40, 10}, {40, 90});
    EXPECT_TRUE(l->IsClickedMe(nullptr, {32, 50}));
    EXPECT_FALSE(l->IsClickedMe(nullptr, {31, 50}));
    EXPECT_TRUE(l->IsClickedMe(nullptr, {47, 50}));
    EXPECT_FALSE(l->IsClickedMe(nullptr, {48, 50}));
    EXPECT_FALSE(l->IsClickedMe(nullptr, {40, 90}));
    EXPECT_FALSE(l->IsClickedMe(nullptr, {40, 9}));
}

TEST_P(LineAtZoom, NearlyHorizontalSegmentIsHitOnlyInsideItsThinBox) {
    auto l = lineThroughPixels({0, 0}, {100, 2});
    EXPECT_TRUE(l->IsClickedMe(nullptr, {50, 1}));
    EXPECT_TRUE(l->IsClickedMe(nullptr, {50, 0}));
    EXPECT_FALSE(l->IsClickedMe(nullptr, {50, 3})) << "within 8 pixels, but outside the box";
    EXPECT_FALSE(l->IsClickedMe(nullptr, {50, 2})) << "the box's bottom edge is out";
    EXPECT_FALSE(l->IsClickedMe(nullptr, {50, -1}));
}

TEST_P(LineAtZoom, SteepSegmentMeasuresTheBandAcross) {
    auto l = lineThroughPixels({0, 0}, {40, 100});
    // At y = 50 the line passes x = 20; the band is +-8 in x, inside the box.
    EXPECT_TRUE(l->IsClickedMe(nullptr, {12, 50}));
    EXPECT_TRUE(l->IsClickedMe(nullptr, {28, 50}));
    EXPECT_FALSE(l->IsClickedMe(nullptr, {11, 50}));
    EXPECT_FALSE(l->IsClickedMe(nullptr, {29, 50}));
    auto shallow = lineThroughPixels({0, 200}, {100, 240});
    // At x = 50 the line passes y = 220.
    EXPECT_TRUE(shallow->IsClickedMe(nullptr, {50, 228}));
    EXPECT_FALSE(shallow->IsClickedMe(nullptr, {50, 229}));
}

TEST_P(LineAtZoom, HandlesAnswerInsideTheirSquareAndTheLastMatchWins) {
    auto l = lineThroughPixels({100, 40}, {104, 40});
    EXPECT_EQ(l->InWhichHot({100, 40}), 1) << "both squares hold the point: the last wins";
    EXPECT_EQ(l->InWhichHot({99, 40}), 0);
    EXPECT_EQ(l->InWhichHot({96, 40}), 0);
    EXPECT_EQ(l->InWhichHot({95, 40}), -1);
    EXPECT_EQ(l->HotIndex(), -1);
    auto single = lineThroughPixels({200, 200}, {300, 200});
    EXPECT_EQ(single->InWhichHot({303, 200}), 1) << "3 pixels right of the end point";
    EXPECT_EQ(single->InWhichHot({304, 200}), -1) << "4 pixels right: the square's right edge is out";
    EXPECT_EQ(single->InWhichHot({196, 196}), 0);
    EXPECT_EQ(single->GetMouseCursor(196, 196), crCross) << "a line keeps the base cross-hair, on a handle too";
}

// ---- Lines ------------------------------------------------------------------------------------

class Line : public ::testing::Test {
protected:
    void SetUp() override { cad.GridOperation()->SetGridShow(false); }
    TMyCAD cad;
};

// The attachment of a line's ends refers to other shapes: it is a relation,
// copied by Assign and left out by AssignWithoutRelation; the arrow and
// measuring settings are properties, copied by both.
TEST_F(Line, AssignCopiesTheEndsAttachmentOnlyWithTheRelations) {
    TMyRuleLine source(&cad);
    source.SetArrowAngle(33);
    source.SetArrowLength(44);
    source.SetArrowOffset(5);
    source.SetArrowStyle(ALeft);
    source.SetStartSpNo(3);
    source.SetStartSpPtId(1);
    source.SetEndSpNo(4);
    source.SetEndSpPtId(2);
    source.SetTickStyle(tsNone);
    source.SetShowUserInfo(true);
    source.SetUserInfo("span");
    for (bool withRelations : {true, false}) {
        TMyRuleLine copy(&cad);
        if (withRelations)
            copy.Assign(&source);
        else
            copy.AssignWithoutRelation(&source);
        EXPECT_EQ(copy.ArrowAngle(), 33);
        EXPECT_EQ(copy.ArrowLength(), 44);
        EXPECT_EQ(copy.ArrowOffset(), 5);
        EXPECT_EQ(copy.ArrowStyle(), ALeft);
        EXPECT_EQ(copy.TickStyle(), tsNone);
        EXPECT_TRUE(copy.ShowUserInfo());
        EXPECT_EQ(copy.UserInfo(), "span");
        const int free = -1;
        EXPECT_EQ(copy.StartSpNo(), withRelations ? 3 : free);
        EXPECT_EQ(copy.StartSpPtId(), withRelations ? 1 : free);
        EXPECT_EQ(copy.EndSpNo(), withRelations ? 4 : free);
        EXPECT_EQ(copy.EndSpPtId(), withRelations ? 2 : free);
    }
}

// A line made by code turns about its middle once the canvas has added it,
// and about the new middle after an end has been moved.
TEST_F(Line, TurnsAboutItsStoredMiddle) {
    auto l = new TMyLine(&cad);
    l->AddPoint({0, 0});
    l->AddPoint({100, 0});
    cad.AddNewShape(l);
    l->RotateChangeValueByAngle(std::numbers::pi / 2);
    EXPECT_NEAR(l->GetPoint(0).x, 50, 1e-4);
    EXPECT_NEAR(l->GetPoint(0).y, -50, 1e-4);
    EXPECT_NEAR(l->GetPoint(1).y, 50, 1e-4);
    l->SetHotIndex(1);
    l->SizeChangeValue({50, 50}, {50, 150});
    EXPECT_EQ(l->GetCenterPoint(), (TMyPoint{50, 50}));
}

TEST_F(Line, TakesTheCanvasArrowDefaultsAndLeavesItsEndsFree) {
    cad.SetArrowAngle(25);
    cad.SetArrowLength(40);
    cad.SetArrowOffset(3);
    cad.SetArrowStyle(ADouble);
    TMyLine l(&cad);
    EXPECT_EQ(l.ArrowAngle(), 25);
    EXPECT_EQ(l.ArrowLength(), 40);
    EXPECT_EQ(l.ArrowOffset(), 3);
    EXPECT_EQ(l.ArrowStyle(), ADouble);
    EXPECT_TRUE(l.StartSpNo() == -1 && l.StartSpPtId() == -1 && l.EndSpNo() == -1 && l.EndSpPtId() == -1);
    const QMetaObject* mo = l.metaObject();
    const int first = mo->indexOfProperty("ArrowAngle");
    ASSERT_GE(first, 0);
    EXPECT_STREQ(mo->property(first + 1).name(), "ArrowLength");
    EXPECT_STREQ(mo->property(first + 2).name(), "ArrowOffset");
    EXPECT_STREQ(mo->property(first + 3).name(), "ArrowStyle");
}

TEST_F(Line, FinishedWithExactlyTwoPoints) {
    TMyLine l(&cad);
    l.AddPointByMouse({10, 10});
    EXPECT_FALSE(l.IsDrawingFinished(mbLeft, {10, 10}));
    l.AddPointByMouse({50, 30});
    EXPECT_TRUE(l.IsDrawingFinished(mbLeft, {50, 30}));
    l.AddPointByMouse({70, 30});
    EXPECT_FALSE(l.IsDrawingFinished(mbLeft, {70, 30}));
}

TEST_F(Line, BeforeWhichPointNamesTheSegmentsSecondPoint) {
    auto l = AddShape<TMyLine>(cad, {{0, 0}, {100, 0}, {100, 100}});
    int index = 99;
    EXPECT_TRUE(l->IsClickedMeBeforeWhichPoint(index, {50, 3}));
    EXPECT_EQ(index, 1);
    EXPECT_TRUE(l->IsClickedMeBeforeWhichPoint(index, {103, 50}));
    EXPECT_EQ(index, 2);
    EXPECT_FALSE(l->IsClickedMeBeforeWhichPoint(index, {50, 50}));
    EXPECT_EQ(index, -1);
    EXPECT_TRUE(l->IsClickedMe(nullptr, {103, 50})) << "every segment counts";
}

TEST_F(Line, SizingMovesTheCurrentHandleToTheMouse) {
    cad.SetZoom(2);
    auto l = AddShape<TMyLine>(cad, {{10, 10}, {60, 10}});
    ASSERT_EQ(l->InWhichHot({120, 20}), 1);
    l->SizeChangeValue({120, 20}, {151, 80});
    EXPECT_EQ(l->GetPoint(0), (TMyPoint{10, 10}));
    EXPECT_EQ(l->GetPoint(1), (TMyPoint{75.5f, 40}));
}

TEST_F(Line, ArrowHeadsSitAtTheEndsTheStyleNames) {
    auto l = AddShape<TMyLine>(cad, {{20, 50}, {120, 50}});
    l->Pen()->SetColor(clRed);
    l->SetArrowAngle(30);
    l->SetArrowLength(15);
    struct Case {
        TArrowStyle style;
        bool atLast, atFirst;
    } cases[] = {{ANone, false, false}, {ALeft, true, false}, {ARight, false, true}, {ADouble, true, true}};
    for (const Case& c : cases) {
        l->SetArrowStyle(c.style);
        l->SetTag(int(c.style));  // a change, so that the canvas repaints
        const QImage image = cad.PaintToImage();
        EXPECT_EQ(PixelAt(image, 112, 53) == clRed, c.atLast) << "style " << int(c.style) << " at the last point";
        EXPECT_EQ(PixelAt(image, 28, 53) == clRed, c.atFirst) << "style " << int(c.style) << " at point 0";
    }
}

TEST_F(Line, ArrowHeadGeometry) {
    LineProbe l(&cad);
    l.AddPoint({20, 100});
    l.AddPoint({200, 100});
    l.SetArrowAngle(45);
    l.SetArrowLength(20);
    const TArrPoint head = l.arrowHead(l.GetPointInZoom(1), l.GetPointInZoom(0));
    ASSERT_EQ(head.size(), 3u);
    EXPECT_EQ(head[0], Point(200, 100));
    EXPECT_EQ(head[1], Point(186, 114));
    EXPECT_EQ(head[2], Point(186, 86));
    l.SetArrowOffset(10);
    cad.SetZoom(2);
    const TArrPoint set = l.arrowHead(l.GetPointInZoom(1), l.GetPointInZoom(0));
    EXPECT_EQ(set[0], Point(390, 200)) << "the offset is in screen pixels, not scaled";
    EXPECT_NEAR(distance(set[0], set[1]), 40, 1) << "the length is scaled";
}

TEST_F(Line, ArrowLengthWrapsAsAByte) {
    LineProbe l(&cad);
    l.AddPoint({2, 10});
    l.AddPoint({40, 10});
    l.SetArrowAngle(45);
    l.SetArrowLength(20);
    cad.SetZoom(13);  // 260 pixels, passed on as 260 mod 256 = 4
    const TArrPoint wrapped = l.arrowHead(l.GetPointInZoom(1), l.GetPointInZoom(0));
    EXPECT_NEAR(distance(wrapped[0], wrapped[1]), 4, 1);
    cad.SetZoom(12);  // 240 pixels, no wrap
    const TArrPoint full = l.arrowHead(l.GetPointInZoom(1), l.GetPointInZoom(0));
    EXPECT_NEAR(distance(full[0], full[1]), 240, 1);
}

TEST_F(Line, SinglePointDrawsNoArrowHeads) {
    auto l = new TMyLine(&cad);
    l->AddPoint({50, 50});
    l->SetArrowStyle(ADouble);
    l->Pen()->SetColor(clRed);
    cad.AddNewShape(l);
    const QImage image = cad.PaintToImage();
    EXPECT_EQ(CountPixels(image, clRed), 0);
}

TEST_F(Line, PartialRepaintKeepsArrowHeadsThatReachFarFromThePoints) {
    auto l = AddShape<TMyLine>(cad, {{100, 100}, {110, 100}});
    l->Pen()->SetColor(clRed);
    l->SetArrowStyle(ALeft);
    l->SetArrowAngle(80);
    l->SetArrowLength(60);
    const QImage full = cad.PaintToImage();
    const TRect ink = InkBounds(full, clRed);
    ASSERT_LT(ink.top, 60) << "the wings reach far above the line";
    // Repaint only a band around the upper wing, away from both points.
    ExpectPartialMatchesFull(cad, TRect{ink.left, ink.top, ink.right, 80});
}

TEST_F(Line, RubberBandsDrawnTwiceLeaveThePixelsUnchanged) {
    auto l = AddShape<TMyLine>(cad, {{30, 40}, {150, 120}, {60, 170}});
    l->SetHotIndex(1);
    const std::vector<std::pair<const char*, std::function<void(TCanvas*)>>> bands = {
        {"Draging", [&](TCanvas* c) { l->Draging(c, {50, 50}, {61, 43}); }},
        {"Drawing", [&](TCanvas* c) { l->Drawing(c, {60, 170}, {180, 30}); }},
        {"Sizing", [&](TCanvas* c) { l->Sizing(c, {150, 120}, {170, 90}); }},
        {"Rotating", [&](TCanvas* c) { l->Rotating(c, {150, 120}, {120, 150}); }},
    };
    for (const auto& [name, draw] : bands) {
        TBitmap bmp(200, 200, pf24bit);
        FillPattern(bmp);
        const QImage before = bmp.Image().copy();
        draw(bmp.Canvas());
        EXPECT_GT(DiffCount(bmp.Image(), before), 40) << name;
        draw(bmp.Canvas());
        EXPECT_EQ(DiffCount(bmp.Image(), before), 0) << name;
    }
}

TEST_F(Line, InfoNamesLengthAndDirection) {
    auto l = AddShape<TMyLine>(cad, {{0, 0}, {96, 0}});
    EXPECT_EQ(l->GetInfo(), QString::fromUtf8("Line: length 25.40 mm, angle 0.0°"));
    EXPECT_NEAR(l->GetLengthByUnit(), 25.4, 1e-4);
    auto down = AddShape<TMyLine>(cad, {{0, 0}, {0, 96}});
    EXPECT_EQ(down->GetInfo(), QString::fromUtf8("Line: length 25.40 mm, angle 90.0°")) << "clockwise on screen";
    cad.SetUnit(inch);
    auto back = AddShape<TMyLine>(cad, {{96, 0}, {0, 0}});
    EXPECT_EQ(back->GetInfo(), QString::fromUtf8("Line: length 1.00 in, angle 180.0°"));
    EXPECT_NEAR(back->GetLengthByUnit(TMyPoint{0, 0}, TMyPoint{0, 192}), 2.0, 1e-9) << "zoomed points, zoom 1";
    cad.SetZoom(2);
    EXPECT_NEAR(back->GetLengthByUnit(TMyPoint{0, 0}, TMyPoint{0, 192}), 1.0, 1e-9) << "zoomed points, zoom 2";
}

// ---- Measuring lines ----------------------------------------------------------------------------

TEST_F(Line, MeasuringLineDefaults) {
    cad.Font()->SetSize(14);
    TMyRuleLine r(&cad);
    EXPECT_TRUE(r.inherits("faroven::TMyLine"));
    EXPECT_EQ(r.Font()->Size(), 8);
    EXPECT_EQ(r.ArrowAngle(), 10);
    EXPECT_EQ(r.ArrowLength(), 20);
    EXPECT_EQ(r.ArrowStyle(), ADouble);
    EXPECT_EQ(r.TickStyle(), tsLine);
    const QMetaObject* mo = r.metaObject();
    const int first = mo->indexOfProperty("ShowUserInfo");
    ASSERT_GE(first, 0);
    EXPECT_STREQ(mo->property(first + 1).name(), "TickStyle");
    EXPECT_STREQ(mo->property(first + 2).name(), "UserInfo");
}

TEST_F(Line, MeasuringLineLabelsItsLengthInTheCanvasUnit) {
    auto r = AddShape<TMyRuleLine>(cad, {{0, 100}, {100, 100}});
    cad.PaintToImage();
    EXPECT_EQ(r->Info(), "26.46 mm");
    cad.SetUnit(cm);
    cad.PaintToImage();
    EXPECT_EQ(r->Info(), "2.65 cm");
    cad.SetZoom(2);
    cad.PaintToImage();
    EXPECT_EQ(r->Info(), "2.65 cm") << "the zoom does not change the length";
    r->SetUserInfo("custom");
    r->SetShowUserInfo(true);
    cad.PaintToImage();
    EXPECT_EQ(r->Info(), "2.65 cm") << "Info is left alone";
    EXPECT_EQ(r->LabelText(), "custom");
}

TEST_F(Line, MeasuringLineTicksAndLabel) {
    auto r = AddShape<TMyRuleLine>(cad, {{50, 100}, {250, 100}});
    r->Pen()->SetColor(clRed);
    r->Font()->SetColor(clBlue);
    QImage image = cad.PaintToImage();
    EXPECT_EQ(PixelAt(image, 50, 93), clRed) << "tick across the start";
    EXPECT_EQ(PixelAt(image, 250, 107), clRed) << "tick across the end";
    EXPECT_EQ(PixelAt(image, 150, 107), clWhite) << "no tick in the middle";
    // The label stands above the middle of the line, centred on it.
    const TRect ink = InkBoundsExcept(image.copy(60, 60, 180, 39), clWhite);
    ASSERT_FALSE(ink == TRect{}) << "a label above the line";
    EXPECT_NEAR(60 + (ink.left + ink.right) / 2.0, 150, 4);
    EXPECT_EQ(InkBoundsExcept(image.copy(75, 102, 150, 30), clWhite), TRect{}) << "nothing below the line";
    r->SetTickStyle(tsNone);
    image = cad.PaintToImage();
    EXPECT_EQ(PixelAt(image, 50, 93), clWhite);
}

TEST_F(Line, MeasuringLineTickStandsAcrossASlopedLine) {
    auto r = AddShape<TMyRuleLine>(cad, {{100, 100}, {200, 200}});
    r->Pen()->SetColor(clRed);
    r->SetArrowStyle(ANone);
    const QImage image = cad.PaintToImage();
    const int h = r->TickHalfLength();
    const int d = Round(h / std::sqrt(2.0)) - 1;
    EXPECT_EQ(PixelAt(image, 100 + d, 100 - d), clRed) << "along the normal, up and right";
    EXPECT_EQ(PixelAt(image, 100 - d, 100 + d), clRed) << "along the normal, down and left";
}

}  // namespace
