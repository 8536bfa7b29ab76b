// TMyCAD: the release commits the edit the press began. Each commit that
// changes the drawing is one undo step; a release where the press was
// changes nothing and records nothing.
#include "cad/canvas/mycad.h"
#include "cad/canvas/mycad_p.h"

#include "cad/geometry/geometry.h"
#include "cad/shapes/line.h"
#include "cad/shapes/polyline.h"
#include "cad/shapes/rectangle.h"

#include <cmath>
#include <unordered_set>

namespace faroven {

namespace {
const QString kActAdd = QStringLiteral("ACT_ADD");
const QString kActChange = QStringLiteral("ACT_CHANGE");

// A shape that one drag of its two points draws (DrawByDragging).
bool drawnByTwoPoints(const TMyShape* shape) {
    switch (shape->kind()) {
    case TShapeKind::Line:
    case TShapeKind::RuleLine:
    case TShapeKind::LinkLine: return true;
    default: return dynamic_cast<const TMyRectangle*>(shape) != nullptr;
    }
}
}  // namespace

void TMyCAD::MouseUp(TMouseButton Button, TShiftState Shift, int X, int Y) {
    if (!m_mousePressed || Button != mbLeft) {
        TGraphicControl::MouseUp(Button, Shift, X, Y);
        return;
    }
    m_lastPoint = clipped(TPoint{X, Y});
    m_lastShift = Shift;

    // A click on a member of a selected group offers the member.
    if (m_hitChild && !mouseMoved()) {
        bool accept = true;
        if (OnChildShapeSelected) OnChildShapeSelected(m_hitChild, accept);
        if (accept) {
            m_currentShape = m_hitChild;
            selectAlone(m_hitChild);
        } else {
            m_hitChild = nullptr;
        }
        m_action = m_savedAction;
        endPress();
        TGraphicControl::MouseUp(Button, Shift, X, Y);
        return;
    }
    // A click on a selected shape with a smaller one on it selects the smaller one.
    if (m_clickThrough && !mouseMoved()) {
        TMyShape* previous = m_currentShape;
        TMyShape* candidate = m_clickThrough;
        selectAlone(candidate);
        m_currentShape = candidate;
        // Browsing stays browsing; the editing modes go back to selecting.
        m_action = m_savedAction == dtBrowse ? dtBrowse : dtSelecting;
        endPress();
        const QPointer<TMyShape> clicked = candidate;
        if (OnShapeSelected) OnShapeSelected(previous, candidate);
        canvas_detail::clickIfAlive(clicked, this);
        TGraphicControl::MouseUp(Button, Shift, X, Y);
        return;
    }

    switch (m_action) {
    case dtDrawing: releaseDrawing(Button, Shift); break;
    case dtSelecting:
    case dtRotateSelecting: releaseRubberBand(); break;
    case dtDragging: releaseDragging(); break;
    case dtResizing: releaseResizing(Shift); break;
    case dtRotating: releaseRotating(); break;
    case dtDraggingTextoutPoint:
        // The caption point followed the mouse; it is not an undo step.
        m_action = m_savedAction;
        Invalidate();
        break;
    case dtPolylinePolygonPointRemoving: releaseNodeEdit(false); break;
    case dtPolylinePolygonPointAdding: releaseNodeEdit(true); break;
    case dtDragWhole: releaseDragWhole(); break;
    case dtBrowse:
    case dtClose: break;
    }
    endPress();
    TGraphicControl::MouseUp(Button, Shift, X, Y);
}

void TMyCAD::endPress() {
    m_mousePressed = false;
    ReleaseCursorClipArea();
    m_guideLines.clear();
    // Drawing a polyline goes on between presses: the frozen scene stays.
    if (!m_drawnShape) dropSceneCache();
    invalidateEditFeedback();
    SelectAllWorkingShapes();
}

// ---- Drawing -----------------------------------------------------------------------------------

void TMyCAD::releaseDrawing(TMouseButton button, TShiftState shift) {
    m_changed = true;
    TMyShape* shape = m_drawnShape.get();
    if (!shape) return;
    // A drag is judged by the mouse itself; snapping may move a click by a few pixels.
    const bool dragged = std::abs(m_pressPoint.x - m_lastPoint.x) > 2 || std::abs(m_pressPoint.y - m_lastPoint.y) > 2;
    TPoint p = m_lastPoint;
    if (m_snap) SnapXY(p.x, p.y);
    if (const int n = shape->GetPointsCount(); n > 0) {
        const bool poly = dynamic_cast<TMyPolyLine*>(shape) != nullptr;
        DrawMakeSquareorHV(shape, shift, MyPtToPt(shape->GetPointInZoom(poly && n > 1 ? n - 2 : 0)), p);
    }
    m_lastPoint = p;
    if (m_drawByDragging && dragged && shape->GetPointsCount() == 1 && drawnByTwoPoints(shape)) {
        if (shape->kind() == TShapeKind::LinkLine)
            GetMainShape(shape, llEnd, p);
        else if (shape->kind() == TShapeKind::Line)
            GetMergeShape(shape, llEnd, p);
        shape->AddPointByMouse(p);
        m_lastPoint = p;
    }
    if (!shape->IsDrawingFinished(button, p)) {
        invalidateEditFeedback();
        return;
    }
    finishDrawnShape();
}

void TMyCAD::finishDrawnShape() {
    TMyShape* shape = m_drawnShape.release();
    if (!shape) return;
    ClearAllLinkHot();
    shape->SetShapeNo(GetShapesCount());
    shape->SetShapeId(m_nextShapeId);
    shape->SetName(QStringLiteral("Shape") + QString::number(m_nextShapeId));
    ReleaseCursorClipArea();
    dropSceneCache();
    if (!AddShape(shape)) {
        m_drawnShape.reset(shape);
        discardDrawnShape();
        return;
    }
    selectAlone(shape);
    shape->Drawed(m_downPoint, m_lastPoint);
    TMyShape* announced = shape;
    const QPointer<TMyShape> added = shape;
    if (OnShapeAdded) OnShapeAdded(announced, GetShapesCount());
    // A handler may have deleted the new shape again: nothing is left to record.
    if (!added) {
        m_currentShape = nullptr;
        Invalidate();
        return;
    }

    TMyShape* result = shape;
    auto* line = dynamic_cast<TMyLine*>(shape);
    if (shape->kind() == TShapeKind::Line && line->StartSpNo() >= 0 && line->EndSpNo() >= 0 &&
        line->StartSpNo() != line->EndSpNo()) {
        const int id = CreateAndDelete(shape);
        if (id >= 0) result = GetShapeByID(id);
    } else {
        // A plain line that did not join two shapes is no connection at all.
        if (shape->kind() == TShapeKind::Line) {
            line->SetStartSpNo(-1);
            line->SetEndSpNo(-1);
        }
        if (shape->kind() == TShapeKind::LinkLine) ChangeLinkShapes(shape);
        PushtoUndoRedoShapeList({shape}, kActAdd);
    }
    m_currentShape = nullptr;
    if (m_returnToSelecting) {
        if (OnActionToolToSelecting) OnActionToolToSelecting();
        m_action = m_savedAction;
        m_shapeTool = SpSelecting;
    }
    if (!m_disableTextInput && result && GetShapeNoInMyShapes(result) >= 0) BeginTextInput(result);
    Invalidate();
}

void TMyCAD::ClosePolygon() {
    TMyShape* shape = m_drawnShape.get();
    auto* poly = dynamic_cast<TMyPolyLine*>(shape);
    if (!poly) return;
    TArrMyPoint pts = std::as_const(*poly).Points();
    // A point the mouse placed twice in a row counts once.
    while (pts.size() > 1 && pts[pts.size() - 1] == pts[pts.size() - 2]) pts.pop_back();
    const bool polygon = shape->kind() == TShapeKind::Polygon;
    if (pts.size() < (polygon ? 3u : 2u)) return;
    if (polygon && !(pts.front() == pts.back())) pts.push_back(pts.front());
    poly->SetPoints(pts);
    if (m_returnToSelecting) m_savedAction = dtSelecting;
    m_lastPoint = MyPtToPt(shape->GetPointInZoom(shape->GetPointsCount() - 1));
    finishDrawnShape();
    endPress();
}

// ---- Rubber band -------------------------------------------------------------------------------

void TMyCAD::releaseRubberBand() {
    const TRect band{std::min(m_downPoint.x, m_lastPoint.x), std::min(m_downPoint.y, m_lastPoint.y),
                     std::max(m_downPoint.x, m_lastPoint.x) + 1, std::max(m_downPoint.y, m_lastPoint.y) + 1};
    const std::vector<int> roots = rootsMeetingNow(band);
    // A set, not IsInWorkingShape: a band may take tens of thousands of shapes.
    std::unordered_set<const TMyShape*> selected(m_workingShapes.begin(), m_workingShapes.end());
    const size_t before = m_workingShapes.size();
    for (int no : roots) {
        TMyShape* shape = m_myShapes[size_t(no)];
        if (!shape || shape->HasParentShape() || !shape->Visible()) continue;
        if (!m_operateAllLayer && shape->LayerId() != CurrentLayerId()) continue;
        if (!IsInRegion(m_downPoint, m_lastPoint, shape) || !selected.insert(shape).second) continue;
        m_workingShapes.push_back(shape);
    }
    Invalidate();
    if (m_workingShapes.size() != before) emit selectionChanged();
}

// ---- Drag, resize, rotate ----------------------------------------------------------------------

void TMyCAD::releaseDragging() {
    m_changed = true;
    m_action = m_savedAction;
    Invalidate();
    if (!m_dragEnable) return;
    // A release where the press was is no drag, whatever snapping would make of it.
    TPoint restricted = m_lastPoint;
    GetMousePointbyDragMode(m_downPoint, restricted);
    if (restricted == m_downPoint) return;
    const TPoint to = dragTarget(m_lastPoint);
    double dx = (to.x - m_downPoint.x) / m_zoom, dy = (to.y - m_downPoint.y) / m_zoom;
    if (dx == 0 && dy == 0) return;
    std::vector<TMyShape*> moving;
    for (TMyShape* s : m_workingShapes)
        if (!s->Locked() && s->DragEnable()) moving.push_back(s);
    if (moving.empty()) return;
    PushtoUndoRedoShapeList(moving, kActChange);
    for (TMyShape* s : moving) DragChangeValueDxDyforShapes(s, dx, dy);
    for (TMyShape* s : moving) ChangeLinkShapes(s);
    if (!OnShapeMouseDragged) return;
    const TPoint from = GetPointByMode(m_downPoint);
    const TPoint given = GetPointByMode(to);
    TPoint end = given;
    OnShapeMouseDragged(m_currentShape, from, end);
    if (end.x == given.x && end.y == given.y) return;
    // The handler moved the end point: the selection follows it.
    const TPoint corrected = GetPointByMode(end);
    dx = (corrected.x - to.x) / m_zoom;
    dy = (corrected.y - to.y) / m_zoom;
    for (TMyShape* s : moving) DragChangeValueDxDyforShapes(s, dx, dy);
    for (TMyShape* s : moving) ChangeLinkShapes(s);
}

void TMyCAD::releaseResizing(TShiftState shift) {
    m_changed = true;
    m_action = m_savedAction;
    Invalidate();
    if (!m_hotShape || (m_pressPoint.x == m_lastPoint.x && m_pressPoint.y == m_lastPoint.y)) return;
    const TPoint to = resizeTarget(m_lastPoint, shift);
    PushtoUndoRedoShapeList(m_workingShapes, kActChange);
    for (TMyShape* s : m_workingShapes) SizeChangeValueforShapes(s, m_downPoint, to);
    for (TMyShape* s : m_workingShapes) ChangeLinkShapes(s);
    if (OnShapeMouseResizeFinished) {
        TPoint end = GetPointByMode(to);
        OnShapeMouseResizeFinished(m_hotShape, GetPointByMode(m_downPoint), end);
    }
}

void TMyCAD::releaseRotating() {
    m_action = m_savedAction;
    Invalidate();
    if (!m_hotShape) return;
    const TPoint to = rotateTarget(m_lastPoint);
    const double angle = m_hotShape->GetRotatedAngle(m_downPoint, to);
    if (angle == 0) return;
    m_changed = true;
    PushtoUndoRedoShapeList({GetRootParentShape(m_hotShape)}, kActChange);
    RotateChangeValueforShapes(m_hotShape, angle);
    ChangeLinkShapes(m_hotShape);
    if (OnShapeMouseRotated) {
        TPoint end = GetPointByMode(to);
        OnShapeMouseRotated(m_hotShape, GetPointByMode(m_downPoint), end);
    }
}

void TMyCAD::releaseDragWhole() {
    const double dx = (m_lastPoint.x - m_downPoint.x) / m_zoom, dy = (m_lastPoint.y - m_downPoint.y) / m_zoom;
    if (dx == 0 && dy == 0) return;
    m_changed = true;
    std::vector<TMyShape*> roots;
    for (TMyShape* s : GetShapesByLayerId(CurrentLayerId()))
        if (!s->HasParentShape()) roots.push_back(s);
    if (roots.empty()) return;
    PushtoUndoRedoShapeList(roots, kActChange);
    for (TMyShape* s : roots) DragChangeValueDxDyforShapes(s, dx, dy);
    for (TMyShape* s : roots) ChangeLinkShapes(s);
    if (OnWholeDragged) OnWholeDragged();
    Invalidate();
}

}  // namespace faroven
