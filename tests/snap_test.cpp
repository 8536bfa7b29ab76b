// Snapping and coordinates: grid snapping per axis with strict distances and
// half-to-even rounding, snapping to other root shapes' zoomed edges inside
// their 0.8/1.2 band with the nearest edge winning, rectangles snapped by
// their edges, the XYMode mappings, the drag-axis restriction and the page
// bounds that LockBound keeps edits to.
#include "cad/canvas/mycad.h"
#include "support/shapes.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

using namespace faroven;
using namespace faroven::test;

namespace {

struct Snapped {
    int x, y;
    bool snapped;
    bool operator==(const Snapped&) const = default;
};
std::ostream& operator<<(std::ostream& os, const Snapped& s) {
    return os << "(" << s.x << ", " << s.y << (s.snapped ? ", snapped)" : ", free)");
}

Snapped snap(TMyCAD& cad, int x, int y) {
    const bool s = cad.SnapXY(x, y);
    return {x, y, s};
}

// ---- Grid ---------------------------------------------------------------------------------------

TEST(GridSnap, TheDocumentedValues) {
    TMyCAD cad;  // grid 20 x 20, 4 pixels
    EXPECT_EQ(snap(cad, 23, 10), (Snapped{20, 10, true}));
    EXPECT_EQ(snap(cad, 25, 10), (Snapped{25, 10, false}));
    EXPECT_EQ(snap(cad, 37, 10), (Snapped{40, 10, true}));
    EXPECT_EQ(snap(cad, -23, 10), (Snapped{-20, 10, true}));
}

TEST(GridSnap, TheDistanceIsStrict) {
    TMyCAD cad;
    EXPECT_EQ(snap(cad, 24, 10), (Snapped{24, 10, false}));
    EXPECT_EQ(snap(cad, 16, 10), (Snapped{16, 10, false}));
    EXPECT_EQ(snap(cad, 17, 10), (Snapped{20, 10, true}));
    cad.SetFSnapPixels(0);
    EXPECT_EQ(snap(cad, 20, 10), (Snapped{20, 10, false})) << "a distance of 0 snaps nothing";
}

TEST(GridSnap, AxesSnapIndependentlyWithTheirOwnSpacing) {
    TMyCAD cad;
    cad.GridOperation()->SetGridHeight(50);
    EXPECT_EQ(snap(cad, 25, 47), (Snapped{25, 50, true}));
    EXPECT_EQ(snap(cad, 22, 47), (Snapped{20, 50, true}));
    EXPECT_EQ(snap(cad, 22, 30), (Snapped{20, 30, true}));
}

TEST(GridSnap, FractionalSpacingRoundsHalfToEven) {
    TMyCAD cad;
    cad.GridOperation()->SetGridWidth(12.5);
    EXPECT_EQ(snap(cad, 26, 10).x, 25);
    EXPECT_EQ(snap(cad, 36, 10).x, 38) << "37.5 rounds to 38";
    EXPECT_EQ(snap(cad, 64, 10).x, 62) << "62.5 rounds to 62";
}

TEST(GridSnap, SnapOffLeavesTheGridAloneButShapesStillAttract) {
    TMyCAD cad;
    cad.SetSnap(false);
    EXPECT_EQ(snap(cad, 23, 10), (Snapped{23, 10, false}));
    AddBox(&cad, 100, 100, 200, 200);
    cad.SetSnapShape(true);
    EXPECT_EQ(snap(cad, 103, 150), (Snapped{100, 150, true}));
}

TEST(GridSnap, AZeroOrBrokenSpacingSnapsNothingOnThatAxis) {
    TMyCAD cad;
    cad.GridOperation()->SetGridWidth(0);
    EXPECT_EQ(snap(cad, 23, 41), (Snapped{23, 40, true}));
    cad.GridOperation()->SetGridWidth(std::nan(""));
    cad.GridOperation()->SetGridHeight(-20);
    EXPECT_EQ(snap(cad, 23, 41), (Snapped{23, 41, false}));
}

// ---- Shapes --------------------------------------------------------------------------------------

class ShapeSnap : public ::testing::Test {
protected:
    void SetUp() override {
        cad.SetSnap(false);
        cad.SetSnapShape(true);
        box = AddBox(&cad, 100, 100, 200, 200);
    }
    TMyCAD cad;
    FigureShape* box = nullptr;
};

TEST_F(ShapeSnap, VerticalEdgesAttractWithinTheHalfOpenDistance) {
    EXPECT_EQ(snap(cad, 96, 150), (Snapped{100, 150, true}));
    EXPECT_EQ(snap(cad, 95, 150), (Snapped{95, 150, false}));
    EXPECT_EQ(snap(cad, 103, 150), (Snapped{100, 150, true}));
    EXPECT_EQ(snap(cad, 104, 150), (Snapped{104, 150, false}));
    EXPECT_EQ(snap(cad, 197, 150), (Snapped{200, 150, true}));
}

TEST_F(ShapeSnap, TheOtherCoordinateMustLieInTheWidenedBand) {
    // 0.8 x top < y <= 1.2 x bottom: 80 < y <= 240.
    EXPECT_FALSE(snap(cad, 101, 80).snapped);
    EXPECT_TRUE(snap(cad, 101, 81).snapped);
    EXPECT_TRUE(snap(cad, 101, 240).snapped);
    EXPECT_FALSE(snap(cad, 101, 241).snapped);
    // Horizontal edges: 80 < x <= 240.
    EXPECT_EQ(snap(cad, 240, 198), (Snapped{240, 200, true}));
    EXPECT_EQ(snap(cad, 241, 198), (Snapped{241, 198, false}));
}

TEST_F(ShapeSnap, BothAxesCanSnapAtACorner) { EXPECT_EQ(snap(cad, 102, 197), (Snapped{100, 200, true})); }

TEST_F(ShapeSnap, TheNearestEdgeWinsWhateverItsSide) {
    AddBox(&cad, 102, 100, 150, 200);
    EXPECT_EQ(snap(cad, 99, 150).x, 100) << "1 to the left beats 3 to the right";
    EXPECT_EQ(snap(cad, 104, 150).x, 102);
    EXPECT_EQ(snap(cad, 101, 150).x, 100) << "a tie keeps the first found";
}

TEST_F(ShapeSnap, TheCurrentShapeAndMembersDoNotAttract) {
    cad.SetCurrentShape(box);
    EXPECT_FALSE(snap(cad, 101, 150).snapped);
    cad.SetCurrentShape(nullptr);
    auto group = AddBox(&cad, 300, 300, 400, 400);
    auto member = AddBox(&cad, 500, 300, 600, 400);
    group->SetChildShapeNos({2});
    member->SetParentShapeNo(1);
    EXPECT_FALSE(snap(cad, 501, 350).snapped);
    EXPECT_TRUE(snap(cad, 301, 350).snapped);
}

TEST_F(ShapeSnap, EdgesAreZoomed) {
    cad.SetZoom(2);
    EXPECT_EQ(snap(cad, 203, 300), (Snapped{200, 300, true}));
    EXPECT_FALSE(snap(cad, 103, 150).snapped);
}

TEST_F(ShapeSnap, AGridSnapOnEitherAxisSkipsShapeSnapping) {
    cad.SetSnap(true);
    // x 101 snaps to the grid line 100; y 151 is 1 pixel from the edge at 150
    // of another shape but stays where it is.
    AddBox(&cad, 0, 150, 400, 300);
    EXPECT_EQ(snap(cad, 101, 151), (Snapped{100, 151, true}));
    EXPECT_EQ(snap(cad, 110, 151), (Snapped{110, 150, true})) << "no grid snap: the shape edge wins";
}

// ---- Rectangles ----------------------------------------------------------------------------------

TEST(RectSnap, TheNearEdgeFirstThenTheFarOne) {
    TMyCAD cad;
    int x = 30, y = 60;
    EXPECT_TRUE(cad.SnapRect(TRect{23, 55, 63, 97}, x, y));
    EXPECT_EQ(x, 27) << "left 23 -> 20";
    EXPECT_EQ(y, 63) << "top 55 is free, bottom 97 -> 100";
    x = 30, y = 60;
    EXPECT_FALSE(cad.SnapRect(TRect{25, 50, 35, 70}, x, y));
    EXPECT_EQ(x, 30);
    EXPECT_EQ(y, 60);
}

TEST(RectSnap, ShapesOfTheSelectionDoNotAttractTheirOwnOutline) {
    TMyCAD cad;
    cad.SetSnap(false);
    cad.SetSnapShape(true);
    auto fixed = AddBox(&cad, 100, 100, 200, 200);
    auto moving = AddBox(&cad, 300, 100, 340, 140);
    cad.AddWorkingShapes(moving);
    int x = 0, y = 0;
    // The moving box dragged so that its right edge lies 2 left of the fixed left edge.
    EXPECT_TRUE(cad.SnapRect(TRect{58, 120, 98, 160}, x, y));
    EXPECT_EQ(x, 2);
    EXPECT_EQ(y, 0);
    x = y = 0;
    EXPECT_FALSE(cad.SnapRect(TRect{301, 101, 341, 141}, x, y)) << "its old place does not attract it";
    (void)fixed;
}

// ---- Coordinate modes, drag axes, page bounds ----------------------------------------------------------

TEST(Coordinates, ModesMeasureFromTheirCorner) {
    TMyCAD cad;
    const int w = cad.Width(), h = cad.Height();
    cad.SetXYMode(Mode1);
    EXPECT_EQ(cad.GetPointByMode(TPoint{0, h}), (TPoint{0, 0}));
    EXPECT_EQ(cad.GetPointByMode(TPoint{10, 20}), (TPoint{10, h - 20}));
    cad.SetXYMode(Mode2);
    EXPECT_EQ(cad.GetPointByMode(TPoint{w, h}), (TPoint{0, 0}));
    EXPECT_EQ(cad.GetPointByMode(TPoint{10, 20}), (TPoint{w - 10, h - 20}));
    cad.SetXYMode(Mode3);
    EXPECT_EQ(cad.GetPointByMode(TPoint{10, 20}), (TPoint{w - 10, 20}));
    cad.SetXYMode(Mode0);
    EXPECT_EQ(cad.GetPointByMode(TPoint{10, 20}), (TPoint{10, 20}));
    cad.SetXYMode(Mode2);
    const TMyPoint p = cad.GetMyPointByMode(TMyPoint{10.5f, 20.25f});
    EXPECT_FLOAT_EQ(p.x, float(w) - 10.5f);
    EXPECT_FLOAT_EQ(p.y, float(h) - 20.25f);
    cad.SetZoom(2);
    EXPECT_EQ(cad.GetPointByMode(TPoint{0, 0}), (TPoint{cad.Width(), cad.Height()})) << "the zoomed control's size";
}

TEST(Coordinates, DragModeKeepsOneAxis) {
    TMyCAD cad;
    TPoint to{50, 60};
    cad.GetMousePointbyDragMode(TPoint{1, 2}, to);
    EXPECT_EQ(to, (TPoint{50, 60}));
    cad.SetDragShapeMode(dgHorz);
    cad.GetMousePointbyDragMode(TPoint{1, 2}, to);
    EXPECT_EQ(to, (TPoint{50, 2}));
    to = TPoint{50, 60};
    cad.SetDragShapeMode(dgVert);
    cad.GetMousePointbyDragMode(TPoint{1, 2}, to);
    EXPECT_EQ(to, (TPoint{1, 60}));
}

TEST(PageBounds, PointsAreClampedOntoThePage) {
    TMyCAD cad;
    const int w = cad.Width(), h = cad.Height();
    EXPECT_EQ(cad.ClampToPage(TPoint{-5, 10}), (TPoint{0, 10}));
    EXPECT_EQ(cad.ClampToPage(TPoint{w + 100, h}), (TPoint{w - 1, h - 1}));
    EXPECT_EQ(cad.ClampToPage(TPoint{7, 8}), (TPoint{7, 8}));
    EXPECT_EQ(cad.PageRect(), (TRect{0, 0, w, h}));
}

TEST(PageBounds, AMovedRectangleStaysOnThePage) {
    TMyCAD cad;
    const int w = cad.Width();
    EXPECT_EQ(cad.ClampOffsetToPage(TRect{10, 10, 50, 50}, TPoint{-30, 5}), (TPoint{-10, 5}));
    EXPECT_EQ(cad.ClampOffsetToPage(TRect{10, 10, 50, 50}, TPoint{w, 0}), (TPoint{w - 1 - 50, 0}));
    EXPECT_EQ(cad.ClampOffsetToPage(TRect{10, 10, 50, 50}, TPoint{3, 4}), (TPoint{3, 4}));
    // Wider than the page: the left edge stays on it.
    EXPECT_EQ(cad.ClampOffsetToPage(TRect{0, 0, w + 200, 10}, TPoint{-50, 0}), (TPoint{0, 0}));
    EXPECT_EQ(cad.ClampOffsetToPage(TRect{0, 0, 10, 10}, TPoint{INT32_MIN, INT32_MAX}).x, 0);
}

}  // namespace
