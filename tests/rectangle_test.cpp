// The rectangle family: corner creation by mouse, the eight handles and their
// quirks at every zoom, sizing by the handle table without ever crossing the
// opposite corner (upright and rotated), polygon-region hits, the 73-point
// ellipse, groups drawing only their caption, and rubber bands that erase
// themselves when drawn twice.
#include "cad/canvas/mycad.h"
#include "cad/geometry/geometry.h"
#include "cad/geometry/markers.h"
#include "cad/shapes/rectangle.h"
#include "cad/shapes/shape_p.h"
#include "support/pixels.h"
#include "support/shapes.h"
#include "support/test_support.h"

#include <QMetaProperty>
#include <gtest/gtest.h>

#include <numbers>
#include <random>
#include <utility>

using namespace faroven;
using namespace faroven::test;

namespace {

constexpr double kPi = std::numbers::pi;

void expectNear(TMyPoint actual, TMyPoint expected, const char* what) {
    EXPECT_NEAR(actual.x, expected.x, 1e-3) << what;
    EXPECT_NEAR(actual.y, expected.y, 1e-3) << what;
}

// ---- Creation by mouse, over zooms ---------------------------------------------------------

class RectangleAtZoom : public ::testing::TestWithParam<double> {
protected:
    void SetUp() override {
        cad.SetZoom(GetParam());
        cad.GridOperation()->SetGridShow(false);
    }
    double zoom() const { return GetParam(); }
    TMyCAD cad;
};

INSTANTIATE_TEST_SUITE_P(Zooms, RectangleAtZoom, ::testing::Values(1.0, 2.0, 0.5, 1.37));

TEST_P(RectangleAtZoom, SecondPressInTheSameRowOrColumnAddsNothing) {
    TMyRectangle r(&cad);
    r.AddPointByMouse({10, 10});
    r.AddPointByMouse({10, 50});
    EXPECT_EQ(r.GetPointsCount(), 1);
    r.AddPointByMouse({70, 10});
    EXPECT_EQ(r.GetPointsCount(), 1);
    EXPECT_FALSE(r.IsDrawingFinished(mbLeft, {70, 10}));
    r.AddPointByMouse({40, 50});
    ASSERT_EQ(r.GetPointsCount(), 4);
    EXPECT_TRUE(r.IsDrawingFinished(mbLeft, {40, 50}));
    const float z = float(zoom());
    const TMyPoint expected[4] = {{10 / z, 10 / z}, {40 / z, 10 / z}, {40 / z, 50 / z}, {10 / z, 50 / z}};
    for (int i = 0; i < 4; ++i) expectNear(r.GetPoint(i), expected[i], "corner");
    // Further presses change nothing.
    r.AddPointByMouse({90, 90});
    EXPECT_EQ(r.GetPointsCount(), 4);
}

TEST_P(RectangleAtZoom, DrawnFromBottomRightTheOrderFollowsThePresses) {
    TMyRectangle r(&cad);
    r.AddPointByMouse({80, 60});
    r.AddPointByMouse({20, 30});
    const float z = float(zoom());
    expectNear(r.GetPoint(0), {80 / z, 60 / z}, "first press");
    expectNear(r.GetPoint(1), {20 / z, 60 / z}, "same row");
    expectNear(r.GetPoint(2), {20 / z, 30 / z}, "second press");
    expectNear(r.GetPoint(3), {80 / z, 30 / z}, "same column");
}

TEST_P(RectangleAtZoom, EveryHandleAnswersInsideItsSquareOnly) {
    auto r = AddRect(cad, 40, 40, 240, 140);
    const int h = cad.HotSize();
    for (int i = 0; i < 8; ++i) {
        const TPoint c = MyPtToPt(r->ZoomedValuePt(r->GetPoint(i)));
        EXPECT_EQ(r->InWhichHot(c), i);
        EXPECT_EQ(r->HotIndex(), i);
        EXPECT_EQ(r->InWhichHot({c.x - h, c.y - h}), i) << "left and top edges are in";
        EXPECT_EQ(r->InWhichHot({c.x + h - 1, c.y + h - 1}), i);
        EXPECT_NE(r->InWhichHot({c.x + h, c.y}), i) << "the right edge is out";
        EXPECT_NE(r->InWhichHot({c.x, c.y + h}), i) << "the bottom edge is out";
    }
    EXPECT_EQ(r->InWhichHot(MyPtToPt(r->GetCenterPointInZoom())), -1);
    EXPECT_EQ(r->HotIndex(), -1);
}

TEST_P(RectangleAtZoom, HiddenSideHandlesStillAnswerAtTheOrigin) {
    auto r = AddRect(cad, 40, 40, 240, 140);
    r->SetShowSideHot(false);
    EXPECT_EQ(r->InWhichHot({0, 0}), 7);
    EXPECT_EQ(r->InWhichHot({3, 3}), 7);
    EXPECT_EQ(r->InWhichHot({-4, -4}), 7);
    EXPECT_EQ(r->InWhichHot({4, 0}), -1);
    const TPoint side = MyPtToPt(r->ZoomedValuePt(r->GetPoint(5)));
    EXPECT_EQ(r->InWhichHot(side), -1) << "the right middle is not a handle any more";
}

TEST_P(RectangleAtZoom, ClicksCountInsideTheRegionOnly) {
    auto r = AddRect(cad, 20, 20, 60, 50);
    const TPoint lt = MyPtToPt(r->GetPointInZoom(0)), rb = MyPtToPt(r->GetPointInZoom(2));
    EXPECT_TRUE(r->IsClickedMe(nullptr, lt)) << "the top-left corner pixel is in";
    EXPECT_TRUE(r->IsClickedMe(nullptr, {rb.x - 1, rb.y - 1}));
    EXPECT_FALSE(r->IsClickedMe(nullptr, {rb.x, (lt.y + rb.y) / 2})) << "the right edge pixel is out";
    EXPECT_FALSE(r->IsClickedMe(nullptr, {(lt.x + rb.x) / 2, rb.y})) << "the bottom edge pixel is out";
    EXPECT_FALSE(r->IsClickedMe(nullptr, {lt.x - 1, lt.y})) << "no tolerance band";
}

TEST_P(RectangleAtZoom, TurnedRectangleHitsAgreeWithItsPolygonRegion) {
    auto r = AddRect(cad, 30, 40, 130, 90);
    r->RotateChangeValueByAngle(0.4);
    TArrPoint outline;
    for (int i = 0; i < 4; ++i) outline.push_back(MyPtToPt(r->GetPointInZoom(i)));
    const QRegion region = CreatePolygonRgn(outline);
    const QRect box = region.boundingRect().adjusted(-2, -2, 2, 2);
    int inside = 0;
    for (int y = box.top(); y <= box.bottom(); ++y)
        for (int x = box.left(); x <= box.right(); ++x) {
            const bool expected = PtInRegion(region, x, y);
            inside += expected;
            ASSERT_EQ(r->IsClickedMe(nullptr, {x, y}), expected) << x << "," << y;
        }
    EXPECT_GT(inside, 100);
}

// ---- Handles --------------------------------------------------------------------------------

class Rectangle : public ::testing::Test {
protected:
    void SetUp() override {
        cad.GridOperation()->SetGridShow(false);
        m_savedHot = HotColor();
        SetHotColor(clLime);
    }
    void TearDown() override { SetHotColor(m_savedHot); }
    TMyCAD cad;
    TColor m_savedHot = clLime;
};

TEST_F(Rectangle, PublishedPropertiesAndDefaults) {
    TMyRectangle r(&cad);
    EXPECT_FALSE(r.AssociateSideResizing());
    EXPECT_TRUE(r.ShowSideHot());
    EXPECT_TRUE(r.ShowHorizontalSideHot());
    EXPECT_TRUE(r.ShowVerticalSideHot());
    const QMetaObject* mo = r.metaObject();
    const int first = mo->indexOfProperty("AssociateSideResizing");
    ASSERT_GE(first, 0);
    EXPECT_STREQ(mo->property(first + 1).name(), "ShowSideHot");
    EXPECT_STREQ(mo->property(first + 2).name(), "ShowHorizontalSideHot");
    EXPECT_STREQ(mo->property(first + 3).name(), "ShowVerticalSideHot");
    const uint64_t revision = r.Revision();
    r.SetShowSideHot(false);
    r.SetAssociateSideResizing(true);
    EXPECT_EQ(r.Revision(), revision) << "the setters only store";
    EXPECT_TRUE(r.AssociateSideResizing());
    TMyEllipse copy(&cad);
    copy.AssignWithoutRelation(&r);
    EXPECT_TRUE(copy.AssociateSideResizing()) << "the switches are properties: both Assigns copy them";
    EXPECT_FALSE(copy.ShowSideHot());
}

TEST_F(Rectangle, OverlappingHandlesReportTheHighestNumber) {
    auto r = AddRect(cad, 10, 10, 14, 14);
    EXPECT_EQ(r->InWhichHot({12, 12}), 7);
    r->SetShowHorizontalSideHot(false);  // 5 and 7 move to the origin
    EXPECT_EQ(r->InWhichHot({12, 12}), 6);
    r->SetShowSideHot(false);
    EXPECT_EQ(r->InWhichHot({12, 12}), 3);
}

TEST_F(Rectangle, WhileRotatingOnlyTheCornersAreHandles) {
    auto r = AddRect(cad, 40, 40, 240, 140);
    const TPoint side = MyPtToPt(r->GetPoint(5));
    EXPECT_EQ(r->InWhichHot(side), 5);
    cad.SetShapeTool(SpRotateSelecting);
    EXPECT_EQ(r->InWhichHot(side), -1);
    EXPECT_EQ(r->InWhichHot({240, 140}), 2);
    r->SetShowSideHot(false);
    EXPECT_EQ(r->InWhichHot({0, 0}), -1) << "the hidden handles at the origin are not tested either";
}

TEST_F(Rectangle, HandlePositionsFollowTheTurn) {
    auto r = AddRect(cad, 0, 0, 100, 50);
    expectNear(r->GetPoint(4), {50, 0}, "top middle");
    expectNear(r->GetPoint(5), {100, 25}, "right middle");
    expectNear(r->GetPoint(6), {50, 50}, "bottom middle");
    expectNear(r->GetPoint(7), {0, 25}, "left middle");
    EXPECT_EQ(r->GetPoint(-1), (TMyPoint{0, 0}));
    EXPECT_EQ(r->GetPoint(8), (TMyPoint{0, 0}));
    EXPECT_EQ(r->GetPoint(-2), (TMyPoint{0, 0}));
    r->RotateChangeValueByAngle(kPi / 2);  // a quarter turn clockwise about (50, 25)
    EXPECT_NEAR(r->Angle(), kPi / 2, 1e-6);
    expectNear(r->GetPoint(0), {75, -25}, "corner 0 turned");
    expectNear(r->GetPoint(4), {75, 25}, "top middle turned");
    expectNear(r->GetPoint(5), {50, 75}, "right middle turned");
    expectNear(r->GetPoint(-1), {75, -25}, "the origin turned about the centre");
    // A hidden side handle sits where the turn moved the origin.
    r->SetShowVerticalSideHot(false);
    EXPECT_EQ(r->InWhichHot({75, -25}), 6) << "handle 6, hidden, at the turned origin, beats corner 0";
}

TEST_F(Rectangle, RotationMeasuredFromTheMouseTurnsAboutTheCentre) {
    auto r = AddRect(cad, 0, 0, 100, 50);
    // From right of the centre to below it: a quarter turn clockwise.
    const double angle = r->GetRotatedAngle({150, 25}, {50, 125});
    EXPECT_NEAR(angle, kPi / 2, 1e-9);
    r->RotateChangeValueByAngle(angle);
    EXPECT_NEAR(r->UprightWidth(), 100, 1e-3) << "the figure keeps its size";
    EXPECT_NEAR(r->UprightHeight(), 50, 1e-3);
    expectNear(r->GetCenterPoint(), {50, 25}, "the centre stays");
    expectNear(r->GetPoint(2), {25, 75}, "bottom-right corner turned");
    const TMyPoint text = r->TextPoint();
    expectNear(text, RotateAPoint({50, 60}, {50, 25}, float(angle)), "the caption turns along");
}

TEST_F(Rectangle, CursorsBySide) {
    auto r = AddRect(cad, 0, 0, 100, 50);
    EXPECT_EQ(r->GetMouseCursor(1, 1), crSizeNWSE);
    EXPECT_EQ(r->GetMouseCursor(99, 1), crSizeNESW);
    EXPECT_EQ(r->GetMouseCursor(99, 49), crSizeNWSE);
    EXPECT_EQ(r->GetMouseCursor(1, 49), crSizeNESW);
    EXPECT_EQ(r->GetMouseCursor(50, 1), crSizeNS);
    EXPECT_EQ(r->GetMouseCursor(50, 49), crSizeNS);
    EXPECT_EQ(r->GetMouseCursor(99, 25), crSizeWE);
    EXPECT_EQ(r->GetMouseCursor(1, 25), crSizeWE);
    EXPECT_EQ(r->GetMouseCursor(50, 25), crCross);
}

// ---- Sizing ---------------------------------------------------------------------------------

TEST_F(Rectangle, SideHandlesMoveTheirSideAndCornersTheirNeighboursAlongTheSides) {
    struct Case {
        int handle;
        TPoint to;
        TMyPoint expected[4];
        TMyPoint centre;
    } cases[] = {
        {4, {77, 0}, {{10, 0}, {110, 0}, {110, 60}, {10, 60}}, {60, 30}},
        {5, {150, 47}, {{10, 10}, {150, 10}, {150, 60}, {10, 60}}, {80, 35}},
        {6, {30, 90}, {{10, 10}, {110, 10}, {110, 90}, {10, 90}}, {60, 50}},
        {7, {-20, 33}, {{-20, 10}, {110, 10}, {110, 60}, {-20, 60}}, {45, 35}},
        {2, {130, 45}, {{10, 10}, {130, 10}, {130, 45}, {10, 45}}, {70, 27.5f}},
    };
    for (const Case& c : cases) {
        auto r = AddRect(cad, 10, 10, 110, 60);
        r->SetHotIndex(c.handle);
        r->SizeChangeValue({}, c.to);
        for (int i = 0; i < 4; ++i) EXPECT_EQ(r->GetPoint(i), c.expected[i]) << "handle " << c.handle << " point " << i;
        EXPECT_EQ(r->CenterPoint(), c.centre) << "handle " << c.handle;
    }
}

TEST_F(Rectangle, CornerNeverCrossesTheOppositeCorner) {
    auto r = AddRect(cad, 10, 10, 110, 60);
    r->SetHotIndex(0);
    r->SizeChangeValue({10, 10}, {111, 61});
    EXPECT_EQ(r->GetPoint(0), (TMyPoint{10, 10})) << "beyond the right-bottom corner: refused";
    EXPECT_EQ(r->GetPoint(2), (TMyPoint{110, 60}));
    r->SizeChangeValue({10, 10}, {111, 30});
    EXPECT_EQ(r->GetPoint(0), (TMyPoint{10, 10})) << "beyond on one axis is enough to refuse";
    r->SizeChangeValue({10, 10}, {110, 60});
    for (int i = 0; i < 4; ++i) EXPECT_EQ(r->GetPoint(i), (TMyPoint{110, 60})) << "onto the corner: a zero-size rectangle";
}

TEST_F(Rectangle, SizingAtZoomDividesTheMouseByTheZoom) {
    cad.SetZoom(2);
    auto r = AddRect(cad, 10, 10, 110, 60);
    r->SetHotIndex(2);
    r->SizeChangeValue({220, 120}, {300, 160});
    EXPECT_EQ(r->GetPoint(2), (TMyPoint{150, 80}));
    EXPECT_EQ(r->GetPoint(1), (TMyPoint{150, 10}));
}

// The rotated cases are checked against the upright model: turn the mouse
// back by the angle about the old centre, size the upright rectangle, turn the
// result forward again.
class TurnedRectangle : public Rectangle {
protected:
    void SetUp() override {
        Rectangle::SetUp();
        r = AddRect(cad, 0, 0, 100, 50);
        r->RotateChangeValueByAngle(angle);
        centre = {50, 25};
    }
    TMyPoint forward(TMyPoint upright) const { return RotateAPoint(upright, centre, angle); }
    TMyPoint back(TMyPoint p) const { return RotateAPoint(p, centre, -angle); }
    TPoint mouseAt(TMyPoint upright) const { return MyPtToPt(forward(upright)); }
    TMyRectangle* r = nullptr;
    TMyPoint centre;
    float angle = float(kPi / 6);
};

TEST_F(TurnedRectangle, CornerFollowsTheMouseAndTheSidesStayAtRightAngles) {
    r->SetHotIndex(2);
    const TPoint mouse = mouseAt({130, 70});
    r->SizeChangeValue({}, mouse);
    const TMyPoint q = back(PtToMyPt(mouse));
    expectNear(r->GetPoint(2), PtToMyPt(mouse), "the corner is the mouse");
    expectNear(back(r->GetPoint(0)), {0, 0}, "the opposite corner stays");
    expectNear(back(r->GetPoint(1)), {q.x, 0}, "neighbour in the row");
    expectNear(back(r->GetPoint(3)), {0, q.y}, "neighbour in the column");
    EXPECT_NEAR(r->Angle(), angle, 1e-6) << "sizing keeps the turn";
}

TEST_F(TurnedRectangle, CornerRefusedAcrossTheOppositeCornerInTheUprightFrame) {
    r->RotateChangeValueByAngle(kPi / 3);  // a quarter turn in all
    angle = r->Angle();
    const TArrMyPoint before = std::as_const(*r).Points();
    r->SetHotIndex(2);
    // Above the opposite corner in the upright frame, although on screen the
    // mouse lies right of and below it.
    const TPoint mouse = mouseAt({10, -10});
    const TPoint opposite = MyPtToPt(r->GetPoint(0));
    ASSERT_GT(mouse.x, opposite.x);
    ASSERT_GT(mouse.y, opposite.y);
    r->SizeChangeValue({}, mouse);
    EXPECT_EQ(std::as_const(*r).Points(), before);
}

TEST_F(TurnedRectangle, SideHandleMovesAlongTheSidesNormal) {
    r->SetHotIndex(5);
    r->SizeChangeValue({}, mouseAt({150, 30}));
    const TMyPoint q = back(PtToMyPt(mouseAt({150, 30})));
    expectNear(back(r->GetPoint(0)), {0, 0}, "left side stays");
    expectNear(back(r->GetPoint(3)), {0, 50}, "left side stays");
    expectNear(back(r->GetPoint(1)), {q.x, 0}, "right side moves sideways only");
    expectNear(back(r->GetPoint(2)), {q.x, 50}, "right side moves sideways only");
}

TEST_F(TurnedRectangle, SideHandleTakesTheCornersValidityTest) {
    // Handle 5 is checked as corner 1: a mouse below the bottom edge (in the
    // upright frame) is refused although only x would change.
    const TArrMyPoint before = std::as_const(*r).Points();
    r->SetHotIndex(5);
    r->SizeChangeValue({}, mouseAt({150, 80}));
    EXPECT_EQ(std::as_const(*r).Points(), before);
}

TEST_F(TurnedRectangle, FlippingKeepsTheHandlesOnTheFigure) {
    r->FlipHoriz();
    EXPECT_NEAR(r->Angle(), -angle, 1e-6);
    for (int i = 0; i < 4; ++i) EXPECT_EQ(r->InWhichHot(MyPtToPt(r->GetPoint(i))), i);
    // The side middles still lie halfway between their corners.
    const TMyPoint mid{(r->GetPoint(0).x + r->GetPoint(1).x) / 2, (r->GetPoint(0).y + r->GetPoint(1).y) / 2};
    expectNear(r->GetPoint(4), mid, "top middle after the flip");
    r->FlipVert();
    EXPECT_NEAR(r->Angle(), angle, 1e-6);
    EXPECT_TRUE(r->IsFlipHorz());
    EXPECT_TRUE(r->IsFlipVert());
}

// ---- Drawing --------------------------------------------------------------------------------

TEST_F(Rectangle, DrawFillsInsideAndOutlinesAllFourEdges) {
    auto r = AddRect(cad, 10, 10, 30, 20);
    r->Pen()->SetColor(clRed);
    r->Brush()->SetColor(clBlue);
    const QImage image = cad.PaintToImage();
    EXPECT_EQ(InkBounds(image, clRed), Rect(10, 10, 31, 21));
    EXPECT_EQ(PixelAt(image, 20, 15), clBlue);
    EXPECT_EQ(PixelAt(image, 30, 20), clRed) << "the outline reaches the last corner";
    EXPECT_EQ(InkBounds(image, clBlue), Rect(11, 11, 30, 20));
}

TEST_F(Rectangle, GradientFillKeepsTheOutline) {
    auto r = AddRect(cad, 10, 10, 60, 40);
    r->Pen()->SetColor(clRed);
    r->Brush()->SetColor(clBlue);
    r->SetGradientStyle(gsLinearH);
    r->SetColorBegin(clWhite);
    r->SetColorEnd(clBlack);
    const QImage image = cad.PaintToImage();
    EXPECT_EQ(InkBounds(image, clRed), Rect(10, 10, 61, 41));
    EXPECT_EQ(CountPixels(image, clBlue), 0) << "the gradient replaces the brush";
    EXPECT_NE(PixelAt(image, 20, 25), PixelAt(image, 50, 25)) << "the colour runs across";
}

TEST_F(Rectangle, HotMarksOnCornersAndSidesButOnlyCornersWhileRotating) {
    auto r = AddRect(cad, 20, 20, 120, 80);
    cad.AddWorkingShapes(r);
    QImage image = cad.PaintToImage();
    EXPECT_EQ(PixelAt(image, 70, 20), clLime) << "top middle";
    EXPECT_EQ(PixelAt(image, 120, 50), clLime) << "right middle";
    EXPECT_EQ(PixelAt(image, 120, 80), clLime) << "corner";
    r->SetShowHorizontalSideHot(false);
    image = cad.PaintToImage();
    EXPECT_NE(PixelAt(image, 120, 50), clLime) << "hidden right middle";
    EXPECT_EQ(PixelAt(image, 70, 20), clLime);
    const int squareInk = CountPixels(image.copy(114, 74, 12, 12), clLime);
    cad.SetShapeTool(SpRotateSelecting);
    image = cad.PaintToImage();
    EXPECT_NE(PixelAt(image, 70, 20), clLime) << "no side marks while rotating";
    EXPECT_EQ(PixelAt(image, 120, 80), clLime) << "round corner marks";
    EXPECT_LT(CountPixels(image.copy(114, 74, 12, 12), clLime), squareInk) << "a circle covers less than the square";
}

TEST_F(Rectangle, EllipseHasSeventyThreePointsFirstAndLastEqual) {
    const TArrPoint pts = TMyEllipse::EllipsePoints(50, 50, 40, 20, 0);
    ASSERT_EQ(pts.size(), 73u);
    EXPECT_EQ(pts.front(), pts.back());
    EXPECT_EQ(pts[0], Point(50, 70)) << "t = 0: straight down";
    EXPECT_EQ(pts[18], Point(90, 50));
    EXPECT_EQ(pts[36], Point(50, 30));
    EXPECT_EQ(pts[54], Point(10, 50));
    const TArrPoint turned = TMyEllipse::EllipsePoints(50, 50, 40, 20, kPi / 2);
    EXPECT_EQ(turned[0], Point(30, 50)) << "a quarter turn clockwise";
    EXPECT_EQ(turned[18], Point(50, 90));
}

TEST_F(Rectangle, EllipseUsesTheUprightSizeAndTheZoom) {
    cad.SetZoom(2);
    auto e = AddRect<TMyEllipse>(cad, 10, 10, 50, 30);
    const TArrPoint z2 = e->OutlineInZoom();
    EXPECT_EQ(z2[0], Point(60, 60));
    EXPECT_EQ(z2[18], Point(100, 40));
    e->RotateChangeValueByAngle(kPi / 2);
    const TArrPoint turned = e->OutlineInZoom();
    EXPECT_EQ(turned[0], Point(40, 40)) << "the upright radii, turned: not the turned bounding box";
    EXPECT_EQ(turned[18], Point(60, 80));
}

TEST_F(Rectangle, EllipsePaintsInsideItsRectangle) {
    auto e = AddRect<TMyEllipse>(cad, 10, 10, 90, 50);
    e->Pen()->SetColor(clRed);
    e->Brush()->SetColor(clBlue);
    const QImage image = cad.PaintToImage();
    EXPECT_EQ(InkBounds(image, clRed), Rect(10, 10, 91, 51));
    EXPECT_EQ(PixelAt(image, 50, 30), clBlue);
    EXPECT_EQ(PixelAt(image, 12, 12), clWhite) << "the corners of the box stay empty";
    EXPECT_TRUE(e->IsClickedMe(nullptr, {12, 12})) << "a click in the box counts";
}

TEST_F(Rectangle, GroupDrawsOnlyItsCaption) {
    auto g = AddRect<TMyGroup>(cad, 10, 10, 90, 50);
    g->Pen()->SetColor(clRed);
    g->Brush()->SetColor(clBlue);
    QImage image = cad.PaintToImage();
    EXPECT_EQ(CountPixels(image, clRed) + CountPixels(image, clBlue), 0);
    g->SetInfo("Group caption");
    image = cad.PaintToImage();
    EXPECT_FALSE(InkBoundsExcept(image, clWhite) == TRect{}) << "the caption is drawn";
    EXPECT_GE(InkBoundsExcept(image, clWhite).top, 55) << "below the group, at its text point";
}

// Painting into the canvas's buffer writes upright rectangles and captured
// ellipses straight into the pixels: the result must be the rasteriser's,
// pixel for pixel, at every zoom, turn and brush.
TEST_F(Rectangle, DirectPaintingMatchesTheRasteriserPixelForPixel) {
    std::mt19937 rng(31);
    std::uniform_real_distribution<float> pos(0, 700), side(0, 70), unit(0, 1);
    const TColor colours[] = {clRed, clBlue, clGreen, clNavy, clYellow, clTeal};
    for (int i = 0; i < 400; ++i) {
        const float x = pos(rng), y = pos(rng), w = i % 10 == 0 ? float(i % 4) : side(rng), h = side(rng);
        TMyRectangle* s = unit(rng) < 0.5f ? AddRect(cad, x, y, x + w, y + h) : AddRect<TMyEllipse>(cad, x, y, x + w, y + h);
        s->Pen()->SetColor(colours[i % 6]);
        s->Brush()->SetColor(colours[(i + 2) % 6]);
        if (i % 7 == 0) s->Brush()->SetStyle(bsClear);
        if (i % 5 == 0) s->RotateChangeValueByAngle(unit(rng) * 3);
        if (i % 11 == 0) s->Pen()->SetWidth(3);  // not written directly
    }
    for (double zoom : {1.0, 1.7, 0.6}) {
        cad.SetZoom(zoom);
        shape_detail::setDirectPainting(false);
        const QImage expected = cad.PaintToImage();
        shape_detail::setDirectPainting(true);
        const QImage first = cad.PaintToImage();   // captures the ellipses
        const QImage second = cad.PaintToImage();  // writes the captures back
        ASSERT_EQ(DiffCount(first, expected), 0) << "zoom " << zoom;
        ASSERT_EQ(DiffCount(second, expected), 0) << "zoom " << zoom;
    }
    // A moved shape is captured again.
    TMyShape* moved = cad.GetShapeByNo(1);
    moved->DragChangeValuedxdy(13.5, -7.25);
    shape_detail::setDirectPainting(false);
    const QImage expected = cad.PaintToImage();
    shape_detail::setDirectPainting(true);
    EXPECT_EQ(DiffCount(cad.PaintToImage(), expected), 0);
}

// ---- Rubber bands -----------------------------------------------------------------------------

struct BandCase {
    const char* name;
    std::function<void(TMyRectangle*, TCanvas*)> draw;
};

class RectangleBands : public Rectangle, public ::testing::WithParamInterface<int> {};

TEST_P(RectangleBands, DrawnTwiceLeaveThePixelsUnchanged) {
    const std::vector<BandCase> bands = {
        {"Draging", [](TMyRectangle* s, TCanvas* c) { s->Draging(c, {50, 50}, {63, 41}); }},
        {"Drawing", [](TMyRectangle* s, TCanvas* c) { s->Drawing(c, {40, 40}, {150, 111}); }},
        {"Sizing", [](TMyRectangle* s, TCanvas* c) {
             s->SetHotIndex(2);
             s->Sizing(c, {140, 100}, {170, 130});
         }},
        {"Rotating", [](TMyRectangle* s, TCanvas* c) { s->Rotating(c, {140, 100}, {120, 140}); }},
    };
    const int kind = GetParam();
    TMyRectangle* shapes[] = {AddRect(cad, 40, 40, 140, 100), AddRect<TMyEllipse>(cad, 40, 40, 140, 100),
                              AddRect(cad, 40, 40, 140, 100)};
    shapes[2]->RotateChangeValueByAngle(0.5);
    TMyRectangle* s = shapes[kind];
    for (const BandCase& band : bands) {
        TBitmap bmp(200, 200, pf24bit);
        FillPattern(bmp);
        const QImage before = bmp.Image().copy();
        band.draw(s, bmp.Canvas());
        EXPECT_GT(DiffCount(bmp.Image(), before), 50) << band.name << " shows something";
        band.draw(s, bmp.Canvas());
        EXPECT_EQ(DiffCount(bmp.Image(), before), 0) << band.name << " erases itself";
    }
}

INSTANTIATE_TEST_SUITE_P(Shapes, RectangleBands, ::testing::Values(0, 1, 2));

TEST_F(Rectangle, SizingBandShowsTheSizedFigureAndLeavesTheShape) {
    auto r = AddRect(cad, 40, 40, 140, 100);
    r->SetHotIndex(2);
    auto bmp = FilledBitmap(200, 200, clBlack, pf24bit);
    r->Sizing(bmp->Canvas(), {140, 100}, {170, 130});
    const TRect ink = InkBoundsExcept(bmp->Image(), clBlack);
    EXPECT_EQ(ink, Rect(40, 40, 171, 131));
    EXPECT_EQ(r->GetPoint(2), (TMyPoint{140, 100}));
}

// ---- Information ---------------------------------------------------------------------------

TEST_F(Rectangle, InfoAndLengthsInTheCanvasUnit) {
    auto r = AddRect(cad, 0, 0, 96, 48);
    EXPECT_EQ(r->GetInfo(), QString::fromUtf8("Rectangle: width 25.40 mm, height 12.70 mm, angle 0.0°"));
    EXPECT_NEAR(r->GetLengthByUnit(), 76.2, 1e-4);
    cad.SetUnit(inch);
    EXPECT_NEAR(r->GetLengthByUnit(), 3.0, 1e-6);
    cad.SetUnit(cm);
    cad.SetRatio(2);
    EXPECT_NEAR(r->GetLengthByUnit(), 3.81, 1e-6) << "divided by the ratio";
    cad.SetRatio(1);
    cad.SetUnit(pixel);
    r->RotateChangeValueByAngle(-kPi / 6);
    EXPECT_EQ(r->GetInfo(), QString::fromUtf8("Rectangle: width 96.00 px, height 48.00 px, angle 330.0°"))
        << "the upright size and the turn";
    cad.SetZoom(3);
    EXPECT_NEAR(r->GetLengthByUnit(), 288, 1e-3) << "lengths do not change with the zoom";
}

TEST_F(Rectangle, EllipseAndGroupInfo) {
    auto e = AddRect<TMyEllipse>(cad, 0, 0, 96, 96);
    EXPECT_EQ(e->GetInfo(), QString::fromUtf8("Ellipse: axes 25.40 mm x 25.40 mm, angle 0.0°"));
    EXPECT_NEAR(e->GetLengthByUnit(), kPi * 25.4, 1e-3) << "a circle's circumference";
    auto g = AddRect<TMyCombine>(cad, 0, 0, 96, 48);
    EXPECT_TRUE(g->GetInfo().startsWith("Combine: width 25.40 mm")) << g->GetInfo().toStdString();
}

}  // namespace
