// Rotated text: the logical font built from a TFont (escapement sign, scaled
// height, style fields, quality), where the text lands at each angle, the
// transparent double pass, and measuring independent of the angle.
#include "cad/geometry/rotated_text.h"
#include "platform/bitmap.h"
#include "platform/canvas.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

#include <numbers>

using namespace faroven;
using faroven::test::InkBoundsExcept;
using faroven::test::PixelAt;

namespace {

constexpr double kPi = std::numbers::pi;

TFont makeFont(int size, TColor color = clBlack, TFontStyles style = {}) {
    TFont f;
    f.SetName("DejaVu Sans");
    f.SetSize(size);
    f.SetColor(color);
    f.SetStyle(style);
    return f;
}

std::unique_ptr<TBitmap> whiteBitmap(int w, int h) {
    return faroven::test::FilledBitmap(w, h, clWhite, pf24bit);
}

// ---- The logical font ------------------------------------------------------------

TEST(LogicalFont, EscapementIsTenthsOfADegreeNegated) {
    TBitmap bmp(10, 10, pf24bit);
    const TFont font = makeFont(10);
    struct Case {
        double angle;
        int escapement;
    };
    for (const Case c : {Case{kPi / 2, -900}, Case{-kPi / 2, 900}, Case{kPi / 4, -450}, Case{0.1, -57},
                         Case{kPi, -1800}, Case{0, 0}}) {
        GetTextWidthHeight(bmp.Canvas(), "x", &font, c.angle, 1);
        EXPECT_EQ(bmp.Canvas()->LogFont().lfEscapement, c.escapement) << c.angle;
        EXPECT_EQ(bmp.Canvas()->LogFont().lfOrientation, c.escapement) << c.angle;
        MyLogTextOut(bmp.Canvas(), 0, 0, "x", &font, c.angle, 1);
        EXPECT_EQ(bmp.Canvas()->LogFont().lfEscapement, c.escapement) << c.angle;
        EXPECT_EQ(bmp.Canvas()->LogFont().lfOrientation, c.escapement) << c.angle;
    }
}

TEST(LogicalFont, HeightIsThePointSizeTimesTheScaleInPixels) {
    TBitmap bmp(10, 10, pf24bit);
    struct Case {
        int size;
        double scale;
        int height;
    };
    // 10 points at scale 1.5 is 15 pixels whatever the screen resolution;
    // halves round to even.
    for (const Case c : {Case{10, 1.5, -15}, Case{10, 1, -10}, Case{5, 0.5, -2}, Case{7, 0.5, -4},
                         Case{12, 2, -24}}) {
        const TFont font = makeFont(c.size);
        GetTextWidthHeight(bmp.Canvas(), "x", &font, 0, c.scale);
        EXPECT_EQ(bmp.Canvas()->LogFont().lfHeight, c.height) << c.size << " at " << c.scale;
    }
}

TEST(LogicalFont, StyleCharsetAndFaceComeFromTheFont) {
    TBitmap bmp(10, 10, pf24bit);
    TFont font = makeFont(9, clRed, {fsBold, fsItalic, fsUnderline, fsStrikeOut});
    font.SetCharset(ANSI_CHARSET);
    font.SetName("DejaVu Serif");
    MyLogTextOut(bmp.Canvas(), 0, 0, "a", &font, 0, 1);
    TLogFont lf = bmp.Canvas()->LogFont();
    EXPECT_EQ(lf.lfWeight, 700);
    EXPECT_TRUE(lf.lfItalic && lf.lfUnderline && lf.lfStrikeOut);
    EXPECT_EQ(lf.lfCharSet, ANSI_CHARSET);
    EXPECT_EQ(lf.lfFaceName, QString("DejaVu Serif"));
    EXPECT_EQ(bmp.Canvas()->Font()->Color(), clRed);

    const TFont plain = makeFont(9);
    GetTextWidthHeight(bmp.Canvas(), "a", &plain, 0, 1);
    lf = bmp.Canvas()->LogFont();
    EXPECT_EQ(lf.lfWeight, 400);
    EXPECT_FALSE(lf.lfItalic || lf.lfUnderline || lf.lfStrikeOut);
}

TEST(LogicalFont, OnlyDrawingAsksForAntialiasing) {
    TBitmap bmp(10, 10, pf24bit);
    const TFont font = makeFont(10);
    GetTextWidthHeight(bmp.Canvas(), "x", &font, 0, 1);
    EXPECT_EQ(bmp.Canvas()->LogFont().lfQuality, 0);
    MyLogTextOut(bmp.Canvas(), 0, 0, "x", &font, 0, 1);
    EXPECT_EQ(bmp.Canvas()->LogFont().lfQuality, ANTIALIASED_QUALITY);
    // Measuring keeps whatever quality the canvas's logical font has.
    GetTextWidthHeight(bmp.Canvas(), "x", &font, 0, 1);
    EXPECT_EQ(bmp.Canvas()->LogFont().lfQuality, ANTIALIASED_QUALITY);
}

TEST(LogicalFont, AbsurdScalesStayWithinTheCanvasLimits) {
    TBitmap bmp(10, 10, pf24bit);
    const TFont font = makeFont(10);
    GetTextWidthHeight(bmp.Canvas(), "", &font, 0, 1e12);
    EXPECT_EQ(bmp.Canvas()->LogFont().lfHeight, -32767);
    GetTextWidthHeight(bmp.Canvas(), "", &font, 1e300, -1e12);
    EXPECT_EQ(bmp.Canvas()->LogFont().lfHeight, 32767);
}

// ---- Measuring ---------------------------------------------------------------------

TEST(Measure, EmptyTextIsZeroWideAndOneFontHigh) {
    TBitmap bmp(10, 10, pf24bit);
    const TFont font = makeFont(10);
    const TSize empty = GetTextWidthHeight(bmp.Canvas(), "", &font, 0, 1.5);
    const TSize text = GetTextWidthHeight(bmp.Canvas(), "Hg", &font, 0, 1.5);
    EXPECT_EQ(empty.cx, 0);
    EXPECT_GE(empty.cy, 15);
    EXPECT_EQ(empty.cy, text.cy);
    EXPECT_GT(text.cx, 0);
}

TEST(Measure, ExtentIsOfTheUnrotatedTextAtTheScaledHeight) {
    TBitmap bmp(10, 10, pf24bit);
    const TFont font = makeFont(10);
    const TSize flat = GetTextWidthHeight(bmp.Canvas(), "Faroven", &font, 0, 2);
    EXPECT_EQ(GetTextWidthHeight(bmp.Canvas(), "Faroven", &font, kPi / 3, 2), flat);
    EXPECT_EQ(GetTextWidthHeight(bmp.Canvas(), "Faroven", &font, kPi / 2, 2), flat);
    const TSize big = GetTextWidthHeight(bmp.Canvas(), "Faroven", &font, 0, 4);
    EXPECT_NEAR(double(big.cx) / flat.cx, 2.0, 0.15);
    EXPECT_NEAR(double(big.cy) / flat.cy, 2.0, 0.15);
    EXPECT_GT(flat.cx, GetTextWidthHeight(bmp.Canvas(), "Far", &font, 0, 2).cx);
}

TEST(Measure, NullCanvasOrFontMeasuresNothing) {
    const TFont font = makeFont(10);
    TBitmap bmp(4, 4, pf24bit);
    EXPECT_EQ(GetTextWidthHeight(nullptr, "abc", &font, 0, 1), TSize{});
    EXPECT_EQ(GetTextWidthHeight(bmp.Canvas(), "abc", nullptr, 0, 1), TSize{});
    MyLogTextOut(nullptr, 0, 0, "abc", &font, 0, 1);
    MyLogTextOut(bmp.Canvas(), 0, 0, "abc", nullptr, 0, 1);
}

// ---- Drawing -------------------------------------------------------------------------

TEST(Draw, UnrotatedTextLiesRightOfAndBelowTheReferenceCorner) {
    auto bmp = whiteBitmap(200, 80);
    const TFont font = makeFont(10, clRed);
    const TSize size = GetTextWidthHeight(bmp->Canvas(), "HHH", &font, 0, 2);
    MyLogTextOut(bmp->Canvas(), 20, 20, "HHH", &font, 0, 2);
    const TRect ink = InkBoundsExcept(bmp->Image(), clWhite);
    EXPECT_GE(ink.left, 20);
    EXPECT_GE(ink.top, 20);
    EXPECT_LE(ink.right, 20 + size.cx + 1);
    EXPECT_LE(ink.bottom, 20 + size.cy);
    // Capital H at 20 pixels: well over half the height, and stems in the pure colour.
    EXPECT_GT(ink.Height(), 10);
    EXPECT_GT(test::CountPixels(bmp->Image(), clRed), 20);
}

TEST(Draw, QuarterTurnRunsTheTextDownwardsLeftOfTheCorner) {
    auto bmp = whiteBitmap(120, 200);
    const TFont font = makeFont(10, clBlack);
    const TSize size = GetTextWidthHeight(bmp->Canvas(), "HHHH", &font, kPi / 2, 2);
    MyLogTextOut(bmp->Canvas(), 60, 30, "HHHH", &font, kPi / 2, 2);
    const TRect ink = InkBoundsExcept(bmp->Image(), clWhite);
    // Clockwise by 90 degrees: the baseline points down, the tops of the
    // letters point right, so the glyphs lie left of x and below y.
    EXPECT_GE(ink.left, 60 - size.cy - 1);
    EXPECT_LE(ink.right, 61);
    EXPECT_GE(ink.top, 29);
    EXPECT_LE(ink.bottom, 30 + size.cx + 1);
    EXPECT_GT(ink.Height(), ink.Width());
}

TEST(Draw, BackgroundStaysTransparentWhateverTheBrush) {
    auto bmp = whiteBitmap(160, 60);
    bmp->Canvas()->Brush()->SetColor(clBlue);
    bmp->Canvas()->Brush()->SetStyle(bsSolid);
    const TFont font = makeFont(12, clBlack);
    MyLogTextOut(bmp->Canvas(), 10, 10, "Wide text", &font, 0, 1);
    EXPECT_EQ(test::CountPixels(bmp->Image(), clBlue), 0);
    EXPECT_GT(test::CountPixels(bmp->Image(), clBlack), 0);
}

TEST(Draw, EmptyTextDrawsNothing) {
    auto bmp = whiteBitmap(40, 40);
    const TFont font = makeFont(12);
    MyLogTextOut(bmp->Canvas(), 10, 10, "", &font, 0.3, 1);
    EXPECT_EQ(InkBoundsExcept(bmp->Image(), clWhite), TRect{});
}

TEST(Draw, SecondPassDarkensTheAntialiasedEdgesOnly) {
    const TFont font = makeFont(11, clBlack);
    // One pass by hand with the same logical font ...
    auto once = whiteBitmap(200, 60);
    TCanvas* c = once->Canvas();
    c->Font()->SetColor(clBlack);
    TLogFont lf = RotatedLogFont(c->LogFont(), font, 0.2, 1.7);
    lf.lfQuality = ANTIALIASED_QUALITY;
    c->SetLogFont(lf);
    c->SetBkModeTransparent(true);
    c->TextOut(15, 10, "Antialiased");
    // ... against the function's double pass.
    auto twice = whiteBitmap(200, 60);
    MyLogTextOut(twice->Canvas(), 15, 10, "Antialiased", &font, 0.2, 1.7);

    int darker = 0;
    for (int y = 0; y < 60; ++y)
        for (int x = 0; x < 200; ++x) {
            const TColor a = PixelAt(*once, x, y), b = PixelAt(*twice, x, y);
            ASSERT_LE(GetRValue(b), GetRValue(a)) << x << "," << y;
            ASSERT_EQ(a == clWhite, b == clWhite) << "the ink covers the same pixels at " << x << "," << y;
            darker += GetRValue(b) < GetRValue(a);
        }
    EXPECT_GT(darker, 10) << "antialiased edges are drawn twice";
}

}  // namespace
