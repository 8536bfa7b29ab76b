// Arrangement: grouping and its refusals, ungrouping, z-order over root
// shapes, swapping with every reference following, alignment, even spacing,
// flipping a group as one figure, locking and resizing by code.
#include "cad/canvas/mycad.h"
#include "cad/shapes/line.h"
#include "cad/shapes/rectangle.h"
#include "support/drawing_state.h"
#include "support/shapes.h"

#include <gtest/gtest.h>

using namespace faroven;
using namespace faroven::test;

namespace {

class Arrange : public ::testing::Test {
protected:
    TMyRectangle* rect(float l, float t, float r, float b) { return AddRect(cad, l, t, r, b); }
    TMyCAD cad;
};

TEST_F(Arrange, GroupTakesTheBoxAndTheNextId) {
    TMyRectangle* a = rect(10, 20, 30, 40);
    TMyRectangle* b = rect(50, 5, 70, 25);
    const int id = cad.GroupShapes({b, a});
    TMyShape* group = cad.GetShapeByID(id);
    ASSERT_NE(group, nullptr);
    EXPECT_EQ(id, 2);
    EXPECT_EQ(group->Name(), "Shape2");
    EXPECT_EQ(group->ShapeNo(), 2);
    EXPECT_EQ(group->Points(), (TArrMyPoint{{10, 5}, {70, 5}, {70, 40}, {10, 40}}));
    EXPECT_EQ(group->TextPoint(), (TMyPoint{40, 50}));
    EXPECT_EQ(std::as_const(*group).ChildShapeNos(), (std::vector<int32_t>{0, 1}));
    EXPECT_EQ(cad.WorkingShapes(), std::vector<TMyShape*>{group});
    EXPECT_EQ(cad.CurrentShape(), group);
    EXPECT_EQ(cad.UndoActionName(), "ACT_GROUP");
    EXPECT_TRUE(cad.areTheyBrother(a, b));
    EXPECT_FALSE(cad.areTheyBrother(a, group));
    ExpectIntact(cad);
}

TEST_F(Arrange, RefusalsChangeNothingAndRecordNothing) {
    TMyRectangle* a = rect(0, 0, 10, 10);
    TMyRectangle* b = rect(20, 0, 30, 10);
    cad.NewLayer("other", true);
    TMyRectangle* other = rect(40, 0, 50, 10);
    const std::string before = DrawingState(cad);
    EXPECT_EQ(cad.GroupShapes({a, other}), -1);
    b->SetVisible(false);
    EXPECT_EQ(cad.GroupShapes({a, b}), -1);
    EXPECT_EQ(cad.GroupShapes({}), -1);
    cad.BringToFrontByStep(other);  // already in front
    cad.SendToBackByStep(a);        // already at the back
    cad.AddWorkingShapes(a);
    cad.AlignLeft();                // a single selected shape
    EXPECT_EQ(DrawingState(cad), before);
    EXPECT_FALSE(cad.CanUndo());

    b->SetVisible(true);
    TMyShape* inner = cad.GetShapeByID(cad.GroupShapes({a, b}));
    ASSERT_GE(cad.GroupShapes({inner}), 0);
    const std::string grouped = DrawingState(cad);
    cad.UnGroupShape(inner);  // a group inside a group stays
    cad.UnGroupShape(a);      // not a group
    EXPECT_EQ(DrawingState(cad), grouped);
}

TEST_F(Arrange, ZOrderMovesRootsAndSkipsMembers) {
    TMyRectangle* a = rect(0, 0, 10, 10);
    TMyRectangle* m1 = rect(20, 0, 30, 10);
    TMyRectangle* m2 = rect(40, 0, 50, 10);
    TMyShape* g = cad.GetShapeByID(cad.GroupShapes({m1, m2}, false));
    TMyRectangle* c = rect(60, 0, 70, 10);
    // List: a m1 m2 g c. a steps over the members to g.
    cad.BringToFrontByStep(a);
    EXPECT_EQ(cad.MyShapes(), (std::vector<TMyShape*>{g, m1, m2, a, c}));
    EXPECT_EQ(cad.UndoActionName(), "ACT_BRINGTOFRONTBYSTEP");
    cad.SendToBack(c);
    EXPECT_EQ(cad.MyShapes(), (std::vector<TMyShape*>{c, m1, m2, g, a}));
    EXPECT_EQ(cad.GetShapeByNo(m1->ParentShapeNo()), g);
    ExpectIntact(cad);
}

TEST_F(Arrange, SwapKeepsLinkLineEndsOnTheirShapes) {
    TMyRectangle* a = rect(0, 0, 10, 10);
    TMyRectangle* b = rect(40, 0, 50, 10);
    TMyLine* line = AddJoiningLine(cad, a, b);
    cad.SwapShape(a, line);
    EXPECT_EQ(cad.GetShapeByNo(line->StartSpNo()), a);
    EXPECT_EQ(cad.GetShapeByNo(line->EndSpNo()), b);
    EXPECT_EQ(cad.GetShapeByNo(int(std::as_const(*b).LinkShapeNos().front())), line);
    ExpectIntact(cad);
}

TEST_F(Arrange, AlignmentMovesGroupsWithTheirMembers) {
    TMyRectangle* a = rect(10, 10, 20, 20);
    TMyRectangle* m = rect(50, 40, 60, 60);
    TMyShape* g = cad.GetShapeByID(cad.GroupShapes({m}, false));
    cad.RemoveAllWorkingShapes();
    cad.AddWorkingShapes(a);
    cad.AddWorkingShapes(g);
    cad.AlignRight();
    EXPECT_EQ(a->GetBounds().right, 60);
    cad.AlignVerticalCenter();
    EXPECT_EQ(a->GetBounds(), (TMyRect{50, 30, 60, 40}));
    EXPECT_EQ(m->GetBounds(), g->GetBounds());
    cad.AlignLeft();
    EXPECT_EQ(m->GetBounds().left, 50);
    cad.Undo();
    cad.Undo();
    EXPECT_EQ(a->GetBounds(), (TMyRect{50, 10, 60, 20}));
}

TEST_F(Arrange, EvenSpacingLeavesEqualGapsBetweenTheOuterShapes) {
    TMyRectangle* a = rect(0, 0, 10, 10);
    TMyRectangle* b = rect(12, 0, 42, 10);  // 30 wide
    TMyRectangle* c = rect(45, 0, 50, 10);  // 5 wide
    TMyRectangle* d = rect(100, 0, 110, 10);
    cad.AverageWidth({d, b, a, c});
    // 90 units between a and d, 35 of them taken: gaps of 55 / 3.
    const float gap = 55.f / 3;
    EXPECT_FLOAT_EQ(b->GetBounds().left, 10 + gap);
    EXPECT_FLOAT_EQ(c->GetBounds().left, 10 + gap + 30 + gap);
    EXPECT_EQ(a->GetBounds().left, 0);
    EXPECT_EQ(d->GetBounds().left, 100);
    cad.AverageHeight({a, b});  // fewer than three: nothing
    EXPECT_EQ(b->GetBounds().top, 0);
}

TEST_F(Arrange, FlipMirrorsAGroupAsOneFigure) {
    TMyRectangle* left = rect(0, 0, 10, 10);
    TMyRectangle* right = rect(30, 0, 50, 20);
    TMyShape* g = cad.GetShapeByID(cad.GroupShapes({left, right}, false));
    cad.FlipHoriz(g);
    EXPECT_EQ(left->GetBounds(), (TMyRect{40, 0, 50, 10}));
    EXPECT_EQ(right->GetBounds(), (TMyRect{0, 0, 20, 20}));
    EXPECT_TRUE(g->IsFlipHorz());
    EXPECT_EQ(cad.UndoActionName(), "ACT_CHANGE");
    cad.Undo();
    EXPECT_EQ(left->GetBounds(), (TMyRect{0, 0, 10, 10}));
    cad.FlipVert(nullptr);
    // Several shapes flip as one step, each about its own centre.
    cad.FlipVert(std::vector<TMyShape*>{g, rect(60, 0, 70, 30)});
    EXPECT_TRUE(g->IsFlipVert());
    cad.Undo();
    EXPECT_FALSE(g->IsFlipVert());
    EXPECT_FALSE(cad.CanUndo());
}

TEST_F(Arrange, LockReachesMembersAndSizeShapeScalesThem) {
    TMyRectangle* m = rect(10, 10, 20, 20);
    TMyShape* g = cad.GetShapeByID(cad.GroupShapes({m}, false));
    cad.LockUnLockforShapes(g, true);
    EXPECT_TRUE(m->Locked());
    cad.LockUnLockforShapes(g, false);
    // Dragging the bottom-right corner from (20, 20) to (30, 30) doubles the box.
    cad.SizeShape(g, 2, TPoint{30, 30});
    EXPECT_EQ(g->GetBounds(), (TMyRect{10, 10, 30, 30}));
    EXPECT_EQ(m->GetBounds(), (TMyRect{10, 10, 30, 30}));
    EXPECT_EQ(g->HotIndex(), 2);
    cad.SizeShape(g, -1, TPoint{0, 0});
    EXPECT_EQ(g->GetBounds(), (TMyRect{10, 10, 30, 30}));
}

}  // namespace
