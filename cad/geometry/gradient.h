// Temporary subset; replaced by the full gradient fills.
#pragma once
#include "cad/enums.h"
#include "platform/canvas.h"
namespace faroven {
void DrawGradientRect(TCanvas* canvas, const TRect& rect, TGradientStyle style, TColor colorBegin, TColor colorEnd);
void DrawGradientPolygon(TCanvas* canvas, const TArrPoint& outline, TGradientStyle style, TColor colorBegin, TColor colorEnd);
}
