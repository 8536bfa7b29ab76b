// TMyCAD: the mouse moving. While an edit runs, a move updates the edit's
// state (the point it would end at) and invalidates the pixels its outline
// covers; the next paint draws the outline in exclusive-or on top of the
// drawing, since a Qt widget draws only while it paints. Without an edit, a
// move drives the hover feedback: the frame around the shape under the mouse
// (MouseEffect), the enter and leave events with the hint, and the cursor.
// The cross-hair (CrossLine) follows the mouse in both.
#include "cad/canvas/mycad.h"
#include "cad/canvas/mycad_p.h"

#include "cad/geometry/geometry.h"
#include "cad/geometry/markers.h"
#include "cad/shapes/curve.h"
#include "cad/shapes/polyline.h"
#include "cad/shapes/shape_markers.h"

#include <QLabel>
#include <cmath>

namespace faroven {

namespace {
// The hover frame keeps this many pixels off the shape's points.
constexpr int kHoverMargin = 3;
// Room around an outline for its pen, hot marks and rounding.
constexpr int kFeedbackMargin = 8;
}  // namespace

void TMyCAD::SetCrossLine(bool v) {
    if (m_crossLine == v) return;
    m_crossLine = v;
    if (m_mouseInside) invalidateCrossHair();
}

void TMyCAD::SetMouseEffect(bool v) {
    if (m_mouseEffect == v) return;
    m_mouseEffect = v;
    if (!v) setHoverShape(nullptr);
}

void TMyCAD::MouseMove(TShiftState Shift, int X, int Y) {
    if (m_crossLine && m_mouseInside) invalidateCrossHair();
    m_mouseInside = true;
    m_mousePoint = TPoint{X, Y};
    if (m_crossLine) invalidateCrossHair();
    m_lastShift = Shift;

    const bool editing = m_mousePressed || m_drawnShape;
    if (editing) {
        if (m_mousePressed && !m_cursorClipped && m_action != dtBrowse) SetCursorClipArea(PageRect());
        const TPoint p = clipped(TPoint{X, Y});
        // Drawing keeps its own, snapped and constrained, last point.
        if (m_action != dtDrawing) m_lastPoint = p;
        switch (m_action) {
        case dtDrawing:
            if (TMyShape* shape = m_drawnShape.get()) {
                TPoint q = p;
                SnapXY(q.x, q.y);
                // A freehand stroke takes every position the pressed mouse passes.
                if (m_mousePressed && shape->kind() == TShapeKind::FreeLine && !(q == m_downPoint)) {
                    shape->AddPointByMouse(q);
                    m_downPoint = q;
                }
                const bool poly = dynamic_cast<TMyPolyLine*>(shape) != nullptr;
                if (const int n = shape->GetPointsCount(); n > 0)
                    DrawMakeSquareorHV(shape, Shift, MyPtToPt(shape->GetPointInZoom(poly ? n - 1 : 0)), q);
                m_lastPoint = q;
                // The link point a connector would end on is marked.
                if (shape->kind() == TShapeKind::LinkLine || shape->kind() == TShapeKind::Line) {
                    int no = -1, id = -1;
                    InWhichShapeWhichHotLinkId(no, id, q);
                    m_linkHotShapeNo = no;
                    m_linkHotPointIndex = std::max(id, 0);
                }
            }
            break;
        case dtDragging:
            m_editTarget = dragTarget(p);
            offerEditTarget(OnShapeMouseDragging, m_currentShape);
            break;
        case dtResizing:
            m_editTarget = resizeTarget(p, Shift);
            offerEditTarget(OnShapeMouseResizing, m_hotShape);
            break;
        case dtRotating:
            m_editTarget = rotateTarget(p);
            offerEditTarget(OnShapeMouseRotating, m_hotShape);
            break;
        case dtDraggingTextoutPoint:
            if (m_hotShape) m_hotShape->SetTextPoint(TMyPoint{float(p.x / m_zoom), float(p.y / m_zoom)});
            break;
        default: break;
        }
        invalidateEditFeedback();
    } else {
        m_lastPoint = TPoint{X, Y};
        TMyShape* under = GetShapeAtPoint(m_lastPoint);
        setHoverShape(m_mouseEffect ? under : nullptr);
        ShowHintEnterLeaveShape(under);
        SetCursor(cursorAt(m_lastPoint, under));
    }
    UpdateLabelXY(X, Y);
    UpdateLabelValue();
    TGraphicControl::MouseMove(Shift, X, Y);
}

// The handler sees the end point the release would use (in XYMode) and may move it.
void TMyCAD::offerEditTarget(const TShapeMouseDraggingSizingRotating& handler, TMyShape* shape) {
    if (!handler) return;
    TPoint target = GetPointByMode(m_editTarget);
    handler(shape, GetPointByMode(m_downPoint), target);
    m_editTarget = GetPointByMode(target);
}

void TMyCAD::MouseLeave() {
    if (m_crossLine && m_mouseInside) invalidateCrossHair();
    m_mouseInside = false;
    setHoverShape(nullptr);
    ShowHintEnterLeaveShape(nullptr);
    TGraphicControl::MouseLeave();
}

bool TMyCAD::MousePoint(TPoint& p) const {
    if (!m_mouseInside) return false;
    p = m_mousePoint;
    return true;
}

void TMyCAD::CancelMouseEdit() {
    discardDrawnShape();
    if (m_mousePressed) {
        m_mousePressed = false;
        switch (m_action) {
        case dtDragging:
        case dtResizing:
        case dtRotating:
        case dtDraggingTextoutPoint: m_action = m_savedAction; break;
        default: break;
        }
        m_hitChild = m_clickThrough = nullptr;
        // Where the mouse is when the edit ends is where the press was.
        m_lastPoint = m_downPoint;
    }
    ReleaseCursorClipArea();
    m_guideLines.clear();
    dropSceneCache();
    Invalidate();
}

void TMyCAD::forgetMouseShapes(const std::function<bool(TMyShape*)>& going) {
    for (TMyShape** s : {&m_hotShape, &m_hitChild, &m_clickThrough, &m_hintShape})
        if (*s && going(*s)) *s = nullptr;
}

// ---- Cursor, hints and labels --------------------------------------------------------------------

TCursor TMyCAD::cursorAt(TPoint p, TMyShape* under) {
    if (m_action == dtDrawing || m_action == dtPolylinePolygonPointAdding ||
        m_action == dtPolylinePolygonPointRemoving)
        return crCross;
    if (m_action == dtDragWhole) return crSizeAll;
    if (m_action == dtBrowse) return under ? crHandPoint : crDefault;
    for (TMyShape* shape : m_workingShapes) {
        if (shape->kind() == TShapeKind::FreeLine) break;
        if (shape->InWhichHot(p) >= 0) {
            if (shape->Locked()) return crNo;
            return m_action == dtRotateSelecting ? crHandPoint : shape->GetMouseCursor(p.x, p.y);
        }
    }
    if (under) return under->Locked() ? crArrow : crSizeAll;
    return crCross;
}

void TMyCAD::ShowHintEnterLeaveShape(TMyShape* shape) {
    if (shape == m_hintShape) return;
    TMyShape* former = m_hintShape;
    m_hintShape = shape;
    if (former && OnMouseLeaveShape) OnMouseLeaveShape(former);
    if (shape && OnMouseEnterShape) OnMouseEnterShape(shape);
    QString hint;
    if (shape) hint = shape->Info().isEmpty() ? shape->GetInfo() : shape->Info();
    SetHint(hint);
}

void TMyCAD::UpdateLabelXY(int x, int y) {
    if (!m_labelXY) return;
    const TPoint p = GetPointByMode(TPoint{x, y});
    const int decimals = m_theUnit == pixel ? 0 : 2;
    m_labelXY->setText(QStringLiteral("X %1  Y %2 %3")
                           .arg(PixelsToUnit(p.x / m_zoom), 0, 'f', decimals)
                           .arg(PixelsToUnit(p.y / m_zoom), 0, 'f', decimals)
                           .arg(UnitAbbreviation()));
}

// The value that the edit in progress measures: the length being drawn, the
// offset of a drag or resize, the angle of a rotation; without an edit the
// description of the one selected shape.
void TMyCAD::UpdateLabelValue() {
    if (!m_labelValue) return;
    const int decimals = m_theUnit == pixel ? 0 : 2;
    auto length = [&](double pixels) { return QString::number(PixelsToUnit(pixels / m_zoom), 'f', decimals); };
    const double dx = double(m_lastPoint.x) - m_downPoint.x, dy = double(m_lastPoint.y) - m_downPoint.y;
    QString text;
    if (m_drawnShape) {
        text = QStringLiteral("Length %1 %2").arg(length(std::hypot(dx, dy)), UnitAbbreviation());
    } else if (m_mousePressed && (m_action == dtDragging || m_action == dtResizing || m_action == dtDragWhole)) {
        text = QStringLiteral("dX %1  dY %2 %3").arg(length(dx), length(dy), UnitAbbreviation());
    } else if (m_mousePressed && m_action == dtRotating && m_hotShape) {
        const double degrees = m_hotShape->GetRotatedAngle(m_downPoint, m_editTarget) * 180.0 / M_PI;
        text = QStringLiteral("Angle %1°").arg(degrees, 0, 'f', 1);
    } else if (m_workingShapes.size() == 1) {
        text = m_workingShapes.front()->GetInfo();
    }
    m_labelValue->setText(text);
}

// ---- Hover frame and cross-hair ------------------------------------------------------------------

void TMyCAD::invalidateCrossHair() {
    InvalidateRect(TRect{0, m_mousePoint.y, Width(), m_mousePoint.y + 1});
    InvalidateRect(TRect{m_mousePoint.x, 0, m_mousePoint.x + 1, Height()});
}

// The zoomed bounds of the shape's points and its members', grown a little.
TRect TMyCAD::hoverFrame(TMyShape* shape) {
    const std::vector<TMyShape*> tree = canvas_detail::shapeTree(*this, shape);
    TArrMyPoint points;
    for (TMyShape* s : tree)
        for (int i = 0; i < s->GetPointsCount(); ++i) points.push_back(s->GetPointInZoom(i));
    if (points.empty()) return TRect{};
    TRect r = myRecttoRect(GetPointsLTRB(points));
    InflateRect(r, kHoverMargin, kHoverMargin);
    return r;
}

void TMyCAD::setHoverShape(TMyShape* shape) {
    if (shape == m_hoverShape) return;
    // The frame's pixels, one more on the far sides for the pen.
    auto invalidateFrame = [this](TMyShape* s) {
        if (!s || GetShapeNoInMyShapes(s) < 0) return;
        TRect r = hoverFrame(s);
        InflateRect(r, 1, 1);
        InvalidateRect(r);
    };
    invalidateFrame(m_hoverShape);
    m_hoverShape = shape;
    invalidateFrame(m_hoverShape);
}

// ---- Edit feedback -----------------------------------------------------------------------------------

// The pixels the edit's outline covers now; the paint of the last one and of
// this one are both invalidated.
void TMyCAD::invalidateEditFeedback() {
    TRect now{};
    const TPoint d = m_downPoint, l = m_lastPoint;
    const TRect band{std::min(d.x, l.x), std::min(d.y, l.y), std::max(d.x, l.x) + 1, std::max(d.y, l.y) + 1};
    if (m_drawnShape) {
        now = canvas_detail::unite(m_drawnShape->GetPaintBoundsInZoom(), band);
    } else if (m_mousePressed) {
        switch (m_action) {
        case dtSelecting:
        case dtRotateSelecting:
        case dtDragWhole: now = canvas_detail::unite(band, m_pressBounds); break;
        case dtDragging: {
            const TPoint t = m_editTarget;
            now = canvas_detail::unite(m_pressBounds, canvas_detail::offsetRect(m_pressBounds, t.x - d.x, t.y - d.y));
            break;
        }
        case dtResizing:
        case dtRotating:
            if (m_hotShape) {
                // A turn or a resize stays within the circle about the centre through the farthest point.
                const TRect box = m_hotShape->GetPaintBoundsInZoom();
                const TMyPoint c = m_hotShape->GetCenterPointInZoom();
                double r = std::hypot(double(l.x) - c.x, double(l.y) - c.y);
                for (TPoint corner : {TPoint{box.left, box.top}, TPoint{box.right, box.bottom},
                                      TPoint{box.left, box.bottom}, TPoint{box.right, box.top}})
                    r = std::max(r, std::hypot(double(corner.x) - c.x, double(corner.y) - c.y));
                if (m_action == dtResizing) r *= 2;
                const int ri = int(std::ceil(r));
                now = TRect{int(c.x) - ri, int(c.y) - ri, int(c.x) + ri + 1, int(c.y) + ri + 1};
            }
            break;
        case dtDraggingTextoutPoint: now = canvas_detail::unite(m_pressBounds, band); break;
        default: break;
        }
    }
    for (const auto& [a, b] : m_guideLines)
        now = canvas_detail::unite(now, TRect{int(std::min(a.x, b.x)), int(std::min(a.y, b.y)),
                                              int(std::max(a.x, b.x)) + 1, int(std::max(a.y, b.y)) + 1});
    if (!canvas_detail::isEmptyRect(now)) InflateRect(now, kFeedbackMargin, kFeedbackMargin);
    if (!canvas_detail::isEmptyRect(m_feedbackRect)) InvalidateRect(m_feedbackRect);
    if (!canvas_detail::isEmptyRect(now)) InvalidateRect(now);
    m_feedbackRect = now;
}

bool TMyCAD::sceneFrozen() const {
    if (m_drawnShape) return true;
    if (!m_mousePressed) return false;
    switch (m_action) {
    case dtSelecting:
    case dtRotateSelecting:
    case dtDragging:
    case dtResizing:
    case dtRotating:
    case dtDragWhole: return true;
    default: return false;
    }
}

// Drawn by Paint on top of the drawing and the hot marks.
void TMyCAD::drawEditFeedback(TCanvas* canvas) {
    const TPoint d = m_downPoint, l = m_lastPoint;
    if (TMyShape* shape = m_drawnShape.get()) {
        shape->Draw(canvas);
        if (auto* bline = shape_cast<TMyBLine>(shape); bline && bline->GetPointsCount() > 2) {
            bline->SetDrawingFlag(true);
            bline->Drawing(canvas, d, l);
            bline->SetDrawingFlag(false);
        } else if (shape->kind() != TShapeKind::FreeLine) {
            shape->Drawing(canvas, d, l);
        }
        if (TMyShape* target = GetShapeByNo(m_linkHotShapeNo);
            target && m_linkHotPointIndex < target->GetLinkPointsCount()) {
            const TMyPoint p = target->GetLinkPointInZoom(m_linkHotPointIndex);
            SetDrawHotMode(canvas);
            const int h = m_hotSize + 1;
            canvas->Rectangle(Round(p.x) - h, Round(p.y) - h, Round(p.x) + h + 1, Round(p.y) + h + 1);
        }
    } else if (m_mousePressed) {
        switch (m_action) {
        case dtSelecting:
        case dtRotateSelecting:
            // The rubber band of a press on empty paper.
            if (m_workingShapes.empty() || !(d == l)) {
                SetDragResizeRotateShapeMode(canvas);
                canvas->Rectangle(std::min(d.x, l.x), std::min(d.y, l.y), std::max(d.x, l.x) + 1,
                                  std::max(d.y, l.y) + 1);
            }
            break;
        case dtDragging:
            if (m_dragTrace && !(d == l)) DraggingforShapes(canvas, d, m_editTarget);
            break;
        case dtResizing:
            if (m_hotShape && !(m_pressPoint == l)) m_hotShape->Sizing(canvas, d, m_editTarget);
            break;
        case dtRotating:
            if (!(d == l)) RotatingforShapes(canvas, d, m_editTarget);
            break;
        case dtDragWhole:
            SetDragResizeRotateShapeMode(canvas);
            if (!canvas_detail::isEmptyRect(m_pressBounds))
                canvas->Rectangle(canvas_detail::offsetRect(m_pressBounds, l.x - d.x, l.y - d.y));
            break;
        default: break;
        }
    }
    if (!m_guideLines.empty()) {
        canvas->Pen()->SetMode(pmCopy);
        canvas->Pen()->SetStyle(psSolid);
        canvas->Pen()->SetWidth(1);
        canvas->Pen()->SetColor(clFuchsia);
        for (const auto& [a, b] : m_guideLines) LineDraw(nullptr, canvas, a, b);
    }
}

// The hover frame is the dotted exclusive-or rubber-band pen; a selected
// shape shows its hot marks instead. The cross-hair is a solid exclusive-or
// line of one pixel each way across the whole control, with its centre pixel
// inverted once.
void TMyCAD::drawMouseFeedback(TCanvas* canvas) {
    if (!m_mousePressed && m_mouseEffect && m_hoverShape && IsInWorkingShape(m_hoverShape) < 0 &&
        GetShapeNoInMyShapes(m_hoverShape) >= 0 && IsShapePickable(m_hoverShape)) {
        SetDragResizeRotateShapeMode(canvas);
        canvas->Rectangle(hoverFrame(m_hoverShape));
    }
    if (m_crossLine && m_mouseInside) {
        canvas->Pen()->SetMode(pmXor);
        canvas->Pen()->SetColor(clWhite);
        canvas->Pen()->SetStyle(psSolid);
        canvas->Pen()->SetWidth(1);
        const TPoint p = m_mousePoint;
        canvas->MoveTo(p.x, 0);
        canvas->LineTo(p.x, Height());
        canvas->MoveTo(0, p.y);
        canvas->LineTo(p.x, p.y);
        canvas->MoveTo(p.x + 1, p.y);
        canvas->LineTo(Width(), p.y);
    }
}

}  // namespace faroven
