// Curves through control points: TMyPolyBezier, a chain of cubic Bézier
// segments, and TMyBLine, a smooth B-spline. Both keep the polyline's point
// list and numbering (one handle per point) and override how the points are
// turned into the drawn curve.
//
// Both curves are reduced to one form, a cubic Bézier chain (anchor, handle,
// handle, anchor, ...), which one flattener turns into the pixel polyline
// that is drawn, hit-tested and measured. A curve lies inside the convex hull
// of its control points, so the shape's boxes, taken from the points, hold it.
#pragma once

#include "cad/shapes/polyline.h"

namespace faroven {

// The cubic Bézier chain p0, c, c, p1, c, c, p2, ... (any coordinates)
// flattened into pixels: each segment is cut into equal parameter steps, as
// many as keep every chord within a quarter pixel of the curve, and each
// sample is rounded half to even; a pixel repeated by the next sample is
// dropped. A chain that is not 3k + 1 points long is first completed by
// repeating its last point. One point gives that pixel; none gives nothing.
TArrPoint FlattenPolyBezier(const TArrMyPoint& chain);

// The clamped uniform B-spline of the control points as a cubic Bézier chain
// of the same curve. Four or more points give the cubic spline whose knots are
// 0,0,0,0,1,2,...,m,m,m,m (m = count - 3 segments): it starts at the first
// point tangent to the first leg, ends at the last point tangent to the last
// leg, and touches no other control point in general. Three points give the
// quadratic Bézier curve of them, two the straight segment, one the point.
TArrMyPoint BSplineToPolyBezier(const TArrMyPoint& controls);

// A chain of cubic Bézier segments: anchor, handle, handle, anchor, handle,
// handle, anchor, ... (3k + 1 points for k segments). Points 0, 3, 6, ... are
// anchors, the others handles.
class TMyPolyBezier : public TMyPolyLine {
    Q_OBJECT
public:
    static constexpr TShapeKind Kind = TShapeKind::PolyBezier;
    TShapeKind kind() const override { return Kind; }
    explicit TMyPolyBezier(TMyCAD* canvas);

    // The points as a full chain: a chain that is not 3k + 1 points long is
    // completed by copies of its last point (the tail then bends towards it).
    TArrMyPoint BezierChain() const;
    // The flattened curve in pixels at the current zoom, as Draw draws it.
    TArrPoint CurveInZoom() const;

    // The polyline's double click; the finished chain is then completed to
    // 3k + 1 points by copies of its last point.
    bool IsDrawingFinished(TMouseButton button, TPoint point) override;
    // The flattened curve with the shape's pen, arrow heads along the end
    // tangents, then the caption.
    void Draw(TCanvas* canvas) override;
    // Squares on the anchors, small round marks on the handles and a thin
    // line from each handle to its anchor.
    void DrawHot(TCanvas* canvas) override;
    // Within 8 pixels of the flattened curve (the control polygon does not count).
    bool IsClickedMe(TCanvas* canvas, TPoint point) override;
    // The curve as exclusive-or rubber bands: moved; with the mouse as a
    // provisional last point; with the current handle moved as
    // SizeChangeValue would; turned by the mouse's angle.
    void Draging(TCanvas* canvas, TPoint from, TPoint to) override;
    void Drawing(TCanvas* canvas, TPoint from, TPoint to) override;
    void Sizing(TCanvas* canvas, TPoint from, TPoint to) override;
    void Rotating(TCanvas* canvas, TPoint from, TPoint to) override;
    // The current handle goes to the mouse (to / zoom); an anchor carries its
    // two neighbouring handles by the same amount. The stored centre becomes
    // the middle of the points.
    void SizeChangeValue(TPoint from, TPoint to) override;
    // The length along the curve in the canvas's unit (GetInfo reports it).
    double GetLengthByUnit() override;
    using TMyShape::GetLengthByUnit;
    // The points' box grown by the arrow heads along the end tangents.
    TRect GetPaintBoundsInZoom() override;

private:
    // The points after SizeChangeValue moved the current handle to the pixel.
    TArrMyPoint sizedPoints(TPoint to) const;
};

// A smooth B-spline over its control points (see BSplineToPolyBezier), drawn
// while the points are being added.
class TMyBLine : public TMyPolyLine {
    Q_OBJECT
public:
    static constexpr TShapeKind Kind = TShapeKind::BLine;
    TShapeKind kind() const override { return Kind; }
    explicit TMyBLine(TMyCAD* canvas);

    // Raised by the canvas while it draws the rubber segment of a B-line that
    // is being drawn (more than two points), lowered right after.
    bool DrawingFlag() const { return m_drawingFlag; }
    void SetDrawingFlag(bool v) { m_drawingFlag = v; }

    // The spline as a cubic Bézier chain, in drawing units.
    TArrMyPoint BezierChain() const;
    // The flattened curve in pixels at the current zoom, as Draw draws it.
    TArrPoint CurveInZoom() const;

    // The flattened spline with the shape's pen, arrow heads along the end
    // tangents, then the caption.
    void Draw(TCanvas* canvas) override;
    // A square on every control point and the control polygon in thin lines.
    void DrawHot(TCanvas* canvas) override;
    // Within 8 pixels of the flattened spline.
    bool IsClickedMe(TCanvas* canvas, TPoint point) override;
    // With DrawingFlag raised: the spline with the mouse as a provisional last
    // control point; lowered: the line's segment from the last point to the
    // mouse. Exclusive-or either way, so the same call erases it.
    void Drawing(TCanvas* canvas, TPoint from, TPoint to) override;
    // The spline as exclusive-or rubber bands: moved; with the current handle
    // at the mouse; turned by the mouse's angle.
    void Draging(TCanvas* canvas, TPoint from, TPoint to) override;
    void Sizing(TCanvas* canvas, TPoint from, TPoint to) override;
    void Rotating(TCanvas* canvas, TPoint from, TPoint to) override;
    // The length along the spline in the canvas's unit (GetInfo reports it).
    double GetLengthByUnit() override;
    using TMyShape::GetLengthByUnit;
    // The points' box grown by the arrow heads along the end tangents.
    TRect GetPaintBoundsInZoom() override;

protected:
    void assignOwnFields(const TMyShape* source, bool withRelations) override;

private:
    bool m_drawingFlag = false;
};

}  // namespace faroven
