// Drawing states of a canvas and the editor's small markers: hot squares at a
// selected shape's handles, crosses at link points, and the diamond that marks
// a shape carrying information text. Markers are drawn in zoomed pixel
// coordinates; float positions are rounded half to even first.
#pragma once

#include "cad/types.h"
#include "platform/canvas.h"
#include "platform/color.h"

namespace faroven {

class TMyShape;

// The process-wide fill colour of hot squares. It starts pure green and is
// replaced whenever any canvas's ColorOfHot is set: the last setter wins for
// every canvas in the process.
TColor HotColor();
void SetHotColor(TColor color);

// Pen width 1, black, solid, copy; brush the hot colour, solid.
void SetDrawHotMode(TCanvas* canvas);
// Pen width 1, black, solid, copy; brush grey, solid.
void SetDrawLockedHotMode(TCanvas* canvas);
// Pen width 1, white, dotted, exclusive-or; no fill. Rubber bands drawn twice vanish.
void SetDragResizeRotateShapeMode(TCanvas* canvas);
// The shape's pen colour, style and width in copy mode, its font, a solid
// brush of the pen colour: filled arrow heads.
void SetDrawTriangleMode(TMyShape* shape, TCanvas* canvas);
// The shape's pen and brush; on a black-and-white printer both colours become grey.
void SetDrawShapeMode(TMyShape* shape, TCanvas* canvas);

// One hot mark centred on p (see the rules in the implementation).
void DrawSquare(TMyShape* shape, TCanvas* canvas, TMyPoint p);
// A blue cross of half-width 2.5 pixels.
void DrawLinkSquare(TCanvas* canvas, TMyPoint p);
// Crosses at the shape's zoomed link points when the canvas shows hot marks and link hot marks.
void DrawLinkHot(TMyShape* shape, TCanvas* canvas);
// The information diamond; the colour argument is accepted and not used.
void DrawDiamond(TMyShape* shape, TCanvas* canvas, TMyPoint p, TColor color);
// A line between the rounded points with the current pen; the shape is not used.
void LineDraw(TMyShape* shape, TCanvas* canvas, TMyPoint p1, TMyPoint p2);

}  // namespace faroven
