// TMyElliArc: an arc given by three points.
//
// ArcMode amCircle: the circular arc that starts at point 0, passes through
// point 1 and ends at point 2. amEllipse: the quarter of an ellipse from
// point 0 to point 2 whose end tangents meet at point 1 (the points
// C + (P1 - P2) cos t + (P1 - P0) sin t, t from 0 to 90 degrees, with
// C = P0 + P2 - P1): the three points are then the corners of the
// parallelogram the quarter ellipse is drawn in, and the arc is an affine
// image of a quarter circle, so turning, mirroring and scaling its points
// turn, mirror and scale it.
//
// ArcStyle asArc draws the open curve; asChord closes it with the straight
// segment from its end back to its start; asSector closes it through the
// centre. Chords and sectors are filled with the brush (or the gradient).
//
// The three points are the handles. The arc is hit within 8 screen pixels of
// the curve, and a chord or sector also anywhere inside it.
#pragma once

#include "cad/shapes/shape.h"

namespace faroven {

class TMyElliArc : public TMyShape {
    Q_OBJECT
    Q_PROPERTY(faroven::TArcMode ArcMode READ ArcMode WRITE SetArcMode)
    Q_PROPERTY(faroven::TArcStyle ArcStyle READ ArcStyle WRITE SetArcStyle)
public:
    static constexpr TShapeKind Kind = TShapeKind::ElliArc;
    TShapeKind kind() const override { return Kind; }
    // ArcMode from the canvas's ArcMode; ArcStyle asArc.
    explicit TMyElliArc(TMyCAD* canvas);

    TArcMode ArcMode() const { return m_arcMode; }
    void SetArcMode(TArcMode v) { m_arcMode = v; changed(); }
    TArcStyle ArcStyle() const { return m_arcStyle; }
    void SetArcStyle(TArcStyle v) { m_arcStyle = v; changed(); }

    // Finished with three points.
    bool IsDrawingFinished(TMouseButton button, TPoint point) override;
    // The curve (closed by a chord or through the centre for those styles)
    // with the shape's pen and brush, then the caption.
    void Draw(TCanvas* canvas) override;
    // The index of the last point whose hot square holds the pixel, or -1.
    int InWhichHot(TPoint point) override;
    bool IsClickedMe(TCanvas* canvas, TPoint point) override;
    // The current handle's point goes to the mouse (to / zoom).
    void SizeChangeValue(TPoint from, TPoint to) override;
    // Rubber bands in the exclusive-or state: the arc moved; the arc through
    // the points so far and the mouse; the arc with the current handle at the
    // mouse; the arc turned by the mouse's angle about its centre.
    void Draging(TCanvas* canvas, TPoint from, TPoint to) override;
    void Drawing(TCanvas* canvas, TPoint from, TPoint to) override;
    void Sizing(TCanvas* canvas, TPoint from, TPoint to) override;
    void Rotating(TCanvas* canvas, TPoint from, TPoint to) override;
    // The centre of the circle (amCircle) or of the ellipse (amEllipse),
    // stored; for three points on one line the centre of their box.
    TMyPoint GetCenterPoint() override;
    // "Arc: radius 26.46 mm, 90.0° from 0.0°" (circle) or "Arc: elliptic,
    // length 41.56 mm" in the canvas's unit.
    QString GetInfo() override;
    // The length along the curve in the canvas's unit.
    double GetLengthByUnit() override;
    using TMyShape::GetLengthByUnit;
    // The base box grown by the curve, which may bulge far beyond the points.
    TRect GetPaintBoundsInZoom() override;
    TRect GetHitBoundsInZoom() override;

    // The figure as drawn, in drawing units: the curve, then for a chord
    // nothing more (the figure is closed), for a sector the centre. With
    // fewer than three points, the points themselves.
    TArrMyPoint Outline() const;

    // The record: the parent's, then ArcMode and ArcStyle.
    void LoadFromStream(TStream& stream) override;
    void SaveToStream(TStream& stream) override;

protected:
    void assignOwnFields(const TMyShape* source, bool withRelations) override;

private:
    bool closedFigure() const { return m_arcStyle != asArc && GetPointsCount() >= 3; }
    TArrPoint outlineInZoom(const TArrMyPoint& points) const;
    void drawBand(TCanvas* canvas, const TArrMyPoint& points) const;

    TArcMode m_arcMode = amCircle;
    TArcStyle m_arcStyle = asArc;
};

// The circle through three points: radius r and the angles a1, a2 in
// degrees, counter-clockwise with y pointing up, at which the arc from p1
// through p2 to p3 starts and ends when it runs counter-clockwise (the form
// DXF's ARC takes). False, and nothing set, when the points lie on one line.
bool ArcRadiusAndAngles(TMyPoint p1, TMyPoint p2, TMyPoint p3, double& r, double& a1, double& a2);

// The points, in drawing units, of the arc given by three points in the mode
// (see TMyElliArc), about one every `step` units along the curve; the first
// and last are the end points. Three points on one line give the three
// points. centre receives the circle's or ellipse's centre.
TArrMyPoint ArcCurve(const TArrMyPoint& points, TArcMode mode, double step, TMyPoint& centre);

}  // namespace faroven
