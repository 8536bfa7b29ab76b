// Temporary subset; replaced by the full rotated text output.
#pragma once
#include "platform/canvas.h"
namespace faroven {
void MyLogTextOut(TCanvas* canvas, int x, int y, const QString& text, TFont* font, double angle, double scale);
TSize GetTextWidthHeight(TCanvas* canvas, const QString& text, TFont* font, double angle, double scale);
}
