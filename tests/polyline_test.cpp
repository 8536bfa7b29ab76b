// Polylines, polygons and free lines: double-click and HotSize finishing
// rules (strict distances, the duplicate removed, the polygon closed on point
// 0), points appended in the canvas's coordinate modes, polygon hits equal to
// the polygon region pixel for pixel, coupled first and last points when
// sizing, and measures in the canvas unit.
#include "cad/canvas/mycad.h"
#include "cad/geometry/geometry.h"
#include "cad/shapes/polyline.h"
#include "support/pixels.h"
#include "support/shapes.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

#include <numbers>
#include <random>
#include <utility>

using namespace faroven;
using namespace faroven::test;

namespace {

class Polyline : public ::testing::Test {
protected:
    void SetUp() override { cad.GridOperation()->SetGridShow(false); }
    TMyCAD cad;
};

// ---- Finishing --------------------------------------------------------------------------------

TEST_F(Polyline, DoubleClickFinishesAndKeepsOneCopyOfThePoint) {
    TMyPolyLine p(&cad);
    for (TPoint q : {TPoint{10, 10}, TPoint{50, 50}, TPoint{90, 10}}) {
        p.AddPointByMouse(q);
        EXPECT_FALSE(p.IsDrawingFinished(mbLeft, q));
    }
    p.AddPointByMouse({90, 10});
    EXPECT_TRUE(p.IsDrawingFinished(mbRight, {90, 10})) << "the button is not consulted";
    ASSERT_EQ(p.GetPointsCount(), 3);
    EXPECT_EQ(p.GetPoint(2), (TMyPoint{90, 10}));
}

TEST_F(Polyline, TwoPointsNeverFinishEvenOnADoubleClick) {
    TMyPolyLine p(&cad);
    p.AddPointByMouse({10, 10});
    p.AddPointByMouse({10, 10});
    EXPECT_FALSE(p.IsDrawingFinished(mbLeft, {10, 10}));
    EXPECT_EQ(p.GetPointsCount(), 2);
}

TEST_F(Polyline, FinishingComparesTheZoomedPoints) {
    cad.SetZoom(2);
    TMyPolyLine p(&cad);
    for (TPoint q : {TPoint{10, 10}, TPoint{50, 50}, TPoint{91, 10}}) p.AddPointByMouse(q);
    p.AddPointByMouse({92, 10});
    EXPECT_FALSE(p.IsDrawingFinished(mbLeft, {92, 10})) << "one pixel apart";
    EXPECT_EQ(p.GetPointsCount(), 4);
    p.AddPointByMouse({92, 10});
    EXPECT_TRUE(p.IsDrawingFinished(mbLeft, {92, 10}));
    EXPECT_EQ(p.GetPointsCount(), 4);
}

TEST_F(Polyline, StartsWithoutArrowsWhateverTheCanvasSays) {
    cad.SetArrowStyle(ADouble);
    TMyPolyLine p(&cad);
    EXPECT_EQ(p.ArrowStyle(), ANone);
    TMyLine l(&cad);
    EXPECT_EQ(l.ArrowStyle(), ADouble);
    EXPECT_TRUE(p.inherits("faroven::TMyLine"));
}

class PolygonClosing : public Polyline, public ::testing::WithParamInterface<double> {
protected:
    // Three corners and the point that follows the mouse, at the zoom.
    TMyPolygon* start(TPoint mouse) {
        cad.SetZoom(GetParam());
        auto p = new TMyPolygon(&cad);
        owned.reset(p);
        for (TPoint q : {TPoint{20, 20}, TPoint{120, 20}, TPoint{120, 120}, mouse}) p->AddPointByMouse(q);
        return p;
    }
    std::unique_ptr<TMyPolygon> owned;
};

INSTANTIATE_TEST_SUITE_P(Zooms, PolygonClosing, ::testing::Values(1.0, 2.0, 0.5));

TEST_P(PolygonClosing, WithinHotSizeOfTheStartClosesOnIt) {
    const int h = cad.HotSize();
    for (TPoint mouse : {TPoint{20 + h - 1, 20 + h - 1}, TPoint{20 - h + 1, 20}, TPoint{20, 20}}) {
        TMyPolygon* p = start(mouse);
        EXPECT_TRUE(p->IsDrawingFinished(mbLeft, mouse)) << mouse.x << "," << mouse.y;
        ASSERT_EQ(p->GetPointsCount(), 4);
        EXPECT_EQ(p->GetPoint(3), p->GetPoint(0)) << "the last point lies on point 0";
    }
}

TEST_P(PolygonClosing, ExactlyHotSizeAwayDoesNotClose) {
    const int h = cad.HotSize();
    for (TPoint mouse : {TPoint{20 + h, 20}, TPoint{20, 20 - h}, TPoint{20 + h, 20 + h}}) {
        TMyPolygon* p = start(mouse);
        EXPECT_FALSE(p->IsDrawingFinished(mbLeft, mouse)) << mouse.x << "," << mouse.y;
        EXPECT_EQ(p->GetPointsCount(), 4);
        EXPECT_NE(p->GetPoint(3), p->GetPoint(0));
    }
}

TEST_P(PolygonClosing, RepeatedClickClosesOnTheStartToo) {
    TMyPolygon* p = start({121, 118});
    EXPECT_TRUE(p->IsDrawingFinished(mbLeft, {121, 118}));
    EXPECT_EQ(p->GetPointsCount(), 4);
    EXPECT_EQ(p->GetPoint(3), p->GetPoint(0));
}

TEST_F(Polyline, PolygonOfThreePointsNeverFinishes) {
    TMyPolygon p(&cad);
    for (TPoint q : {TPoint{20, 20}, TPoint{120, 20}, TPoint{20, 21}}) p.AddPointByMouse(q);
    EXPECT_FALSE(p.IsDrawingFinished(mbLeft, {20, 21}));
    EXPECT_FALSE(p.IsDrawingFinished(mbLeft, {20, 20}));
}

TEST_F(Polyline, FreeLineIsFinishedFromTwoPoints) {
    TMyFreeLine f(&cad);
    f.AddPointByMouse({1, 1});
    EXPECT_FALSE(f.IsDrawingFinished(mbLeft, {1, 1}));
    f.AddPointByMouse({2, 3});
    EXPECT_TRUE(f.IsDrawingFinished(mbLeft, {2, 3}));
    EXPECT_EQ(f.GetPointsCount(), 2);
}

// ---- Points by code --------------------------------------------------------------------------

TEST_F(Polyline, AppendPointFollowsTheCoordinateMode) {
    cad.SetBounds(0, 0, 300, 400);
    cad.SetZoom(2);  // the point is stored as given, not divided by the zoom
    cad.SetBounds(0, 0, 300, 400);
    const std::pair<TXYMode, TMyPoint> cases[] = {
        {Mode0, {10, 30}}, {Mode1, {10, 370}}, {Mode2, {290, 370}}, {Mode3, {290, 30}}};
    for (const auto& [mode, expected] : cases) {
        cad.SetXYMode(mode);
        TMyPolyLine p(&cad);
        p.AppendPoint({10, 30});
        ASSERT_EQ(p.GetPointsCount(), 1);
        EXPECT_EQ(p.GetPoint(0), expected) << "mode " << int(mode);
    }
}

// ---- Polygons -----------------------------------------------------------------------------------

TEST_F(Polyline, PolygonHitsAreItsRegionPixelForPixel) {
    std::mt19937 rng(7);
    std::uniform_int_distribution<int> coord(0, 60);
    for (double zoom : {1.0, 1.5}) {
        cad.SetZoom(zoom);
        for (int shape = 0; shape < 12; ++shape) {
            auto p = new TMyPolygon(&cad);
            const int corners = 3 + shape % 5;
            for (int i = 0; i < corners; ++i) p->AddPoint({float(coord(rng)), float(coord(rng))});
            if (shape % 3 == 0) p->AddPoint(p->GetPoint(0));  // closed like a finished polygon
            cad.AddNewShape(p);
            TArrPoint outline;
            for (int i = 0; i < p->GetPointsCount(); ++i) outline.push_back(MyPtToPt(p->GetPointInZoom(i)));
            const QRegion region = CreatePolygonRgn(outline);
            for (int y = -1; y <= 92; ++y)
                for (int x = -1; x <= 92; ++x)
                    ASSERT_EQ(p->IsClickedMe(nullptr, {x, y}), PtInRegion(region, x, y))
                        << "shape " << shape << " zoom " << zoom << " at " << x << "," << y;
        }
    }
}

TEST_F(Polyline, DiagonalEdgesFollowTheRegionRule) {
    auto p = AddShape<TMyPolygon>(cad, {{0, 0}, {40, 40}, {0, 40}});
    const QRegion region = CreatePolygonRgn(TArrPoint{{0, 0}, {40, 40}, {0, 40}});
    for (int i = 0; i < 40; ++i) {
        EXPECT_EQ(p->IsClickedMe(nullptr, {i, i}), PtInRegion(region, i, i)) << "on the diagonal at " << i;
        EXPECT_TRUE(p->IsClickedMe(nullptr, {i, i + 1}) || i == 39);
        EXPECT_FALSE(p->IsClickedMe(nullptr, {i + 1, i})) << "no tolerance band";
    }
}

TEST_F(Polyline, PolygonSizingMovesPointZeroAndTheLastTogether) {
    auto p = AddShape<TMyPolygon>(cad, {{0, 0}, {100, 0}, {100, 100}, {0, 100}, {0, 0}});
    p->SetHotIndex(0);
    p->SizeChangeValue({0, 0}, {10, -5});
    EXPECT_EQ(p->GetPoint(0), (TMyPoint{10, -5}));
    EXPECT_EQ(p->GetPoint(4), (TMyPoint{10, -5}));
    p->SetHotIndex(4);
    p->SizeChangeValue({10, -5}, {0, 0});
    EXPECT_EQ(p->GetPoint(0), (TMyPoint{0, 0}));
    EXPECT_EQ(p->GetPoint(4), (TMyPoint{0, 0}));
    p->SetHotIndex(2);
    p->SizeChangeValue({100, 100}, {140, 120});
    EXPECT_EQ(p->GetPoint(2), (TMyPoint{140, 120}));
    EXPECT_EQ(p->GetPoint(0), (TMyPoint{0, 0}));
}

// Sizing stores the centre of the first four points only (a simplification
// kept on purpose), and that stored centre is the one the polygon turns about.
TEST_F(Polyline, PolygonSizingStoresTheCentreOfTheFirstFourPoints) {
    auto p = AddShape<TMyPolygon>(cad, {{0, 0}, {100, 0}, {100, 100}, {0, 100}, {-60, 50}, {0, 0}});
    p->SetHotIndex(2);
    p->SizeChangeValue({100, 100}, {140, 120});
    EXPECT_EQ(p->CenterPoint(), (TMyPoint{70, 60}));
    EXPECT_EQ(p->GetCenterPoint(), (TMyPoint{70, 60})) << "not the middle of all the points, (40, 60)";
    p->RotateChangeValueByAngle(std::numbers::pi);
    EXPECT_NEAR(p->GetPoint(2).x, 0, 1e-4);
    EXPECT_NEAR(p->GetPoint(2).y, 0, 1e-4);
}

TEST_F(Polyline, PolygonSizingFollowsTheMouseAtZoom) {
    cad.SetZoom(2);
    auto p = AddShape<TMyPolygon>(cad, {{0, 0}, {100, 0}, {100, 100}});
    p->SetHotIndex(1);
    p->SizeChangeValue({200, 0}, {220, 10});
    EXPECT_EQ(p->GetPoint(1), (TMyPoint{110, 5}));
}

TEST_F(Polyline, PolygonDrawsAClosedFilledFigure) {
    auto p = AddShape<TMyPolygon>(cad, {{10, 10}, {90, 10}, {90, 60}});
    p->Pen()->SetColor(clRed);
    p->Brush()->SetColor(clBlue);
    const QImage image = cad.PaintToImage();
    const TRect ink = InkBounds(image, clRed);
    EXPECT_EQ(ink.left, 10);
    EXPECT_EQ(ink.top, 10);
    EXPECT_EQ(ink.right, 91);
    EXPECT_GE(ink.bottom, 60);
    EXPECT_EQ(PixelAt(image, 80, 20), clBlue);
    EXPECT_EQ(PixelAt(image, 20, 50), clWhite);
    EXPECT_EQ(PixelAt(image, 50, 35), clRed) << "the closing edge is drawn";
}

TEST_F(Polyline, PolylineDrawsOpenSegmentsOnly) {
    auto p = AddShape<TMyPolyLine>(cad, {{10, 10}, {90, 10}, {90, 60}});
    p->Pen()->SetColor(clRed);
    p->Brush()->SetColor(clBlue);
    const QImage image = cad.PaintToImage();
    EXPECT_EQ(CountPixels(image, clBlue), 0) << "not filled";
    EXPECT_NE(PixelAt(image, 50, 35), clRed) << "no closing edge";
    EXPECT_EQ(PixelAt(image, 50, 10), clRed);
    EXPECT_TRUE(p->IsClickedMe(nullptr, {93, 30}));
    EXPECT_FALSE(p->IsClickedMe(nullptr, {60, 30}));
}

TEST_F(Polyline, RubberBandsDrawnTwiceLeaveThePixelsUnchanged) {
    auto polygon = AddShape<TMyPolygon>(cad, {{30, 40}, {150, 50}, {120, 160}, {40, 120}, {30, 40}});
    auto polyline = AddShape<TMyPolyLine>(cad, {{30, 40}, {150, 50}, {120, 160}});
    auto free = AddShape<TMyFreeLine>(cad, {{30, 40}, {33, 45}, {40, 47}, {60, 80}});
    for (TMyLine* s : std::initializer_list<TMyLine*>{polygon, polyline, free}) {
        s->SetHotIndex(0);
        const std::vector<std::pair<const char*, std::function<void(TCanvas*)>>> bands = {
            {"Draging", [&](TCanvas* c) { s->Draging(c, {50, 50}, {61, 43}); }},
            {"Sizing", [&](TCanvas* c) { s->Sizing(c, {30, 40}, {10, 70}); }},
            {"Rotating", [&](TCanvas* c) { s->Rotating(c, {150, 50}, {120, 150}); }},
        };
        for (const auto& [name, draw] : bands) {
            TBitmap bmp(200, 200, pf24bit);
            FillPattern(bmp);
            const QImage before = bmp.Image().copy();
            draw(bmp.Canvas());
            EXPECT_GT(DiffCount(bmp.Image(), before), 20) << s->metaObject()->className() << " " << name;
            draw(bmp.Canvas());
            EXPECT_EQ(DiffCount(bmp.Image(), before), 0) << s->metaObject()->className() << " " << name;
        }
    }
}

TEST_F(Polyline, FreeLineDrawsTheNewestPieceWithItsOwnPen) {
    TMyFreeLine f(&cad);
    f.Pen()->SetColor(clRed);
    TBitmap bmp(100, 100, pf24bit);
    f.Drawing(bmp.Canvas(), {10, 10}, {60, 10});
    EXPECT_EQ(PixelAt(bmp, 30, 10), clRed);
    f.Drawing(bmp.Canvas(), {10, 10}, {60, 10});
    EXPECT_EQ(PixelAt(bmp, 30, 10), clRed) << "drawn in copy mode: it stays";
}

// ---- Measures --------------------------------------------------------------------------------------

TEST_F(Polyline, MeasuresInTheCanvasUnit) {
    auto square = AddShape<TMyPolygon>(cad, {{0, 0}, {96, 0}, {96, 96}, {0, 96}, {0, 0}});
    EXPECT_EQ(square->GetInfo(), QString::fromUtf8("Polygon: 4 points, perimeter 101.60 mm, area 645.16 mm²"));
    EXPECT_NEAR(square->GetLengthByUnit(), 101.6, 1e-4);
    EXPECT_NEAR(square->GetAreaByUnit(), 645.16, 1e-3);
    auto open = AddShape<TMyPolygon>(cad, {{0, 0}, {96, 0}, {96, 96}, {0, 96}});
    EXPECT_NEAR(open->GetLengthByUnit(), 101.6, 1e-4) << "an unclosed polygon is measured closed";
    auto poly = AddShape<TMyPolyLine>(cad, {{0, 0}, {96, 0}, {96, 96}});
    cad.SetUnit(inch);
    EXPECT_NEAR(poly->GetLengthByUnit(), 2.0, 1e-9);
    EXPECT_EQ(poly->GetInfo(), QString::fromUtf8("Polyline: 3 points, length 2.00 in, angle 45.0°"));
    auto free = AddShape<TMyFreeLine>(cad, {{0, 0}, {48, 0}});
    EXPECT_TRUE(free->GetInfo().startsWith("Freehand line: length 0.50 in")) << free->GetInfo().toStdString();
}

}  // namespace
