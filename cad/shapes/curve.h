// Curves through control points: TMyPolyBezier, a chain of cubic Bézier
// segments, and TMyBLine, a smooth B-spline. Both keep the polyline's point
// list and numbering (one handle per point) and override how the points are
// turned into the drawn curve.
#pragma once

#include "cad/shapes/polyline.h"

namespace faroven {

// A chain of cubic Bézier segments: anchor, handle, handle, anchor, handle,
// handle, anchor, ... (3k + 1 points for k segments).
class TMyPolyBezier : public TMyPolyLine {
    Q_OBJECT
public:
    static constexpr TShapeKind Kind = TShapeKind::PolyBezier;
    TShapeKind kind() const override { return Kind; }
    explicit TMyPolyBezier(TMyCAD* canvas);
};

// A smooth B-spline through its control points, drawn while the points are
// being added.
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

private:
    bool m_drawingFlag = false;
};

}  // namespace faroven
