#include "cad/geometry/geometry.h"
#include "platform/system.h"
#include <cmath>
namespace faroven {
TMyRect GetPointsLTRB(const TArrMyPoint& points) {
    if (points.empty()) return TMyRect{};
    TMyRect r{points[0].x, points[0].y, points[0].x, points[0].y};
    for (const TMyPoint& p : points) {
        r.left = std::min(r.left, p.x); r.top = std::min(r.top, p.y);
        r.right = std::max(r.right, p.x); r.bottom = std::max(r.bottom, p.y);
    }
    return r;
}
TMyPoint RotateAPoint(TMyPoint p, TMyPoint c, float angle) {
    const long double dx = p.x - c.x, dy = p.y - c.y;
    return TMyPoint{float(c.x + dx * std::cos((long double)angle) - dy * std::sin((long double)angle)),
                    float(c.y + dx * std::sin((long double)angle) + dy * std::cos((long double)angle))};
}
long double GetSlopeAngle(TMyPoint p1, TMyPoint p2) {
    long double a = std::atan2((long double)p1.y - p2.y, (long double)p1.x - p2.x);
    if (p1.x == p2.x && p1.y == p2.y) return M_PI / 2;
    if (a < 0) a += 2 * M_PI;
    return a;
}
bool IsBlackWhitePrinter() { return Printer()->NumColors() == 2; }
}
