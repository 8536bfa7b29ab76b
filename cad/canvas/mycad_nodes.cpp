// TMyCAD: adding and removing nodes of polylines and polygons with the mouse.
// In the adding mode a click on a segment inserts a node there; in the
// removing mode a click on a node takes it out, never below two nodes for a
// polyline or three corners for a polygon. The click acts at the release, on
// a selected shape under it first, else on the shape a press would pick.
// Bézier chains keep their own node structure and are left alone.
#include "cad/canvas/mycad.h"

#include "cad/geometry/geometry.h"
#include "cad/shapes/polyline.h"

#include <cmath>

namespace faroven {

namespace {

bool nodeEditable(TMyShape* shape) {
    return shape && dynamic_cast<TMyPolyLine*>(shape) && shape->kind() != TShapeKind::PolyBezier &&
           !shape->Locked();
}

// A polygon finished with the mouse ends on its first point again.
bool closedByPoints(const TMyShape* shape) {
    const TArrMyPoint& pts = shape->Points();
    return pts.size() > 1 && pts.front() == pts.back();
}

// The squared distance from p to the segment a-b, and where along it (0..1) the nearest point lies.
double distanceToSegment(TMyPoint p, TMyPoint a, TMyPoint b, double& t) {
    const double vx = double(b.x) - a.x, vy = double(b.y) - a.y;
    const double len2 = vx * vx + vy * vy;
    t = len2 > 0 ? std::clamp(((double(p.x) - a.x) * vx + (double(p.y) - a.y) * vy) / len2, 0.0, 1.0) : 0.0;
    const double nx = a.x + t * vx - p.x, ny = a.y + t * vy - p.y;
    return nx * nx + ny * ny;
}

// The segment of the shape within reach of p (pixels), or -1; t is where along it.
int nearestSegment(TMyShape* shape, TPoint p, double reach, double& t) {
    const int n = shape->GetPointsCount();
    const int segments = shape->kind() == TShapeKind::Polygon && !closedByPoints(shape) ? n : n - 1;
    int best = -1;
    double bestD = reach * reach;
    for (int i = 0; i < segments; ++i) {
        double along = 0;
        const double d = distanceToSegment(PtToMyPt(p), shape->GetPointInZoom(i), shape->GetPointInZoom((i + 1) % n), along);
        if (d <= bestD) {
            best = i;
            bestD = d;
            t = along;
        }
    }
    return best;
}

}  // namespace

void TMyCAD::releaseNodeEdit(bool adding) {
    const TPoint p = m_pressPoint;
    const double reach = std::max(double(m_hotSize), 4.0);
    // The selected shapes first, then the others from the top-most down.
    std::vector<TMyShape*> candidates;
    for (TMyShape* s : m_workingShapes)
        if (nodeEditable(s)) candidates.push_back(s);
    const int r = int(std::ceil(reach)) + 1;
    const std::vector<int> roots = rootsMeetingNow(TRect{p.x - r, p.y - r, p.x + r + 1, p.y + r + 1});
    for (auto it = roots.rbegin(); it != roots.rend(); ++it)
        if (TMyShape* s = m_myShapes[size_t(*it)]; nodeEditable(s) && IsShapePickable(s)) candidates.push_back(s);

    for (TMyShape* shape : candidates) {
        TArrMyPoint pts = std::as_const(*shape).Points();
        const int n = int(pts.size());
        const int hot = shape->InWhichHot(p);
        if (adding) {
            double t = 0;
            const int segment = hot >= 0 ? -1 : nearestSegment(shape, p, reach, t);
            if (segment < 0) continue;
            const TMyPoint a = pts[size_t(segment)], b = pts[size_t((segment + 1) % n)];
            const TMyPoint at{float(a.x + t * (double(b.x) - a.x)), float(a.y + t * (double(b.y) - a.y))};
            PushtoUndoRedoShapeList({shape}, QStringLiteral("ACT_CHANGE"));
            pts.insert(pts.begin() + segment + 1, at);
            shape->SetPoints(pts);
            ChangeLinkShapes(shape);
            if (OnNodeAdded) OnNodeAdded(shape, segment + 1);
        } else {
            if (hot < 0 || hot >= n) continue;
            const bool closed = closedByPoints(shape);
            const int corners = closed ? n - 1 : n;
            // Never below two nodes of a polyline or three corners of a polygon.
            if (corners <= (shape->kind() == TShapeKind::Polygon ? 3 : 2)) return;
            PushtoUndoRedoShapeList({shape}, QStringLiteral("ACT_CHANGE"));
            int removed = hot;
            if (closed && (hot == 0 || hot == n - 1)) {
                // The first corner goes from both ends of a closed outline.
                pts.erase(pts.begin());
                pts.back() = pts.front();
                removed = 0;
            } else {
                pts.erase(pts.begin() + hot);
            }
            shape->SetPoints(pts);
            shape->SetHotIndex(-1);
            ChangeLinkShapes(shape);
            if (OnNodeDeleted) OnNodeDeleted(shape, removed);
        }
        m_changed = true;
        Invalidate();
        return;
    }
}

}  // namespace faroven
