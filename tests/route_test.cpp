// Connector routing: every orthogonal route is valid (axis-parallel, from point
// to point, perpendicular first and last legs), stays out of its own boxes and
// of the obstacles whenever a way round exists, keeps its side of an obstacle
// under small moves, and the straight style ends on the shapes' outlines.
#include "cad/geometry/route.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

using namespace faroven;

namespace {

constexpr float kMargin = 10;

TMyRect Grown(const TMyRect& r, float by) { return {r.left - by, r.top - by, r.right + by, r.bottom + by}; }
TMyPoint Outward(Tdirections side) {
    const TMyPoint v[4] = {{-1, 0}, {0, 1}, {1, 0}, {0, -1}};  // dLeft, dbottom, dRight, dTop
    return side == dNone ? TMyPoint{} : v[side];
}

// An end at fraction f along a side of the box (0.5: the middle).
TRouteEnd OnSide(const TMyRect& b, Tdirections side, float f = 0.5f) {
    const float x = b.left + (b.right - b.left) * f, y = b.top + (b.bottom - b.top) * f;
    const TMyPoint p[4] = {{b.left, y}, {x, b.bottom}, {b.right, y}, {x, b.top}};
    return {p[side], side, b};
}

// Whether the axis-parallel segment passes through the open rectangle.
bool Meets(TMyPoint p, TMyPoint q, const TMyRect& r) {
    return std::min(p.x, q.x) < r.right && std::max(p.x, q.x) > r.left && std::min(p.y, q.y) < r.bottom &&
           std::max(p.y, q.y) > r.top && (p.x == q.x ? p.x > r.left && p.x < r.right : p.y > r.top && p.y < r.bottom);
}
bool MeetsAny(const TArrMyPoint& route, const TMyRect& r) {
    for (size_t i = 1; i < route.size(); ++i)
        if (Meets(route[i - 1], route[i], r)) return true;
    return false;
}

int Bends(const TArrMyPoint& r) { return std::max(int(r.size()) - 2, 0); }

// The invariants of every route; legs out of a side run at least minLeg.
::testing::AssertionResult IsValid(const TArrMyPoint& r, const TRouteEnd& from, const TRouteEnd& to, float minLeg) {
    auto fail = [&](const char* what) {
        auto f = ::testing::AssertionFailure() << what << " in";
        for (TMyPoint p : r) f << " (" << p.x << "," << p.y << ")";
        return f;
    };
    if (r.size() < 2 || r.front() != from.point || r.back() != to.point) return fail("wrong ends");
    for (size_t i = 1; i < r.size(); ++i) {
        if ((r[i].x == r[i - 1].x) == (r[i].y == r[i - 1].y)) return fail("slanted or empty segment");
        if (std::count(r.begin(), r.end(), r[i]) != 1) return fail("repeated point");
        if (i >= 2 && (r[i].x == r[i - 2].x || r[i].y == r[i - 2].y)) return fail("straight or reversing point");
    }
    auto leg = [](TMyPoint p, TMyPoint q, TMyPoint dir) {
        return (q.x - p.x) * dir.x + (q.y - p.y) * dir.y;  // signed length along dir
    };
    const TMyPoint out = Outward(from.side), in = Outward(to.side);
    if (from.side != dNone && leg(r[0], r[1], out) < std::max(minLeg, 1e-3f)) return fail("first leg");
    if (to.side != dNone && leg(r.back(), r[r.size() - 2], in) < std::max(minLeg, 1e-3f)) return fail("last leg");
    return ::testing::AssertionSuccess();
}

// -1 when the route passes the box above it, +1 below, 0 when it does not pass.
int PassingSide(const TArrMyPoint& r, const TMyRect& box) {
    const float cx = (box.left + box.right) / 2;
    for (size_t i = 1; i < r.size(); ++i)
        if (r[i].y == r[i - 1].y && std::min(r[i].x, r[i - 1].x) <= cx && std::max(r[i].x, r[i - 1].x) >= cx)
            return r[i].y < box.top ? -1 : r[i].y > box.bottom ? 1 : 0;
    return 0;
}

// Largest distance from a vertex of a to the polyline b.
float Departure(const TArrMyPoint& a, const TArrMyPoint& b) {
    float worst = 0;
    for (TMyPoint p : a) {
        float best = INFINITY;
        for (size_t i = 1; i < b.size(); ++i) {
            const float x = std::clamp(p.x, std::min(b[i].x, b[i - 1].x), std::max(b[i].x, b[i - 1].x));
            const float y = std::clamp(p.y, std::min(b[i].y, b[i - 1].y), std::max(b[i].y, b[i - 1].y));
            best = std::min(best, std::hypot(p.x - x, p.y - y));
        }
        worst = std::max(worst, best);
    }
    return worst;
}

const TMyRect kA{0, 0, 60, 60}, kB{300, 0, 360, 60}, kMid{150, 10, 210, 50};

TEST(RouteOrthogonal, EverySidePairLeavesAndEntersPerpendicularOutsideItsOwnBoxes) {
    const TMyRect b{200, 90, 260, 150};
    for (Tdirections s1 : {dLeft, dbottom, dRight, dTop})
        for (Tdirections s2 : {dLeft, dbottom, dRight, dTop}) {
            const TRouteEnd from = OnSide(kA, s1), to = OnSide(b, s2);
            const TArrMyPoint r = RouteOrthogonal(from, to, {});
            SCOPED_TRACE(testing::Message() << "sides " << int(s1) << " " << int(s2));
            EXPECT_TRUE(IsValid(r, from, to, kMargin));
            EXPECT_FALSE(MeetsAny(r, kA) || MeetsAny(r, b));
            EXPECT_LE(Bends(r), 4);
        }
}

TEST(RouteOrthogonal, FacingSidesTakeAStraightLineOrOneStepHalfway) {
    EXPECT_EQ(RouteOrthogonal(OnSide(kA, dRight), OnSide(kB, dLeft), {}), (TArrMyPoint{{60, 30}, {300, 30}}));
    const TMyRect low{200, 100, 260, 160};
    const TArrMyPoint r = RouteOrthogonal(OnSide(kA, dRight), OnSide(low, dLeft), {});
    ASSERT_EQ(Bends(r), 2);
    EXPECT_EQ(r[1].x, 130);  // halfway between the two sides
    // Sides facing each other closer than two margins: one short step.
    const TRouteEnd near = OnSide(TMyRect{65, 40, 100, 80}, dLeft);
    const TArrMyPoint s = RouteOrthogonal(OnSide(kA, dRight), near, {});
    EXPECT_TRUE(IsValid(s, OnSide(kA, dRight), near, 0));
    EXPECT_EQ(Bends(s), 2);
}

TEST(RouteOrthogonal, GoesRoundAnObstacleBetweenTheEndsUnlessTold) {
    const TRouteEnd from = OnSide(kA, dRight), to = OnSide(kB, dLeft);
    const TArrMyPoint r = RouteOrthogonal(from, to, {kMid, kA, kB});
    EXPECT_TRUE(IsValid(r, from, to, kMargin));
    EXPECT_FALSE(MeetsAny(r, Grown(kMid, kMargin / 2)));
    EXPECT_NE(PassingSide(r, kMid), 0);
    EXPECT_EQ(Bends(r), 4);
    TRouteOptions through;
    through.avoidObstacles = false;
    EXPECT_EQ(RouteOrthogonal(from, to, {kMid}, through).size(), 2u);
}

TEST(RouteOrthogonal, EnclosedOrDegenerateEndsStillGiveValidRoutes) {
    // A ring of touching boxes round the start: no way out, a route anyway.
    const std::vector<TMyRect> ring{{-40, -40, 100, -20}, {-40, 80, 100, 100}, {-40, -20, -20, 80}, {80, -20, 100, 80}};
    for (Tdirections side : {dLeft, dbottom, dRight, dTop}) {
        const TRouteEnd from = OnSide(kA, side), to = OnSide(kB, dTop);
        EXPECT_TRUE(IsValid(RouteOrthogonal(from, to, ring), from, to, kMargin));
    }
    // Ends a few units apart: one elbow, legs shorter than the margin.
    const TRouteEnd right = OnSide(kA, dRight), top{{65, 35}, dTop, {63, 35, 90, 70}};
    const TArrMyPoint elbow = RouteOrthogonal(right, top, {});
    EXPECT_EQ(elbow, (TArrMyPoint{{60, 30}, {65, 30}, {65, 35}}));
    // Free ends and coincident points.
    const TRouteEnd freeA{{0, 0}}, freeB{{100, 50}};
    EXPECT_EQ(Bends(RouteOrthogonal(freeA, freeB, {})), 1);
    EXPECT_TRUE(IsValid(RouteOrthogonal(freeA, freeB, {{40, -30, 60, 80}}), freeA, freeB, 0));
    EXPECT_EQ(RouteOrthogonal(right, TRouteEnd{right.point, dLeft, kB}, {}), TArrMyPoint{right.point});
}

TEST(RouteOrthogonal, RandomScenesGiveValidRoutesThatAvoidObstaclesWhenAWayExists) {
    for (unsigned seed = 0; seed < 300; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 rng(seed);
        auto uni = [&](float lo, float hi) { return std::uniform_real_distribution<float>(lo, hi)(rng); };
        const auto side = [&] { return Tdirections(rng() % 4); };
        // One box per cell of a lattice, at least two margins from the cell's
        // borders: channels wide enough to go round everything.
        std::vector<TMyRect> boxes;
        for (int cx = 0; cx < 5; ++cx)
            for (int cy = 0; cy < 4; ++cy)
                if (rng() % 10 < 7)
                    boxes.push_back({cx * 120 + uni(20, 50), cy * 120 + uni(20, 50), cx * 120 + uni(70, 100),
                                     cy * 120 + uni(70, 100)});
        if (boxes.size() < 2) continue;
        const size_t i0 = rng() % boxes.size(), i1 = (i0 + 1 + rng() % (boxes.size() - 1)) % boxes.size();
        const TRouteEnd from = OnSide(boxes[i0], side(), uni(0.1f, 0.9f));
        const TRouteEnd to = OnSide(boxes[i1], side(), uni(0.1f, 0.9f));
        const TArrMyPoint r = RouteOrthogonal(from, to, boxes);
        // Only a plain elbow or step may have a leg shorter than the margin.
        ASSERT_TRUE(IsValid(r, from, to, Bends(r) <= 2 ? 0 : kMargin));
        for (size_t i = 0; i < boxes.size(); ++i)
            ASSERT_FALSE(MeetsAny(r, i == i0 || i == i1 ? boxes[i] : Grown(boxes[i], kMargin / 2))) << "box " << i;

        // Overlapping boxes, free ends, ends inside boxes: still valid.
        std::vector<TMyRect> heap;
        for (int i = 0, n = 5 + int(rng() % 20); i < n; ++i) {
            const float x = uni(0, 500), y = uni(0, 300);
            heap.push_back({x, y, x + uni(5, 120), y + uni(5, 120)});
        }
        const TRouteEnd a = rng() % 4 ? OnSide(heap[0], side(), uni(0, 1)) : TRouteEnd{{uni(0, 600), uni(0, 400)}};
        const TRouteEnd b = rng() % 4 ? OnSide(heap[1], side(), uni(0, 1)) : TRouteEnd{{uni(0, 600), uni(0, 400)}};
        ASSERT_TRUE(IsValid(RouteOrthogonal(a, b, heap), a, b, 0));
    }
}

TEST(RouteOrthogonal, SmallMovesWithThePreviousRouteKeepTheSideOfAnObstacle) {
    const TRouteEnd from = OnSide(kA, dRight);
    TArrMyPoint route = RouteOrthogonal(from, OnSide(kB, dLeft), {kMid});
    const int side = PassingSide(route, kMid);
    ASSERT_NE(side, 0);
    // Moving the end box away from the side taken makes the other side cheaper.
    float offset = 0;
    TRouteEnd to = OnSide(kB, dLeft);
    for (float step : {1, 2, 3, 4, 5, 5}) {
        offset -= side * step;
        to = OnSide(TMyRect{kB.left, kB.top + offset, kB.right, kB.bottom + offset}, dLeft);
        TRouteOptions options;
        options.previous = &route;
        const TArrMyPoint next = RouteOrthogonal(from, to, {kMid}, options);
        ASSERT_TRUE(IsValid(next, from, to, kMargin));
        EXPECT_EQ(PassingSide(next, kMid), side) << "offset " << offset;
        EXPECT_LE(Departure(next, route), step);
        route = next;
    }
    EXPECT_EQ(PassingSide(RouteOrthogonal(from, to, {kMid}), kMid), -side) << "without the previous route";
    // Blocking the old way moves the route to the other side after all.
    const TMyRect wall{100, side < 0 ? -200.0f : 50.0f, 260, side < 0 ? 10.0f : 260.0f};
    TRouteOptions options;
    options.previous = &route;
    EXPECT_EQ(PassingSide(RouteOrthogonal(from, to, {kMid, wall}, options), kMid), -side);
}

TEST(RouteGeometry, SideOfBoxIsTheNearestSide) {
    const TMyRect box{0, 0, 100, 50};
    EXPECT_EQ(SideOfBox(box, {0, 20}), dLeft);
    EXPECT_EQ(SideOfBox(box, {60, 52}), dbottom);
    EXPECT_EQ(SideOfBox(box, {97, 25}), dRight);
    EXPECT_EQ(SideOfBox(box, {5, -20}), dTop);
    EXPECT_EQ(SideOfBox(TMyRect{}, {0, 0}), dNone);
}

TEST(RouteGeometry, ClipStraightLinkEndsOnTheOutlines) {
    const TArrMyPoint square{{-10, -10}, {10, -10}, {10, 10}, {-10, 10}};
    // A square rotated by 30 degrees round (100, 40).
    TArrMyPoint rotated;
    for (TMyPoint p : square) {
        const float c = std::cos(0.5236f), s = std::sin(0.5236f);
        rotated.push_back({100 + p.x * c - p.y * s, 40 + p.x * s + p.y * c});
    }
    const auto [a, b] = ClipStraightLink({0, 0}, square, {100, 40}, rotated);
    EXPECT_FLOAT_EQ(a.x, 10);
    EXPECT_FLOAT_EQ(a.y, 4);
    // b lies on the rotated outline and on the segment.
    float onEdge = INFINITY;
    for (size_t i = 0; i < 4; ++i) {
        const TMyPoint p = rotated[i], q = rotated[(i + 1) % 4];
        const float cross = (q.x - p.x) * (b.y - p.y) - (q.y - p.y) * (b.x - p.x);
        onEdge = std::min(onEdge, std::abs(cross) / std::hypot(q.x - p.x, q.y - p.y));
    }
    EXPECT_LT(onEdge, 1e-3f);
    EXPECT_NEAR(b.y / b.x, 0.4f, 1e-5f);
    EXPECT_GT(std::hypot(b.x - 100, b.y - 40), 10 - 1e-3f);
    // Empty outlines and overlapping shapes leave the ends alone.
    EXPECT_EQ(ClipStraightLink({0, 0}, {}, {100, 40}, {}), std::make_pair(TMyPoint{0, 0}, TMyPoint{100, 40}));
    TArrMyPoint large;
    for (TMyPoint p : square) large.push_back({100 + p.x * 9.5f, 40 + p.y * 9.5f});
    EXPECT_EQ(ClipStraightLink({0, 0}, square, {100, 40}, large), std::make_pair(TMyPoint{0, 0}, TMyPoint{100, 40}));
}

}  // namespace
