#include "cad/geometry/rotated_text.h"

#include <algorithm>
#include <numbers>

namespace faroven {

namespace {

// Largest character height handed to the canvas; beyond it a font would only
// cost time and memory, and it keeps the negation below inside int.
constexpr int kMaxHeight = 32767;

}  // namespace

TLogFont RotatedLogFont(const TLogFont& base, const TFont& font, double angle, double scale) {
    TLogFont lf = base;
    const TFontStyles style = font.Style();
    lf.lfItalic = style.Contains(fsItalic);
    lf.lfWeight = style.Contains(fsBold) ? 700 : 400;
    lf.lfUnderline = style.Contains(fsUnderline);
    lf.lfStrikeOut = style.Contains(fsStrikeOut);
    lf.lfCharSet = font.Charset();
    // Tenths of a degree, negated: the logical font counts counter-clockwise
    // while the drawing's y axis points down.
    const int escapement = Round(angle * 180 / std::numbers::pi * 10 * -1);
    lf.lfEscapement = escapement;
    lf.lfOrientation = escapement;
    lf.lfHeight = -std::clamp(Round(font.Size() * scale), -kMaxHeight, kMaxHeight);
    lf.lfFaceName = font.Name();
    return lf;
}

void MyLogTextOut(TCanvas* canvas, int x, int y, const QString& text, const TFont* font, double angle, double scale) {
    if (!canvas || !font) return;
    // Two identical passes; the second draws the same text over the first.
    for (int pass = 0; pass < 2; ++pass) {
        canvas->Font()->SetColor(font->Color());
        TLogFont lf = RotatedLogFont(canvas->LogFont(), *font, angle, scale);
        lf.lfQuality = ANTIALIASED_QUALITY;
        canvas->SetLogFont(lf);
        canvas->SetBkModeTransparent(true);
        canvas->TextOut(x, y, text);
    }
}

TSize GetTextWidthHeight(TCanvas* canvas, const QString& text, const TFont* font, double angle, double scale) {
    if (!canvas || !font) return TSize{};
    canvas->SetLogFont(RotatedLogFont(canvas->LogFont(), *font, angle, scale));
    return canvas->TextExtent(text);
}

}  // namespace faroven
