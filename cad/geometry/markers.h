// Drawing states of a canvas that need no shape, and the link-point cross.
// The states and markers that take a shape (its pen and brush, hot squares,
// the link crosses of a shape, the information diamond) are in
// cad/shapes/shape_markers.h. Markers are drawn in zoomed pixel coordinates;
// float positions are rounded half to even first.
#pragma once

#include "cad/types.h"
#include "platform/canvas.h"
#include "platform/color.h"

namespace faroven {

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

// A blue cross of half-width 2.5 pixels.
void DrawLinkSquare(TCanvas* canvas, TMyPoint p);

}  // namespace faroven
