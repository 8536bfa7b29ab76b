#include "cad/geometry/gradient.h"
namespace faroven {
void DrawGradientRect(TCanvas* canvas, const TRect& rect, TGradientStyle style, TColor b, TColor e) {
    if (style == gsNone) return;
    canvas->Brush()->SetColor(b);
    canvas->FillRect(rect);
}
void DrawGradientPolygon(TCanvas* canvas, const TArrPoint& outline, TGradientStyle style, TColor b, TColor e) {
    if (style == gsNone) return;
    canvas->Pen()->SetStyle(psClear);
    canvas->Brush()->SetColor(b);
    canvas->Polygon(outline);
}
}
