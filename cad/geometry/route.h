// Connector routing: orthogonal routes between link points that leave and
// enter their shapes perpendicular and go around the boxes of nearby shapes,
// and the straight style clipped at the outlines of the joined shapes.
//
// Pure geometry in drawing units (y down): the caller hands in the two ends,
// the boxes to avoid and, after a small move, the route it had before.
// docs/routing.md describes the search and the rules it keeps.
#pragma once

#include "cad/types.h"

#include <utility>
#include <vector>

namespace faroven {

// Where a route meets a shape: the link point, the side of the shape the route
// leaves (or enters) by, and the box of that shape. side dNone is a free end
// that may go in any direction; a free end has an empty box.
struct TRouteEnd {
    TMyPoint point;
    Tdirections side = dNone;
    TMyRect box{};
};

struct TRouteOptions {
    // Go around the obstacle boxes; when false only the two end boxes count.
    bool avoidObstacles = true;
    // Clearance kept from obstacle boxes (a route never enters a box grown by
    // margin / 2 when a way around exists) and the length of the first and
    // last legs straight out of a side. Values below 1 count as 1.
    float margin = 10;
    // One bend costs as much as this length of route.
    float bendCost = 30;
    // Passing an obstacle or an end box on the other side than `previous` did
    // costs this much extra: a small move keeps the route where it was.
    float switchCost = 60;
    // The route before the move, or nullptr.
    const TArrMyPoint* previous = nullptr;
};

// The side of the box that p lies on or nearest to, for link points; dNone for
// an empty box. Ties go to left, top, right, bottom in this order.
Tdirections SideOfBox(const TMyRect& box, TMyPoint p);

// An orthogonal route from from.point to to.point: every segment horizontal or
// vertical, no zero-length segments, no repeated points. Never empty; coincident
// free ends give the single point.
TArrMyPoint RouteOrthogonal(const TRouteEnd& from, const TRouteEnd& to, const std::vector<TMyRect>& obstacles,
                            const TRouteOptions& options = {});

// The straight style: the segment from a to b with each end moved to where the
// segment leaves the closed outline of its shape (a polygon in drawing units;
// the last crossing seen from that end). An end whose outline is empty or not
// crossed stays as it is; when the clipped ends would pass each other both ends
// stay as they are.
std::pair<TMyPoint, TMyPoint> ClipStraightLink(TMyPoint a, const TArrMyPoint& outlineA, TMyPoint b,
                                               const TArrMyPoint& outlineB);

}  // namespace faroven
