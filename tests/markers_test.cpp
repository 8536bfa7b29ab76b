// Markers and drawing states: hot squares placed by round-half-to-even, their
// size for group members, their look while rotating or locked, the
// process-wide hot colour, link crosses, the information diamond and the
// grey conversion for black-and-white printers.
#include "cad/canvas/mycad.h"
#include "cad/geometry/markers.h"
#include "cad/shapes/shape_markers.h"
#include "support/shapes.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

using namespace faroven;
using namespace faroven::test;

namespace {

class Markers : public ::testing::Test {
protected:
    void SetUp() override {
        m_savedHot = HotColor();
        SetHotColor(clLime);
        bmp.Canvas()->Brush()->SetColor(clWhite);
        bmp.Canvas()->FillRect(Rect(0, 0, 60, 60));
    }
    void TearDown() override { SetHotColor(m_savedHot); }
    TMyCAD cad;
    FigureShape shape{&cad};
    TBitmap bmp{60, 60};
    TColor m_savedHot = clLime;
};

TEST_F(Markers, HotSquareRoundsHalvesToEven) {
    DrawSquare(&shape, bmp.Canvas(), {10.5f, 20});
    EXPECT_EQ(InkBounds(bmp.Image(), clBlack), Rect(6, 16, 14, 24)) << Ascii(bmp.Image(), clBlack);
    EXPECT_EQ(PixelAt(bmp, 10, 20), clLime);
}

TEST_F(Markers, GroupMembersGetHalfSizeSquares) {
    cad.SetHotSize(5);
    shape.SetParentShapeNo(0);
    DrawSquare(&shape, bmp.Canvas(), {30, 30});
    EXPECT_EQ(InkBounds(bmp.Image(), clBlack), Rect(28, 28, 32, 32));
}

TEST_F(Markers, NothingWhenTheShapeHidesItsHotMarks) {
    shape.SetHotShow(false);
    DrawSquare(&shape, bmp.Canvas(), {30, 30});
    EXPECT_EQ(CountPixels(bmp.Image(), clWhite), 60 * 60);
}

TEST_F(Markers, LockedShapesHaveGreySquares) {
    shape.SetLocked(true);
    DrawSquare(&shape, bmp.Canvas(), {30, 30});
    EXPECT_EQ(PixelAt(bmp, 30, 30), clGray);
    EXPECT_EQ(PixelAt(bmp, 26, 26), clBlack);
}

TEST_F(Markers, WhileRotatingMarksBecomeCirclesOrVanish) {
    cad.SetShapeTool(SpRotateSelecting);
    ASSERT_EQ(cad.Action(), dtRotateSelecting);
    DrawSquare(&shape, bmp.Canvas(), {30, 30});
    EXPECT_EQ(PixelAt(bmp, 26, 26), clWhite) << "the corner of a circle's box stays empty";
    EXPECT_EQ(PixelAt(bmp, 30, 30), clLime);
    EXPECT_EQ(InkBounds(bmp.Image(), clBlack), Rect(26, 26, 34, 34));

    auto other = FilledBitmap(60, 60, clWhite);
    shape.SetRotateEnable(false);
    DrawSquare(&shape, other->Canvas(), {30, 30});
    EXPECT_EQ(CountPixels(other->Image(), clWhite), 60 * 60) << "a shape that may not rotate shows no marks";

    shape.SetRotateEnable(true);
    shape.SetParentShapeNo(0);
    DrawSquare(&shape, other->Canvas(), {30, 30});
    EXPECT_EQ(PixelAt(*other, 28, 28), clBlack) << "members keep their half squares";
}

TEST_F(Markers, LinkCrossIsBlueAndRounded) {
    DrawLinkSquare(bmp.Canvas(), {10, 10});
    for (TPoint p : {TPoint{8, 8}, TPoint{9, 9}, TPoint{10, 10}, TPoint{11, 11}, TPoint{12, 8}, TPoint{9, 11}})
        EXPECT_EQ(PixelAt(bmp, p.x, p.y), clBlue) << p.x << "," << p.y;
    EXPECT_EQ(PixelAt(bmp, 12, 12), clWhite) << "a line leaves out its end pixel";
    EXPECT_EQ(CountPixels(bmp.Image(), clBlue), 7);
}

TEST_F(Markers, LinkHotNeedsBothCanvasSwitches) {
    shape.AddLinkPoint({20, 20});
    cad.SetShowHotLink(false);
    DrawLinkHot(&shape, bmp.Canvas());
    EXPECT_EQ(CountPixels(bmp.Image(), clBlue), 0);
    cad.SetShowHotLink(true);
    cad.SetZoom(2);
    DrawLinkHot(&shape, bmp.Canvas());
    EXPECT_EQ(PixelAt(bmp, 40, 40), clBlue) << "link points are drawn zoomed";
}

TEST_F(Markers, DiamondOnlyForShapesWithInformation) {
    bmp.Canvas()->Pen()->SetColor(clRed);
    bmp.Canvas()->Brush()->SetColor(clYellow);
    DrawDiamond(&shape, bmp.Canvas(), {30, 30}, clYellow);
    EXPECT_EQ(CountPixels(bmp.Image(), clRed), 0);
    shape.MultiInfo()->Add("note");
    DrawDiamond(&shape, bmp.Canvas(), {30, 30}, clBlue);
    EXPECT_EQ(PixelAt(bmp, 30, 30), clYellow) << "the canvas's brush, not the colour argument";
    EXPECT_EQ(PixelAt(bmp, 26, 30), clRed);
    EXPECT_EQ(PixelAt(bmp, 27, 27), clWhite);
}

// The hot and locked modes show in the square pixels above, the exclusive-or
// of the rubber-band mode in the self-erasing test below.
TEST_F(Markers, DrawingStatesSetTheAttributesThePixelTestsDoNotShow) {
    TCanvas* c = bmp.Canvas();
    SetDragResizeRotateShapeMode(c);
    EXPECT_EQ(c->Pen()->Style(), psDot);
    EXPECT_EQ(c->Pen()->Width(), 1);
    EXPECT_EQ(c->Brush()->Style(), bsClear);
    shape.Pen()->SetColor(clMaroon);
    shape.Pen()->SetWidth(3);
    shape.Font()->SetName("Courier");
    SetDrawTriangleMode(&shape, c);
    EXPECT_EQ(c->Brush()->Color(), clMaroon);
    EXPECT_EQ(c->Pen()->Width(), 3);
    EXPECT_EQ(c->Font()->Name(), "Courier");
}

TEST_F(Markers, RubberBandDrawnTwiceLeavesNoTrace) {
    bmp.Canvas()->Brush()->SetColor(clTeal);
    bmp.Canvas()->FillRect(Rect(10, 10, 40, 40));
    const QImage before = bmp.Image().copy();
    for (int i = 0; i < 2; ++i) {
        SetDragResizeRotateShapeMode(bmp.Canvas());
        bmp.Canvas()->Rectangle(5, 5, 50, 45);
        LineDraw(&shape, bmp.Canvas(), {0, 0}, {59.5f, 33.5f});
    }
    EXPECT_EQ(bmp.Image(), before);
}

TEST_F(Markers, ShapeModeOnScreenUsesThePenAndBrushAsTheyAre) {
    shape.Pen()->SetColor(clRed);
    shape.Pen()->SetStyle(psDash);
    shape.Brush()->SetColor(clBlue);
    shape.Brush()->SetStyle(bsCross);
    SetDrawShapeMode(&shape, bmp.Canvas());
    EXPECT_EQ(bmp.Canvas()->Pen()->Color(), clRed);
    EXPECT_EQ(bmp.Canvas()->Pen()->Style(), psDash);
    EXPECT_EQ(bmp.Canvas()->Pen()->Mode(), pmCopy);
    EXPECT_EQ(bmp.Canvas()->Brush()->Style(), bsCross);
}

TEST_F(Markers, BlackAndWhitePrinterTurnsColoursGrey) {
    Printer()->SetNumColors(2);
    shape.Pen()->SetColor(clRed);
    shape.Brush()->SetColor(RGB(30, 60, 90));
    shape.Brush()->SetStyle(bsClear);
    TCanvas* pc = Printer()->Canvas();
    SetDrawShapeMode(&shape, pc);
    Printer()->SetNumColors(16777216);
    EXPECT_EQ(pc->Pen()->Color(), RGB(85, 85, 85));
    EXPECT_EQ(pc->Brush()->Color(), RGB(60, 60, 60));
    EXPECT_EQ(pc->Brush()->Style(), bsClear) << "a clear brush stays clear";
    // A colour printer keeps the colours.
    SetDrawShapeMode(&shape, pc);
    EXPECT_EQ(pc->Pen()->Color(), clRed);
}

TEST(HotColour, LastCanvasToSetItWinsForEveryCanvas) {
    const TColor saved = HotColor();
    TMyCAD first;
    TMyCAD second;
    auto s = AddBox(&first, 20, 20, 60, 60);
    first.AddWorkingShapes(s);
    EXPECT_EQ(first.ColorOfHot(), clGray) << "the default lives in the field only";
    second.SetColorOfHot(clFuchsia);
    const QImage painted = first.PaintToImage();
    EXPECT_EQ(PixelAt(painted, 20, 20), clFuchsia);
    first.SetColorOfHot(clAqua);
    EXPECT_EQ(PixelAt(second.PaintToImage(), 5, 5), clWhite);
    EXPECT_EQ(HotColor(), clAqua);
    SetHotColor(saved);
}

}  // namespace
