// Connector routes (placeholder until the router lands).
#pragma once

#include "cad/enums.h"
#include "cad/types.h"

#include <utility>
#include <vector>

namespace faroven {

struct TRouteEnd {
    TMyPoint point;
    Tdirections side = dNone;
    TMyRect box{};
};

struct TRouteOptions {
    bool avoidObstacles = true;
    float margin = 10;
    float bendCost = 30;
    const TArrMyPoint* previous = nullptr;
};

Tdirections SideOfBox(const TMyRect& box, TMyPoint p);
TArrMyPoint RouteOrthogonal(const TRouteEnd& from, const TRouteEnd& to, const std::vector<TMyRect>& obstacles,
                            const TRouteOptions& options);
std::pair<TMyPoint, TMyPoint> ClipStraightLink(TMyPoint a, const TArrMyPoint& outlineA, TMyPoint b,
                                               const TArrMyPoint& outlineB);

}  // namespace faroven
