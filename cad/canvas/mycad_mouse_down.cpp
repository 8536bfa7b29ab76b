// TMyCAD: the left press. It records where the press happened and moves the
// canvas into the edit the press begins: a point of the shape being drawn, a
// resize or rotation from a hot mark, a caption-point drag, a drag of the
// selection, or a rubber band on empty paper. Picking follows fixed rules:
// the hot marks of every selected shape come before any body, a selected
// shape before the others, and a connector point before anything else.
#include "cad/canvas/mycad.h"
#include "cad/canvas/mycad_p.h"

#include "cad/geometry/geometry.h"
#include "cad/shapes/curve.h"
#include "cad/shapes/link.h"
#include "cad/shapes/polyline.h"

#include <algorithm>

namespace faroven {

using canvas_detail::isConnectorPoint;

void TMyCAD::MouseDown(TMouseButton Button, TShiftState Shift, int X, int Y) {
    TGraphicControl::MouseDown(Button, Shift, X, Y);
    // A press anywhere on the canvas ends the text input that is open.
    if (TextInputActive()) EndTextInput(true);
    if (m_action == dtClose) return;
    if (m_action != dtDrawing && (Shift & ssDouble)) return;
    if (Button != mbLeft) return;
    if (m_keyboardEditing) setFocus(Qt::MouseFocusReason);

    m_downPoint = m_pressPoint = m_lastPoint = m_editTarget = TPoint{X, Y};
    m_mousePressed = true;
    m_hitChild = m_clickThrough = nullptr;
    m_hotShape = nullptr;
    m_lastShift = Shift;
    m_guideLines.clear();

    if (m_action == dtDrawing) {
        pressWhileDrawing(Shift, X, Y);
        return;
    }
    // Node editing and dragging the whole layer act at the release.
    if (m_action != dtSelecting && m_action != dtRotateSelecting && m_action != dtBrowse) return;

    SetSelectShapeMode(Canvas());
    m_savedAction = m_action;
    m_pressBounds = myRecttoRect(GetShapesLTRBinZoom(m_workingShapes));
    if (pressOnHotMarks()) return;
    if (pressOnSelection(Shift)) return;
    pressElsewhere(Shift);
}

// ---- Drawing -----------------------------------------------------------------------------------

void TMyCAD::pressWhileDrawing(TShiftState shift, int x, int y) {
    RemoveAllWorkingShapes();
    m_savedAction = m_returnToSelecting ? dtSelecting : dtDrawing;
    SnapXY(x, y);
    TPoint p{x, y};
    m_downPoint = m_lastPoint = p;

    if (!m_drawnShape) {
        TMyShape* shape = CreateShapeBySpTool(m_shapeTool);
        if (!shape) return;
        startDrawnShape(shape);
        // A connector starts on the link point under the press; a plain line
        // remembers it, to become a connector when it ends on another shape.
        if (shape->kind() == TShapeKind::LinkLine)
            GetMainShape(shape, llStart, p);
        else if (shape->kind() == TShapeKind::Line)
            GetMergeShape(shape, llStart, p);
    } else {
        TMyShape* shape = m_drawnShape.get();
        const int n = shape->GetPointsCount();
        if (n > 0) {
            const bool poly = dynamic_cast<TMyPolyLine*>(shape) != nullptr;
            DrawMakeSquareorHV(shape, shift, MyPtToPt(shape->GetPointInZoom(poly ? n - 1 : 0)), p);
        }
        // The second press of a line sets its end, on a link point when one is there.
        if (n == 1 && shape->kind() == TShapeKind::LinkLine)
            GetMainShape(shape, llEnd, p);
        else if (n == 1 && shape->kind() == TShapeKind::Line)
            GetMergeShape(shape, llEnd, p);
    }
    TMyShape* shape = m_drawnShape.get();
    shape->AddPointByMouse(p);
    if (shape->GetPointsCount() > 0) m_downPoint = MyPtToPt(shape->GetPointInZoom(shape->GetPointsCount() - 1));
    m_lastPoint = p;
    invalidateEditFeedback();
}

void TMyCAD::startDrawnShape(TMyShape* shape) {
    discardDrawnShape();
    m_drawnShape.reset(shape);
    m_currentShape = shape;
    shape->SetShapeNo(GetShapesCount());
    dropSceneCache();
}

void TMyCAD::discardDrawnShape() {
    if (!m_drawnShape) return;
    TMyShape* shape = m_drawnShape.get();
    // A connector being drawn is already listed by the shape its start rests on.
    if (auto* line = dynamic_cast<TMyLine*>(shape); line && shape->kind() == TShapeKind::LinkLine) {
        for (int end : {line->StartSpNo(), line->EndSpNo()})
            if (TMyShape* joined = GetShapeByNo(end)) RemoveLinklineShape(joined, uint32_t(shape->ShapeNo()));
    }
    if (m_currentShape == shape) m_currentShape = nullptr;
    m_drawnShape.reset();
    ClearAllLinkHot();
    Invalidate();
}

// ---- Hot marks and caption points of the selection ---------------------------------------------------

bool TMyCAD::pressOnHotMarks() {
    TCanvas* canvas = Canvas();
    const std::vector<TMyShape*> selection = m_workingShapes;
    for (TMyShape* shape : selection) {
        // A freehand stroke has no hot marks; it ends the search.
        if (shape->kind() == TShapeKind::FreeLine) break;
        for (int child : std::as_const(*shape).ChildShapeNos())
            if (TMyShape* c = GetShapeByNo(child); c && c != shape && c->IsClickedMe(canvas, m_downPoint))
                m_hitChild = c;
        const int hot = shape->InWhichHot(m_downPoint);
        if (hot >= 0) {
            if (shape->kind() != TShapeKind::LinkLine && hot < 4 && hot < shape->GetPointsCount())
                m_downPoint = MyPtToPt(shape->GetPointInZoom(hot));
            // Only the pressed shape resizes: the others forget older hot marks.
            for (TMyShape* other : selection)
                if (other != shape) other->SetHotIndex(-1);
            m_hotShape = shape;
            m_currentShape = shape;
            // A locked shape keeps its size and angle (its marks are grey).
            if (shape->Locked()) return true;
            if (m_action == dtSelecting && m_resizeEnable && shape->ResizeEnable())
                m_action = dtResizing;
            else if (m_action == dtRotateSelecting && m_rotateEnable && shape->RotateEnable())
                m_action = dtRotating;
            return true;
        }
        const bool hasCaption = shape->MultiInfoCount() > 0 || !shape->Info().isEmpty();
        if (hasCaption && shape->InTextPointHot(m_downPoint) && !shape->Locked()) {
            m_downPoint = MyPtToPt(shape->ZoomedValuePt(shape->TextPoint()));
            m_hotShape = shape;
            if (m_action == dtSelecting) m_action = dtDraggingTextoutPoint;
            return true;
        }
    }
    return false;
}

// ---- A press on a selected shape ---------------------------------------------------------------------

bool TMyCAD::pressOnSelection(TShiftState shift) {
    TCanvas* canvas = Canvas();
    TMyShape* hit = nullptr;
    for (TMyShape* shape : m_workingShapes)
        if (IsClickedMeforShape(canvas, shape, m_downPoint)) {
            hit = shape;
            break;
        }
    if (!hit) return false;
    if (shift & ssShift) {
        RemoveWorkingShape(hit);
        return true;
    }
    // Another shape under the press inside the pressed one's box: a click
    // without moving selects it at the release (a small shape on a big one).
    const TRect box = myRecttoRect(GetShapesLTRBinZoom({hit}));
    const TPoint p1{box.left, box.top}, p2{box.right, box.bottom};
    const TPoint d = m_downPoint;
    const std::vector<int> nearby = rootsMeetingNow(TRect{d.x, d.y, d.x + 1, d.y + 1});
    std::vector<int> positions;
    for (int root : nearby)
        for (TMyShape* s : canvas_detail::shapeTree(*this, m_myShapes[size_t(root)])) positions.push_back(s->ShapeNo());
    std::sort(positions.begin(), positions.end());
    for (int pos : positions) {
        TMyShape* s = GetShapeByNo(pos);
        if (!s || s == hit || s->ParentShapeNo() == hit->ShapeNo()) continue;
        if (!m_operateAllLayer && s->LayerId() != CurrentLayerId()) continue;
        if (!IsClickedMeforShape(canvas, s, m_downPoint) || !IsInRegion(p1, p2, s)) continue;
        m_clickThrough = s->HasParentShape() ? GetShapeByNo(s->ParentShapeNo()) : s;
        break;
    }
    if (m_action != dtBrowse) m_action = dtDragging;
    m_currentShape = hit;
    const QPointer<TMyShape> clicked = hit;
    if (OnShapeSelected) OnShapeSelected(hit, hit);
    canvas_detail::clickIfAlive(clicked, this);
    return true;
}

// ---- A press elsewhere -------------------------------------------------------------------------------

void TMyCAD::pressElsewhere(TShiftState shift) {
    if (!m_workingShapes.empty() && OnShapeSelected) OnShapeSelected(m_workingShapes.front(), nullptr);
    // Top-most first, connector points before the rest, never a member by itself.
    TMyShape* winner = GetShapeAtPoint(m_downPoint);
    if (!winner) {
        RemoveAllWorkingShapes();
        return;  // a rubber band, committed by the release
    }
    if (shift & ssShift) {
        AddWorkingShapes(winner);
        if (OnShapeSelected) OnShapeSelected(nullptr, winner);
        return;
    }
    const bool connector = isConnectorPoint(winner);
    const QPointer<TMyShape> clicked = winner;
    m_currentShape = winner;
    if (!m_workingShapes.empty()) {
        const QPointer<TMyShape> previous = m_workingShapes.front();
        selectAlone(winner);
        // The order differs on purpose: a connector point is announced before its click.
        if (connector) {
            if (OnShapeSelected) OnShapeSelected(previous, winner);
            canvas_detail::clickIfAlive(clicked, this);
        } else {
            canvas_detail::clickIfAlive(clicked, this);
            if (OnShapeSelected) OnShapeSelected(previous, clicked);
        }
    } else {
        AddWorkingShapes(winner);
        if (OnShapeSelected) OnShapeSelected(nullptr, winner);
        canvas_detail::clickIfAlive(clicked, this);
    }
    if (!connector) Invalidate();
    if (m_action != dtBrowse) m_action = dtDragging;
    m_pressBounds = myRecttoRect(GetShapesLTRBinZoom(m_workingShapes));
}

void TMyCAD::selectAlone(TMyShape* shape) {
    m_workingShapes.clear();
    if (shape) m_workingShapes.push_back(shape);
    Invalidate();
    emit selectionChanged();
}

}  // namespace faroven
