// Page, grid, background and feedback painting: page styles round-trip in
// both orientations and size the control as round(mm x zoom x ppi / 25.4);
// grid lines and dots sit at the rounded multiples of the (zoomed) spacing;
// the background picture keeps its place on the page; a repaint of part of
// the control equals the same area of a full repaint pixel for pixel; the
// cross-hair and hover frame are exclusive-or overlays; lengths convert to the
// user's unit by the documented factors.
#include "cad/canvas/mycad.h"
#include "support/pixels.h"
#include "support/shapes.h"
#include "support/test_support.h"

#include <gtest/gtest.h>
#include <cmath>

using namespace faroven;
using namespace faroven::test;

namespace {

int mmToPixels(uint32_t mm, double zoom, int ppi) { return Round(double(mm) * zoom * ppi / 25.4); }

// ---- Page styles and the control's size ------------------------------------------------------

struct PageCase {
    TPageStyle style;
    uint32_t width, height;
};
const PageCase kPages[] = {{A0, 841, 1189}, {A1, 594, 841}, {A2, 420, 594}, {A3, 297, 420}, {A4, 210, 297},
                           {A5, 148, 210},  {B3, 353, 500}, {B4, 257, 364}, {B5, 182, 257}};

class PageStyles : public ::testing::TestWithParam<PageCase> {};

TEST_P(PageStyles, RoundTripInBothOrientations) {
    const PageCase c = GetParam();
    TMyCAD cad;
    cad.SetPageStyle(c.style);
    EXPECT_EQ(cad.PageWidth(), c.width);
    EXPECT_EQ(cad.PageHeight(), c.height);
    EXPECT_EQ(cad.GetPageStyleByWH(c.width, c.height), c.style);
    EXPECT_EQ(cad.GetPageStyleByWH(c.height, c.width), CustomerPage) << "portrait does not match turned sizes";
    EXPECT_EQ(cad.Width(), mmToPixels(c.width, 1, 96));
    EXPECT_EQ(cad.Height(), mmToPixels(c.height, 1, 96));

    cad.SetPageOrientation(poLandscape);
    cad.SetPageStyle(c.style);
    EXPECT_EQ(cad.PageWidth(), c.height);
    EXPECT_EQ(cad.PageHeight(), c.width);
    EXPECT_EQ(cad.GetPageStyleByWH(c.height, c.width), c.style);
    EXPECT_EQ(cad.GetPageStyleByWH(c.width, c.height), CustomerPage);
    EXPECT_EQ(cad.Width(), mmToPixels(c.height, 1, 96));
    EXPECT_EQ(cad.Height(), mmToPixels(c.width, 1, 96));

    // Setting the sizes one by one finds the style again.
    TMyCAD other;
    other.SetPageStyle(CustomerPage);
    other.SetPageWidth(c.width);
    other.SetPageHeight(c.height);
    EXPECT_EQ(other.PageStyle(), c.style);
    EXPECT_EQ(other.Width(), mmToPixels(c.width, 1, 96));
}

INSTANTIATE_TEST_SUITE_P(Standard, PageStyles, ::testing::ValuesIn(kPages));

TEST(PageSize, A4OnA96PpiScreen) {
    TMyCAD cad;
    EXPECT_EQ(cad.Width(), 794);
    EXPECT_EQ(cad.Height(), 1123);
    cad.SetPageOrientation(poLandscape);
    EXPECT_EQ(cad.Width(), 794) << "the orientation alone is only stored";
    cad.SetPageStyle(cad.PageStyle());
    EXPECT_EQ(cad.Width(), 1123);
    EXPECT_EQ(cad.Height(), 794);
}

TEST(PageSize, SizesThatMatchNoStyleAreCustomAndLeaveTheControl) {
    TMyCAD cad;
    cad.SetPageWidth(297);
    cad.SetPageHeight(420);
    EXPECT_EQ(cad.PageStyle(), A3);
    EXPECT_EQ(cad.Width(), 1123);
    EXPECT_EQ(cad.Height(), 1587);
    cad.SetPageWidth(300);
    EXPECT_EQ(cad.PageStyle(), CustomerPage);
    EXPECT_EQ(cad.PageWidth(), 300u);
    EXPECT_EQ(cad.Width(), 1123) << "unchanged";
    cad.SetPageStyle(CustomerPage);
    EXPECT_EQ(cad.PageWidth(), 300u);
    EXPECT_EQ(cad.Width(), 1123);
}

TEST(PageSize, ZoomAndScreenResolutionScaleTheControl) {
    TMyCAD cad;
    cad.SetZoom(1.5);
    EXPECT_EQ(cad.Width(), 1191);
    EXPECT_EQ(cad.Height(), 1684);
    EXPECT_EQ(cad.PreZoom(), 1.0);
    cad.SetZoom(0.37);
    EXPECT_EQ(cad.PreZoom(), 1.5);
    cad.SetZoom(0.37);
    EXPECT_EQ(cad.PreZoom(), 1.5) << "the same zoom again changes nothing";
    EXPECT_EQ(cad.Width(), mmToPixels(210, 0.37, 96));
    SetScreenPixelsPerInch(120);
    cad.SetPageStyle(A5);
    EXPECT_EQ(cad.Width(), mmToPixels(148, 0.37, 120));
    EXPECT_EQ(cad.Height(), mmToPixels(210, 0.37, 120));
    SetScreenPixelsPerInch(96);
}

// ---- Grid ---------------------------------------------------------------------------------------

class GridPaint : public ::testing::Test {
protected:
    void SetUp() override { cad.SetPageStyle(A5); }
    TMyCAD cad;
};

TEST_F(GridPaint, LinesAtEveryMultipleOfTheSpacing) {
    const QImage image = cad.PaintToImage();
    EXPECT_EQ(PixelAt(image, 20, 7), clSilver);
    EXPECT_EQ(PixelAt(image, 0, 7), clSilver);
    EXPECT_EQ(PixelAt(image, 21, 7), clWhite);
    EXPECT_EQ(PixelAt(image, 7, 40), clSilver);
    EXPECT_EQ(PixelAt(image, 10, 10), clWhite);
    EXPECT_EQ(PixelAt(image, 540, 7), clSilver);
    EXPECT_EQ(PixelAt(image, 7, image.height() - 1), clWhite) << "795 is no multiple of 20";
}

TEST_F(GridPaint, DotsOnlyAtCrossings) {
    cad.GridOperation()->SetGridType(gPixel);
    QImage image = cad.PaintToImage();
    EXPECT_EQ(PixelAt(image, 20, 20), clSilver);
    EXPECT_EQ(PixelAt(image, 21, 20), clWhite);
    EXPECT_EQ(PixelAt(image, 20, 21), clWhite);
    EXPECT_EQ(PixelAt(image, 10, 20), clWhite);
    const int columns = image.width() / 20 + 1, rows = image.height() / 20 + 1;
    EXPECT_EQ(CountPixels(image, clSilver), columns * rows);
    cad.GridOperation()->SetGridPenSize(3);
    image = cad.PaintToImage();
    EXPECT_EQ(InkBounds(image.copy(10, 10, 20, 20), clSilver), Rect(9, 9, 12, 12)) << "centred on (20, 20)";
}

TEST_F(GridPaint, SpacingFollowsTheZoomOnlyWithGridInZoom) {
    cad.SetZoom(1.5);
    QImage image = cad.PaintToImage();
    EXPECT_EQ(PixelAt(image, 20, 7), clSilver);
    EXPECT_EQ(PixelAt(image, 30, 7), clWhite);
    cad.GridOperation()->SetGridInZoom(true);
    image = cad.PaintToImage();
    EXPECT_EQ(PixelAt(image, 20, 7), clWhite);
    EXPECT_EQ(PixelAt(image, 30, 7), clSilver);
    EXPECT_EQ(PixelAt(image, 7, 60), clSilver);
    EXPECT_EQ(PixelAt(image, 7, 40), clWhite);
}

TEST_F(GridPaint, FractionalSpacingRoundsHalfToEven) {
    cad.GridOperation()->SetGridWidth(13.7);
    const QImage image = cad.PaintToImage();
    EXPECT_EQ(PixelAt(image, 41, 7), clSilver);  // 41.1
    EXPECT_EQ(PixelAt(image, 68, 7), clSilver);  // 68.5
    EXPECT_EQ(PixelAt(image, 69, 7), clWhite);
}

TEST_F(GridPaint, NothingWithoutAGridToShow) {
    cad.GridOperation()->SetGridShow(false);
    EXPECT_EQ(CountPixels(cad.PaintToImage(), clSilver), 0);
    cad.GridOperation()->SetGridShow(true);
    cad.GridOperation()->SetGridType(gNone);
    EXPECT_EQ(CountPixels(cad.PaintToImage(), clSilver), 0);
    cad.GridOperation()->SetGridType(gLine);
    for (double spacing : {0.0, -5.0, 0.25, std::nan(""), HUGE_VAL}) {
        cad.GridOperation()->SetGridWidth(spacing);
        EXPECT_EQ(CountPixels(cad.PaintToImage(), clSilver), 0) << spacing;
    }
    cad.GridOperation()->SetGridWidth(1e9);  // one line, at 0
    cad.GridOperation()->SetGridHeight(1e9);
    const QImage image = cad.PaintToImage();
    EXPECT_EQ(CountPixels(image, clSilver), image.width() + image.height() - 1);
}

// ---- Partial repaints ---------------------------------------------------------------------------

const TRect kAreas[] = {{61, 43, 233, 171}, {0, 0, 37, 29}, {300, 401, 301, 560}, {119, 7, 400, 8}, {5, 5, 558, 790}};

struct GridCase {
    TGridType type;
    bool inZoom;
    int penSize;
};

class PartialGrid : public ::testing::TestWithParam<GridCase> {};

TEST_P(PartialGrid, MatchesTheFullRepaint) {
    const GridCase c = GetParam();
    TMyCAD cad;
    cad.SetPageStyle(A5);
    cad.GridOperation()->SetGridType(c.type);
    cad.GridOperation()->SetGridInZoom(c.inZoom);
    cad.GridOperation()->SetGridPenSize(c.penSize);
    cad.GridOperation()->SetGridWidth(13.7);
    cad.GridOperation()->SetGridHeight(9.25);
    cad.SetZoom(1.37);
    for (const TRect& area : kAreas) ExpectPartialMatchesFull(cad, area);
}

INSTANTIATE_TEST_SUITE_P(Kinds, PartialGrid,
                         ::testing::Values(GridCase{gLine, false, 1}, GridCase{gLine, true, 1},
                                           GridCase{gLine, true, 3}, GridCase{gPixel, false, 1},
                                           GridCase{gPixel, true, 1}, GridCase{gPixel, false, 4}));

// ---- Background picture --------------------------------------------------------------------------

// A 7 x 5 picture: yellow with a navy pixel at (3, 2) and a red top-left pixel.
void makeTile(TBitmap& tile) {
    tile.SetPixelFormat(pf24bit);
    tile.SetSize(7, 5);
    tile.Canvas()->Brush()->SetColor(clYellow);
    tile.Canvas()->FillRect(Rect(0, 0, 7, 5));
    tile.Canvas()->SetPixel(3, 2, clNavy);
    tile.Canvas()->SetPixel(0, 0, clRed);
}

class Background : public ::testing::Test {
protected:
    void SetUp() override {
        cad.SetPageStyle(A5);  // 559 x 794
        cad.GridOperation()->SetGridShow(false);
        TBitmap tile;
        makeTile(tile);
        cad.SetBkBitmap(tile);
    }
    TMyCAD cad;
};

TEST_F(Background, TiledRepeatsFromThePageOrigin) {
    cad.SetBkBitmapMode(Tiled);
    const QImage image = cad.PaintToImage();
    EXPECT_EQ(PixelAt(image, 3, 2), clNavy);
    EXPECT_EQ(PixelAt(image, 3 + 7 * 40, 2 + 5 * 100), clNavy);
    EXPECT_EQ(PixelAt(image, 7 * 79, 5 * 158), clRed);
    EXPECT_EQ(PixelAt(image, 558, 793), PixelAt(image, 558 % 7, 793 % 5)) << "the last tile is cut by the page";
    EXPECT_EQ(CountPixels(image, clWhite), 0);
}

TEST_F(Background, StretchedOverThePage) {
    TBitmap quarters(2, 2, pf24bit);
    quarters.Canvas()->SetPixel(0, 0, clRed);
    quarters.Canvas()->SetPixel(1, 0, clLime);
    quarters.Canvas()->SetPixel(0, 1, clBlue);
    quarters.Canvas()->SetPixel(1, 1, clYellow);
    cad.SetBkBitmap(quarters);
    cad.SetBkBitmapMode(Stretch);
    const QImage image = cad.PaintToImage();
    EXPECT_EQ(PixelAt(image, 0, 0), clRed);
    EXPECT_EQ(PixelAt(image, 558, 0), clLime);
    EXPECT_EQ(PixelAt(image, 0, 793), clBlue);
    EXPECT_EQ(PixelAt(image, 558, 793), clYellow);
    // Nearest-pixel scaling: each colour takes half the page, give or take the middle pixel.
    const TRect red = InkBounds(image, clRed);
    EXPECT_EQ(red.left, 0);
    EXPECT_EQ(red.top, 0);
    EXPECT_NEAR(red.right, 279.5, 0.5);
    EXPECT_NEAR(red.bottom, 397, 0.5);
}

TEST_F(Background, CentredOnThePage) {
    cad.SetBkBitmapMode(Center);
    const QImage image = cad.PaintToImage();
    // (559 - 7) / 2 = 276, (794 - 5) / 2 = 394.5 -> 394: the extra pixel goes below.
    EXPECT_EQ(InkBounds(image, clYellow), Rect(276, 394, 283, 399));
    EXPECT_EQ(PixelAt(image, 279, 396), clNavy);
}

TEST_F(Background, CentringABiggerPictureCutsItEvenly) {
    TBitmap big(600, 800, pf24bit);
    big.Canvas()->Brush()->SetColor(clYellow);
    big.Canvas()->FillRect(Rect(0, 0, 600, 800));
    big.Canvas()->SetPixel(20, 3, clNavy);   // at page (20 - 21, 3 - 3): outside
    big.Canvas()->SetPixel(21, 3, clRed);    // at page (0, 0)
    cad.SetBkBitmap(big);
    const QImage image = cad.PaintToImage();
    EXPECT_EQ(PixelAt(image, 0, 0), clRed) << "(559 - 600) / 2 = -20.5 -> -21, (794 - 800) / 2 = -3";
}

TEST_F(Background, LeftTopAtThePageOrigin) {
    cad.SetBkBitmapMode(LeftTop);
    const QImage image = cad.PaintToImage();
    EXPECT_EQ(PixelAt(image, 0, 0), clRed);
    EXPECT_EQ(PixelAt(image, 3, 2), clNavy);
    EXPECT_EQ(PixelAt(image, 7, 2), clWhite);
    EXPECT_EQ(PixelAt(image, 3, 5), clWhite);
}

TEST_F(Background, TransparentTilesShowTheBackgroundColour) {
    cad.BkBitmap()->SetTransparent(true);
    cad.BkBitmap()->SetTransparentColor(clYellow);
    cad.SetColorOfBackGround(clAqua);
    cad.SetBkBitmapMode(Tiled);
    const QImage image = cad.PaintToImage();
    EXPECT_EQ(PixelAt(image, 1, 1), clAqua);
    EXPECT_EQ(PixelAt(image, 3 + 7 * 11, 2 + 5 * 9), clNavy);
    ExpectPartialMatchesFull(cad, Rect(61, 43, 233, 171));
}

class PartialBackground : public ::testing::TestWithParam<TBkBitmapMode> {};

TEST_P(PartialBackground, MatchesTheFullRepaint) {
    TMyCAD cad;
    cad.SetPageStyle(A5);
    TBitmap tile;
    makeTile(tile);
    tile.SetSize(37, 23);  // new pixels white: a picture that is not uniform
    tile.Canvas()->SetPixel(30, 20, clGreen);
    cad.SetBkBitmap(tile);
    cad.SetBkBitmapMode(GetParam());
    cad.SetZoom(1.37);
    for (const TRect& area : kAreas) ExpectPartialMatchesFull(cad, area);
}

INSTANTIATE_TEST_SUITE_P(Modes, PartialBackground, ::testing::Values(Tiled, Stretch, Center, LeftTop));

// ---- Cross-hair and hover -------------------------------------------------------------------------

class Feedback : public ::testing::Test {
protected:
    void SetUp() override {
        cad.SetPageStyle(A5);
        cad.GridOperation()->SetGridShow(false);
    }
    TMyCAD cad;
};

TEST_F(Feedback, TheCrossHairInvertsARowAndAColumnOnce) {
    EXPECT_EQ(CountPixels(cad.PaintToImage(), clBlack), 0);
    cad.MouseMove(0, 100, 200);
    TPoint p;
    ASSERT_TRUE(cad.MousePoint(p));
    EXPECT_EQ(p, (TPoint{100, 200}));
    QImage image = cad.PaintToImage();
    EXPECT_EQ(PixelAt(image, 100, 0), clBlack);
    EXPECT_EQ(PixelAt(image, 100, 793), clBlack);
    EXPECT_EQ(PixelAt(image, 0, 200), clBlack);
    EXPECT_EQ(PixelAt(image, 558, 200), clBlack);
    EXPECT_EQ(PixelAt(image, 100, 200), clBlack) << "the centre is inverted once, not twice";
    EXPECT_EQ(CountPixels(image, clBlack), 559 + 794 - 1);
    cad.SetCrossLine(false);
    EXPECT_EQ(CountPixels(cad.PaintToImage(), clBlack), 0);
    cad.SetCrossLine(true);
    cad.MouseLeave();
    EXPECT_FALSE(cad.MousePoint(p));
    EXPECT_EQ(CountPixels(cad.PaintToImage(), clBlack), 0);
}

TEST_F(Feedback, TheCrossHairInvertsWhateverIsBelow) {
    auto s = AddBox(&cad, 50, 150, 150, 250);
    s->Brush()->SetColor(clRed);
    s->Pen()->SetColor(clRed);
    cad.MouseMove(0, 100, 200);
    const QImage image = cad.PaintToImage();
    EXPECT_EQ(PixelAt(image, 100, 170), clAqua) << "red inverted";
    EXPECT_EQ(PixelAt(image, 100, 100), clBlack);
}

TEST_F(Feedback, HoverFramesTheShapeUnderTheMouseUnlessSelected) {
    cad.SetCrossLine(false);
    auto s = AddBox(&cad, 100, 100, 200, 150);
    const QImage plain = cad.PaintToImage();
    cad.MouseMove(0, 150, 120);
    EXPECT_EQ(cad.HoverShape(), s);
    const QImage hovered = cad.PaintToImage();
    // The dotted frame runs 3 pixels outside the points.
    int changed = 0;
    for (int x = 97; x <= 203; ++x) changed += PixelAt(hovered, x, 97) != PixelAt(plain, x, 97);
    EXPECT_GT(changed, 20);
    EXPECT_EQ(PixelAt(hovered, 150, 90), clWhite);
    cad.AddWorkingShapes(s);
    const QImage selected = cad.PaintToImage();
    for (int x = 120; x < 180; ++x)
        ASSERT_EQ(PixelAt(selected, x, 97), PixelAt(plain, x, 97)) << "hot marks instead of a frame, at " << x;
    cad.MouseMove(0, 300, 300);
    EXPECT_EQ(cad.HoverShape(), nullptr);
    cad.MouseMove(0, 150, 120);
    cad.SetMouseEffect(false);
    EXPECT_EQ(cad.HoverShape(), nullptr);
    cad.MouseMove(0, 151, 120);
    EXPECT_EQ(cad.HoverShape(), nullptr);
}

TEST_F(Feedback, DeletingTheHoveredShapeForgetsIt) {
    auto s = AddBox(&cad, 100, 100, 200, 150);
    cad.MouseMove(0, 150, 120);
    ASSERT_EQ(cad.HoverShape(), s);
    cad.DeleteShapeById(s->GetShapeId());
    EXPECT_EQ(cad.HoverShape(), nullptr);
    cad.PaintToImage();
}

TEST_F(Feedback, PartialRepaintsOfTheOverlaysMatchTheFullOne) {
    AddBox(&cad, 100, 100, 200, 150)->Brush()->SetColor(clRed);
    cad.GridOperation()->SetGridShow(true);
    cad.MouseMove(0, 150, 120);
    for (const TRect& area : kAreas) ExpectPartialMatchesFull(cad, area);
}

TEST_F(Feedback, MouseMoveStillRaisesTheInheritedEvent) {
    int moves = 0;
    cad.OnMouseMove = [&](TObject*, TShiftState, int x, int y) {
        ++moves;
        EXPECT_EQ(x, 5);
        EXPECT_EQ(y, 6);
    };
    cad.MouseMove(0, 5, 6);
    EXPECT_EQ(moves, 1);
}

// ---- Units ---------------------------------------------------------------------------------------

TEST(Units, OneInchOfPixelsInEveryUnit) {
    TMyCAD cad;
    const struct {
        TUnits unit;
        double value;
        const char* name;
    } cases[] = {{pixel, 96, "px"}, {mm, 25.4, "mm"}, {cm, 2.54, "cm"},
                 {dm, 0.254, "dm"}, {m, 0.0254, "m"}, {inch, 1, "in"}};
    for (const auto& c : cases) {
        cad.SetUnit(c.unit);
        EXPECT_DOUBLE_EQ(cad.PixelsToUnit(96), c.value) << c.name;
        EXPECT_DOUBLE_EQ(cad.UnitToPixels(c.value), 96) << c.name;
        EXPECT_DOUBLE_EQ(cad.UnitToPixels(cad.PixelsToUnit(37.3)), 37.3) << c.name;
        EXPECT_EQ(cad.UnitAbbreviation(), c.name);
        EXPECT_EQ(UnitAbbreviation(c.unit), c.name);
    }
}

TEST(Units, RatioScalesPaperToRealLengths) {
    TMyCAD cad;  // mm
    cad.SetRatio(0.01);  // 1 : 100
    EXPECT_DOUBLE_EQ(cad.PixelsToUnit(96), 2540);
    EXPECT_DOUBLE_EQ(cad.UnitToPixels(2540), 96);
    cad.SetUnit(pixel);
    cad.SetRatio(2);
    EXPECT_DOUBLE_EQ(cad.PixelsToUnit(96), 48);
    for (double bad : {0.0, -3.0, std::nan(""), HUGE_VAL}) {
        cad.SetRatio(bad);
        EXPECT_DOUBLE_EQ(cad.PixelsToUnit(96), 96) << "ratio " << bad << " counts as 1";
    }
}

TEST(Units, TheScreenResolutionDecidesPaperLengths) {
    TMyCAD cad;
    SetScreenPixelsPerInch(120);
    cad.SetUnit(inch);
    EXPECT_DOUBLE_EQ(cad.PixelsToUnit(120), 1);
    cad.SetUnit(pixel);
    EXPECT_DOUBLE_EQ(cad.PixelsToUnit(120), 120);
    SetScreenPixelsPerInch(96);
}

}  // namespace
