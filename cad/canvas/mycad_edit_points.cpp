// TMyCAD: where an edit of the mouse ends. The feedback of a move and the
// commit of the release go through the same functions, so the outline the
// user sees is where the shapes land: the drag offset restricted by DragMode,
// snapped, kept on the page; the resize point snapped and constrained; the
// rotation in steps of RotateConstraintDegree.
#include "cad/canvas/mycad.h"
#include "cad/canvas/mycad_p.h"

#include "cad/geometry/geometry.h"
#include "cad/geometry/guides.h"
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

namespace {
// How far smart guides look for shapes to line up with, and how near they snap.
constexpr int kGuideReach = 300;
constexpr size_t kGuideMaxNeighbours = 400;
constexpr double kGuideTolerance = 5;
}  // namespace

std::vector<TMyRect> TMyCAD::guideNeighbours(const TRect& around) {
    TRect region = around;
    InflateRect(region, kGuideReach, kGuideReach);
    const std::vector<int> roots = rootsMeetingNow(region);
    std::vector<TMyRect> boxes;
    const TMyShape* editedRoot = m_hotShape ? GetRootParentShape(m_hotShape) : nullptr;
    for (int no : roots) {
        TMyShape* s = m_myShapes[size_t(no)];
        if (!s || s->HasParentShape() || !s->Visible() || !m_layers.IsVisible(s->LayerId())) continue;
        if (s == editedRoot || IsInWorkingShape(s) >= 0) continue;
        boxes.push_back(GetShapesLTRBinZoom({s}));
        if (boxes.size() == kGuideMaxNeighbours) break;
    }
    return boxes;
}

// Smart guides move the point on the axes where they snap and set the lines to show.
TPoint TMyCAD::applyGuides(const TMyRect& moving, unsigned edges, TPoint t) {
    m_guideLines.clear();
    if (!m_smartGuides) return t;
    const TRect around{int(std::floor(moving.left)), int(std::floor(moving.top)), int(std::ceil(moving.right)) + 1,
                       int(std::ceil(moving.bottom)) + 1};
    const TGuideResult guides = FindGuides(moving, guideNeighbours(around), edges, kGuideTolerance);
    if (guides.snappedX) t.x += int(std::lround(guides.dx));
    if (guides.snappedY) t.y += int(std::lround(guides.dy));
    for (const TGuideLine& line : guides.lines) m_guideLines.emplace_back(line.from, line.to);
    return t;
}

TPoint TMyCAD::dragTarget(TPoint to) {
    TPoint t = to;
    GetMousePointbyDragMode(m_downPoint, t);
    if (t == m_downPoint) return t;
    const TRect moved = canvas_detail::offsetRect(m_pressBounds, t.x - m_downPoint.x, t.y - m_downPoint.y);
    if (m_snap || m_snapShape) SnapRect(moved, t.x, t.y);
    if (m_smartGuides) {
        const TPoint snapped = t;
        const TRect box = canvas_detail::offsetRect(m_pressBounds, t.x - m_downPoint.x, t.y - m_downPoint.y);
        t = applyGuides(TMyRect{float(box.left), float(box.top), float(box.right), float(box.bottom)}, geAll, t);
        // A restricted direction stays restricted.
        if (m_dragMode == dgHorz) t.y = snapped.y;
        if (m_dragMode == dgVert) t.x = snapped.x;
    }
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
    // The pulled handle lines up with the edges and centres of its neighbours.
    if (m_smartGuides) t = applyGuides(TMyRect{float(t.x), float(t.y), float(t.x), float(t.y)}, geLeft | geTop, t);
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
