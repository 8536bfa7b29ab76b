// TMyCAD: where an edit of the mouse ends. The feedback of a move and the
// commit of the release go through the same functions, so the outline the
// user sees is where the shapes land: the drag offset restricted by DragMode,
// snapped, kept on the page; the resize point snapped and constrained; the
// rotation in steps of RotateConstraintDegree.
#include "cad/canvas/mycad.h"
#include "cad/canvas/mycad_p.h"

#include "cad/geometry/geometry.h"
#include "cad/geometry/markers.h"
#include "cad/shapes/line.h"
#include "cad/shapes/rectangle.h"

#include <cmath>

namespace faroven {

TPoint TMyCAD::clipped(TPoint p) const {
    if (!m_cursorClipped) return p;
    return TPoint{std::clamp(p.x, m_cursorClip.left, std::max(m_cursorClip.left, m_cursorClip.right - 1)),
                  std::clamp(p.y, m_cursorClip.top, std::max(m_cursorClip.top, m_cursorClip.bottom - 1))};
}

void TMyCAD::SetCursorClipArea(const TRect& rect) {
    m_cursorClip = rect;
    m_cursorClipped = true;
}

void TMyCAD::ReleaseCursorClipArea() { m_cursorClipped = false; }

void TMyCAD::SetSelectShapeMode(TCanvas* canvas) { SetDragResizeRotateShapeMode(canvas); }

// ---- Constraints with Shift --------------------------------------------------------------------

namespace {
int signOf(int v) { return v < 0 ? -1 : 1; }

void horizontalOrVertical(TPoint from, TPoint& to) {
    if (std::abs(to.x - from.x) >= std::abs(to.y - from.y))
        to.y = from.y;
    else
        to.x = from.x;
}
}  // namespace

void TMyCAD::DrawMakeSquareorHV(TMyShape* shape, TShiftState shift, TPoint from, TPoint& to) const {
    if (!shape || !(shift & ssShift)) return;
    if (dynamic_cast<TMyRectangle*>(shape)) {
        const int dx = to.x - from.x, dy = to.y - from.y;
        const int side = std::max(std::abs(dx), std::abs(dy));
        to = TPoint{from.x + signOf(dx) * side, from.y + signOf(dy) * side};
    } else if (dynamic_cast<TMyLine*>(shape)) {
        horizontalOrVertical(from, to);
    }
}

void TMyCAD::ResizeMakeSquareorHV(TMyShape* shape, TShiftState shift, TPoint& to) const {
    if (!shape || !(shift & ssShift)) return;
    const int hot = shape->HotIndex();
    const int n = shape->GetPointsCount();
    if (hot < 0 || hot >= n) return;
    if (dynamic_cast<TMyRectangle*>(shape)) {
        if (hot > 3) return;
        // A corner keeps the proportions of the box: the opposite corner stays.
        const TMyPoint o = shape->GetPointInZoom((hot + 2) % 4);
        const TMyRect box = shape->GetBounds();
        const double w = double(box.right) - box.left, h = double(box.bottom) - box.top;
        if (w <= 0 || h <= 0) return;
        double dx = to.x - o.x, dy = to.y - o.y;
        if (std::abs(dx) / w > std::abs(dy) / h)
            dy = (dy < 0 ? -1 : 1) * std::abs(dx) * h / w;
        else
            dx = (dx < 0 ? -1 : 1) * std::abs(dy) * w / h;
        to = TPoint{int(std::lround(o.x + dx)), int(std::lround(o.y + dy))};
    } else if (dynamic_cast<TMyLine*>(shape) && n > 1) {
        horizontalOrVertical(MyPtToPt(shape->GetPointInZoom(hot > 0 ? hot - 1 : 1)), to);
    }
}

// ---- Targets -----------------------------------------------------------------------------------

TPoint TMyCAD::dragTarget(TPoint to) {
    TPoint t = to;
    GetMousePointbyDragMode(m_downPoint, t);
    const TRect moved = canvas_detail::offsetRect(m_pressBounds, t.x - m_downPoint.x, t.y - m_downPoint.y);
    if (m_snap || m_snapShape) SnapRect(moved, t.x, t.y);
    if (m_lockBound) {
        const TPoint offset =
            ClampOffsetToPage(m_pressBounds, TPoint{t.x - m_downPoint.x, t.y - m_downPoint.y});
        t = TPoint{m_downPoint.x + offset.x, m_downPoint.y + offset.y};
    }
    return t;
}

TPoint TMyCAD::resizeTarget(TPoint to, TShiftState shift) {
    TPoint t = to;
    SnapXY(t.x, t.y);
    ResizeMakeSquareorHV(m_hotShape, shift, t);
    if (m_lockBound) t = ClampToPage(t);
    return t;
}

TPoint TMyCAD::rotateTarget(TPoint to) {
    if (!m_hotShape || m_rotateConstraintDegree <= 0) return to;
    // The mouse turned onto the nearest whole step about the shape's centre.
    const double step = m_rotateConstraintDegree * M_PI / 180.0;
    const double angle = m_hotShape->GetRotatedAngle(m_downPoint, to);
    const double snapped = std::round(angle / step) * step;
    const TMyPoint c = m_hotShape->GetCenterPointInZoom();
    const TMyPoint turned = RotateAPoint(PtToMyPt(m_downPoint), c, float(snapped));
    return MyPtToPt(turned);
}

// ---- Applying and showing an edit of the selection ---------------------------------------------------

void TMyCAD::RotateChangeValueforShapes(TMyShape* shape, double angle) {
    if (!shape) return;
    const TMyPoint centre = shape->GetCenterPoint();
    const std::vector<TMyShape*> tree = canvas_detail::shapeTree(*this, shape);
    shape->RotateChangeValueByAngle(angle);
    // Members turn about the shape's centre: about their own, then carried along.
    for (size_t i = 1; i < tree.size(); ++i) {
        TMyShape* member = tree[i];
        const TMyPoint own = member->GetCenterPoint();
        const TMyPoint moved = RotateAPoint(own, centre, float(angle));
        member->RotateChangeValueByAngle(angle);
        member->DragChangeValuedxdy(double(moved.x) - own.x, double(moved.y) - own.y);
    }
}

void TMyCAD::DraggingforShapes(TCanvas* canvas, TPoint from, TPoint to) {
    for (TMyShape* shape : m_workingShapes)
        for (TMyShape* s : canvas_detail::shapeTree(*this, shape)) s->Draging(canvas, from, to);
}

void TMyCAD::RotatingforShapes(TCanvas* canvas, TPoint from, TPoint to) {
    if (m_hotShape) m_hotShape->Rotating(canvas, from, to);
}

}  // namespace faroven
