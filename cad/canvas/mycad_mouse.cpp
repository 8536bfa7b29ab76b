// TMyCAD: mouse feedback that is not an edit. The cross-hair through the mouse
// (CrossLine) and the frame around the shape under the mouse (MouseEffect)
// are kept as state here and drawn by Paint in exclusive-or on top of
// everything, since a Qt widget draws only while it paints.
#include "cad/canvas/mycad.h"
#include "cad/canvas/mycad_p.h"

#include "cad/geometry/geometry.h"
#include "cad/geometry/markers.h"

namespace faroven {

namespace {
// The hover frame keeps this many pixels off the shape's points.
constexpr int kHoverMargin = 3;
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
    setHoverShape(m_mouseEffect ? hoverShapeAt(m_mousePoint) : nullptr);
    TGraphicControl::MouseMove(Shift, X, Y);
}

void TMyCAD::MouseLeave() {
    if (m_crossLine && m_mouseInside) invalidateCrossHair();
    m_mouseInside = false;
    setHoverShape(nullptr);
    TGraphicControl::MouseLeave();
}

bool TMyCAD::MousePoint(TPoint& p) const {
    if (!m_mouseInside) return false;
    p = m_mousePoint;
    return true;
}

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

// The shape a press here would pick, found through the spatial index.
TMyShape* TMyCAD::hoverShapeAt(TPoint p) { return GetShapeAtPoint(p); }

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

// The hover frame is the dotted exclusive-or rubber-band pen; a selected
// shape shows its hot marks instead. The cross-hair is a solid exclusive-or
// line of one pixel each way across the whole control, with its centre pixel
// inverted once.
void TMyCAD::drawMouseFeedback(TCanvas* canvas) {
    if (m_mouseEffect && m_hoverShape && IsInWorkingShape(m_hoverShape) < 0 &&
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
