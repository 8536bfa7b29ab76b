// Gradient fills: the exact colour at the start, end and middle points of every
// style, mirror symmetry and mirror pairs, coverage of exactly the rectangle or
// the outline's inside, clipping that does not move the gradient, and gsNone.
#include "cad/geometry/gradient.h"
#include "platform/bitmap.h"
#include "platform/canvas.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

#include <map>

using namespace faroven;
using faroven::test::PixelAt;

namespace {

// Begin and end colours whose mix never has a green component, on a
// background that has one, so that untouched pixels are easy to tell.
constexpr TColor kBegin = clRed;
constexpr TColor kEnd = clBlue;
constexpr TColor kMid = 0x800080;  // each channel at 127.5, rounded half to even
constexpr TColor kBackground = clLime;

std::unique_ptr<TBitmap> canvasBitmap(int w, int h) {
    return faroven::test::FilledBitmap(w, h, kBackground, pf24bit);
}

QImage render(TGradientStyle style, int w, int h) {
    auto bmp = canvasBitmap(w, h);
    DrawGradientRect(bmp->Canvas(), Rect(0, 0, w, h), style, kBegin, kEnd);
    return bmp->Image().copy();
}

bool untouched(const QImage& image, int x, int y) { return PixelAt(image, x, y) == kBackground; }

// ---- Colours at the named points of each style ---------------------------------------

enum Spot { TL, T, TR, L, C, R, BL, B, BR };

TPoint spotIn(Spot s, int w, int h) {
    const int xs[] = {0, (w - 1) / 2, w - 1};
    const int ys[] = {0, (h - 1) / 2, h - 1};
    return Point(xs[int(s) % 3], ys[int(s) / 3]);
}

struct StyleCase {
    TGradientStyle style;
    const char* name;
    std::map<Spot, TColor> colours;
};

void PrintTo(const StyleCase& c, std::ostream* os) { *os << c.name; }

class StyleColours : public ::testing::TestWithParam<StyleCase> {};

TEST_P(StyleColours, StartEndAndMiddleColoursOnAnOddSizedRect) {
    const StyleCase& c = GetParam();
    const int w = 41, h = 31;  // odd, so that every middle is one pixel
    const QImage image = render(c.style, w, h);
    for (const auto& [spot, colour] : c.colours) {
        const TPoint p = spotIn(spot, w, h);
        EXPECT_EQ(PixelAt(image, p.x, p.y), colour) << c.name << " at spot " << int(spot) << " (" << p.x << ","
                                                   << p.y << ")";
    }
    // Everything lies between the two colours and covers the whole rectangle.
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const TColor px = PixelAt(image, x, y);
            ASSERT_EQ(GetGValue(px), 0) << c.name << " at " << x << "," << y;
            ASSERT_NEAR(GetRValue(px) + GetBValue(px), 255, 1) << c.name << " at " << x << "," << y;
        }
}

const StyleCase kStyleCases[] = {
    {gsRadialC, "RadialC", {{C, kBegin}, {TL, kEnd}, {TR, kEnd}, {BL, kEnd}, {BR, kEnd}}},
    {gsRadialT, "RadialT", {{T, kBegin}, {BL, kEnd}, {BR, kEnd}}},
    {gsRadialB, "RadialB", {{B, kBegin}, {TL, kEnd}, {TR, kEnd}}},
    {gsRadialL, "RadialL", {{L, kBegin}, {TR, kEnd}, {BR, kEnd}}},
    {gsRadialR, "RadialR", {{R, kBegin}, {TL, kEnd}, {BL, kEnd}}},
    {gsRadialTL, "RadialTL", {{TL, kBegin}, {BR, kEnd}}},
    {gsRadialTR, "RadialTR", {{TR, kBegin}, {BL, kEnd}}},
    {gsRadialBL, "RadialBL", {{BL, kBegin}, {TR, kEnd}}},
    {gsRadialBR, "RadialBR", {{BR, kBegin}, {TL, kEnd}}},
    {gsLinearH, "LinearH", {{TL, kBegin}, {L, kBegin}, {BL, kBegin}, {TR, kEnd}, {R, kEnd}, {BR, kEnd}, {C, kMid}}},
    {gsLinearV, "LinearV", {{TL, kBegin}, {T, kBegin}, {TR, kBegin}, {BL, kEnd}, {B, kEnd}, {BR, kEnd}, {C, kMid}}},
    {gsReflectedH, "ReflectedH", {{T, kBegin}, {C, kBegin}, {B, kBegin}, {L, kEnd}, {R, kEnd}, {TL, kEnd}, {BR, kEnd}}},
    {gsReflectedV, "ReflectedV", {{L, kBegin}, {C, kBegin}, {R, kBegin}, {T, kEnd}, {B, kEnd}, {TL, kEnd}, {BR, kEnd}}},
    {gsDiagonalLF, "DiagonalLF", {{TL, kBegin}, {BR, kEnd}, {TR, kMid}, {BL, kMid}, {C, kMid}}},
    {gsDiagonalLB, "DiagonalLB", {{BL, kBegin}, {TR, kEnd}, {TL, kMid}, {BR, kMid}, {C, kMid}}},
    {gsDiagonalRF, "DiagonalRF", {{BR, kBegin}, {TL, kEnd}, {TR, kMid}, {BL, kMid}, {C, kMid}}},
    {gsDiagonalRB, "DiagonalRB", {{TR, kBegin}, {BL, kEnd}, {TL, kMid}, {BR, kMid}, {C, kMid}}},
    {gsArrowL, "ArrowL", {{R, kBegin}, {TL, kEnd}, {BL, kEnd}, {TR, kMid}, {BR, kMid}, {L, kMid}}},
    {gsArrowR, "ArrowR", {{L, kBegin}, {TR, kEnd}, {BR, kEnd}, {TL, kMid}, {BL, kMid}, {R, kMid}}},
    {gsArrowU, "ArrowU", {{B, kBegin}, {TL, kEnd}, {TR, kEnd}, {BL, kMid}, {BR, kMid}, {T, kMid}}},
    {gsArrowD, "ArrowD", {{T, kBegin}, {BL, kEnd}, {BR, kEnd}, {TL, kMid}, {TR, kMid}, {B, kMid}}},
    {gsDiamond, "Diamond", {{C, kBegin}, {TL, kEnd}, {TR, kEnd}, {BL, kEnd}, {BR, kEnd}, {T, kMid}, {L, kMid}}},
    {gsButterfly, "Butterfly", {{L, kBegin}, {R, kBegin}, {T, kEnd}, {B, kEnd}, {C, kMid}, {TL, kMid}, {BR, kMid}}},
};
INSTANTIATE_TEST_SUITE_P(EveryStyle, StyleColours, ::testing::ValuesIn(kStyleCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(StyleColours, CoversAllTwentyThreeStyles) {
    EXPECT_EQ(std::size(kStyleCases), size_t(gsNone));
}

// ---- Shape of the ramp -----------------------------------------------------------------

TEST(Ramp, LinearRunsMonotonicallyAndEvenly) {
    const QImage image = render(gsLinearH, 256, 3);
    int previous = 256;
    for (int x = 0; x < 256; ++x) {
        const int red = GetRValue(PixelAt(image, x, 1));
        EXPECT_LE(red, previous) << x;
        EXPECT_NEAR(red, 255 - x, 1) << x;
        previous = red;
        EXPECT_EQ(PixelAt(image, x, 0), PixelAt(image, x, 2)) << "columns are uniform";
    }
}

TEST(Ramp, RadialFadesOutwardsAlongEveryRay) {
    const QImage image = render(gsRadialC, 61, 61);
    for (const TPoint dir : {Point(1, 0), Point(0, 1), Point(-1, -1), Point(1, -1)}) {
        int previous = 256;
        for (int i = 0; i <= 30; ++i) {
            const int red = GetRValue(PixelAt(image, 30 + i * dir.x, 30 + i * dir.y));
            EXPECT_LE(red, previous);
            previous = red;
        }
    }
    // Circles, not squares: the same distance gives the same colour.
    EXPECT_EQ(PixelAt(image, 30 + 20, 30), PixelAt(image, 30, 30 - 20));
    EXPECT_EQ(PixelAt(image, 30 + 12, 30 + 16), PixelAt(image, 30 + 20, 30));
}

TEST(Ramp, SystemColoursAreResolved) {
    auto bmp = canvasBitmap(8, 8);
    DrawGradientRect(bmp->Canvas(), Rect(0, 0, 8, 8), gsLinearH, clBtnFace, clBtnFace);
    EXPECT_EQ(PixelAt(*bmp, 3, 3), ColorToRGB(clBtnFace));
}

// ---- Symmetry ----------------------------------------------------------------------------

struct Symmetry {
    TGradientStyle style;
    bool leftRight, topBottom;
};

class MirrorSymmetric : public ::testing::TestWithParam<Symmetry> {};

TEST_P(MirrorSymmetric, ExactlyOnOddAndEvenSizes) {
    const Symmetry s = GetParam();
    for (const TSize size : {TSize{40, 30}, TSize{41, 31}, TSize{2, 7}, TSize{1, 1}}) {
        const QImage image = render(s.style, size.cx, size.cy);
        if (s.leftRight) EXPECT_EQ(image, image.mirrored(true, false)) << int(s.style) << " " << size.cx;
        if (s.topBottom) EXPECT_EQ(image, image.mirrored(false, true)) << int(s.style) << " " << size.cx;
    }
}

INSTANTIATE_TEST_SUITE_P(
    ReflectedStyles, MirrorSymmetric,
    ::testing::Values(Symmetry{gsRadialC, true, true}, Symmetry{gsRadialT, true, false},
                      Symmetry{gsRadialB, true, false}, Symmetry{gsRadialL, false, true},
                      Symmetry{gsRadialR, false, true}, Symmetry{gsLinearH, false, true},
                      Symmetry{gsLinearV, true, false}, Symmetry{gsReflectedH, true, true},
                      Symmetry{gsReflectedV, true, true}, Symmetry{gsArrowL, false, true},
                      Symmetry{gsArrowR, false, true}, Symmetry{gsArrowU, true, false},
                      Symmetry{gsArrowD, true, false}, Symmetry{gsDiamond, true, true},
                      Symmetry{gsButterfly, true, true}));

// Styles that are each other's mirror image fix the directions of the family.
TEST(MirrorPairs, MirrorTurnsOneStyleIntoTheOther) {
    struct Pair {
        TGradientStyle a, b;
        bool leftRight;  // else top-bottom
    };
    const Pair pairs[] = {
        {gsRadialL, gsRadialR, true},      {gsRadialTL, gsRadialTR, true},     {gsRadialBL, gsRadialBR, true},
        {gsArrowL, gsArrowR, true},        {gsDiagonalLF, gsDiagonalRB, true}, {gsDiagonalLB, gsDiagonalRF, true},
        {gsRadialT, gsRadialB, false},     {gsRadialTL, gsRadialBL, false},    {gsRadialTR, gsRadialBR, false},
        {gsArrowU, gsArrowD, false},       {gsDiagonalLF, gsDiagonalLB, false}, {gsDiagonalRF, gsDiagonalRB, false},
    };
    for (const Pair& p : pairs)
        EXPECT_EQ(render(p.a, 40, 27).mirrored(p.leftRight, !p.leftRight), render(p.b, 40, 27))
            << int(p.a) << " / " << int(p.b);
}

TEST(MirrorPairs, SwappingTheColoursReversesALinearGradient) {
    auto a = canvasBitmap(37, 5);
    DrawGradientRect(a->Canvas(), Rect(0, 0, 37, 5), gsLinearH, kBegin, kEnd);
    auto b = canvasBitmap(37, 5);
    DrawGradientRect(b->Canvas(), Rect(0, 0, 37, 5), gsLinearH, kEnd, kBegin);
    EXPECT_EQ(a->Image().mirrored(true, false), b->Image());
}

// ---- Coverage ------------------------------------------------------------------------------

TEST(Coverage, FillsExactlyTheRectangleLeftToRightMinusOne) {
    for (TGradientStyle style = gsRadialC; style < gsNone; style = TGradientStyle(style + 1)) {
        auto bmp = canvasBitmap(30, 30);
        DrawGradientRect(bmp->Canvas(), Rect(5, 7, 21, 19), style, kBegin, kEnd);
        const QImage& image = bmp->Image();
        for (int y = 0; y < 30; ++y)
            for (int x = 0; x < 30; ++x) {
                const bool inside = x >= 5 && x < 21 && y >= 7 && y < 19;
                ASSERT_EQ(!untouched(image, x, y), inside) << int(style) << " at " << x << "," << y;
            }
    }
}

TEST(Coverage, ReversedCornersAreNormalised) {
    auto a = canvasBitmap(30, 30);
    DrawGradientRect(a->Canvas(), Rect(4, 3, 25, 20), gsDiagonalLF, kBegin, kEnd);
    auto b = canvasBitmap(30, 30);
    DrawGradientRect(b->Canvas(), Rect(25, 20, 4, 3), gsDiagonalLF, kBegin, kEnd);
    EXPECT_EQ(a->Image(), b->Image());
}

TEST(Coverage, NoneAndUnknownStylesAndEmptyRectanglesDrawNothing) {
    auto bmp = canvasBitmap(20, 20);
    const QImage before = bmp->Image().copy();
    DrawGradientRect(bmp->Canvas(), Rect(0, 0, 20, 20), gsNone, kBegin, kEnd);
    DrawGradientRect(bmp->Canvas(), Rect(0, 0, 20, 20), TGradientStyle(200), kBegin, kEnd);
    DrawGradientRect(bmp->Canvas(), Rect(5, 5, 5, 15), gsLinearH, kBegin, kEnd);
    DrawGradientPolygon(bmp->Canvas(), {Point(0, 0), Point(19, 0), Point(19, 19)}, gsNone, kBegin, kEnd);
    DrawGradientPolygon(bmp->Canvas(), {Point(0, 0), Point(19, 19)}, gsDiamond, kBegin, kEnd);
    DrawGradientRect(nullptr, Rect(0, 0, 20, 20), gsLinearH, kBegin, kEnd);
    EXPECT_EQ(bmp->Image(), before);
}

TEST(Coverage, OnePixelRectanglesTakeTheBeginColour) {
    for (TGradientStyle style = gsRadialC; style < gsNone; style = TGradientStyle(style + 1)) {
        auto bmp = canvasBitmap(3, 3);
        DrawGradientRect(bmp->Canvas(), Rect(1, 1, 2, 2), style, kBegin, kEnd);
        EXPECT_EQ(PixelAt(*bmp, 1, 1), kBegin) << int(style);
    }
}

// ---- Clipping --------------------------------------------------------------------------------

TEST(Clipping, PartsOutsideTheBitmapDoNotMoveTheGradient) {
    const QImage full = render(gsRadialTL, 100, 80);
    auto bmp = canvasBitmap(60, 50);
    DrawGradientRect(bmp->Canvas(), Rect(-40, -30, 60, 50), gsRadialTL, kBegin, kEnd);
    EXPECT_EQ(bmp->Image().convertToFormat(QImage::Format_RGB32),
              full.copy(40, 30, 60, 50).convertToFormat(QImage::Format_RGB32));
}

TEST(Clipping, TheCanvasClipRectLimitsTheDrawing) {
    const QImage full = render(gsDiamond, 50, 40);
    auto bmp = canvasBitmap(50, 40);
    bmp->Canvas()->SetClipRect(Rect(10, 5, 30, 25));
    DrawGradientRect(bmp->Canvas(), Rect(0, 0, 50, 40), gsDiamond, kBegin, kEnd);
    const QImage& image = bmp->Image();
    for (int y = 0; y < 40; ++y)
        for (int x = 0; x < 50; ++x) {
            if (x >= 10 && x < 30 && y >= 5 && y < 25)
                ASSERT_EQ(PixelAt(image, x, y), PixelAt(full, x, y)) << x << "," << y;
            else
                ASSERT_TRUE(untouched(image, x, y)) << x << "," << y;
        }
}

// ---- Outlines -----------------------------------------------------------------------------------

TEST(Outline, FillsExactlyThePixelsOfTheAlternateRuleRegion) {
    // A self-intersecting star: its centre pentagon is outside under the
    // alternate rule.
    const TArrPoint star{Point(30, 2), Point(47, 55), Point(3, 20), Point(57, 20), Point(13, 55)};
    const QRegion region = CreatePolygonRgn(star, ALTERNATE);
    for (TGradientStyle style : {gsRadialC, gsLinearV, gsButterfly}) {
        auto bmp = canvasBitmap(60, 60);
        DrawGradientPolygon(bmp->Canvas(), star, style, kBegin, kEnd);
        const QImage& image = bmp->Image();
        int inside = 0;
        for (int y = 0; y < 60; ++y)
            for (int x = 0; x < 60; ++x) {
                const bool in = PtInRegion(region, x, y);
                inside += in;
                ASSERT_EQ(!untouched(image, x, y), in) << int(style) << " at " << x << "," << y;
            }
        EXPECT_GT(inside, 300);
        EXPECT_TRUE(untouched(image, 30, 30)) << "the star's centre is a hole";
    }
}

TEST(Outline, GradientIsLaidOverTheBoundingBoxOfTheOutline) {
    // A rectangular outline reproduces the rectangle fill pixel for pixel.
    const TArrPoint outline{Point(4, 6), Point(36, 6), Point(36, 28), Point(4, 28)};
    for (TGradientStyle style : {gsRadialBR, gsDiagonalRB, gsArrowU}) {
        auto a = canvasBitmap(40, 32);
        DrawGradientPolygon(a->Canvas(), outline, style, kBegin, kEnd);
        auto b = canvasBitmap(40, 32);
        DrawGradientRect(b->Canvas(), Rect(4, 6, 36, 28), style, kBegin, kEnd);
        EXPECT_EQ(a->Image(), b->Image()) << int(style);
    }
}

TEST(Outline, RegionVariantKeepsTheCanvasClipAfterwards) {
    auto bmp = canvasBitmap(40, 40);
    const QRegion ellipse(QRect(0, 0, 40, 40), QRegion::Ellipse);
    DrawGradientRegion(bmp->Canvas(), ellipse, Rect(0, 0, 40, 40), gsRadialC, kBegin, kEnd);
    EXPECT_TRUE(untouched(bmp->Image(), 0, 0));
    EXPECT_EQ(PixelAt(*bmp, 20, 20), PixelAt(render(gsRadialC, 40, 40), 20, 20));
    // Later drawing is not held inside the ellipse.
    bmp->Canvas()->Brush()->SetColor(clWhite);
    bmp->Canvas()->FillRect(Rect(0, 0, 40, 40));
    EXPECT_EQ(PixelAt(*bmp, 0, 0), clWhite);
}

}  // namespace
