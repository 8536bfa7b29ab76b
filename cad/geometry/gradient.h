// Gradient fills of shapes: every TGradientStyle between a begin and an end
// colour, over a rectangle of pixels, optionally only inside an outline.
//
// The gradient is laid over the pixels rect.left .. rect.right - 1 and
// rect.top .. rect.bottom - 1 (the area FillRect covers). The first and last
// pixel of each axis carry the exact colours that docs/gradients.md gives for
// the style; in between each colour channel runs linearly. Drawing is in copy
// mode, without antialiasing, and the pixels depend only on the arguments, so
// mirrored styles are exactly mirror-symmetric. gsNone draws nothing. Only the
// part inside the canvas's clip rectangle is computed, so a large zoomed shape
// costs no more than the visible area.
#pragma once

#include "cad/enums.h"
#include "platform/canvas.h"
#include "platform/color.h"
#include "platform/types.h"

#include <QRegion>

namespace faroven {

// Fills the rectangle with the gradient.
void DrawGradientRect(TCanvas* canvas, const TRect& rect, TGradientStyle style, TColor colorBegin, TColor colorEnd);

// The gradient laid over rect, drawn only where region covers.
void DrawGradientRegion(TCanvas* canvas, const QRegion& region, const TRect& rect, TGradientStyle style,
                        TColor colorBegin, TColor colorEnd);

// Fills the inside of the closed outline (alternate rule, the pixels Polygon
// fills) with the gradient laid over the outline's bounding rectangle
// (min x, min y, max x, max y). Fewer than three points draw nothing.
void DrawGradientPolygon(TCanvas* canvas, const TArrPoint& outline, TGradientStyle style, TColor colorBegin,
                         TColor colorEnd);

}  // namespace faroven
