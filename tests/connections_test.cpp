// Connections between shapes: making them by code, finding link points under
// the mouse, keeping both sides in step through every renumbering, undo,
// re-routing when a shape changes, and splitting lines.
#include "cad/canvas/mycad.h"
#include "cad/geometry/geometry.h"
#include "cad/shapes/link.h"
#include "cad/shapes/polyline.h"
#include "support/drawing_state.h"
#include "support/shapes.h"

#include <gtest/gtest.h>

namespace faroven::test {
namespace {

class Connections : public ::testing::Test {
protected:
    // A 40 x 20 box at (x, y) with link points in the middle of its four
    // sides: 0 left, 1 top, 2 right, 3 bottom.
    TMyRectangle* box(float x, float y) {
        TMyRectangle* r = AddRect(cad, x, y, x + 40, y + 20);
        r->AddLinkPoint({x, y + 10});
        r->AddLinkPoint({x + 20, y});
        r->AddLinkPoint({x + 40, y + 10});
        r->AddLinkPoint({x + 20, y + 20});
        return r;
    }
    TMyLinkLine* link(TMyShape* from, int fromPt, TMyShape* to, int toPt) {
        return shape_cast<TMyLinkLine>(cad.GetShapeByID(cad.CreateLink("link", from, toPt, to, fromPt)));
    }
    static bool orthogonal(const TArrMyPoint& pts) {
        for (size_t i = 1; i < pts.size(); ++i)
            if (pts[i].x != pts[i - 1].x && pts[i].y != pts[i - 1].y) return false;
        return pts.size() >= 2;
    }
    TMyCAD cad;
};

TEST_F(Connections, CreateLinkJoinsBothSidesWithTheCrossedIndices) {
    TMyRectangle* a = box(0, 0);
    TMyRectangle* b = box(200, 100);
    int added = 0;
    cad.OnShapeAdded = [&](TMyShape*&, int count) { added = count; };
    // The third argument is the index on the end shape, the fifth on the start shape.
    const int id = cad.CreateLink("wire", a, 0, b, 2);
    auto* line = shape_cast<TMyLinkLine>(cad.GetShapeByID(id));
    ASSERT_NE(line, nullptr);
    EXPECT_EQ(line->Name(), "wire");
    EXPECT_EQ(added, 3);
    EXPECT_EQ(line->StartSpNo(), a->ShapeNo());
    EXPECT_EQ(line->StartSpPtId(), 2);
    EXPECT_EQ(line->EndSpNo(), b->ShapeNo());
    EXPECT_EQ(line->EndSpPtId(), 0);
    EXPECT_EQ(std::as_const(*line).Points().front(), a->GetLinkPoint(2));
    EXPECT_EQ(std::as_const(*line).Points().back(), b->GetLinkPoint(0));
    EXPECT_TRUE(orthogonal(line->Points()));
    EXPECT_EQ(cad.WorkingShapes(), std::vector<TMyShape*>{line});
    EXPECT_EQ(cad.UndoActionName(), "ACT_ADD");
    ExpectIntact(cad);

    cad.Undo();
    EXPECT_EQ(cad.GetShapesCount(), 2);
    EXPECT_FALSE(a->HasLinkShapes());
    EXPECT_FALSE(b->HasLinkShapes());
}

TEST_F(Connections, CreateLinkRefusesBadArgumentsAndSpendsNoId) {
    TMyRectangle* a = box(0, 0);
    TMyRectangle* b = box(100, 0);
    const int nextId = cad.NextShapeId();
    EXPECT_EQ(cad.CreateLink("x", a, 4, b, 0), -1);  // index equal to the count
    EXPECT_EQ(cad.CreateLink("x", a, 0, b, 4), -1);
    EXPECT_EQ(cad.CreateLink("x", a, -1, b, 0), -1);
    EXPECT_EQ(cad.CreateLink("x", nullptr, 0, b, 0), -1);
    EXPECT_EQ(cad.GetShapesCount(), 2);
    EXPECT_EQ(cad.NextShapeId(), nextId);
    EXPECT_FALSE(cad.CanUndo());
}

TEST_F(Connections, IsLinkedFindsTheFirstLineOfTheFirstShape) {
    TMyRectangle* a = box(0, 0);
    TMyRectangle* b = box(100, 0);
    TMyRectangle* c = box(0, 100);
    EXPECT_EQ(cad.IsLinked(a, b), -1);
    const int first = cad.CreateLink("1", a, 0, b, 2);
    const int second = cad.CreateLink("2", a, 1, b, 1);
    cad.CreateLink("3", a, 1, c, 3);
    EXPECT_EQ(cad.IsLinked(a, b), first);
    EXPECT_EQ(cad.IsLinked(b, a), first);
    EXPECT_EQ(cad.IsLinked(b, c), -1);
    // With the first line gone the second one answers.
    cad.DeleteShapeById(first);
    EXPECT_EQ(cad.IsLinked(a, b), second);
}

TEST_F(Connections, LinkPointsUnderTheMouse) {
    TMyRectangle* a = box(0, 0);
    TMyRectangle* b = box(0, 0);  // on top of a, same link points
    cad.SetZoom(2);
    const TPoint right{80, 20};   // a's and b's link point 2 in pixels
    int no = 7, pt = 7;
    // The bottom-most shape wins.
    EXPECT_TRUE(cad.InWhichShapeWhichHotLinkId(no, pt, right));
    EXPECT_EQ(no, a->ShapeNo());
    EXPECT_EQ(pt, 2);
    EXPECT_EQ(cad.IsinHotLink(a, {84, 24}), 2);
    EXPECT_EQ(cad.IsinHotLink(a, {85, 20}), -1);  // the far edge is out
    EXPECT_EQ(cad.IsinHotLink(a, {75, 15}), 2);
    // One selected shape stays eligible; with two selected both are skipped.
    cad.AddWorkingShapes(a);
    EXPECT_TRUE(cad.InWhichShapeWhichHotLinkId(no, pt, right));
    EXPECT_EQ(no, a->ShapeNo());
    cad.AddWorkingShapes(b);
    EXPECT_FALSE(cad.InWhichShapeWhichHotLinkId(no, pt, right));
    EXPECT_EQ(no, -1);
    EXPECT_EQ(pt, -1);
}

TEST_F(Connections, GetMainShapeMovesAnEndFromShapeToShape) {
    TMyRectangle* a = box(0, 0);
    TMyRectangle* b = box(100, 0);
    TMyLinkLine* line = link(a, 2, b, 0);
    TPoint p{101, 12};  // near b's left link point (100, 10)
    cad.GetMainShape(line, llStart, p);
    EXPECT_EQ(p, (TPoint{100, 10}));
    EXPECT_EQ(line->StartSpNo(), b->ShapeNo());
    EXPECT_EQ(line->StartSpPtId(), 0);
    EXPECT_FALSE(a->HasLinkShapes());
    // Both ends on b: b lists the line once, and keeps it when one end leaves.
    EXPECT_EQ(std::as_const(*b).LinkShapeNos().size(), 1u);
    TPoint nowhere{500, 500};
    cad.GetMainShape(line, llStart, nowhere);
    EXPECT_EQ(nowhere, (TPoint{500, 500}));
    EXPECT_EQ(line->StartSpNo(), -1);
    EXPECT_EQ(line->StartSpPtId(), -1);
    EXPECT_EQ(std::as_const(*b).LinkShapeNos().size(), 1u);
    ExpectIntact(cad);
}

TEST_F(Connections, BothSidesFollowSwapsZOrderDeletionAndUndo) {
    TMyRectangle* a = box(0, 0);
    TMyRectangle* b = box(100, 0);
    TMyRectangle* c = box(0, 100);
    TMyLinkLine* ab = link(a, 2, b, 0);
    TMyLinkLine* ac = link(a, 3, c, 1);
    auto ends = [](TMyLinkLine* l) { return std::make_pair(l->StartSpNo(), l->EndSpNo()); };

    cad.SwapShape(a, c);
    ExpectIntact(cad);
    EXPECT_EQ(ends(ab), std::make_pair(a->ShapeNo(), b->ShapeNo()));
    cad.SendToBack(ab);
    cad.BringToFront(a);
    cad.BringToFrontByStep(c);
    ExpectIntact(cad);
    EXPECT_EQ(ends(ac), std::make_pair(a->ShapeNo(), c->ShapeNo()));

    const int aId = a->GetShapeId();
    ASSERT_TRUE(cad.DeleteShapeById(aId));
    ExpectIntact(cad);
    EXPECT_EQ(ab->StartSpNo(), -1);
    EXPECT_EQ(ac->StartSpNo(), -1);
    EXPECT_EQ(ends(ab).second, b->ShapeNo());

    // Undo brings a back at the end of the list, joined to both lines again.
    cad.Undo();
    ExpectIntact(cad);
    TMyShape* back = cad.GetShapeByID(aId);
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(ends(ab), std::make_pair(back->ShapeNo(), b->ShapeNo()));
    EXPECT_EQ(ab->StartSpPtId(), 2);
    EXPECT_EQ(ends(ac), std::make_pair(back->ShapeNo(), c->ShapeNo()));
    EXPECT_EQ(ac->StartSpPtId(), 3);
    cad.Redo();
    ExpectIntact(cad);
    EXPECT_EQ(ab->StartSpNo(), -1);
}

TEST_F(Connections, DeletedLineComesBackJoined) {
    TMyRectangle* a = box(0, 0);
    TMyRectangle* b = box(100, 0);
    const int id = link(a, 2, b, 0)->GetShapeId();
    box(0, 200);
    ASSERT_TRUE(cad.DeleteShapeById(id));
    EXPECT_FALSE(a->HasLinkShapes());
    cad.Undo();
    ExpectIntact(cad);
    EXPECT_EQ(cad.IsLinked(a, b), id);
    auto* line = shape_cast<TMyLinkLine>(cad.GetShapeByID(id));
    EXPECT_EQ(line->EndSpPtId(), 0);
}

TEST_F(Connections, MovingResizingAndTurningAShapeRoutesItsLinesAgain) {
    TMyRectangle* a = box(0, 0);
    TMyRectangle* b = box(200, 100);
    TMyLinkLine* line = link(a, 2, b, 0);
    // A move through the canvas's arrangement entry point.
    cad.DragChangeValueDxDyforShapes(b, 30, -50);
    cad.ChangeLinkShapes(b);
    EXPECT_EQ(std::as_const(*line).Points().back(), (TMyPoint{230, 60}));
    EXPECT_TRUE(orthogonal(line->Points()));
    // A resize by the right middle handle carries b's link points along.
    cad.SizeShape(b, 5, {300, 60});
    cad.ChangeLinkShapes(b);
    EXPECT_EQ(b->GetLinkPoint(2), (TMyPoint{300, 60}));
    EXPECT_EQ(b->GetLinkPoint(1), (TMyPoint{265, 50}));
    EXPECT_EQ(std::as_const(*line).Points().back(), b->GetLinkPoint(0));
    // Mirroring a, by the canvas, moves its right link point to the left.
    cad.FlipHoriz(a);
    EXPECT_EQ(std::as_const(*line).Points().front(), a->GetLinkPoint(2));
    EXPECT_EQ(a->GetLinkPoint(2), (TMyPoint{0, 10}));
    // Undo of the flip puts the route back on the right side.
    cad.Undo();
    EXPECT_EQ(std::as_const(*line).Points().front(), (TMyPoint{40, 10}));
    EXPECT_TRUE(orthogonal(line->Points()));
}

// Whether a segment of the route meets the inside of the box.
bool crosses(const TArrMyPoint& route, const TMyRect& box) {
    for (size_t i = 1; i < route.size(); ++i) {
        const TMyRect seg = GetPointsLTRB({route[i - 1], route[i]});
        if (seg.right > box.left && seg.left < box.right && seg.bottom > box.top && seg.top < box.bottom) return true;
    }
    return false;
}

TEST_F(Connections, RoutesGoRoundAThirdShapeAndKeepTheirSideWhenItMovesALittle) {
    TMyRectangle* a = box(0, 100);
    TMyRectangle* b = box(300, 100);
    TMyShape* middle = AddRect(cad, 120, 60, 220, 150);  // between a's right side and b's left side
    TMyLinkLine* line = link(a, 2, b, 0);
    const TMyRect obstacle = middle->GetBounds();
    ASSERT_FALSE(crosses(line->Points(), obstacle));
    EXPECT_TRUE(orthogonal(line->Points()));
    const bool below = GetPointsLTRB(line->Points()).bottom > obstacle.bottom;
    for (int step = 0; step < 8; ++step) {
        cad.DragChangeValueDxDyforShapes(b, 0, step % 2 ? -3 : 2);
        cad.ChangeLinkShapes(b);
        ASSERT_FALSE(crosses(line->Points(), obstacle)) << "step " << step;
        EXPECT_EQ(GetPointsLTRB(line->Points()).bottom > obstacle.bottom, below) << "step " << step;
    }
    // Without LinklineAroundShape only the joined shapes shape the route.
    cad.SetLinklineAroundShape(false);
    cad.ChangeLinkShapes(b);
    EXPECT_TRUE(crosses(line->Points(), obstacle));
}

TEST_F(Connections, StraightStyleClipsAtTheOutlines) {
    cad.SetLinkLineDrawStyle(lldsFree);
    TMyRectangle* a = AddRect(cad, 0, 0, 40, 40);
    TMyRectangle* b = AddRect(cad, 100, 0, 140, 40);
    a->AddLinkPoint({20, 20});  // the middle: the line starts where it leaves the box
    b->AddLinkPoint({120, 20});
    TMyLinkLine* line = link(a, 0, b, 0);
    EXPECT_EQ(line->LinkLineDrawStyle(), lldsFree);
    EXPECT_EQ(std::as_const(*line).Points(), (TArrMyPoint{{40, 20}, {100, 20}}));
}

TEST_F(Connections, DrawnPlainLineBecomesAConnection) {
    TMyRectangle* a = box(0, 0);
    TMyRectangle* b = box(100, 0);
    auto* plain = new TMyLine(&cad);
    plain->SetArrowStyle(ALeft);
    plain->AddPoint({40, 10});
    plain->AddPoint({100, 10});
    TPoint p{41, 11};
    cad.GetMergeShape(plain, llStart, p);
    TPoint q{99, 9};
    cad.GetMergeShape(plain, llEnd, q);
    EXPECT_FALSE(a->HasLinkShapes()) << "a plain line is no connection yet";
    cad.AddNewShape(plain);
    const int id = cad.CreateAndDelete(plain);
    ASSERT_GE(id, 0);
    ASSERT_EQ(cad.GetShapesCount(), 3);
    auto* line = shape_cast<TMyLinkLine>(cad.GetShapeByID(id));
    ASSERT_NE(line, nullptr);
    EXPECT_EQ(line->ArrowStyle(), ALeft);
    EXPECT_EQ(cad.IsLinked(a, b), id);
    ExpectIntact(cad);
    // One step takes the connection away; the plain line was never recorded.
    cad.Undo();
    EXPECT_EQ(cad.GetShapesCount(), 2);
    EXPECT_FALSE(cad.CanUndo());
    // A line still being drawn (not in the list) is freed by the canvas.
    auto* drawn = new TMyLine(&cad);
    drawn->SetStartSpNo(a->ShapeNo());
    drawn->SetStartSpPtId(2);
    drawn->SetEndSpNo(b->ShapeNo());
    drawn->SetEndSpPtId(0);
    cad.SetCurrentShape(drawn);
    EXPECT_GE(cad.CreateAndDelete(drawn), 0);
    EXPECT_EQ(cad.CurrentShape(), nullptr);
    EXPECT_EQ(cad.GetShapesCount(), 3);
}

TEST_F(Connections, BreakingALinkLineHandsItsEndToTheSecondPart) {
    TMyRectangle* a = box(0, 0);
    TMyRectangle* b = box(200, 0);
    TMyLinkLine* line = link(a, 2, b, 0);  // straight from (40, 10) to (200, 10)
    EXPECT_FALSE(cad.IsBreakLineByAPoint(line, {42, 10})) << "on a handle";
    EXPECT_FALSE(cad.IsBreakLineByAPoint(line, {120, 30})) << "off the line";
    ASSERT_TRUE(cad.IsBreakLineByAPoint(line, {120, 13}));
    auto* tail = shape_cast<TMyLinkLine>(cad.BreakLineByAPoint(line, {120, 13}));
    ASSERT_NE(tail, nullptr);
    EXPECT_EQ(std::as_const(*line).Points(), (TArrMyPoint{{40, 10}, {120, 10}}));
    EXPECT_EQ(std::as_const(*tail).Points(), (TArrMyPoint{{120, 10}, {200, 10}}));
    EXPECT_EQ(line->EndSpNo(), -1);
    EXPECT_EQ(tail->EndSpNo(), b->ShapeNo());
    EXPECT_EQ(tail->StartSpNo(), -1);
    ExpectIntact(cad);
    const std::string split = DrawingState(cad);
    cad.Undo();
    cad.Undo();
    ExpectIntact(cad);
    EXPECT_EQ(cad.GetShapesCount(), 3);
    EXPECT_EQ(std::as_const(*line).Points(), (TArrMyPoint{{40, 10}, {200, 10}}));
    EXPECT_EQ(cad.IsLinked(a, b), line->GetShapeId()) << "the line joins both again";
    cad.Redo();
    cad.Redo();
    ExpectIntact(cad);
    EXPECT_EQ(DrawingState(cad), split);
}

TEST_F(Connections, BreakLineSplitsAPolylineAtHalfItsLength) {
    auto* poly = AddShape<TMyPolyLine>(cad, {{0, 0}, {100, 0}, {100, 300}});
    TMyShape* tail = cad.BreakLine(poly, false);
    ASSERT_NE(tail, nullptr);
    EXPECT_EQ(std::as_const(*poly).Points(), (TArrMyPoint{{0, 0}, {100, 0}, {100, 100}}));
    EXPECT_EQ(std::as_const(*tail).Points(), (TArrMyPoint{{100, 100}, {100, 300}}));
    EXPECT_EQ(cad.BreakLine(AddShape<TMyPolygon>(cad, {{0, 0}, {10, 0}, {10, 10}}), false), nullptr);
}

}  // namespace
}  // namespace faroven::test
