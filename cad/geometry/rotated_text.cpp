#include "cad/geometry/rotated_text.h"
namespace faroven {
static TLogFont makeLogFont(TCanvas* canvas, TFont* font, double angle, double scale, bool aa) {
    TLogFont lf = canvas->LogFont();
    lf.lfItalic = font->Style().Contains(fsItalic);
    lf.lfWeight = font->Style().Contains(fsBold) ? 700 : 400;
    lf.lfUnderline = font->Style().Contains(fsUnderline);
    lf.lfStrikeOut = font->Style().Contains(fsStrikeOut);
    lf.lfCharSet = font->Charset();
    lf.lfEscapement = lf.lfOrientation = Round(angle * 180 / M_PI * 10 * -1);
    lf.lfHeight = -Round(font->Size() * scale);
    lf.lfFaceName = font->Name();
    if (aa) lf.lfQuality = ANTIALIASED_QUALITY;
    return lf;
}
void MyLogTextOut(TCanvas* canvas, int x, int y, const QString& text, TFont* font, double angle, double scale) {
    for (int pass = 0; pass < 2; ++pass) {
        canvas->Font()->SetColor(font->Color());
        canvas->SetLogFont(makeLogFont(canvas, font, angle, scale, true));
        canvas->SetBkModeTransparent(true);
        canvas->TextOut(x, y, text);
    }
}
TSize GetTextWidthHeight(TCanvas* canvas, const QString& text, TFont* font, double angle, double scale) {
    canvas->SetLogFont(makeLogFont(canvas, font, angle, scale, false));
    return canvas->TextExtent(text);
}
}
