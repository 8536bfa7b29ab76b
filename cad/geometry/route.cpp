#include "cad/geometry/route.h"

#include <cmath>

namespace faroven {

Tdirections SideOfBox(const TMyRect& box, TMyPoint p) {
    const float d[4] = {std::abs(p.x - box.left), std::abs(p.y - box.bottom), std::abs(p.x - box.right),
                        std::abs(p.y - box.top)};
    int best = 0;
    for (int i = 1; i < 4; ++i)
        if (d[i] < d[best]) best = i;
    return Tdirections(best);
}

TArrMyPoint RouteOrthogonal(const TRouteEnd& from, const TRouteEnd& to, const std::vector<TMyRect>&,
                            const TRouteOptions&) {
    TArrMyPoint pts{from.point};
    if (from.point.x != to.point.x && from.point.y != to.point.y) pts.push_back({to.point.x, from.point.y});
    pts.push_back(to.point);
    return pts;
}

std::pair<TMyPoint, TMyPoint> ClipStraightLink(TMyPoint a, const TArrMyPoint&, TMyPoint b, const TArrMyPoint&) {
    return {a, b};
}

}  // namespace faroven
