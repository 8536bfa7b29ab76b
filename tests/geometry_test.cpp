// Geometry helpers: half-to-even rounding, angle directions and normalisation in
// the y-down clockwise system, intersection special cases, arrow-wing geometry,
// elbow routes and the bounds of point-array editing.
#include "cad/geometry/geometry.h"
#include "platform/system.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

using namespace faroven;

namespace {

constexpr double kPi = std::numbers::pi;

TMyPoint P(float x, float y) { return MyPoint(x, y); }

// ---- Conversions -------------------------------------------------------------

TEST(Conversions, MyPtToPtRoundsHalvesToEven) {
    EXPECT_EQ(MyPtToPt(P(2.5f, 3.5f)), Point(2, 4));
    EXPECT_EQ(MyPtToPt(P(-0.5f, 0.5f)), Point(0, 0));
    EXPECT_EQ(MyPtToPt(P(-1.5f, -2.5f)), Point(-2, -2));
    EXPECT_EQ(MyPtToPt(P(2.4999f, 2.5001f)), Point(2, 3));
}

TEST(Conversions, MyRectToRectRoundsEachValueLikePoints) {
    EXPECT_EQ(myRecttoRect(TMyRect{0.5f, 1.5f, 2.5f, -3.5f}), Rect(0, 2, 2, -4));
}

TEST(Conversions, PtToARectNormalisesAnyCornerOrder) {
    const TRect expected = Rect(1, 2, 10, 20);
    EXPECT_EQ(PtToARect(Point(1, 2), Point(10, 20)), expected);
    EXPECT_EQ(PtToARect(Point(10, 20), Point(1, 2)), expected);
    EXPECT_EQ(PtToARect(Point(1, 20), Point(10, 2)), expected);
    EXPECT_EQ(PtToARect(Point(10, 2), Point(1, 20)), expected);
}

TEST(Conversions, ExpandRectGrowsEverySideAndKeepsTheRectOnOverflow) {
    EXPECT_EQ(ExpandRect(Rect(10, 10, 20, 30), 4), Rect(6, 6, 24, 34));
    EXPECT_EQ(ExpandRect(Rect(10, 10, 20, 30), -2), Rect(12, 12, 18, 28));
    const TRect edge = Rect(0, 0, std::numeric_limits<int>::max() - 1, 5);
    EXPECT_EQ(ExpandRect(edge, 8), edge);
}

TEST(Conversions, OffsetMyRectMovesHorizontalAndVerticalEdgesSeparately) {
    TMyRect r{1, 2, 3, 4};
    OffsetMyRect(r, 10, -0.5L);
    EXPECT_EQ(r, (TMyRect{11, 1.5f, 13, 3.5f}));
}

TEST(Conversions, GetPointsLTRBIsTheBoundingBox) {
    EXPECT_EQ(GetPointsLTRB({P(5, -1), P(-3, 7), P(2, 2)}), (TMyRect{-3, -1, 5, 7}));
    // A single point gives a degenerate rectangle at that point.
    EXPECT_EQ(GetPointsLTRB({P(4.5f, 6)}), (TMyRect{4.5f, 6, 4.5f, 6}));
    // An empty array gives the empty rectangle instead of reading past the end.
    EXPECT_EQ(GetPointsLTRB({}), TMyRect{});
}

TEST(Conversions, AppendSpacePadsToOneMoreThanN) {
    EXPECT_EQ(AppendSpace("ab", 5), QString("ab    "));
    EXPECT_EQ(AppendSpace("abcde", 5), QString("abcde "));
    EXPECT_EQ(AppendSpace("", 0), QString(" "));
    EXPECT_EQ(AppendSpace("abcdef", 5), QString("abcdef"));
    EXPECT_EQ(AppendSpace("ab", -3), QString("ab"));
}

TEST(Conversions, DeltasAreSecondMinusFirst) {
    float fx = 0, fy = 0;
    GetMyPointDelta(P(1, 5), P(4, 1), fx, fy);
    EXPECT_EQ(fx, 3);
    EXPECT_EQ(fy, -4);
    GetPointDeltaF(Point(-2, 3), Point(5, -7), fx, fy);
    EXPECT_EQ(fx, 7);
    EXPECT_EQ(fy, -10);
    int ix = 0, iy = 0;
    GetPointDelta(Point(-2, 3), Point(5, -7), ix, iy);
    EXPECT_EQ(ix, 7);
    EXPECT_EQ(iy, -10);
    // Extreme pixel values wrap instead of overflowing.
    GetPointDelta(Point(std::numeric_limits<int>::min(), 0), Point(std::numeric_limits<int>::max(), 0), ix, iy);
    EXPECT_EQ(ix, -1);
}

// ---- Distances and angles -----------------------------------------------------

TEST(Angles, LengthIsEuclidean) {
    EXPECT_FLOAT_EQ(GetLengthinPixel(P(1, 1), P(4, 5)), 5.0f);
    EXPECT_EQ(GetLengthinPixel(P(3, 3), P(3, 3)), 0.0f);
}

TEST(Angles, QuadrantOfEqualCoordinatesIsMinusOne) {
    EXPECT_EQ(PointInQuadrantX(P(0, 0), P(1, 0)), 1);
    EXPECT_EQ(PointInQuadrantX(P(0, 0), P(-1, 0)), -1);
    EXPECT_EQ(PointInQuadrantX(P(0, 0), P(0, 9)), -1);
    EXPECT_EQ(PointInQuadrantY(P(0, 0), P(0, 1)), 1);
    EXPECT_EQ(PointInQuadrantY(P(0, 0), P(9, 0)), -1);
}

TEST(Angles, SlopeAngleOfTheAxesInTheYDownSystem) {
    const TMyPoint p1 = P(10, 10);
    EXPECT_NEAR(double(GetSlopeAngle(p1, P(0, 10))), 0.0, 1e-12);             // p2 left
    EXPECT_NEAR(double(GetSlopeAngle(p1, P(10, 0))), kPi / 2, 1e-12);         // p2 above
    EXPECT_NEAR(double(GetSlopeAngle(p1, P(20, 10))), kPi, 1e-12);            // p2 right
    EXPECT_NEAR(double(GetSlopeAngle(p1, P(10, 20))), 3 * kPi / 2, 1e-12);    // p2 below
    EXPECT_NEAR(double(GetSlopeAngle(p1, p1)), kPi / 2, 1e-12);               // equal points
    // The diagonals: every quadrant, always in [0, 2 pi).
    EXPECT_NEAR(double(GetSlopeAngle(p1, P(0, 0))), kPi / 4, 1e-6);
    EXPECT_NEAR(double(GetSlopeAngle(p1, P(20, 0))), 3 * kPi / 4, 1e-6);
    EXPECT_NEAR(double(GetSlopeAngle(p1, P(20, 20))), 5 * kPi / 4, 1e-6);
    EXPECT_NEAR(double(GetSlopeAngle(p1, P(0, 20))), 7 * kPi / 4, 1e-6);
}

TEST(Angles, RecaclinDegAboveAndBelowTheTurn) {
    struct Case {
        int in, out;
    };
    for (const Case c : {Case{720, 0}, Case{360, 360}, Case{-361, 719}, Case{-360, -360}, Case{361, 1},
                         Case{1079, 359}, Case{-720, 720}, Case{0, 0}, Case{-45, -45}}) {
        int a = c.in;
        RecaclinDeg(a);
        EXPECT_EQ(a, c.out) << "from " << c.in;
    }
}

TEST(Angles, RecaclinDegStaysFastAtTheExtremes) {
    int lowest = std::numeric_limits<int>::min();
    RecaclinDeg(lowest);
    EXPECT_GT(lowest, 360);
    EXPECT_LE(lowest, 720);
    int highest = std::numeric_limits<int>::max();
    RecaclinDeg(highest);
    EXPECT_EQ(highest, std::numeric_limits<int>::max() % 360);
}

TEST(Angles, RecaclinRadBringsWholeTurnsBack) {
    // Whole turns come off above 2 pi and go on below -2 pi; the bounds stay.
    const std::pair<double, double> cases[] = {{7, 7 - 2 * kPi},    {2 * kPi, 2 * kPi}, {-2 * kPi, -2 * kPi},
                                               {13, 13 - 4 * kPi}, {-7, -7 + 2 * kPi}, {3, 3}};
    for (const auto& [in, out] : cases) {
        float a = float(in);
        RecaclinRad(a);
        EXPECT_NEAR(a, out, 1e-5) << "from " << in;
    }
}

TEST(Angles, RecaclinRadSurvivesValuesAFileCanHold) {
    float a = 1e30f;
    RecaclinRad(a);
    EXPECT_GE(a, 0.0f);
    EXPECT_LT(a, float(2 * kPi));
    a = -3e7f;
    RecaclinRad(a);
    EXPECT_LE(a, 0.0f);
    EXPECT_GT(a, float(-2 * kPi));
    a = std::numeric_limits<float>::infinity();
    RecaclinRad(a);
    EXPECT_TRUE(std::isinf(a));
    a = std::numeric_limits<float>::quiet_NaN();
    RecaclinRad(a);
    EXPECT_TRUE(std::isnan(a));
}

TEST(Angles, RotateAPointTurnsClockwiseOnTheScreen) {
    const TMyPoint c = P(10, 10);
    // Right of the centre, a quarter turn brings it below (y grows downwards).
    const TMyPoint q = RotateAPoint(P(20, 10), c, float(kPi / 2));
    EXPECT_NEAR(q.x, 10, 1e-5);
    EXPECT_NEAR(q.y, 20, 1e-5);
    const TMyPoint h = RotateAPoint(P(20, 15), c, float(kPi));
    EXPECT_NEAR(h.x, 0, 1e-5);
    EXPECT_NEAR(h.y, 5, 1e-5);
    // Turning back restores the point and the distance to the centre is kept.
    const TMyPoint p = P(-3.25f, 41.5f);
    const TMyPoint r = RotateAPoint(p, c, 0.7f);
    EXPECT_NEAR(GetLengthinPixel(r, c), GetLengthinPixel(p, c), 1e-4);
    const TMyPoint back = RotateAPoint(r, c, -0.7f);
    EXPECT_NEAR(back.x, p.x, 1e-4);
    EXPECT_NEAR(back.y, p.y, 1e-4);
}

TEST(Position, RelativeTestsIncludeTheirBounds) {
    const TMyPoint ref = P(5, 5);
    EXPECT_TRUE(IsAtLeftTop(ref, P(4, 4)));
    EXPECT_FALSE(IsAtLeftTop(ref, P(6, 4)));
    EXPECT_TRUE(IsAtRightTop(ref, P(6, 4)));
    EXPECT_FALSE(IsAtRightTop(ref, P(6, 6)));
    EXPECT_TRUE(IsAtRightBottom(ref, P(6, 6)));
    EXPECT_FALSE(IsAtRightBottom(ref, P(4, 6)));
    EXPECT_TRUE(IsAtLeftBottom(ref, P(4, 6)));
    EXPECT_FALSE(IsAtLeftBottom(ref, P(4, 4)));
    // On the reference point every test holds.
    EXPECT_TRUE(IsAtLeftTop(ref, ref) && IsAtRightTop(ref, ref) && IsAtRightBottom(ref, ref) &&
                IsAtLeftBottom(ref, ref));
}

// ---- Intersection ---------------------------------------------------------------

TEST(Intersection, SlopedLinesMeetWithoutAMessage) {
    test::MessageRecorder recorder;
    // Line A through p1 and p3, line B through p2 and p4.
    const TMyPoint x = Getintersection(P(0, 0), P(0, 10), P(10, 10), P(10, 0));
    EXPECT_NEAR(x.x, 5, 1e-5);
    EXPECT_NEAR(x.y, 5, 1e-5);
    const TMyPoint y = Getintersection(P(0, 1), P(0, 8), P(4, 3), P(6, 2));
    // A: y = 1 + x/2; B: y = 8 - x.
    EXPECT_NEAR(y.x, 14.0 / 3, 1e-5);
    EXPECT_NEAR(y.y, 1 + 7.0 / 3, 1e-5);
    EXPECT_TRUE(recorder.messages.isEmpty());
}

TEST(Intersection, OneVerticalLine) {
    test::MessageRecorder recorder;
    // A vertical at x = 4; B: y = 2x + 1.
    const TMyPoint a = Getintersection(P(4, 0), P(0, 1), P(4, 50), P(1, 3));
    EXPECT_NEAR(a.x, 4, 1e-6);
    EXPECT_NEAR(a.y, 9, 1e-5);
    // B vertical at x = -2; A: y = -x + 3.
    const TMyPoint b = Getintersection(P(0, 3), P(-2, 7), P(1, 2), P(-2, -7));
    EXPECT_NEAR(b.x, -2, 1e-6);
    EXPECT_NEAR(b.y, 5, 1e-5);
    EXPECT_TRUE(recorder.messages.isEmpty());
}

TEST(Intersection, TwoVerticalOrTwoHorizontalLinesGiveHalfTheDifference) {
    test::MessageRecorder recorder;
    // Both vertical: (x1, (y3 - y1) / 2), not the mean of anything.
    const TMyPoint v = Getintersection(P(3, 6), P(8, 0), P(3, 30), P(8, 5));
    EXPECT_EQ(v, P(3, 12));
    // Both horizontal: ((x3 - x1) / 2, y1).
    const TMyPoint h = Getintersection(P(4, 4), P(0, 9), P(30, 4), P(5, 9));
    EXPECT_EQ(h, P(13, 4));
    EXPECT_TRUE(recorder.messages.isEmpty());
}

TEST(Intersection, ParallelSlopedLinesShowErrorOnceAndGiveANonFinitePoint) {
    test::MessageRecorder recorder;
    const TMyPoint p = Getintersection(P(0, 0), P(0, 5), P(10, 10), P(10, 15));
    EXPECT_EQ(recorder.messages, QStringList{"error"});
    EXPECT_FALSE(std::isfinite(p.x) && std::isfinite(p.y));
}

// ---- Arrow wings and split points -----------------------------------------------

// The angle at tip between the wing end and the direction towards the other point.
double wingAngle(const TMyPoint& tip, const TMyPoint& towards, float wx, float wy) {
    const double ax = double(wx) - tip.x, ay = double(wy) - tip.y;
    const double bx = double(towards.x) - tip.x, by = double(towards.y) - tip.y;
    return std::acos((ax * bx + ay * by) / (std::hypot(ax, ay) * std::hypot(bx, by)));
}

TEST(Triangle, WingsStraightBelowTheTip) {
    const TMyRect w = GetTriangle(P(0, 0), P(0, 100), float(kPi / 6), 20);
    EXPECT_NEAR(w.left, -10, 1e-4);
    EXPECT_NEAR(w.top, 20 * std::cos(kPi / 6), 1e-4);
    EXPECT_NEAR(w.right, 10, 1e-4);
    EXPECT_NEAR(w.bottom, 20 * std::cos(kPi / 6), 1e-4);
}

TEST(Triangle, EachWingIsLengthAwayAndHalfAngleOffTheLineInEveryDirection) {
    const TMyPoint tip = P(50, 40);
    const float half = float(kPi / 9);
    for (int deg = 5; deg < 360; deg += 20) {
        const double r = deg * kPi / 180;
        const TMyPoint towards = P(float(tip.x + 80 * std::cos(r)), float(tip.y + 80 * std::sin(r)));
        const TMyRect w = GetTriangle(tip, towards, half, 30);
        EXPECT_NEAR(GetLengthinPixel(tip, P(w.left, w.top)), 30, 1e-3) << deg;
        EXPECT_NEAR(GetLengthinPixel(tip, P(w.right, w.bottom)), 30, 1e-3) << deg;
        EXPECT_NEAR(wingAngle(tip, towards, w.left, w.top), half, 1e-4) << deg;
        EXPECT_NEAR(wingAngle(tip, towards, w.right, w.bottom), half, 1e-4) << deg;
        // The two wings lie on opposite sides of the line.
        const double bx = towards.x - tip.x, by = towards.y - tip.y;
        const double s1 = bx * (w.top - tip.y) - by * (w.left - tip.x);
        const double s2 = bx * (w.bottom - tip.y) - by * (w.right - tip.x);
        EXPECT_LT(s1 * s2, 0) << deg;
    }
}

TEST(Triangle, SplitLineGivesOnePointTwiceAtDistanceD) {
    for (const TMyPoint to : {P(30, 40), P(-30, 40), P(30, -40), P(-30, -40)}) {
        const TMyRect s = SplitLine(P(0, 0), to, 10);
        EXPECT_NEAR(s.left, to.x / 5, 1e-4);
        EXPECT_NEAR(s.top, to.y / 5, 1e-4);
        EXPECT_EQ(s.left, s.right);
        EXPECT_EQ(s.top, s.bottom);
    }
    // Horizontal: pi/2 taken in single precision leaves y off by a hair only.
    const TMyRect h = SplitLine(P(0, 0), P(-20, 0), 4);
    EXPECT_NEAR(h.left, -4, 1e-5);
    EXPECT_NEAR(h.top, 0, 1e-5);
    EXPECT_EQ(h.left, h.right);
}

// ---- Elbow routes -----------------------------------------------------------------

TEST(ElbowRoute, VerticalStartDirectionsRunHorizontallyFirst) {
    for (const Tdirections start : {dTop, dbottom, dNone}) {
        TArrDirAndPoints route;
        GetElbowRoute(P(0, 0), P(10, 20), route, start);
        EXPECT_EQ(route, (TArrDirAndPoints{{dRight, P(10, 0)}, {dbottom, P(10, 20)}})) << int(start);
        GetElbowRoute(P(10, 20), P(0, 0), route, start);
        EXPECT_EQ(route, (TArrDirAndPoints{{dLeft, P(0, 20)}, {dTop, P(0, 0)}})) << int(start);
    }
}

TEST(ElbowRoute, HorizontalStartDirectionsRunVerticallyFirst) {
    for (const Tdirections start : {dLeft, dRight}) {
        TArrDirAndPoints route;
        GetElbowRoute(P(0, 0), P(10, 20), route, start);
        EXPECT_EQ(route, (TArrDirAndPoints{{dbottom, P(0, 20)}, {dRight, P(10, 20)}})) << int(start);
        GetElbowRoute(P(10, 20), P(0, 0), route, start);
        EXPECT_EQ(route, (TArrDirAndPoints{{dTop, P(10, 0)}, {dLeft, P(0, 0)}})) << int(start);
    }
}

TEST(ElbowRoute, AlignedPointsTakeOneLegAndCoincidentPointsNone) {
    TArrDirAndPoints route{{dLeft, P(1, 1)}, {dTop, P(2, 2)}, {dRight, P(3, 3)}};
    GetElbowRoute(P(5, 5), P(5, 1), route, dTop);
    EXPECT_EQ(route, (TArrDirAndPoints{{dTop, P(5, 1)}}));
    GetElbowRoute(P(5, 5), P(9, 5), route, dLeft);
    EXPECT_EQ(route, (TArrDirAndPoints{{dRight, P(9, 5)}}));
    GetElbowRoute(P(5, 5), P(5, 5), route, dRight);
    EXPECT_TRUE(route.empty());
    route.push_back({dLeft, P(0, 0)});
    GetElbowRoute(P(0, 0), P(5, 5), route, Tdirections(9));
    EXPECT_TRUE(route.empty());
}

// ---- Point arrays ---------------------------------------------------------------

TEST(PointArrays, InsertBeforeIdAcceptsFirstToLastIndexOnly) {
    TArrMyPoint arr{P(1, 1), P(2, 2), P(3, 3)};
    const TArrMyPoint original = arr;
    EXPECT_FALSE(InsertAPointBeforeId(P(9, 9), 3, arr));
    EXPECT_FALSE(InsertAPointBeforeId(P(9, 9), -1, arr));
    EXPECT_EQ(arr, original);
    EXPECT_TRUE(InsertAPointBeforeId(P(0, 0), 0, arr));
    EXPECT_EQ(arr, (TArrMyPoint{P(0, 0), P(1, 1), P(2, 2), P(3, 3)}));
    EXPECT_TRUE(InsertAPointBeforeId(P(7, 7), 3, arr));
    EXPECT_EQ(arr, (TArrMyPoint{P(0, 0), P(1, 1), P(2, 2), P(7, 7), P(3, 3)}));
    TArrMyPoint empty;
    EXPECT_FALSE(InsertAPointBeforeId(P(1, 1), 0, empty));
    EXPECT_TRUE(empty.empty());
}

TEST(PointArrays, InsertBeforeIdOfIntegerPointsFollowsTheSameBounds) {
    TArrPoint arr{Point(1, 1), Point(2, 2)};
    EXPECT_FALSE(InsertAPointBeforeId1(Point(9, 9), 2, arr));
    EXPECT_FALSE(InsertAPointBeforeId1(Point(9, 9), -5, arr));
    EXPECT_TRUE(InsertAPointBeforeId1(Point(5, 5), 1, arr));
    EXPECT_EQ(arr, (TArrPoint{Point(1, 1), Point(5, 5), Point(2, 2)}));
}

TEST(PointArrays, AppendRemoveAndExistence) {
    TArrMyPoint arr;
    EXPECT_FALSE(IsExistPt(0, arr));
    EXPECT_TRUE(AppendAPoint(P(1, 1), arr));
    EXPECT_TRUE(AppendAPoint(P(2, 2), arr));
    EXPECT_TRUE(AppendAPoint(P(3, 3), arr));
    EXPECT_TRUE(IsExistPt(2, arr));
    EXPECT_FALSE(IsExistPt(3, arr));
    EXPECT_FALSE(IsExistPt(-1, arr));
    RemovePoint(3, arr);
    RemovePoint(-1, arr);
    EXPECT_EQ(arr.size(), 3u);
    RemovePoint(1, arr);
    EXPECT_EQ(arr, (TArrMyPoint{P(1, 1), P(3, 3)}));
    RemovePoint(1, arr);
    RemovePoint(0, arr);
    EXPECT_TRUE(arr.empty());
    const TArrPoint ints{Point(0, 0)};
    EXPECT_TRUE(IsExistPt1(0, ints));
    EXPECT_FALSE(IsExistPt1(1, ints));
    EXPECT_FALSE(IsExistPt1(-1, ints));
}

// ---- Platform probes -------------------------------------------------------------

TEST(Probes, BlackWhitePrinterMeansExactlyTwoColours) {
    TPrinter* printer = Printer();
    const int saved = printer->NumColors();
    printer->SetNumColors(2);
    EXPECT_TRUE(IsBlackWhitePrinter());
    printer->SetNumColors(256);
    EXPECT_FALSE(IsBlackWhitePrinter());
    printer->SetNumColors(saved);
}

}  // namespace
