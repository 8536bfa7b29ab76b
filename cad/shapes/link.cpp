#include "cad/shapes/link.h"

#include "cad/canvas/mycad.h"
#include "cad/geometry/geometry.h"
#include "cad/geometry/route.h"
#include "cad/shapes/shape_markers.h"

#include <cmath>
#include <numbers>

namespace faroven {

namespace {

// Clearance kept from shapes, and the length of the legs that leave a side.
constexpr float kRouteMargin = 12;

// The closed outline of a shape in drawing units, for clipping straight
// links; empty for open shapes.
TArrMyPoint outlineOf(const TMyShape* shape) {
    switch (shape->kind()) {
    case TShapeKind::Rectangle:
    case TShapeKind::Group:
    case TShapeKind::Combine:
    case TShapeKind::Text:
    case TShapeKind::Image:
    case TShapeKind::LinkPoint:
        return shape->GetPointsCount() >= 4 ? TArrMyPoint(shape->Points().begin(), shape->Points().begin() + 4)
                                            : TArrMyPoint{};
    case TShapeKind::Polygon: return shape->Points();
    case TShapeKind::Ellipse:
    case TShapeKind::LineLinkLine: {
        if (shape->GetPointsCount() < 4) return {};
        // The inscribed ellipse of the (possibly turned) frame: centre plus
        // the two half-axes along the frame's sides.
        const TArrMyPoint& p = shape->Points();
        const TMyPoint c{(p[0].x + p[2].x) / 2, (p[0].y + p[2].y) / 2};
        const TMyPoint u{(p[1].x - p[0].x) / 2, (p[1].y - p[0].y) / 2};
        const TMyPoint v{(p[3].x - p[0].x) / 2, (p[3].y - p[0].y) / 2};
        TArrMyPoint outline;
        for (int i = 0; i < 48; ++i) {
            const double t = i * std::numbers::pi / 24;
            outline.push_back({float(c.x + u.x * std::cos(t) + v.x * std::sin(t)),
                               float(c.y + u.y * std::cos(t) + v.y * std::sin(t))});
        }
        return outline;
    }
    default: return {};
    }
}

// The end of a route at link point ptId of the shape: it leaves by the side
// of the shape's box nearest the point. A link-point marker is too small to
// have sides: its lines may leave it in any direction. Without a shape (or
// with a bad index) the end is free, at the fallback point.
TRouteEnd routeEnd(const TMyShape* shape, int ptId, TMyPoint fallback) {
    if (!shape || ptId < 0 || ptId >= shape->GetLinkPointsCount()) return {fallback, dNone, {}};
    const TMyPoint p = shape->GetLinkPoint(ptId);
    if (shape->kind() == TShapeKind::LinkPoint) return {p, dNone, {}};
    const TMyRect box = shape->GetBounds();
    return {p, SideOfBox(box, p), box};
}

TMyRect unite(TMyRect a, const TMyRect& b) {
    a.left = std::min(a.left, b.left);
    a.top = std::min(a.top, b.top);
    a.right = std::max(a.right, b.right);
    a.bottom = std::max(a.bottom, b.bottom);
    return a;
}

TMyRect grown(TMyRect r, float by) { return {r.left - by, r.top - by, r.right + by, r.bottom + by}; }

bool contains(const TMyRect& outer, const TMyRect& inner) {
    return outer.left <= inner.left && outer.top <= inner.top && outer.right >= inner.right &&
           outer.bottom >= inner.bottom;
}

}  // namespace

TMyLinkLine::TMyLinkLine(TMyCAD* canvas) : TMyLine(canvas) {
    if (canvas) m_linkLineDrawStyle = canvas->LinkLineDrawStyle();
}

void TMyLinkLine::assignOwnFields(const TMyShape* source, bool withRelations) {
    TMyLine::assignOwnFields(source, withRelations);
    if (const auto* s = shape_cast<TMyLinkLine>(source)) m_linkLineDrawStyle = s->m_linkLineDrawStyle;
}

void TMyLinkLine::GetPath(TMyShape* startShape, int startPtId, TMyShape* endShape, int endPtId) {
    const TArrMyPoint previous = std::as_const(*this).Points();
    const TMyPoint oldStart = GetPoint(0), oldEnd = GetPoint(GetPointsCount() - 1);
    const TRouteEnd from = routeEnd(startShape, startPtId, oldStart);
    const TRouteEnd to = routeEnd(endShape, endPtId, oldEnd);

    if (m_linkLineDrawStyle == lldsFree) {
        const auto [a, b] = ClipStraightLink(from.point, startShape ? outlineOf(startShape) : TArrMyPoint{},
                                             to.point, endShape ? outlineOf(endShape) : TArrMyPoint{});
        SetPoints({a, b});
        SetCenterPoint(ComputeCenterPoint());
        return;
    }

    TRouteOptions options;
    options.margin = kRouteMargin;
    options.previous = previous.size() >= 2 ? &previous : nullptr;
    TMyCAD* cad = Canvas();
    const bool avoid = cad && cad->LinklineAroundShape();
    options.avoidObstacles = avoid;
    TArrMyPoint route;
    if (!avoid) {
        route = RouteOrthogonal(from, to, {}, options);
    } else {
        // Only the shapes near the two ends can be in the way. When the route
        // found leaves the region looked at, look again over its extent.
        const std::vector<const TMyShape*> skip{startShape ? cad->GetRootParentShape(startShape) : nullptr,
                                                endShape ? cad->GetRootParentShape(endShape) : nullptr};
        TMyRect region = grown(GetPointsLTRB({from.point, to.point}), 4 * kRouteMargin);
        for (int attempt = 0; attempt < 3; ++attempt) {
            route = RouteOrthogonal(from, to, cad->RouteObstacles(region, LayerId(), skip), options);
            const TMyRect extent = grown(GetPointsLTRB(route), 2 * kRouteMargin);
            if (contains(region, extent)) break;
            region = grown(unite(region, extent), 2 * kRouteMargin);
        }
    }
    SetPoints(route);
    SetCenterPoint(ComputeCenterPoint());
}

void TMyLinkLine::ReRoute() {
    TMyCAD* cad = Canvas();
    if (!cad) return;
    GetPath(cad->GetShapeByNo(StartSpNo()), StartSpPtId(), cad->GetShapeByNo(EndSpNo()), EndSpPtId());
}

void TMyLinkLine::DrawHot(TCanvas* canvas) {
    const int n = GetPointsCount();
    if (n == 0) return;
    DrawSquare(this, canvas, GetPointInZoom(0));
    if (n > 1) DrawSquare(this, canvas, GetPointInZoom(n - 1));
}

int TMyLinkLine::InWhichHot(TPoint point) {
    const int n = GetPointsCount();
    int found = -1;
    if (n > 0 && inHotSquare(GetPointInZoom(0), point)) found = 0;
    if (n > 1 && inHotSquare(GetPointInZoom(n - 1), point)) found = n - 1;
    SetHotIndex(found);
    return found;
}

}  // namespace faroven
