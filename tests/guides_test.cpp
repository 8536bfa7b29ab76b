// Smart guides: per axis the nearest alignment or equal spacing within the
// tolerance wins (ties to the lower coordinate, whatever the order of the
// boxes), only the moving edges count, the axes are independent, and the
// lines describe the box after the snap.
#include "cad/geometry/guides.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace faroven;

namespace {

TGuideLine Line(float x1, float y1, float x2, float y2) { return {{x1, y1}, {x2, y2}}; }

bool Has(const TGuideResult& r, const TGuideLine& line) {
    return std::find(r.lines.begin(), r.lines.end(), line) != r.lines.end();
}

TEST(Guides, LeftEdgeSnapsToTheNearestEdgeAndShowsOneLineAcrossBothBoxes) {
    // Left 12 is 2 from the other's left; the centre (22 vs 25) is 3 away.
    const TGuideResult r = FindGuides({12, 50, 32, 70}, {{10, 0, 40, 20}}, geAll, 4);
    EXPECT_TRUE(r.snappedX);
    EXPECT_DOUBLE_EQ(r.dx, -2);
    EXPECT_FALSE(r.snappedY);
    EXPECT_EQ(r.dy, 0);
    EXPECT_EQ(r.lines, std::vector<TGuideLine>{Line(10, 0, 10, 70)});
}

TEST(Guides, CentreSnapsToAnotherCentre) {
    // Centre 15 -> 16 beats left 0 -> 12 and right 30 -> 20.
    const TGuideResult r = FindGuides({0, 100, 30, 120}, {{12, 0, 20, 10}}, geAll, 12);
    EXPECT_DOUBLE_EQ(r.dx, 1);
    EXPECT_EQ(r.lines, std::vector<TGuideLine>{Line(16, 0, 16, 120)});
}

TEST(Guides, NothingWithinToleranceGivesNoSnapAndNoLines) {
    const TGuideResult r = FindGuides({50, 50, 70, 70}, {{0, 0, 10, 10}, {100, 100, 140, 130}}, geAll, 5);
    EXPECT_FALSE(r.snappedX);
    EXPECT_FALSE(r.snappedY);
    EXPECT_EQ(r.dx, 0);
    EXPECT_EQ(r.dy, 0);
    EXPECT_TRUE(r.lines.empty());
    EXPECT_FALSE(FindGuides({12, 50, 32, 70}, {{10, 0, 40, 20}}, geAll, -1).snappedX);
}

TEST(Guides, AxesSnapIndependentlyAndOnlyForTheirEdges) {
    const std::vector<TMyRect> others = {{98, 0, 125, 20}, {0, 131, 20, 160}};  // x-aligned, y-aligned
    const TGuideResult r = FindGuides({100, 100, 140, 130}, others, geAll, 3);
    EXPECT_DOUBLE_EQ(r.dx, -2);
    EXPECT_DOUBLE_EQ(r.dy, 1);
    // The moved box is (98, 101, 138, 131).
    EXPECT_EQ(r.lines, (std::vector<TGuideLine>{Line(98, 0, 98, 131), Line(0, 131, 138, 131)}));

    const TGuideResult onlyX = FindGuides({100, 100, 140, 130}, others, geLeft | geRight | geCentreX, 3);
    EXPECT_TRUE(onlyX.snappedX);
    EXPECT_FALSE(onlyX.snappedY);
    EXPECT_EQ(onlyX.lines, std::vector<TGuideLine>{Line(98, 0, 98, 130)});
}

TEST(Guides, EqualSpacingCentresBetweenNeighboursOrRepeatsAGapOfTheRow) {
    // Between two neighbours: gaps 26 and 24 become 25 and 25.
    const TGuideResult between = FindGuides({46, 13, 76, 18}, {{0, 0, 20, 40}, {100, 10, 120, 50}}, geAll, 1.5);
    EXPECT_DOUBLE_EQ(between.dx, -1);
    EXPECT_FALSE(between.snappedY);
    EXPECT_EQ(between.lines, (std::vector<TGuideLine>{Line(20, 15.5f, 45, 15.5f), Line(75, 15.5f, 100, 15.5f)}));

    // After two boxes 20 apart, the third moves to be 20 after the second.
    const TGuideResult repeat = FindGuides({58, 0, 68, 10}, {{0, 0, 10, 10}, {30, 0, 40, 10}}, geAll, 3);
    EXPECT_DOUBLE_EQ(repeat.dx, 2);
    EXPECT_TRUE(Has(repeat, Line(40, 5, 60, 5)));
    EXPECT_TRUE(Has(repeat, Line(10, 5, 30, 5)));

    // The same in a column.
    const TGuideResult column = FindGuides({0, 58, 10, 68}, {{0, 0, 10, 10}, {0, 30, 10, 40}}, geAll, 3);
    EXPECT_DOUBLE_EQ(column.dy, 2);
    EXPECT_TRUE(Has(column, Line(5, 40, 5, 60)));
}

TEST(Guides, ResizeSnapsOnlyThePulledEdge) {
    // The left edge would snap by 1 to the second box, but only the right one moves.
    const std::vector<TMyRect> others = {{52, 0, 60, 10}, {1, 30, 5, 40}};
    const TGuideResult r = FindGuides({0, 100, 50, 120}, others, geRight, 3);
    EXPECT_DOUBLE_EQ(r.dx, 2);
    EXPECT_FALSE(r.snappedY);
    EXPECT_EQ(r.lines, std::vector<TGuideLine>{Line(52, 0, 52, 120)});
    EXPECT_DOUBLE_EQ(FindGuides({0, 100, 50, 120}, others, geLeft, 3).dx, 1);

    // Pulling the right edge to make its gap equal the fixed gap on the left.
    const TGuideResult spaced = FindGuides({20, 0, 38, 10}, {{0, 0, 10, 10}, {50, 0, 60, 10}}, geRight, 3);
    EXPECT_DOUBLE_EQ(spaced.dx, 2);
    EXPECT_EQ(spaced.lines, (std::vector<TGuideLine>{Line(10, 5, 20, 5), Line(40, 5, 50, 5)}));
}

TEST(Guides, TiesGoToTheLowerCoordinateWhateverTheOrder) {
    // Left 10 is 2 from the right edge at 8 and 2 from the left edge at 12.
    std::vector<TMyRect> others = {{6, 50, 8, 60}, {12, 70, 13, 80}};
    EXPECT_DOUBLE_EQ(FindGuides({10, 0, 14, 4}, others, geLeft, 3).dx, -2);
    std::reverse(others.begin(), others.end());
    EXPECT_DOUBLE_EQ(FindGuides({10, 0, 14, 4}, others, geLeft, 3).dx, -2);
}

}  // namespace
