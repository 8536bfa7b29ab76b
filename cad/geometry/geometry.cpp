#include "cad/geometry/geometry.h"

#include "platform/system.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace faroven {

namespace {

constexpr long double kPi = std::numbers::pi_v<long double>;
constexpr long double kTwoPi = 2 * kPi;
// The float nearest to 2*pi. A float angle cannot hold 2*pi itself, so the
// normalisation compares against this value: an angle set to 2*pi in single
// precision is then "exactly 2*pi" and stays as it is.
constexpr float kTwoPiF = float(kTwoPi);
// Beyond this many radians the angle is first reduced in one step, so that a
// huge value read from a file cannot keep the loop going for ever.
constexpr float kLoopLimit = 1.0e4f;

// Direction of a leg from `from` to `to`; a zero-length leg counts as left / up.
Tdirections horizontalDirection(const TMyPoint& from, const TMyPoint& to) { return to.x <= from.x ? dLeft : dRight; }
Tdirections verticalDirection(const TMyPoint& from, const TMyPoint& to) { return to.y <= from.y ? dTop : dbottom; }

// Wing construction shared by GetTriangle and SplitLine: `base` and `second`
// are angles measured from the vertical; the signs follow the quadrant of
// `towards` seen from `tip`.
TMyRect wingPoints(const TMyPoint& tip, const TMyPoint& towards, long double base, long double second,
                   long double length) {
    const long double sx = tip.x <= towards.x ? 1.0L : -1.0L;
    const long double sy = tip.y <= towards.y ? 1.0L : -1.0L;
    TMyRect r;
    r.left = float(tip.x + sx * std::sin(base) * length);
    r.right = float(tip.x + sx * std::sin(second) * length);
    r.top = float(tip.y + sy * std::cos(base) * length);
    r.bottom = float(tip.y + sy * std::cos(second) * length);
    return r;
}

template <class Arr, class Pt>
bool insertBefore(const Pt& pt, int id, Arr& arr) {
    if (id < 0 || size_t(id) >= arr.size()) return false;
    arr.insert(arr.begin() + id, pt);
    return true;
}

}  // namespace

// ---- Conversions and construction ----------------------------------------

TMyPoint MyPoint(float x, float y) { return TMyPoint{x, y}; }

TPoint MyPtToPt(const TMyPoint& p) { return TPoint{Round(p.x), Round(p.y)}; }

TMyPoint PtToMyPt(const TPoint& p) { return TMyPoint{float(p.x), float(p.y)}; }

TRect myRecttoRect(const TMyRect& r) { return TRect{Round(r.left), Round(r.top), Round(r.right), Round(r.bottom)}; }

TRect PtToARect(const TPoint& p1, const TPoint& p2) {
    return TRect{std::min(p1.x, p2.x), std::min(p1.y, p2.y), std::max(p1.x, p2.x), std::max(p1.y, p2.y)};
}

TRect ExpandRect(const TRect& r, int n) {
    TRect out = r;
    if (!InflateRect(out, n, n)) return r;
    return out;
}

void OffsetMyRect(TMyRect& r, long double dx, long double dy) {
    r.left = float(r.left + dx);
    r.right = float(r.right + dx);
    r.top = float(r.top + dy);
    r.bottom = float(r.bottom + dy);
}

TMyRect GetPointsLTRB(const TArrMyPoint& points) {
    if (points.empty()) return TMyRect{};
    TMyRect r{points[0].x, points[0].y, points[0].x, points[0].y};
    for (const TMyPoint& p : points) {
        r.left = std::min(r.left, p.x);
        r.top = std::min(r.top, p.y);
        r.right = std::max(r.right, p.x);
        r.bottom = std::max(r.bottom, p.y);
    }
    return r;
}

QString AppendSpace(const QString& s, int n) {
    if (s.length() > n) return s;
    return s + QString(n - s.length() + 1, QLatin1Char(' '));
}

void GetMyPointDelta(const TMyPoint& a, const TMyPoint& b, float& dx, float& dy) {
    dx = b.x - a.x;
    dy = b.y - a.y;
}

void GetPointDeltaF(const TPoint& a, const TPoint& b, float& dx, float& dy) {
    dx = float(int64_t(b.x) - a.x);
    dy = float(int64_t(b.y) - a.y);
}

void GetPointDelta(const TPoint& a, const TPoint& b, int& dx, int& dy) {
    // Wraps around like the platform's unchecked integer arithmetic instead of
    // overflowing.
    dx = int(uint32_t(b.x) - uint32_t(a.x));
    dy = int(uint32_t(b.y) - uint32_t(a.y));
}

// ---- Distances and angles --------------------------------------------------

float GetLengthinPixel(const TMyPoint& p1, const TMyPoint& p2) {
    const long double dx = (long double)p2.x - p1.x;
    const long double dy = (long double)p2.y - p1.y;
    return float(std::sqrt(dx * dx + dy * dy));
}

int PointInQuadrantX(const TMyPoint& p1, const TMyPoint& p2) { return p2.x > p1.x ? 1 : -1; }

int PointInQuadrantY(const TMyPoint& p1, const TMyPoint& p2) { return p2.y > p1.y ? 1 : -1; }

long double GetSlopeAngle(const TMyPoint& p1, const TMyPoint& p2) {
    const long double dx = (long double)p1.x - p2.x;
    long double a = dx == 0 ? kPi / 2 : std::atan(((long double)p1.y - p2.y) / dx);
    const int qx = PointInQuadrantX(p1, p2);
    const int qy = PointInQuadrantY(p1, p2);
    if (qx > 0 && qy < 0)
        a = kPi + a;
    else if (qx > 0 && qy > 0)
        a = kPi + std::fabs(a);
    else if (qx < 0 && qy > 0)
        a = kTwoPi - std::fabs(a);
    return a;
}

void RecaclinRad(float& a) {
    if (!std::isfinite(a)) return;
    if (std::fabs(a) > kLoopLimit) a = float(std::fmod((long double)a, kTwoPi));
    if (a > kTwoPiF) {
        while (a >= kTwoPiF) a = float(a - kTwoPi);
    }
    if (a < -kTwoPiF) {
        while (a <= -kTwoPiF) a = float(a + kTwoPi);
    }
}

void RecaclinDeg(int& a) {
    // Closed forms of the two loops "subtract 360 while a >= 360" and "add 360
    // while a <= 360" (the second bound is positive on purpose), so that no
    // value takes millions of turns.
    if (a > 360) {
        a %= 360;
    } else if (a < -360) {
        const int64_t turns = (360 - int64_t(a)) / 360 + 1;
        a = int(a + 360 * turns);
    }
}

TMyPoint RotateAPoint(const TMyPoint& p, const TMyPoint& centre, float angle) {
    const long double dx = (long double)p.x - centre.x;
    const long double dy = (long double)p.y - centre.y;
    const long double c = std::cos((long double)angle);
    const long double s = std::sin((long double)angle);
    return TMyPoint{float(centre.x + dx * c - dy * s), float(centre.y + dx * s + dy * c)};
}

// ---- Relative position -----------------------------------------------------

bool IsAtLeftTop(const TMyPoint& p1, const TMyPoint& p2) { return p2.x <= p1.x && p2.y <= p1.y; }
bool IsAtRightTop(const TMyPoint& p1, const TMyPoint& p2) { return p2.x >= p1.x && p2.y <= p1.y; }
bool IsAtRightBottom(const TMyPoint& p1, const TMyPoint& p2) { return p2.x >= p1.x && p2.y >= p1.y; }
bool IsAtLeftBottom(const TMyPoint& p1, const TMyPoint& p2) { return p2.x <= p1.x && p2.y >= p1.y; }

// ---- Constructions ---------------------------------------------------------

TMyPoint Getintersection(const TMyPoint& p1, const TMyPoint& p2, const TMyPoint& p3, const TMyPoint& p4) {
    using ld = long double;
    const ld x1 = p1.x, y1 = p1.y, x2 = p2.x, y2 = p2.y, x3 = p3.x, y3 = p3.y, x4 = p4.x, y4 = p4.y;
    const bool aVertical = x1 == x3;
    const bool bVertical = x2 == x4;
    if (aVertical && bVertical) return TMyPoint{float(x1), float((y3 - y1) / 2)};
    if (aVertical) {
        const ld kB = (y4 - y2) / (x4 - x2);
        return TMyPoint{float(x1), float((x1 - x2) * kB + y2)};
    }
    if (bVertical) {
        const ld kA = (y3 - y1) / (x3 - x1);
        return TMyPoint{float(x2), float((x2 - x1) * kA + y1)};
    }
    const ld kA = (y3 - y1) / (x3 - x1);
    const ld kB = (y4 - y2) / (x4 - x2);
    if (y1 == y3 && y2 == y4) return TMyPoint{float((x3 - x1) / 2), float(y1)};
    // Parallel sloped lines: the user is told, and the division below then
    // gives an infinite or undefined point, which callers must tolerate.
    if (kA == kB) ShowMessage(QStringLiteral("error"));
    const ld x = (kB * x2 - y2 - kA * x1 + y1) / (kB - kA);
    const ld y = (x - x1) * kA + y1;
    return TMyPoint{float(x), float(y)};
}

TMyRect GetTriangle(const TMyPoint& tip, const TMyPoint& towards, float halfAngle, uint8_t length) {
    // The direction towards the other point, measured from the vertical.
    long double base;
    if (tip.y == towards.y)
        base = kPi / 2 - halfAngle;
    else
        base = std::fabs(std::atan(((long double)tip.x - towards.x) / ((long double)tip.y - towards.y))) - halfAngle;
    const long double second = base + 2.0L * halfAngle;
    return wingPoints(tip, towards, base, second, length);
}

TMyRect SplitLine(const TMyPoint& p1, const TMyPoint& p2, int d) {
    // Half-angle 0; a horizontal line takes pi/2 in single precision, so its
    // cosine is a tiny non-zero value and y moves by about -4.4e-8 * d.
    long double base;
    if (p1.y == p2.y)
        base = std::numbers::pi_v<float> / 2;
    else
        base = std::fabs(std::atan(((long double)p1.x - p2.x) / ((long double)p1.y - p2.y)));
    return wingPoints(p1, p2, base, base, d);
}

void GetElbowRoute(const TMyPoint& from, const TMyPoint& to, TArrDirAndPoints& route, Tdirections start) {
    route.clear();
    switch (start) {
    case dbottom:
    case dTop:
    case dNone:
        if (to.x != from.x) route.push_back({horizontalDirection(from, to), TMyPoint{to.x, from.y}});
        if (to.y != from.y) route.push_back({verticalDirection(from, to), to});
        break;
    case dLeft:
    case dRight:
        if (to.y != from.y) route.push_back({verticalDirection(from, to), TMyPoint{from.x, to.y}});
        if (to.x != from.x) route.push_back({horizontalDirection(from, to), to});
        break;
    }
}

// ---- Point arrays ----------------------------------------------------------

bool AppendAPoint(const TMyPoint& pt, TArrMyPoint& arr) {
    arr.push_back(pt);
    return true;
}

bool InsertAPointBeforeId(const TMyPoint& pt, int id, TArrMyPoint& arr) { return insertBefore(pt, id, arr); }

bool InsertAPointBeforeId1(const TPoint& pt, int id, TArrPoint& arr) { return insertBefore(pt, id, arr); }

void RemovePoint(int id, TArrMyPoint& arr) {
    if (IsExistPt(id, arr)) arr.erase(arr.begin() + id);
}

bool IsExistPt(int id, const TArrMyPoint& arr) { return id >= 0 && size_t(id) < arr.size(); }

bool IsExistPt1(int id, const TArrPoint& arr) { return id >= 0 && size_t(id) < arr.size(); }

// ---- Platform probes -------------------------------------------------------

bool IsBlackWhitePrinter() { return Printer()->NumColors() == 2; }

bool IsWinNT() { return true; }

}  // namespace faroven
