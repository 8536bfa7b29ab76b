// Text at any angle and scale on a TCanvas, through the canvas's logical font.
// Angles are radians, clockwise on the screen positive (y down); the scale is
// the zoom factor. The font's point size is used directly as the character
// height in pixels times the scale, without the screen resolution, so that
// captions stay proportional to the shapes at every zoom.
#pragma once

#include "platform/canvas.h"
#include "platform/graphics.h"

#include <QString>

namespace faroven {

// Draws text with its reference (top-left) corner at (x, y), turned by angle
// about that corner, in the font's colour, antialiased, on a transparent
// background. The text is written twice over itself, which darkens the
// antialiased edges slightly; that look is intended. Leaves the canvas with the
// font's colour and the logical font used. A null canvas or font draws nothing.
void MyLogTextOut(TCanvas* canvas, int x, int y, const QString& text, const TFont* font, double angle, double scale);

// The (width, height) in pixels of the unrotated text at the scaled height, in
// the font's face and style; an empty text measures (0, height of the font).
// Leaves the logical font used on the canvas, keeping its output quality.
// A null canvas or font gives (0, 0).
TSize GetTextWidthHeight(TCanvas* canvas, const QString& text, const TFont* font, double angle, double scale);

// The logical font that both functions give the canvas: escapement and
// orientation round(angle * 180 / pi * 10 * -1), height -round(Size * scale)
// (its magnitude capped at 32767), weight 700 or 400, italic, underline,
// strike-out, charset and face from the font; everything else from `base`.
TLogFont RotatedLogFont(const TLogFont& base, const TFont& font, double angle, double scale);

}  // namespace faroven
