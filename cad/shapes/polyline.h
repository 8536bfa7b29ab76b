// Shapes with any number of points: TMyPolyLine (an open line through the
// points, with the arrow heads of TMyLine), TMyPolygon (a closed, fillable
// figure) and TMyFreeLine (a freehand stroke). They keep the line's handles
// (one per point, numbered by index), drawing and segment hit test, and
// override what differs.
#pragma once

#include "cad/shapes/line.h"

namespace faroven {

class TMyPolyLine : public TMyLine {
    Q_OBJECT
public:
    static constexpr TShapeKind Kind = TShapeKind::PolyLine;
    TShapeKind kind() const override { return Kind; }

    // ArrowStyle starts at ANone whatever the canvas's default.
    explicit TMyPolyLine(TMyCAD* canvas);

    // Appends a point given in the canvas's own coordinates (XYMode): Mode1
    // measures y from the bottom (y := height - y), Mode2 both x and y from
    // the bottom-right corner, Mode3 x from the right; Mode0 keeps the point.
    // Width and height are the control's, in pixels; the point is stored as
    // it comes out, without the zoom.
    void AppendPoint(TPoint p);
    // Finished when there are more than two points and the last two are the
    // same zoomed point (a double click places one point twice); the copy is
    // then removed. The button does not matter.
    bool IsDrawingFinished(TMouseButton button, TPoint point) override;
};

class TMyPolygon : public TMyPolyLine {
    Q_OBJECT
public:
    static constexpr TShapeKind Kind = TShapeKind::Polygon;
    TShapeKind kind() const override { return Kind; }
    explicit TMyPolygon(TMyCAD* canvas);

    // With more than three points, a press less than HotSize pixels (on both
    // axes) from point 0, or from the point before the last one (a repeated
    // click), finishes the figure; the last point is then put on point 0.
    bool IsDrawingFinished(TMouseButton button, TPoint point) override;
    // The rounded zoomed points as one closed figure with the shape's pen,
    // brush or gradient; then the caption.
    void Draw(TCanvas* canvas) override;
    void DrawHot(TCanvas* canvas) override;
    // Inside the polygon region of the rounded zoomed points (alternate rule,
    // no tolerance band).
    bool IsClickedMe(TCanvas* canvas, TPoint point) override;
    // Moves the current handle by the mouse's movement (to - from, in pixels,
    // divided by the zoom so that the point follows the mouse). Point 0 and
    // the last point travel together, as a closed polygon's last point lies on
    // point 0. The stored centre is then taken from the first four points.
    void SizeChangeValue(TPoint from, TPoint to) override;
    // The changed outline as an exclusive-or rubber band.
    void Sizing(TCanvas* canvas, TPoint from, TPoint to) override;
    // The closed outline, moved or turned, as rubber bands.
    void Draging(TCanvas* canvas, TPoint from, TPoint to) override;
    void Rotating(TCanvas* canvas, TPoint from, TPoint to) override;
    // "Polygon: 4 points, perimeter 105.83 mm, area 700.00 mm²": the corners
    // (a closing copy of point 0 not counted), the perimeter and the area.
    QString GetInfo() override;
    // The perimeter in the canvas's unit.
    double GetLengthByUnit() override;
    using TMyShape::GetLengthByUnit;
    // The enclosed area in square units of the canvas's unit (shoelace rule).
    double GetAreaByUnit() const;

private:
    // The rounded zoomed points with the current handle (and its twin) moved by d.
    TArrPoint movedOutline(TPoint d) const;
};

class TMyFreeLine : public TMyPolyLine {
    Q_OBJECT
public:
    static constexpr TShapeKind Kind = TShapeKind::FreeLine;
    TShapeKind kind() const override { return Kind; }
    explicit TMyFreeLine(TMyCAD* canvas);

    // Finished as soon as the stroke has two points.
    bool IsDrawingFinished(TMouseButton button, TPoint point) override;
    // The newest piece of the stroke, from the previous to the current mouse
    // position, with the shape's own pen (it stays until the next paint).
    void Drawing(TCanvas* canvas, TPoint from, TPoint to) override;
};

}  // namespace faroven
