// Arcs by three points: the circle and its DXF angles, the elliptic quarter
// against the exporter's rational form, pixels of the three styles, the hit
// band and the filled inside, bounds that hold the bulge, and turns.
#include "cad/canvas/mycad.h"
#include "cad/shapes/arc.h"
#include "support/shapes.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

using namespace faroven;
using namespace faroven::test;

namespace {

constexpr double kPi = std::numbers::pi;

TEST(ArcGeometry, RadiusAndCounterClockwiseAnglesThroughThreePoints) {
    const float d = float(10 / std::sqrt(2.0));
    double r = 0, a1 = 0, a2 = 0;
    // y points down: (0, -10) is straight up, at 90 degrees.
    ASSERT_TRUE(ArcRadiusAndAngles({10, 0}, {d, -d}, {0, -10}, r, a1, a2));
    EXPECT_NEAR(r, 10, 1e-4);
    EXPECT_NEAR(a1, 0, 1e-3);
    EXPECT_NEAR(a2, 90, 1e-3);
    // The same arc given the other way round starts at the same angle.
    ASSERT_TRUE(ArcRadiusAndAngles({0, -10}, {d, -d}, {10, 0}, r, a1, a2));
    EXPECT_NEAR(a1, 0, 1e-3);
    EXPECT_NEAR(a2, 90, 1e-3);
    // Across angle 0: from 315 to 45 degrees.
    ASSERT_TRUE(ArcRadiusAndAngles({100 + d, 50 + d}, {110, 50}, {100 + d, 50 - d}, r, a1, a2));
    EXPECT_NEAR(a1, 315, 1e-3);
    EXPECT_NEAR(a2, 45, 1e-3);
    // The long way round: through the point opposite.
    ASSERT_TRUE(ArcRadiusAndAngles({10, 0}, {-10, 0}, {0, -10}, r, a1, a2));
    EXPECT_NEAR(a1, 90, 1e-3);
    EXPECT_NEAR(a2, 0, 1e-3);
    r = -1;
    EXPECT_FALSE(ArcRadiusAndAngles({0, 0}, {5, 5}, {10, 10}, r, a1, a2));
    EXPECT_EQ(r, -1);
}

TEST(ArcGeometry, EllipticQuarterIsTheExportersRationalCurve) {
    const TMyPoint p0{10, 80}, p1{70, 90}, p2{60, 20};
    TMyPoint centre;
    const TArrMyPoint curve = ArcCurve({p0, p1, p2}, amEllipse, 2, centre);
    EXPECT_EQ(centre, (TMyPoint{0, 10}));
    const double ax = p0.x - 2.0 * p1.x + 2.0 * p2.x, ay = p0.y - 2.0 * p1.y + 2.0 * p2.y;
    const double bx = -2.0 * p0.x + 2.0 * p1.x, by = -2.0 * p0.y + 2.0 * p1.y;
    const size_t n = curve.size() - 1;
    for (size_t i = 0; i <= n; ++i) {
        const double t = std::tan(kPi / 4 * double(i) / double(n));  // the curve's parameter, half its angle
        EXPECT_NEAR(curve[i].x, (ax * t * t + bx * t + p0.x) / (t * t + 1), 1e-3) << i;
        EXPECT_NEAR(curve[i].y, (ay * t * t + by * t + p0.y) / (t * t + 1), 1e-3) << i;
    }
}

class Arc : public ::testing::Test {
protected:
    void SetUp() override { cad.GridOperation()->SetGridShow(false); }
    // The upper half of the circle of radius 40 about (100, 100).
    TMyElliArc* half(TArcStyle style) {
        auto a = AddShape<TMyElliArc>(cad, {{60, 100}, {100, 60}, {140, 100}});
        a->SetArcStyle(style);
        a->Pen()->SetColor(clRed);
        a->Brush()->SetColor(clBlue);
        return a;
    }
    TMyCAD cad;
};

TEST_F(Arc, StylesDrawTheCurveAndFillChordsAndSectors) {
    TMyElliArc* a = half(asArc);
    QImage image = cad.PaintToImage();
    EXPECT_EQ(PixelAt(image, 100, 60), clRed) << "the top of the arc";
    EXPECT_EQ(InkBounds(image, clRed), Rect(60, 60, 141, 101));
    EXPECT_EQ(PixelAt(image, 100, 80), clWhite) << "an open arc is not filled";
    EXPECT_NE(PixelAt(image, 80, 100), clRed) << "nor closed";
    a->SetArcStyle(asChord);
    image = cad.PaintToImage();
    EXPECT_EQ(PixelAt(image, 100, 80), clBlue);
    EXPECT_EQ(PixelAt(image, 80, 100), clRed) << "the chord";
    EXPECT_EQ(PixelAt(image, 100, 120), clWhite);
    // The upper left quarter as a sector, closed through the centre.
    a->SetPoint(1, {71.72f, 71.72f});
    a->SetPoint(2, {100, 60});
    a->SetArcStyle(asSector);
    image = cad.PaintToImage();
    EXPECT_EQ(PixelAt(image, 80, 100), clRed) << "the radius to the start";
    EXPECT_EQ(PixelAt(image, 100, 80), clRed) << "the radius to the end";
    EXPECT_EQ(PixelAt(image, 85, 85), clBlue);
    EXPECT_EQ(PixelAt(image, 115, 85), clWhite) << "the upper right quarter";
}

TEST_F(Arc, HitBandAroundTheCurveAndInsideClosedFigures) {
    TMyElliArc* a = half(asArc);
    EXPECT_TRUE(a->IsClickedMe(nullptr, {100, 52}));
    EXPECT_TRUE(a->IsClickedMe(nullptr, {100, 68}));
    EXPECT_FALSE(a->IsClickedMe(nullptr, {100, 51}));
    EXPECT_FALSE(a->IsClickedMe(nullptr, {100, 80})) << "inside an open arc";
    a->SetArcStyle(asChord);
    EXPECT_TRUE(a->IsClickedMe(nullptr, {100, 80}));
    EXPECT_FALSE(a->IsClickedMe(nullptr, {100, 115}));
    EXPECT_EQ(a->InWhichHot({103, 57}), 1);
    EXPECT_EQ(a->InWhichHot({100, 80}), -1);
}

TEST_F(Arc, BoundsHoldTheBulgeBeyondThePoints) {
    // Three points close together on the right of a big circle: the arc runs
    // round the far side.
    auto a = AddShape<TMyElliArc>(cad, {{150, 100}, {50, 100}, {148, 110}});
    a->Pen()->SetColor(clRed);
    a->Pen()->SetWidth(3);
    const QImage image = cad.PaintToImage();
    const TRect ink = InkBounds(image, clRed);
    const TRect paint = a->GetPaintBoundsInZoom();
    EXPECT_LT(ink.left, 55);
    EXPECT_TRUE(paint.left <= ink.left && paint.top <= ink.top && paint.right >= ink.right && paint.bottom >= ink.bottom);
    EXPECT_TRUE(a->IsClickedMe(nullptr, {50, 100}));
    EXPECT_EQ(cad.GetShapeAtPoint({50, 100}), a) << "the canvas looks that far";
}

TEST_F(Arc, TurnsAndMirrorsAboutTheCircleCentre) {
    TMyElliArc* a = half(asArc);
    EXPECT_EQ(a->GetCenterPoint(), (TMyPoint{100, 100}));
    a->RotateChangeValueByAngle(kPi / 2);  // a quarter turn clockwise on screen
    double r, a1, a2;
    ASSERT_TRUE(ArcRadiusAndAngles(a->GetPoint(0), a->GetPoint(1), a->GetPoint(2), r, a1, a2));
    EXPECT_NEAR(r, 40, 1e-3);
    EXPECT_NEAR(a1, 270, 1e-3) << "the right half now";
    EXPECT_NEAR(a2, 90, 1e-3);
    a->FlipHoriz();
    ASSERT_TRUE(ArcRadiusAndAngles(a->GetPoint(0), a->GetPoint(1), a->GetPoint(2), r, a1, a2));
    EXPECT_NEAR(a1, 90, 1e-3) << "and the left half after mirroring";
    EXPECT_NEAR(a2, 270, 1e-3);
    EXPECT_EQ(a->GetCenterPoint(), (TMyPoint{100, 100}));

    TMyElliArc copy(&cad);
    a->SetArcMode(amEllipse);
    a->SetArcStyle(asSector);
    copy.Assign(a);
    EXPECT_EQ(copy.ArcMode(), amEllipse);
    EXPECT_EQ(copy.ArcStyle(), asSector);
}

}  // namespace
