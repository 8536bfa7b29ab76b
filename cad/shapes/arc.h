// TMyElliArc: an arc of a circle or an ellipse given by three points (start,
// a point on the arc, end), drawn as an open arc, a chord or a sector.
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

private:
    TArcMode m_arcMode = amCircle;
    TArcStyle m_arcStyle = asArc;
};

// The circle through three points: radius r and the angles a1, a2 in
// degrees, counter-clockwise with y pointing up, at which the arc from p1
// through p2 to p3 starts and ends when it runs counter-clockwise (the form
// DXF's ARC takes). False, and nothing set, when the points lie on one line.
bool ArcRadiusAndAngles(TMyPoint p1, TMyPoint p2, TMyPoint p3, double& r, double& a1, double& a2);

}  // namespace faroven
