// The drawing states and markers that need a shape or its canvas: the
// shape's own pen and brush, the hot squares at a selected shape's handles,
// the crosses at its link points and the diamond that marks a shape carrying
// information text. The canvas-free states and the link cross are in
// cad/geometry/markers.h. Markers are drawn in zoomed pixel coordinates;
// float positions are rounded half to even first.
#pragma once

#include "cad/geometry/markers.h"
#include "cad/types.h"
#include "platform/canvas.h"
#include "platform/color.h"

namespace faroven {

class TMyShape;

// The shape's pen colour, style and width in copy mode, its font, a solid
// brush of the pen colour: filled arrow heads.
void SetDrawTriangleMode(TMyShape* shape, TCanvas* canvas);
// The shape's pen and brush; on a black-and-white printer both colours become grey.
void SetDrawShapeMode(TMyShape* shape, TCanvas* canvas);

// One hot mark centred on p (see the rules in the implementation).
void DrawSquare(TMyShape* shape, TCanvas* canvas, TMyPoint p);
// Crosses at the shape's zoomed link points when the canvas shows hot marks and link hot marks.
void DrawLinkHot(TMyShape* shape, TCanvas* canvas);
// The information diamond; the colour argument is accepted and not used.
void DrawDiamond(TMyShape* shape, TCanvas* canvas, TMyPoint p, TColor color);
// A line between the rounded points with the current pen; the shape is not used.
void LineDraw(TMyShape* shape, TCanvas* canvas, TMyPoint p1, TMyPoint p2);

}  // namespace faroven
