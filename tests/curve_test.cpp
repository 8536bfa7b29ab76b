// Bézier chains and B-lines: the drawn pixels follow the curve and not its
// control polygon, the hit band surrounds the curve, handles and their marks,
// anchors carrying their handles, the spline's ends and hull, exclusive-or
// rubber bands, arrow heads along the end tangents and lengths along the curve.
#include "cad/canvas/mycad.h"
#include "cad/geometry/markers.h"
#include "cad/shapes/curve.h"
#include "support/pixels.h"
#include "support/shapes.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <numbers>
#include <random>
#include <utility>

using namespace faroven;
using namespace faroven::test;

namespace {

class Curve : public ::testing::Test {
protected:
    void SetUp() override { cad.GridOperation()->SetGridShow(false); }
    // An arch from (20, 80) up to its apex (60, 35) and down to (100, 80).
    TMyPolyBezier* arch() {
        auto b = AddShape<TMyPolyBezier>(cad, {{20, 80}, {20, 20}, {100, 20}, {100, 80}});
        b->Pen()->SetColor(clRed);
        return b;
    }
    TMyCAD cad;
};

TEST_F(Curve, DrawsTheCurveNotTheControlPolygon) {
    arch();
    const QImage image = cad.PaintToImage();
    EXPECT_EQ(PixelAt(image, 60, 35), clRed) << Ascii(image, clRed);
    for (TPoint p : {TPoint{20, 20}, TPoint{100, 20}, TPoint{60, 20}, TPoint{20, 50}})
        EXPECT_NE(PixelAt(image, p.x, p.y), clRed) << p.x << "," << p.y;
    const TRect ink = InkBounds(image, clRed);
    EXPECT_EQ(ink.top, 35);
    EXPECT_EQ(ink.left, 20);
}

TEST_F(Curve, HitBandIsEightPixelsAroundTheCurve) {
    auto b = arch();
    for (double zoom : {1.0, 2.0}) {
        cad.SetZoom(zoom);
        const int apex = int(35 * zoom), x = int(60 * zoom);
        EXPECT_TRUE(b->IsClickedMe(nullptr, {x, apex - 8}));
        EXPECT_TRUE(b->IsClickedMe(nullptr, {x, apex + 8}));
        EXPECT_FALSE(b->IsClickedMe(nullptr, {x, apex - 9})) << "zoom " << zoom;
        EXPECT_FALSE(b->IsClickedMe(nullptr, {x, apex + 9}));
        EXPECT_FALSE(b->IsClickedMe(nullptr, {int(20 * zoom), int(20 * zoom)})) << "a control point is no part of the curve";
        EXPECT_FALSE(b->IsClickedMe(nullptr, {x, int(20 * zoom)}));
    }
}

TEST_F(Curve, HandlesAreEveryPointAndTheLastMatchWins) {
    auto b = AddShape<TMyPolyBezier>(cad, {{20, 80}, {20, 20}, {100, 60}, {100, 60}, {140, 60}, {160, 20}, {160, 80}});
    EXPECT_EQ(b->InWhichHot({20, 80}), 0);
    EXPECT_EQ(b->InWhichHot({21, 19}), 1);
    EXPECT_EQ(b->InWhichHot({100, 60}), 3) << "handle 2 lies under anchor 3";
    EXPECT_EQ(b->InWhichHot({60, 60}), -1);
    const auto bmp = FilledBitmap(200, 100, clWhite);
    b->DrawHot(bmp->Canvas());
    const int h = cad.HotSize();
    EXPECT_EQ(PixelAt(*bmp, 20 - h, 80 - h), clBlack) << "anchors are squares";
    EXPECT_EQ(PixelAt(*bmp, 20, 20), HotColor()) << "handles are hot marks";
    EXPECT_EQ(PixelAt(*bmp, 20 - h, 20 - h), clWhite) << "handles are round";
    EXPECT_EQ(PixelAt(*bmp, 20, 50), clGray) << "a handle is joined to its anchor";
    EXPECT_EQ(PixelAt(*bmp, 160, 50), clGray);
    EXPECT_EQ(PixelAt(*bmp, 60, 70), clWhite) << "anchors are not joined";
}

TEST_F(Curve, AnAnchorCarriesItsHandlesAndAHandleMovesAlone) {
    cad.SetZoom(2);
    auto b = AddShape<TMyPolyBezier>(cad, {{0, 0}, {10, 0}, {20, 10}, {30, 10}, {40, 10}, {50, 0}, {60, 0}});
    b->SetHotIndex(3);
    b->SizeChangeValue({60, 20}, {70, 30});
    const TArrMyPoint carried{{0, 0}, {10, 0}, {25, 15}, {35, 15}, {45, 15}, {50, 0}, {60, 0}};
    EXPECT_EQ(std::as_const(*b).Points(), carried);
    EXPECT_EQ(b->CenterPoint(), (TMyPoint{30, 7.5f}));
    b->SetHotIndex(4);
    b->SizeChangeValue({90, 30}, {100, 0});
    EXPECT_EQ(b->GetPoint(4), (TMyPoint{50, 0}));
    EXPECT_EQ(b->GetPoint(3), (TMyPoint{35, 15})) << "its anchor stays";
}

TEST_F(Curve, DrawingFinishesOnADoubleClickAndCompletesTheChain) {
    TMyPolyBezier b(&cad);
    for (TPoint q : {TPoint{10, 10}, TPoint{20, 40}, TPoint{50, 40}, TPoint{60, 10}}) {
        b.AddPointByMouse(q);
        EXPECT_FALSE(b.IsDrawingFinished(mbLeft, q));
    }
    b.AddPointByMouse({60, 10});
    EXPECT_TRUE(b.IsDrawingFinished(mbLeft, {60, 10}));
    EXPECT_EQ(b.GetPointsCount(), 4);
    for (TPoint q : {TPoint{80, 30}, TPoint{90, 30}, TPoint{90, 30}}) b.AddPointByMouse(q);
    EXPECT_TRUE(b.IsDrawingFinished(mbLeft, {90, 30}));
    const TArrMyPoint chain{{10, 10}, {20, 40}, {50, 40}, {60, 10}, {80, 30}, {90, 30}, {90, 30}};
    EXPECT_EQ(std::as_const(b).Points(), chain) << "the last point is repeated up to 3k + 1";
}

TEST_F(Curve, BLinePassesThroughItsEndsAndStaysInsideItsControlHull) {
    std::mt19937 rng(3);
    std::uniform_real_distribution<double> turn(0.1, 0.6);
    for (int count = 2; count <= 9; ++count) {
        // Points on a circle in order: the hull is the polygon through them.
        TArrMyPoint pts;
        double a = 0;
        for (int i = 0; i < count; ++i, a += turn(rng)) pts.push_back({float(100 + 90 * std::cos(a)), float(100 + 90 * std::sin(a))});
        TMyBLine s(&cad);
        s.SetPoints(pts);
        const TArrPoint curve = s.CurveInZoom();
        ASSERT_FALSE(curve.empty());
        EXPECT_EQ(curve.front(), MyPtToPt(pts.front()));
        EXPECT_EQ(curve.back(), MyPtToPt(pts.back()));
        for (const TPoint& p : curve)
            for (int i = 0; i < count; ++i) {
                const TMyPoint u = pts[size_t(i)], v = pts[size_t((i + 1) % count)];
                const double side = (double(v.x) - u.x) * (p.y - u.y) - (double(v.y) - u.y) * (p.x - u.x);
                ASSERT_GE(side / std::hypot(v.x - u.x, v.y - u.y), -0.75) << count << " points, at " << p.x << "," << p.y;
            }
    }
}

TEST_F(Curve, RubberBandsDrawnTwiceLeaveThePixelsUnchanged) {
    auto bezier = AddShape<TMyPolyBezier>(cad, {{30, 40}, {150, 50}, {120, 160}, {40, 120}});
    auto bline = AddShape<TMyBLine>(cad, {{30, 40}, {150, 50}, {120, 160}, {40, 120}, {20, 180}});
    bline->SetDrawingFlag(true);
    for (TMyLine* s : std::initializer_list<TMyLine*>{bezier, bline}) {
        s->SetHotIndex(0);
        const std::vector<std::function<void(TCanvas*)>> bands = {
            [&](TCanvas* c) { s->Drawing(c, {40, 120}, {180, 190}); },
            [&](TCanvas* c) { s->Draging(c, {50, 50}, {61, 43}); },
            [&](TCanvas* c) { s->Sizing(c, {30, 40}, {10, 70}); },
            [&](TCanvas* c) { s->Rotating(c, {150, 50}, {120, 150}); },
        };
        for (size_t i = 0; i < bands.size(); ++i) {
            TBitmap bmp(200, 200, pf24bit);
            FillPattern(bmp);
            const QImage before = bmp.Image().copy();
            bands[i](bmp.Canvas());
            EXPECT_GT(DiffCount(bmp.Image(), before), 60) << s->metaObject()->className() << " band " << i;
            bands[i](bmp.Canvas());
            EXPECT_EQ(DiffCount(bmp.Image(), before), 0) << s->metaObject()->className() << " band " << i;
        }
    }
    // With the flag lowered the B-line shows only the segment to the mouse.
    TBitmap spline(200, 200, pf24bit), segment(200, 200, pf24bit);
    bline->Drawing(spline.Canvas(), {20, 180}, {180, 190});
    bline->SetDrawingFlag(false);
    bline->Drawing(segment.Canvas(), {20, 180}, {180, 190});
    EXPECT_GT(DiffCount(spline.Image(), segment.Image()), 100);
}

TEST_F(Curve, ArrowHeadsFollowTheEndTangentsInsideThePaintBox) {
    auto b = arch();
    b->SetArrowStyle(ADouble);
    const QImage image = cad.PaintToImage();
    EXPECT_EQ(PixelAt(image, 102, 58), clRed) << "the head stands on the vertical end tangent";
    EXPECT_EQ(PixelAt(image, 18, 58), clRed);
    const TRect ink = InkBounds(image, clRed), box = b->GetPaintBoundsInZoom();
    EXPECT_TRUE(ink.left >= box.left && ink.top >= box.top && ink.right <= box.right && ink.bottom <= box.bottom);
}

TEST_F(Curve, LengthIsMeasuredAlongTheCurve) {
    auto straight = AddShape<TMyPolyBezier>(cad, {{0, 0}, {10, 0}, {90, 0}, {96, 0}});
    EXPECT_NEAR(straight->GetLengthByUnit(), 25.4, 1e-4);
    // The usual Bézier quarter circle of radius 96 is within 0.03 % of pi / 2 * 96.
    const float k = 96 * 0.5523f;
    auto quarter = AddShape<TMyPolyBezier>(cad, {{96, 0}, {96, k}, {k, 96}, {0, 96}});
    EXPECT_NEAR(quarter->GetLengthByUnit(), 25.4 * std::numbers::pi / 2, 0.015);
    EXPECT_TRUE(quarter->GetInfo().contains("length 39.90 mm")) << quarter->GetInfo().toStdString();
    auto bline = AddShape<TMyBLine>(cad, {{0, 0}, {48, 0}, {96, 0}});
    EXPECT_NEAR(bline->GetLengthByUnit(), 25.4, 1e-4);
}

}  // namespace
