#include "cad/geometry/markers.h"

#include "cad/geometry/geometry.h"

namespace faroven {

namespace {
TColor g_hotColor = 0x0000FF00;

void setPenAndBrush(TCanvas* canvas, TColor penColor, TPenStyle penStyle, TPenMode mode, TColor brushColor,
                    TBrushStyle brushStyle) {
    TPen* pen = canvas->Pen();
    pen->SetWidth(1);
    pen->SetColor(penColor);
    pen->SetStyle(penStyle);
    pen->SetMode(mode);
    canvas->Brush()->SetColor(brushColor);
    canvas->Brush()->SetStyle(brushStyle);
}
}  // namespace

TColor HotColor() { return g_hotColor; }
void SetHotColor(TColor color) { g_hotColor = color; }

void SetDrawHotMode(TCanvas* canvas) { setPenAndBrush(canvas, clBlack, psSolid, pmCopy, g_hotColor, bsSolid); }

void SetDrawLockedHotMode(TCanvas* canvas) { setPenAndBrush(canvas, clBlack, psSolid, pmCopy, clGray, bsSolid); }

void SetDragResizeRotateShapeMode(TCanvas* canvas) {
    setPenAndBrush(canvas, clWhite, psDot, pmXor, canvas->Brush()->Color(), bsClear);
}

void DrawLinkSquare(TCanvas* canvas, TMyPoint p) {
    SetDrawHotMode(canvas);
    canvas->Pen()->SetColor(clBlue);
    canvas->Pen()->SetMode(pmCopy);
    canvas->MoveTo(Round(p.x - 2.5), Round(p.y - 2.5));
    canvas->LineTo(Round(p.x + 2.5), Round(p.y + 2.5));
    canvas->MoveTo(Round(p.x + 2.5), Round(p.y - 2.5));
    canvas->LineTo(Round(p.x - 2.5), Round(p.y + 2.5));
}

}  // namespace faroven
