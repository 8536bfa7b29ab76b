// Rulers: published properties, the advance and multiplier table,
// tick and label pixels in all four directions, label texts per unit,
// Pos2Unit and ConvertOffset per unit, the self-inverting hairline, setter
// rules (repaint only on change, direction swaps the sides), fonts and corner.
#include "ruler/ruler.h"
#include "platform/canvas.h"
#include "platform/system.h"
#include "support/test_support.h"

#include <QApplication>
#include <QMetaEnum>
#include <QMetaProperty>
#include <QWidget>
#include <cmath>
#include <gtest/gtest.h>

using namespace faroven;
using faroven::test::CountPixels;
using faroven::test::InkBounds;
using faroven::test::PixelAt;

namespace {

constexpr double kMillimetre = 96 / 10.0 / 2.54;  // one label step at 100 % in centimetres
constexpr TColor kInk = clBlack;  // clWindowText resolves to black

// A white bitmap the size of the ruler, for drawing one part of the ruler on.
std::unique_ptr<TBitmap> blankFor(const TRsRuler& ruler) {
    return faroven::test::FilledBitmap(ruler.width(), ruler.height(), clWhite);
}

// Runs of positions along the ruler that hold ink of the colour, looking only
// at the pixels between cross positions from and to (rows of a horizontal
// ruler, columns of a vertical one).
std::vector<std::pair<int, int>> inkRuns(const QImage& image, bool horizontal, int from, int to,
                                         TColor ink = kInk) {
    std::vector<std::pair<int, int>> runs;
    const int length = horizontal ? image.width() : image.height();
    int start = -1;
    for (int a = 0; a <= length; ++a) {
        bool any = false;
        for (int c = from; a < length && c < to && !any; ++c)
            any = (horizontal ? PixelAt(image, a, c) : PixelAt(image, c, a)) == ink;
        if (any && start < 0) start = a;
        if (!any && start >= 0) {
            runs.emplace_back(start, a);
            start = -1;
        }
    }
    return runs;
}

// Counts the paints of a shown control.
struct PaintCounter {
    explicit PaintCounter(TGraphicControl& control) {
        control.OnPaint = [this](TObject*) { ++paints; };
        control.show();
        settle();
        paints = 0;
    }
    static void settle() {
        for (int i = 0; i < 5; ++i) QApplication::processEvents();
    }
    int paintsAfter(const std::function<void()>& action) {
        paints = 0;
        action();
        settle();
        return paints;
    }
    int paints = 0;
};

}  // namespace

// ---- Enumerations, defaults, properties ------------------------------------

TEST(RulerProperties, PublishedPropertiesWorkThroughTheMetaObjectSystem) {
    TRsRuler ruler;
    ASSERT_TRUE(ruler.setProperty("Scale", 50));
    EXPECT_EQ(ruler.Multiplier(), 2.0);
    ASSERT_TRUE(ruler.setProperty("Direction", QVariant::fromValue(rdLeft)));
    EXPECT_EQ(ruler.Width(), 33);
    EXPECT_EQ(ruler.property("Units").value<TRulerUnit>(), ruCenti);
    EXPECT_STREQ(QMetaEnum::fromType<TRulerUnit>().valueToKey(ruInch), "ruInch");
    EXPECT_STREQ(QMetaEnum::fromType<TRulerDir>().valueToKey(rdBottom), "rdBottom");
}

// ---- Advance and multiplier --------------------------------------------------

TEST(CalcAdvance, ScaleGivesTheMultiplierOfItsBand) {
    // Both bounds of every band, in rising order, so that a missed band shows.
    const std::pair<int, double> table[] = {
        {1, 100.0}, {2, 50.0},  {3, 25.0},  {5, 25.0},   {6, 20.0},    {8, 20.0},    {9, 10.0},   {12, 10.0},
        {13, 5.0},  {25, 5.0},  {26, 4.0},  {35, 4.0},   {36, 2.0},    {50, 2.0},    {51, 1.0},   {125, 1.0},
        {126, 0.5}, {300, 0.5}, {301, 0.25}, {400, 0.25}, {401, 0.2},  {500, 0.2},   {501, 0.1},  {1000, 0.1}};
    TRsRuler ruler;
    for (const auto& [scale, multiplier] : table) {
        ruler.SetScale(scale);
        EXPECT_EQ(ruler.Multiplier(), multiplier) << "scale " << scale;
    }
}

TEST(CalcAdvance, OneLabelStepIsAMillimetreAtFullScale) {
    TRsRuler ruler;
    EXPECT_NEAR(ruler.Advance(), 3.779527559, 1e-9);  // 96 / 10 / 2.54
    ruler.SetUnit(ruInch);
    EXPECT_NEAR(ruler.Advance(), 9.6, 1e-12);  // a tenth of an inch
    ruler.SetUnit(ruPixel);
    EXPECT_NEAR(ruler.Advance(), 5.0, 1e-12);  // (100 * 5) / 100
    ruler.SetScale(1);
    EXPECT_NEAR(ruler.Advance(), 0.05 * 100, 1e-12);
    ruler.SetUnit(ruMilli);
    EXPECT_NEAR(ruler.Advance(), 9.6 / 100 / 2.54 * 100, 1e-12);
}

TEST(CalcAdvance, ScalesOutsideTheTableKeepThePreviousMultiplier) {
    TRsRuler ruler;
    ruler.SetScale(2000);
    EXPECT_EQ(ruler.Multiplier(), 1.0);
    EXPECT_NEAR(ruler.Advance(), kMillimetre * 20, 1e-9);
    ruler.SetScale(40);
    ruler.SetScale(2000);
    EXPECT_EQ(ruler.Multiplier(), 2.0);
    EXPECT_NEAR(ruler.Advance(), kMillimetre * 20 * 2, 1e-9);
}

TEST(CalcAdvance, FollowsTheScreenResolution) {
    TRsRuler ruler;
    SetScreenPixelsPerInch(120);
    ruler.Loaded();
    EXPECT_NEAR(ruler.Advance(), 12 / 2.54, 1e-12);
    SetScreenPixelsPerInch(96);
    ruler.CalcAdvance();
    EXPECT_NEAR(ruler.Advance(), 9.6 / 2.54, 1e-12);
}

TEST(CalcAdvance, ScaleBelowOneIsRejectedAndKeepsTheRuler) {
    TRsRuler ruler;
    ruler.SetScale(200);
    for (int bad : {0, -5})
        EXPECT_TRUE(faroven::test::RaisesWith<EInvalidOperation>([&] { ruler.SetScale(bad); }, "Scale")) << bad;
    EXPECT_EQ(ruler.Scale(), 200);
    EXPECT_EQ(ruler.Multiplier(), 0.5);
}

// ---- Pos2Unit and ConvertOffset ---------------------------------------------

TEST(Pos2Unit, PerUnitWithItsQuirks) {
    TRsRuler ruler;  // 96 pixels per inch, 100 %
    ruler.SetOffset(1.5);
    const struct {
        TRulerUnit unit;
        double expected;
    } cases[] = {
        {ruInch, 1.0 + 1.5},
        {ruCenti, 2.54 + 1.5},
        {ruMilli, 25.4 + 1.5},
        // The metre value gets the kilometre factor added once more.
        {ruMeter, 0.0254 + 1.5 + 0.0000254},
        {ruPixel, 96 + 1},  // trunc of the offset
        {ruKilo, 1.5},      // no conversion: the offset alone
        {ruNone, 1.5},
    };
    for (const auto& c : cases) {
        ruler.SetUnit(c.unit);
        EXPECT_NEAR(ruler.Pos2Unit(96), c.expected, 1e-12) << "unit " << int(c.unit);
    }
}

TEST(Pos2Unit, ScaleAndReverseDirection) {
    TRsRuler ruler;
    ruler.SetUnit(ruPixel);
    ruler.SetScale(200);
    EXPECT_EQ(ruler.Pos2Unit(97), 48.0);  // trunc(97 / 200 * 100)
    ruler.SetUnit(ruInch);
    ruler.SetScaleDir(rsdReverse);  // counted from the far end, 200 pixels away
    EXPECT_NEAR(ruler.Pos2Unit(8), (200 - 8) / 200.0 * 100 / 96, 1e-12);
    ruler.SetDirection(rdLeft);  // now 200 pixels high
    EXPECT_NEAR(ruler.Pos2Unit(200), 0.0, 1e-12);
}

TEST(ConvertOffset, UsesTheFactorsPerMillimetre) {
    TRsRuler ruler;
    ruler.SetOffset(2);  // centimetres
    EXPECT_NEAR(ruler.ConvertOffset(ruMilli), 20, 1e-12);
    EXPECT_NEAR(ruler.ConvertOffset(ruMeter), 0.02, 1e-12);
    EXPECT_NEAR(ruler.ConvertOffset(ruKilo), 0.00002, 1e-15);
    EXPECT_NEAR(ruler.ConvertOffset(ruInch), 20 / 25.4, 1e-12);
    EXPECT_NEAR(ruler.ConvertOffset(ruPixel), 20 * 96 / 25.4, 1e-9);
    EXPECT_NEAR(ruler.ConvertOffset(ruNone), 20, 1e-12);
    EXPECT_NEAR(ruler.ConvertOffset(ruCenti), 2, 1e-12);
    ruler.SetUnit(ruNone);
    EXPECT_NEAR(ruler.ConvertOffset(ruCenti), 0.2, 1e-12);
}

// ---- Label texts -------------------------------------------------------------

TEST(LabelText, TenStepsPerUnit) {
    TRsRuler ruler;
    const struct {
        TRulerUnit unit;
        const char* text;
    } cases[] = {{ruCenti, "1"}, {ruMilli, "10"}, {ruMeter, "0.01"}, {ruKilo, "0"},
                 {ruInch, "1"},  {ruPixel, "50"}, {ruNone, "1"}};
    for (const auto& c : cases) {
        ruler.SetUnit(c.unit);
        EXPECT_EQ(ruler.LabelText(10), QString::fromLatin1(c.text)) << "unit " << int(c.unit);
    }
}

TEST(LabelText, CoarserScalesShowFractions) {
    TRsRuler ruler;
    ruler.SetScale(200);  // multiplier 0.5
    EXPECT_EQ(ruler.LabelText(10), "0.5");
    ruler.SetScale(400);  // 0.25
    EXPECT_EQ(ruler.LabelText(30), "0.75");
    ruler.SetScale(20);  // 5
    EXPECT_EQ(ruler.LabelText(10), "5");
}

TEST(LabelText, ShowMinusFalseShowsAbsoluteValues) {
    TRsRuler ruler;
    ruler.SetOffset(-5);
    QStringList withMinus, without;
    for (int i = 10; i <= 70; i += 10) withMinus << ruler.LabelText(i);
    ruler.SetShowMinus(false);
    for (int i = 10; i <= 70; i += 10) without << ruler.LabelText(i);
    EXPECT_EQ(withMinus.join(' '), "-4 -3 -2 -1 0 1 2");
    EXPECT_EQ(without.join(' '), "4 3 2 1 0 1 2");
}

TEST(LabelText, RoundingPerUnitAndThePattern) {
    TRsRuler ruler;
    ruler.SetUnit(ruPixel);
    ruler.SetOffset(0.5);
    EXPECT_EQ(ruler.LabelText(10), "50");  // 50.5 rounds half to even
    ruler.SetOffset(1.5);
    EXPECT_EQ(ruler.LabelText(10), "52");
    ruler.SetUnit(ruInch);
    ruler.SetOffset(0.004);
    EXPECT_EQ(ruler.LabelText(10), "1");
    // Step 0 shows the offset itself, which exercises the "0.##" pattern.
    ruler.SetUnit(ruNone);
    const struct {
        double offset;
        const char* text;
    } cases[] = {{0.025, "0.03"}, {-0.025, "-0.03"}, {-0.001, "0"}, {2.5, "2.5"},     {1234.5678, "1234.57"},
                 {-3, "-3"},      {0.1 + 0.2, "0.3"}, {0.995, "1"}, {1e6, "1000000"}, {0.07, "0.07"}};
    for (const auto& c : cases) {
        ruler.SetOffset(c.offset);
        EXPECT_EQ(ruler.LabelText(0), QString::fromLatin1(c.text)) << c.offset;
    }
    ruler.SetOffset(std::nan(""));
    EXPECT_TRUE(ruler.LabelText(0).isEmpty());
}

// ---- Tick pixels -------------------------------------------------------------

TEST(Ticks, TopRulerAtFullScaleInCentimetres) {
    TRsRuler ruler;  // 200 x 33; ticks every 2 * 3.7795 pixels
    auto bmp = blankFor(ruler);
    ruler.PaintScaleTics(bmp->Canvas());
    const QImage& image = bmp->Image();
    // Long ticks (every fifth) are 7 pixels from the bottom edge, short ones 5
    // (the end pixel of a line is left out).
    for (int x : {0, 37, 75, 113, 151, 188}) {
        for (int y = 26; y <= 32; ++y) EXPECT_EQ(PixelAt(image, x, y), kInk) << x << "," << y;
        EXPECT_EQ(PixelAt(image, x, 25), clWhite) << x;
    }
    for (int x : {7, 15, 22, 30, 45, 196}) {
        for (int y = 28; y <= 32; ++y) EXPECT_EQ(PixelAt(image, x, y), kInk) << x << "," << y;
        EXPECT_EQ(PixelAt(image, x, 27), clWhite) << x;
    }
    EXPECT_EQ(PixelAt(image, 8, 32), clWhite);
    // 27 ticks fit in 200 pixels: 6 long and 21 short.
    EXPECT_EQ(CountPixels(image, kInk), 6 * 7 + 21 * 5);
}

TEST(Ticks, EveryDirectionGrowsFromItsScaleEdge) {
    const struct {
        TRulerDir dir;
        TRect longTick;
    } cases[] = {
        {rdTop, Rect(37, 26, 38, 33)},
        {rdBottom, Rect(37, 0, 38, 7)},
        {rdLeft, Rect(26, 37, 33, 38)},
        {rdRight, Rect(0, 37, 7, 38)},
    };
    for (const auto& c : cases) {
        TRsRuler ruler;
        ruler.SetDirection(c.dir);
        ruler.SetMyShortTick(0);  // long ticks only
        ruler.SetBounds(0, 0, ruler.IsHorizontal() ? 40 : 33, ruler.IsHorizontal() ? 33 : 40);
        auto bmp = blankFor(ruler);
        ruler.PaintScaleTics(bmp->Canvas());
        // Ticks at 0 and 37 only; the one at 37 is the second.
        const QImage& image = bmp->Image();
        EXPECT_EQ(CountPixels(image, kInk), 14) << "direction " << int(c.dir);
        TBitmap second;
        second.SetImage(image.copy(c.longTick.left, c.longTick.top, c.longTick.Width(), c.longTick.Height()));
        EXPECT_EQ(CountPixels(second.Image(), kInk), 7) << "direction " << int(c.dir);
    }
}

TEST(Ticks, ReverseScaleRunsFromTheFarEnd) {
    TRsRuler ruler;
    ruler.SetScaleDir(rsdReverse);
    ruler.SetMyShortTick(0);
    auto bmp = blankFor(ruler);
    ruler.PaintScaleTics(bmp->Canvas());
    const auto runs = inkRuns(bmp->Image(), true, 26, 33);
    // The origin tick falls at 200, just outside; the others mirror 37, 75, ...
    const std::vector<std::pair<int, int>> expected{{12, 13}, {49, 50}, {87, 88}, {125, 126}, {163, 164}};
    EXPECT_EQ(runs, expected);
}

TEST(Ticks, TickCountersSelectLongShortAndNone) {
    TRsRuler ruler;
    ruler.SetMyShortTick(2);  // odd ticks draw nothing
    auto bmp = blankFor(ruler);
    ruler.PaintScaleTics(bmp->Canvas());
    EXPECT_EQ(PixelAt(*bmp, 7, 32), clWhite);
    EXPECT_EQ(PixelAt(*bmp, 15, 32), kInk);
    ruler.SetMyLongTick(0);
    ruler.SetMyShortTick(1);
    bmp = blankFor(ruler);
    ruler.PaintScaleTics(bmp->Canvas());
    EXPECT_EQ(CountPixels(bmp->Image(), kInk), 27 * 5);
}

// ---- Label pixels ------------------------------------------------------------

TEST(Labels, EveryDirectionPlacesAndTurnsItsLabels) {
    for (TRulerDir dir : {rdTop, rdBottom, rdLeft, rdRight}) {
        TRsRuler ruler;
        ruler.SetDirection(dir);
        auto bmp = blankFor(ruler);
        ruler.PaintScaleLabels(bmp->Canvas());
        const QImage& image = bmp->Image();
        const bool horizontal = ruler.IsHorizontal();
        const auto runs = inkRuns(image, horizontal, 0, 33);
        ASSERT_EQ(runs.size(), 5u) << "direction " << int(dir);
        // "1" to "5" centred on the long ticks at 37, 75, 113, 151, 188.
        const int centres[] = {37, 75, 113, 151, 188};
        for (size_t k = 0; k < runs.size(); ++k)
            EXPECT_NEAR((runs[k].first + runs[k].second - 1) / 2.0, centres[k], 2.0) << "direction " << int(dir);
        const TRect ink = InkBounds(image, kInk);
        const int span = runs[0].second - runs[0].first;
        const TRect first = horizontal ? InkBounds(image.copy(runs[0].first, 0, span, 33), kInk)
                                       : InkBounds(image.copy(0, runs[0].first, 33, span), kInk);
        switch (dir) {
        case rdTop: EXPECT_TRUE(ink.bottom <= 25 && ink.bottom >= 20) << ink.bottom; break;
        case rdBottom: EXPECT_GE(ink.top, 8); break;
        case rdLeft: EXPECT_LE(ink.right, 33 - 7); break;
        case rdRight: EXPECT_GE(ink.left, 7); break;
        }
        // Turned digits lie on their side: wider than tall.
        if (horizontal)
            EXPECT_GT(first.Height(), first.Width()) << "direction " << int(dir);
        else
            EXPECT_GT(first.Width(), first.Height()) << "direction " << int(dir);
    }
}

TEST(Labels, LeftAndRightLabelsReadInOppositeDirections) {
    // The 90-degree font reads from bottom to top, the 270-degree one from top
    // to bottom: in the label "10" the "1" (the glyph with less ink) comes last.
    for (TRulerDir dir : {rdLeft, rdRight}) {
        TRsRuler ruler;
        ruler.SetDirection(dir);
        ruler.SetMyLongTick(50);  // one label, at step 100: "10" at 377 pixels
        ruler.SetBounds(0, 0, 33, 400);
        auto bmp = blankFor(ruler);
        ruler.PaintScaleLabels(bmp->Canvas());
        const QImage& image = bmp->Image();
        const auto glyphs = inkRuns(image, false, 0, 33);
        ASSERT_EQ(glyphs.size(), 2u) << "direction " << int(dir);
        const auto inkIn = [&](std::pair<int, int> run) {
            return CountPixels(image.copy(0, run.first, 33, run.second - run.first), kInk);
        };
        const bool oneBelow = inkIn(glyphs[1]) < inkIn(glyphs[0]);
        EXPECT_EQ(oneBelow, dir == rdLeft) << "direction " << int(dir);
        EXPECT_NEAR((glyphs[0].first + glyphs[1].second - 1) / 2.0, 377, 2.0);
    }
}

TEST(Labels, NoLabelsWithoutLongTicks) {
    TRsRuler ruler;
    ruler.SetMyLongTick(0);
    auto bmp = blankFor(ruler);
    ruler.PaintScaleLabels(bmp->Canvas());
    EXPECT_EQ(CountPixels(bmp->Image(), kInk), 0);
}

TEST(Labels, TextColourIsTickColor) {
    TRsRuler ruler;
    ruler.SetTickColor(clRed);
    auto bmp = blankFor(ruler);
    ruler.PaintScaleLabels(bmp->Canvas());
    ruler.PaintScaleTics(bmp->Canvas());
    EXPECT_GT(CountPixels(bmp->Image(), clRed), 6 * 7 + 21 * 5);
    EXPECT_EQ(CountPixels(bmp->Image(), kInk), 0);
}

// ---- Whole paint ---------------------------------------------------------------

TEST(RulerPaint, BandBorderAndBackground) {
    TRsRuler ruler;
    const QImage image = ruler.PaintToImage();
    const TColor face = ColorToRGB(clBtnFace), light = ColorToRGB(clBtnHighlight), shadow = ColorToRGB(clBtnShadow);
    const TColor band = ColorToRGB(clWindow);
    EXPECT_EQ(PixelAt(image, 100, 0), light);       // raised: light top and left
    EXPECT_EQ(PixelAt(image, 0, 16), light);
    EXPECT_EQ(PixelAt(image, 199, 16), shadow);     // dark right and bottom
    EXPECT_EQ(PixelAt(image, 100, 32), shadow);
    EXPECT_EQ(PixelAt(image, 100, 1), face);        // background between border and band
    EXPECT_EQ(PixelAt(image, 100, 2), face);
    EXPECT_EQ(PixelAt(image, 100, 3), band);        // the scale band
    EXPECT_EQ(PixelAt(image, 101, 31), band);
    EXPECT_EQ(PixelAt(image, 37, 31), kInk);        // a long tick on top of it

    ruler.SetFlat(true);
    const QImage flat = ruler.PaintToImage();
    EXPECT_EQ(PixelAt(flat, 100, 0), shadow);
    EXPECT_EQ(PixelAt(flat, 0, 16), shadow);
    EXPECT_EQ(PixelAt(flat, 199, 16), shadow);
}

TEST(RulerPaint, BandFacesTheScaleEdgeInEveryDirection) {
    const struct {
        TRulerDir dir;
        TRect band;
    } cases[] = {{rdTop, Rect(1, 3, 199, 32)},
                 {rdBottom, Rect(1, 1, 199, 30)},
                 {rdLeft, Rect(3, 1, 32, 199)},
                 {rdRight, Rect(1, 1, 30, 199)}};
    for (const auto& c : cases) {
        TRsRuler ruler;
        ruler.SetDirection(c.dir);
        ruler.SetScaleColor(clYellow);
        ruler.SetMyLongTick(0);  // keep ticks and labels off the band's corners
        ruler.SetMyShortTick(0);
        EXPECT_EQ(ruler.BandRect(), c.band);
        EXPECT_EQ(InkBounds(ruler.PaintToImage(), clYellow), c.band) << "direction " << int(c.dir);
    }
}

// ---- Hairline ------------------------------------------------------------------

namespace {
std::unique_ptr<TBitmap> painted(TRsRuler& ruler) {
    auto bmp = std::make_unique<TBitmap>();
    bmp->SetImage(ruler.PaintToImage());
    return bmp;
}
}  // namespace

TEST(HairLine, DrawnTwiceLeavesThePixelsUnchanged) {
    for (THairLineStyle style : {hlsLine, hlsRect}) {
        for (TRulerScaleDir scaleDir : {rsdNormal, rsdReverse}) {
            TRsRuler ruler;
            ruler.SetHairLineStyle(style);
            ruler.SetScaleDir(scaleDir);
            auto bmp = painted(ruler);
            const QImage before = bmp->Image().copy();
            ruler.SetHairLine(true);
            ruler.SetHairLinePos(37);
            ruler.DrawHairLine(bmp->Canvas());
            const QImage once = bmp->Image().copy();
            EXPECT_NE(once, before);
            ruler.DrawHairLine(bmp->Canvas());
            EXPECT_EQ(bmp->Image(), before) << "style " << int(style) << " dir " << int(scaleDir);
            // Drawn once, every pixel of the area is inverted and nothing else changed.
            const TRect r = ruler.HairLineRect();
            for (int y = 0; y < 33; ++y)
                for (int x = 0; x < 200; ++x) {
                    const bool inside = PtInRect(r, Point(x, y));
                    const QRgb expected = inside ? (~before.pixel(x, y) | 0xFF000000u) : before.pixel(x, y);
                    ASSERT_EQ(once.pixel(x, y), expected) << x << "," << y;
                }
        }
    }
}

TEST(HairLine, AreaPerStyleAndDirection) {
    TRsRuler ruler;
    EXPECT_EQ(ruler.HairLineRect(), TRect{});  // off
    ruler.SetHairLine(true);
    EXPECT_EQ(ruler.HairLineRect(), TRect{});  // position -1
    ruler.SetHairLinePos(50);
    EXPECT_EQ(ruler.HairLineRect(), Rect(50, 1, 51, 32));
    ruler.SetHairLineStyle(hlsRect);
    EXPECT_EQ(ruler.HairLineRect(), Rect(0, 1, 51, 32));
    ruler.SetScaleDir(rsdReverse);
    EXPECT_EQ(ruler.HairLineRect(), Rect(50, 1, 200, 32));
    ruler.SetDirection(rdLeft);
    EXPECT_EQ(ruler.HairLineRect(), Rect(1, 50, 32, 200));
    ruler.SetHairLineStyle(hlsLine);
    EXPECT_EQ(ruler.HairLineRect(), Rect(1, 50, 32, 51));
    ruler.SetHairLinePos(500);  // beyond the ruler: nothing to draw
    EXPECT_EQ(ruler.HairLineRect(), TRect{});
}

TEST(HairLine, PaintShowsItAtItsCurrentPosition) {
    TRsRuler ruler;
    const QImage plain = ruler.PaintToImage();
    ruler.SetHairLine(true);
    ruler.SetHairLinePos(60);
    QImage shown = ruler.PaintToImage();
    EXPECT_EQ(shown.pixel(60, 16), ~plain.pixel(60, 16) | 0xFF000000u);
    EXPECT_EQ(shown.copy(61, 0, 139, 33), plain.copy(61, 0, 139, 33));
    ruler.SetHairLinePos(80);
    shown = ruler.PaintToImage();
    EXPECT_EQ(shown.pixel(60, 16), plain.pixel(60, 16));
    EXPECT_EQ(shown.pixel(80, 16), ~plain.pixel(80, 16) | 0xFF000000u);
    ruler.SetHairLinePos(-1);
    EXPECT_EQ(ruler.PaintToImage(), plain);
}

TEST(HairLine, MovingRepaintsOnlyTheOldAndNewStrips) {
    TRsRuler ruler;
    ruler.SetHairLine(true);
    ruler.SetHairLinePos(50);
    std::vector<TRect> clips;
    PaintCounter counter(ruler);
    ruler.OnPaint = [&](TObject*) {
        ++counter.paints;
        clips.push_back(ruler.Canvas()->ClipRect());
    };
    EXPECT_EQ(counter.paintsAfter([&] { ruler.SetHairLinePos(50); }), 0) << "same position draws nothing";
    counter.paintsAfter([&] { ruler.SetHairLinePos(80); });
    // The old and the new one-pixel strips, each painted by itself.
    EXPECT_EQ(clips, (std::vector<TRect>{Rect(50, 1, 51, 32), Rect(80, 1, 81, 32)}));
    clips.clear();
    counter.paintsAfter([&] { ruler.SetHairLinePos(-1); });
    EXPECT_EQ(clips, std::vector<TRect>{Rect(80, 1, 81, 32)}) << "erases the old one, draws none";
}

// ---- Setter rules ----------------------------------------------------------------

TEST(Setters, RepaintOnlyOnAChange) {
    TRsRuler ruler;
    PaintCounter counter(ruler);
    const std::vector<std::pair<const char*, std::function<void(bool)>>> setters = {
        {"Flat", [&](bool change) { ruler.SetFlat(change); }},
        {"ScaleColor", [&](bool change) { ruler.SetScaleColor(change ? clAqua : clWindow); }},
        {"TickColor", [&](bool change) { ruler.SetTickColor(change ? clRed : clWindowText); }},
        {"Units", [&](bool change) { ruler.SetUnit(change ? ruInch : ruCenti); }},
        {"Scale", [&](bool change) { ruler.SetScale(change ? 150 : 100); }},
        {"Direction", [&](bool change) { ruler.SetDirection(change ? rdBottom : rdTop); }},
        {"ScaleDir", [&](bool change) { ruler.SetScaleDir(change ? rsdReverse : rsdNormal); }},
        {"HairLine", [&](bool change) { ruler.SetHairLine(change); }},
        {"HairLineStyle", [&](bool change) { ruler.SetHairLineStyle(change ? hlsRect : hlsLine); }},
        {"Offset", [&](bool change) { ruler.SetOffset(change ? 2.5 : 0); }},
        {"ShowMinus", [&](bool change) { ruler.SetShowMinus(!change); }},
        {"MyLongTick", [&](bool change) { ruler.setMyLongTick(change ? 4 : 5); }},
        {"MyShortTick", [&](bool change) { ruler.setMyShortTick(change ? 2 : 1); }},
        {"Color", [&](bool change) { ruler.SetColor(change ? clGray : clBtnFace); }},
    };
    for (const auto& [name, set] : setters) {
        EXPECT_EQ(counter.paintsAfter([&] { set(false); }), 0) << name << " unchanged";
        EXPECT_EQ(counter.paintsAfter([&] { set(true); }), 1) << name << " changed";
        counter.paintsAfter([&] { set(false); });
    }
}

TEST(Setters, DirectionSwapsWidthAndHeightBetweenHorizontalAndVertical) {
    TRsRuler ruler;
    ruler.SetBounds(0, 0, 300, 25);
    ruler.SetDirection(rdLeft);
    EXPECT_EQ(ruler.Width(), 25);
    EXPECT_EQ(ruler.Height(), 300);
    ruler.SetDirection(rdRight);  // still vertical
    EXPECT_EQ(ruler.Width(), 25);
    ruler.SetDirection(rdBottom);
    EXPECT_EQ(ruler.Width(), 300);
    EXPECT_EQ(ruler.Height(), 25);
    ruler.SetDirection(rdTop);
    EXPECT_EQ(ruler.Width(), 300);
    EXPECT_EQ(ruler.Length(), 300);
}

TEST(Setters, OnResizeIsRaised) {
    TRsRuler ruler;
    ruler.show();  // a hidden widget hears of its new size when it is shown
    int resized = 0;
    ruler.OnResize = [&](TObject* sender) {
        EXPECT_EQ(sender, &ruler);
        ++resized;
    };
    ruler.SetWidth(250);
    EXPECT_EQ(resized, 1);
    ruler.SetDirection(rdLeft);
    EXPECT_EQ(resized, 2);
}

// ---- Fonts ---------------------------------------------------------------------

TEST(Fonts, ThreeLogicalFontsFromTheControlFont) {
    TRsRuler ruler;
    ruler.Font()->SetName("DejaVu Sans");
    ruler.Font()->SetSize(12);  // height -16 at 96 pixels per inch
    ruler.Font()->SetStyle({fsBold, fsItalic});
    EXPECT_FALSE(ruler.FontsNeedRebuild());
    const TLogFont* fonts[] = {ruler.FontHandle0(), ruler.FontHandle90(), ruler.FontHandle270()};
    const int escapements[] = {0, 900, 2700};
    for (int k = 0; k < 3; ++k) {
        ASSERT_NE(fonts[k], nullptr);
        EXPECT_EQ(fonts[k]->lfEscapement, escapements[k]);
        EXPECT_EQ(fonts[k]->lfOrientation, escapements[k]);
        EXPECT_EQ(fonts[k]->lfHeight, 16);
        EXPECT_EQ(fonts[k]->lfWeight, 700);
        EXPECT_TRUE(fonts[k]->lfItalic);
        EXPECT_EQ(fonts[k]->lfFaceName, QStringLiteral("DejaVu Sans"));
    }
    ruler.Font()->SetStyle({});
    EXPECT_EQ(ruler.FontHandle90()->lfWeight, 0);
    EXPECT_FALSE(ruler.FontHandle90()->lfItalic);
    ruler.DeleteFonts();
    EXPECT_EQ(ruler.FontHandle0(), nullptr);
    ruler.PaintToImage();  // a paint builds them again
    EXPECT_NE(ruler.FontHandle270(), nullptr);
}

TEST(Fonts, BiggerFontGivesTallerLabels) {
    TRsRuler small, big;
    big.Font()->SetSize(14);
    auto a = blankFor(small), b = blankFor(big);
    small.PaintScaleLabels(a->Canvas());
    big.PaintScaleLabels(b->Canvas());
    EXPECT_GT(InkBounds(b->Image(), kInk).Height(), InkBounds(a->Image(), kInk).Height());
}

TEST(Fonts, ParentFontFollowsTheParentUntilAFontIsSet) {
    QWidget form;
    QFont font("DejaVu Serif");
    font.setPointSize(13);
    font.setBold(true);
    form.setFont(font);
    TRsRuler ruler(&form);
    EXPECT_TRUE(ruler.ParentFont());
    EXPECT_EQ(ruler.Font()->Name(), QStringLiteral("DejaVu Serif"));
    EXPECT_EQ(ruler.Font()->Size(), 13);
    EXPECT_TRUE(ruler.Font()->Style().Contains(fsBold));
    font.setPointSize(9);
    form.setFont(font);
    EXPECT_EQ(ruler.Font()->Size(), 9);
    ruler.Font()->SetSize(20);
    EXPECT_FALSE(ruler.ParentFont());
    font.setPointSize(7);
    form.setFont(font);
    EXPECT_EQ(ruler.Font()->Size(), 20);
    ruler.SetParentFont(true);
    EXPECT_EQ(ruler.Font()->Size(), 7);
}

// ---- Align -----------------------------------------------------------------------

TEST(Align, StickToAnEdgeOfTheParentAndFollowIt) {
    QWidget form;
    form.resize(300, 200);
    form.show();  // a hidden widget hears of its new size when it is shown
    TRsRuler top(&form), left(&form);
    left.SetDirection(rdLeft);
    top.SetAlign(alTop);
    left.SetAlign(alLeft);
    EXPECT_EQ(top.geometry(), QRect(0, 0, 300, 33));
    EXPECT_EQ(left.geometry(), QRect(0, 0, 33, 200));
    form.resize(400, 250);
    EXPECT_EQ(top.geometry(), QRect(0, 0, 400, 33));
    EXPECT_EQ(left.geometry(), QRect(0, 0, 33, 250));
    TRsRuler bottom(&form);
    bottom.SetAlign(alBottom);
    EXPECT_EQ(bottom.geometry(), QRect(0, 217, 400, 33));
    top.SetAlign(alNone);
    form.resize(500, 250);
    EXPECT_EQ(top.geometry(), QRect(0, 0, 400, 33));
}

// ---- Corner ----------------------------------------------------------------------

TEST(Corner, TextAndHintPerUnit) {
    TRsRulerCorner corner;
    const struct {
        TRulerUnit unit;
        const char* text;
        const char* hint;
    } cases[] = {{ruKilo, "km", "kilometer"}, {ruMeter, "m", "meter"}, {ruCenti, "cm", "centimeter"},
                 {ruMilli, "mm", "millimeter"}, {ruInch, "in", "inch"}, {ruPixel, "px", "pixel"}};
    for (const auto& c : cases) {
        corner.SetUnit(c.unit);
        EXPECT_EQ(corner.Units(), c.unit);
        EXPECT_EQ(corner.UnitText(), QString::fromLatin1(c.text));
        EXPECT_EQ(corner.Hint(), QString::fromLatin1(c.hint));
    }
    corner.SetUnit(ruNone);  // no text; the hint stays
    EXPECT_EQ(corner.UnitText(), QString());
    EXPECT_EQ(corner.Hint(), QStringLiteral("pixel"));
}

TEST(Corner, PaintsTheAbbreviationCentredInItsBand) {
    TRsRulerCorner corner;
    corner.SetScaleColor(clYellow);
    const QImage image = corner.PaintToImage();
    EXPECT_EQ(PixelAt(image, 4, 4), clYellow);
    const TRect ink = InkBounds(image, kInk);
    ASSERT_GT(ink.Width(), 4);
    EXPECT_NEAR((ink.left + ink.right) / 2.0, (3 + 32) / 2.0, 2.0);
    EXPECT_NEAR((ink.top + ink.bottom) / 2.0, (3 + 32) / 2.0, 3.0);
    corner.SetUnit(ruNone);
    EXPECT_EQ(CountPixels(corner.PaintToImage(), kInk), 0);
}

TEST(Corner, BandJoinsTheRulersForEveryPosition) {
    TRsRulerCorner corner;
    const std::pair<TCornerPos, TRect> cases[] = {{cpLeftTop, Rect(3, 3, 32, 32)},
                                                  {cpRightTop, Rect(1, 3, 30, 32)},
                                                  {cpLeftBottom, Rect(3, 1, 32, 30)},
                                                  {cpRightBottom, Rect(1, 1, 30, 30)}};
    for (const auto& [position, band] : cases) {
        corner.SetPosition(position);
        EXPECT_EQ(corner.BandRect(), band) << int(position);
    }
}
