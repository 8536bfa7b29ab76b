// Editing with the mouse: picking rules, the selection, drawing with the
// tools, drags, resizes and rotations and their undo steps, node editing,
// the keyboard. Some cases go through real Qt mouse events, the rest through
// the canvas's handlers.
#include "cad/canvas/mycad.h"
#include "cad/shapes/link.h"
#include "cad/shapes/link_point.h"
#include "cad/shapes/polyline.h"
#include "support/drawing_state.h"
#include "support/shapes.h"

#include <QTest>
#include <QWheelEvent>
#include <gtest/gtest.h>

namespace faroven::test {
namespace {

class Mouse : public ::testing::Test {
protected:
    Mouse() {
        cad.SetSnap(false);
        cad.SetDisableTextInput(true);
        cad.SetCrossLine(false);
    }
    void press(int x, int y, TShiftState shift = 0) { cad.MouseDown(mbLeft, shift, x, y); }
    void release(int x, int y, TShiftState shift = 0) { cad.MouseUp(mbLeft, shift, x, y); }
    void click(int x, int y, TShiftState shift = 0) {
        press(x, y, shift);
        release(x, y, shift);
    }
    void drag(TPoint from, TPoint to, TShiftState shift = 0) {
        press(from.x, from.y, shift);
        cad.MouseMove(shift | ssLeft, (from.x + to.x) / 2, (from.y + to.y) / 2);
        cad.MouseMove(shift | ssLeft, to.x, to.y);
        release(to.x, to.y, shift);
    }
    size_t undoSteps() const { return cad.UndoRecords().empty() ? 0 : size_t(cad.UndoRecords().back().Step + 1); }
    std::vector<TMyShape*> selection() const { return cad.WorkingShapes(); }
    TMyCAD cad;
};

// ---- Picking -----------------------------------------------------------------------------------

TEST_F(Mouse, HotMarksOfEverySelectedShapeComeBeforeAnyBody) {
    TMyRectangle* a = AddRect(cad, 0, 0, 100, 100);
    TMyRectangle* b = AddRect(cad, 50, 50, 150, 150);
    cad.AddWorkingShapes(a);
    cad.AddWorkingShapes(b);
    press(50, 50);  // inside a's body, on b's top-left corner
    EXPECT_EQ(cad.Action(), dtResizing);
    release(40, 30);
    EXPECT_EQ(b->GetLeftTop(), (TMyPoint{40, 30}));
    EXPECT_EQ(a->GetLeftTop(), (TMyPoint{0, 0}));
    EXPECT_EQ(cad.Action(), dtSelecting);
    EXPECT_EQ(cad.UndoRecords().back().Action, "ACT_CHANGE");
}

TEST_F(Mouse, TopMostWinsUnlessAConnectorPointIsUnderThePress) {
    TMyRectangle* low = AddRect(cad, 0, 0, 100, 100);
    TMyRectangle* high = AddRect(cad, 20, 20, 120, 120);
    click(60, 60);
    EXPECT_EQ(selection(), std::vector<TMyShape*>{high});

    cad.SendToBack(high, false);  // the order is what counts, not the age
    click(300, 300);
    click(60, 60);
    EXPECT_EQ(selection(), std::vector<TMyShape*>{low});

    // A connector point at the bottom of the stack still wins.
    auto* junction = AddRect<TMyLineLinkLine>(cad, 54, 54, 66, 66);
    cad.SendToBack(junction, false);
    click(300, 300);
    click(60, 60);
    EXPECT_EQ(selection(), std::vector<TMyShape*>{junction});
}

TEST_F(Mouse, SelectingRaisesTheEventsInTheirOrder) {
    TMyRectangle* a = AddRect(cad, 0, 0, 40, 40);
    TMyRectangle* b = AddRect(cad, 100, 0, 140, 40);
    auto* junction = AddRect<TMyLineLinkLine>(cad, 200, 0, 212, 12);
    std::vector<std::string> log;
    auto name = [](TMyShape* s) { return s ? s->Name().toStdString() : std::string("nil"); };
    cad.OnShapeSelected = [&](TMyShape* last, TMyShape* now) { log.push_back("selected " + name(last) + ">" + name(now)); };
    for (TMyShape* s : {static_cast<TMyShape*>(a), static_cast<TMyShape*>(b), static_cast<TMyShape*>(junction)})
        s->OnClick = [&log, s](TObject*) { log.push_back("click " + s->Name().toStdString()); };
    const std::string na = name(a), nb = name(b), nj = name(junction);

    click(20, 20);  // nothing selected before
    click(120, 20);  // replaces: the click comes first
    click(206, 6);  // a connector point: announced first
    click(20, 20);  // on a selected shape ... then elsewhere
    click(20, 20);
    EXPECT_EQ(log, (std::vector<std::string>{
                       "selected nil>" + na, "click " + na,  //
                       "selected " + na + ">nil", "click " + nb, "selected " + na + ">" + nb,
                       "selected " + nb + ">nil", "selected " + nb + ">" + nj, "click " + nj,
                       "selected " + nj + ">nil", "click " + na, "selected " + nj + ">" + na,
                       "selected " + na + ">" + na, "click " + na}));
}

TEST_F(Mouse, HandlersMayDeleteTheShapesTheyAreTold) {
    TMyRectangle* a = AddRect(cad, 0, 0, 40, 40);
    AddRect(cad, 100, 0, 140, 40);
    bool clicked = false;
    a->OnClick = [&](TObject*) { clicked = true; };
    cad.OnShapeSelected = [&](TMyShape*, TMyShape* now) {
        if (now) cad.DeleteShapeById(now->GetShapeId(), false);
    };
    click(20, 20);
    EXPECT_FALSE(clicked);
    click(120, 20);
    EXPECT_EQ(cad.GetShapesCount(), 0);
    cad.OnShapeSelected = nullptr;
    cad.OnShapeAdded = [&](TMyShape*& s, int) { cad.DeleteShapeById(s->GetShapeId(), false); };
    cad.SetShapeTool(SpRectangle);
    click(10, 10);
    click(50, 50);
    EXPECT_EQ(cad.GetShapesCount(), 0);
    EXPECT_EQ(undoSteps(), 0u);
    ExpectIntact(cad);
}

TEST_F(Mouse, ShiftAddsAndRemovesAndEmptyPaperClears) {
    TMyRectangle* a = AddRect(cad, 0, 0, 40, 40);
    TMyRectangle* b = AddRect(cad, 100, 0, 140, 40);
    click(20, 20);
    click(120, 20, ssShift);
    EXPECT_EQ(selection(), (std::vector<TMyShape*>{a, b}));
    click(20, 20, ssShift);
    EXPECT_EQ(selection(), std::vector<TMyShape*>{b});
    click(300, 300);
    EXPECT_TRUE(selection().empty());
}

TEST_F(Mouse, AClickThroughASelectedShapePicksTheSmallerShapeOnIt) {
    TMyRectangle* small = AddRect(cad, 40, 40, 60, 60);
    TMyRectangle* big = AddRect(cad, 0, 0, 100, 100);  // on top of the small one
    click(50, 50);
    EXPECT_EQ(selection(), std::vector<TMyShape*>{big});
    click(50, 50);
    EXPECT_EQ(selection(), std::vector<TMyShape*>{small});
    drag({10, 10}, {10, 10});  // outside the small one: the big one again
    EXPECT_EQ(selection(), std::vector<TMyShape*>{big});
}

TEST_F(Mouse, AClickOnAMemberOffersItToTheHandler) {
    TMyRectangle* m1 = AddRect(cad, 0, 0, 40, 40);
    TMyRectangle* m2 = AddRect(cad, 60, 0, 100, 40);
    TMyShape* group = cad.GetShapeByID(cad.GroupShapes({m1, m2}, false));
    bool accept = false;
    TMyShape* offered = nullptr;
    cad.OnChildShapeSelected = [&](TMyShape* child, bool& ok) {
        offered = child;
        ok = accept;
    };
    click(80, 20);
    EXPECT_EQ(offered, m2);
    EXPECT_EQ(selection(), std::vector<TMyShape*>{group});
    accept = true;
    click(80, 20);
    EXPECT_EQ(selection(), std::vector<TMyShape*>{m2});
    EXPECT_EQ(cad.CurrentShape(), m2);
    EXPECT_EQ(undoSteps(), 0u);
}

TEST_F(Mouse, RubberBandTakesShapesWhollyInsideBordersIncluded) {
    TMyRectangle* inside = AddRect(cad, 10, 10, 50, 50);
    AddRect(cad, 30, 20, 80, 30);  // crosses the band's right side
    TMyRectangle* below = AddRect(cad, 10, 60, 30, 80);
    cad.SetCurrentLayerId(cad.NewLayer("second", true));
    TMyRectangle* otherLayer = AddRect(cad, 20, 35, 30, 45);
    drag({10, 5}, {50, 50});  // left, right and bottom sides on the box's edges
    EXPECT_EQ(selection(), (std::vector<TMyShape*>{inside, otherLayer}));
    click(200, 200);
    drag({11, 5}, {50, 50});  // one pixel short on the left
    EXPECT_EQ(selection(), std::vector<TMyShape*>{otherLayer});
    click(200, 200);
    cad.SetOperateAllLayer(false);
    drag({10, 5}, {50, 80});
    EXPECT_EQ(selection(), std::vector<TMyShape*>{otherLayer});
    click(200, 200);
    cad.SetCurrentLayerId(cad.GetLayerIdByNo(0));
    drag({10, 5}, {50, 80});
    EXPECT_EQ(selection(), (std::vector<TMyShape*>{inside, below}));
}

TEST_F(Mouse, HotSizeBoundsALineEnd) {
    auto* line = AddShape<TMyLine>(cad, {{20, 20}, {100, 20}});
    cad.AddWorkingShapes(line);
    press(24, 20);
    EXPECT_EQ(cad.Action(), dtDragging);  // on the body, 4 pixels off the end
    release(24, 20);
    press(23, 20);
    EXPECT_EQ(cad.Action(), dtResizing);
    EXPECT_EQ(cad.DownPoint(), (TPoint{20, 20}));  // the edit starts on the point itself
    release(10, 40);
    EXPECT_EQ(line->GetPoint(0), (TMyPoint{10, 40}));
}

// ---- Drag, resize, rotate ----------------------------------------------------------------------------

TEST_F(Mouse, ADragMovesTheSelectionAsOneStepAndAReturnRecordsNothing) {
    TMyRectangle* a = AddRect(cad, 0, 0, 40, 40);
    TMyRectangle* b = AddRect(cad, 100, 0, 140, 40);
    cad.AddWorkingShapes(a);
    cad.AddWorkingShapes(b);
    const std::string before = DrawingState(cad);
    press(20, 20);
    cad.MouseMove(ssLeft, 60, 70);
    EXPECT_EQ(cad.Action(), dtDragging);
    release(20, 20);
    EXPECT_EQ(DrawingState(cad), before);
    EXPECT_EQ(undoSteps(), 0u);

    TPoint from, to;
    cad.OnShapeMouseDragged = [&](TMyShape*, TPoint f, TPoint& t) {
        from = f;
        to = t;
    };
    drag({20, 20}, {50, 35});
    EXPECT_EQ(a->GetLeftTop(), (TMyPoint{30, 15}));
    EXPECT_EQ(b->GetLeftTop(), (TMyPoint{130, 15}));
    EXPECT_EQ(undoSteps(), 1u);
    EXPECT_EQ(from, (TPoint{20, 20}));
    EXPECT_EQ(to, (TPoint{50, 35}));
    cad.Undo();
    EXPECT_EQ(DrawingState(cad), before);
}

TEST_F(Mouse, DragModeAndTheDraggedHandlerCorrectTheEnd) {
    TMyRectangle* a = AddRect(cad, 0, 0, 40, 40);
    cad.AddWorkingShapes(a);
    cad.SetDragShapeMode(dgHorz);
    drag({20, 20}, {50, 90});
    EXPECT_EQ(a->GetLeftTop(), (TMyPoint{30, 0}));
    cad.SetDragShapeMode(dgBoth);
    cad.OnShapeMouseDragged = [](TMyShape*, TPoint, TPoint& to) { to = TPoint{100, 100}; };
    drag({50, 20}, {60, 30});
    EXPECT_EQ(a->GetLeftTop(), (TMyPoint{80, 80}));
    EXPECT_EQ(undoSteps(), 2u);
}

TEST_F(Mouse, ADragSnapsTheSelectionBoxToTheGrid) {
    TMyRectangle* a = AddRect(cad, 3, 3, 43, 43);
    cad.AddWorkingShapes(a);
    cad.SetSnap(true);
    cad.SetFSnapPixels(4);
    cad.GridOperation()->SetGridWidth(10);
    cad.GridOperation()->SetGridHeight(10);
    click(20, 20);  // a click is no drag, though the box lies near grid lines
    EXPECT_EQ(a->GetLeftTop(), (TMyPoint{3, 3}));
    EXPECT_EQ(undoSteps(), 0u);
    drag({20, 20}, {48, 29});  // left edge at 31, top at 12: both within 4 of a line
    EXPECT_EQ(a->GetLeftTop(), (TMyPoint{30, 10}));
}

TEST_F(Mouse, SmartGuidesLineADraggedBoxUpWithItsNeighbour) {
    TMyRectangle* a = AddRect(cad, 0, 0, 40, 40);
    AddRect(cad, 100, 100, 140, 140);
    cad.AddWorkingShapes(a);
    drag({20, 20}, {117, 50});  // left edge at 97: no guides by default
    EXPECT_EQ(a->GetLeftTop(), (TMyPoint{97, 30}));
    cad.Undo();
    cad.SetSmartGuides(true);
    press(20, 20);
    cad.MouseMove(ssLeft, 117, 50);
    EXPECT_LT(cad.EditFeedbackRect().top, 1);  // the guide runs up past the moved box
    release(117, 50);
    EXPECT_EQ(a->GetLeftTop(), (TMyPoint{100, 30}));
}

TEST_F(Mouse, LockedShapesStayWhereTheyAre) {
    TMyRectangle* a = AddRect(cad, 0, 0, 40, 40);
    a->SetLocked(true);
    click(20, 20);
    drag({20, 20}, {60, 60});
    press(0, 0);  // its corner: no resize either
    EXPECT_EQ(cad.Action(), dtSelecting);
    release(30, 30);
    EXPECT_EQ(a->GetLeftTop(), (TMyPoint{0, 0}));
    EXPECT_EQ(undoSteps(), 0u);
}

TEST_F(Mouse, RotationFollowsTheMouseInConstrainedSteps) {
    TMyRectangle* a = AddRect(cad, 0, 0, 100, 100);
    cad.SetShapeTool(SpRotateSelecting);
    cad.AddWorkingShapes(a);
    cad.SetRotateConstraintDegree(45);
    press(100, 100);
    EXPECT_EQ(cad.Action(), dtRotating);
    double turned = 0;
    cad.OnShapeMouseRotated = [&](TMyShape* s, TPoint, TPoint&) { turned = s->Angle(); };
    release(50, 125);  // about 40 degrees about (50, 50)
    EXPECT_NEAR(turned, M_PI / 4, 1e-5);
    EXPECT_EQ(cad.Action(), dtRotateSelecting);
    EXPECT_NEAR(a->GetPoint(0).x, 50, 1e-3);  // the corner now points up
    EXPECT_NEAR(a->GetPoint(0).y, 50 - 50 * std::sqrt(2.0), 1e-3);
    cad.Undo();
    EXPECT_EQ(a->Angle(), 0);
}

TEST_F(Mouse, DraggingTheWholeLayerMovesItsShapesOnly) {
    TMyRectangle* a = AddRect(cad, 0, 0, 40, 40);
    cad.SetCurrentLayerId(cad.NewLayer("second", true));
    TMyRectangle* b = AddRect(cad, 100, 0, 140, 40);
    cad.SetShapeTool(SpDragWhole);
    int whole = 0;
    cad.OnWholeDragged = [&] { ++whole; };
    drag({200, 200}, {210, 230});
    EXPECT_EQ(a->GetLeftTop(), (TMyPoint{0, 0}));
    EXPECT_EQ(b->GetLeftTop(), (TMyPoint{110, 30}));
    EXPECT_EQ(whole, 1);
    EXPECT_EQ(undoSteps(), 1u);
}

TEST_F(Mouse, TheCaptionPointFollowsTheMouseWithoutAnUndoStep) {
    TMyRectangle* a = AddRect(cad, 0, 0, 40, 40);
    a->SetInfo("label");
    cad.AddWorkingShapes(a);
    const TMyPoint t = a->TextPoint();
    press(Round(t.x), Round(t.y));
    EXPECT_EQ(cad.Action(), dtDraggingTextoutPoint);
    cad.MouseMove(ssLeft, 80, 90);
    release(80, 90);
    EXPECT_EQ(a->TextPoint(), (TMyPoint{80, 90}));
    EXPECT_EQ(undoSteps(), 0u);
}

// ---- Drawing with the tools ----------------------------------------------------------------------

TEST_F(Mouse, SpCloseIgnoresPressesButNotTheInheritedEvent) {
    AddRect(cad, 0, 0, 40, 40);
    int downs = 0;
    cad.OnMouseDown = [&](TObject*, TMouseButton, TShiftState, int, int) { ++downs; };
    cad.SetShapeTool(SpClose);
    EXPECT_EQ(cad.Action(), dtClose);
    click(20, 20);
    EXPECT_EQ(downs, 1);
    EXPECT_FALSE(cad.MousePressed());
    EXPECT_TRUE(selection().empty());
}

TEST_F(Mouse, TwoRectanglesInARowWithoutReturningToSelecting) {
    cad.SetReturnToSelecting(false);
    cad.SetShapeTool(SpRectangle);
    int added = 0;
    cad.OnShapeAdded = [&](TMyShape*&, int count) { added = count; };
    click(10, 10);
    click(50, 40);
    click(100, 10);
    click(150, 60);
    ASSERT_EQ(cad.GetShapesCount(), 2);
    EXPECT_EQ(added, 2);
    EXPECT_EQ(cad.ShapeTool(), SpRectangle);
    EXPECT_EQ(cad.Action(), dtDrawing);
    EXPECT_EQ(cad.GetShapeByNo(1)->GetLeftTop(), (TMyPoint{100, 10}));
    EXPECT_EQ(cad.GetShapeByNo(1)->Name(), "Shape1");
    EXPECT_EQ(selection(), std::vector<TMyShape*>{cad.GetShapeByNo(1)});
    EXPECT_EQ(undoSteps(), 2u);
    ExpectIntact(cad);
}

TEST_F(Mouse, AShapeDrawnReturnsToSelecting) {
    cad.SetShapeTool(SpEllipse);
    bool back = false;
    cad.OnActionToolToSelecting = [&] { back = true; };
    click(10, 10);
    EXPECT_EQ(cad.GetShapesCount(), 0);
    EXPECT_NE(cad.DrawnShape(), nullptr);
    click(60, 40);
    ASSERT_EQ(cad.GetShapesCount(), 1);
    EXPECT_TRUE(back);
    EXPECT_EQ(cad.ShapeTool(), SpSelecting);
    EXPECT_EQ(cad.Action(), dtSelecting);
    EXPECT_EQ(cad.UndoActionName(), "ACT_ADD");
}

TEST_F(Mouse, DrawByDraggingFinishesAtTheRelease) {
    cad.SetShapeTool(SpRectangle);
    drag({10, 10}, {60, 50});
    EXPECT_EQ(cad.GetShapesCount(), 0);  // the tools take one point a press
    cad.SetShapeTool(SpRectangle);
    cad.SetDrawByDragging(true);
    drag({10, 10}, {60, 50});
    ASSERT_EQ(cad.GetShapesCount(), 1);
    EXPECT_EQ(cad.GetShapeByNo(0)->GetRightBottom(), (TMyPoint{60, 50}));
    // A click that snapping moves by a few pixels still takes one point.
    cad.SetSnap(true);
    cad.SetShapeTool(SpLine);
    click(102, 102);
    EXPECT_EQ(cad.DrawnShape()->GetPointsCount(), 1);
}

TEST_F(Mouse, ShiftMakesASquareAndAnAxisLine) {
    cad.SetReturnToSelecting(false);
    cad.SetShapeTool(SpRectangle);
    click(10, 10);
    click(50, 30, ssShift);
    cad.SetShapeTool(SpLine);
    click(100, 100);
    click(150, 110, ssShift);
    ASSERT_EQ(cad.GetShapesCount(), 2);
    EXPECT_EQ(cad.GetShapeByNo(0)->GetRightBottom(), (TMyPoint{50, 50}));
    EXPECT_EQ(cad.GetShapeByNo(1)->GetPoint(1), (TMyPoint{150, 100}));
}

TEST_F(Mouse, APolylineEndsWithADoubleClickFromRealMouseEvents) {
    cad.resize(400, 400);
    cad.show();
    cad.SetShapeTool(SpPolyLine);
    QTest::mouseClick(&cad, Qt::LeftButton, {}, QPoint(10, 10));
    QTest::mouseClick(&cad, Qt::LeftButton, {}, QPoint(60, 10));
    QTest::mouseClick(&cad, Qt::LeftButton, {}, QPoint(60, 70));
    // The second press of a double click arrives as a double-click event, then the release.
    QTest::mouseDClick(&cad, Qt::LeftButton, {}, QPoint(60, 70));
    QTest::mouseRelease(&cad, Qt::LeftButton, {}, QPoint(60, 70));
    ASSERT_EQ(cad.GetShapesCount(), 1);
    auto* poly = shape_cast<TMyPolyLine>(cad.GetShapeByNo(0));
    ASSERT_NE(poly, nullptr);
    EXPECT_EQ(std::as_const(*poly).Points(), (TArrMyPoint{{10, 10}, {60, 10}, {60, 70}}));
    EXPECT_EQ(undoSteps(), 1u);

    // A double click while selecting does nothing.
    QTest::mouseDClick(&cad, Qt::LeftButton, {}, QPoint(300, 300));
    QTest::mouseRelease(&cad, Qt::LeftButton, {}, QPoint(300, 300));
    EXPECT_EQ(selection(), std::vector<TMyShape*>{poly});
}

TEST_F(Mouse, ARealDragMovesAShape) {
    cad.resize(400, 400);
    cad.show();
    TMyRectangle* a = AddRect(cad, 10, 10, 50, 50);
    QTest::mousePress(&cad, Qt::LeftButton, {}, QPoint(30, 30));
    QMouseEvent move(QEvent::MouseMove, QPointF(80, 60), QPointF(80, 60), Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(&cad, &move);
    QTest::mouseRelease(&cad, Qt::LeftButton, {}, QPoint(80, 60));
    EXPECT_EQ(a->GetLeftTop(), (TMyPoint{60, 40}));
}

TEST_F(Mouse, ClosePolygonAndEscape) {
    cad.SetShapeTool(SpPolygon);
    click(10, 10);
    click(60, 10);
    cad.ClosePolygon();  // two corners are no polygon yet
    EXPECT_EQ(cad.GetShapesCount(), 0);
    click(60, 60);
    cad.ClosePolygon();
    ASSERT_EQ(cad.GetShapesCount(), 1);
    EXPECT_EQ(std::as_const(*cad.GetShapeByNo(0)).Points(), (TArrMyPoint{{10, 10}, {60, 10}, {60, 60}, {10, 10}}));

    cad.SetShapeTool(SpPolyLine);
    click(100, 100);
    click(150, 100);
    EXPECT_TRUE(cad.HandleKey(Qt::Key_Escape, {}));
    EXPECT_EQ(cad.DrawnShape(), nullptr);
    EXPECT_EQ(cad.GetShapesCount(), 1);
}

TEST_F(Mouse, ALinkLineDrawnBetweenLinkPointsJoinsTheShapes) {
    auto* a = AddRect<TMyLineLinkLine>(cad, 0, 0, 12, 12);
    auto* b = AddRect<TMyLineLinkLine>(cad, 200, 100, 212, 112);
    cad.SetShapeTool(SpLinkLine);
    click(13, 6);  // a's right link point, within its hot square
    click(199, 106);  // b's left one
    ASSERT_EQ(cad.GetShapesCount(), 3);
    auto* line = shape_cast<TMyLinkLine>(cad.GetShapeByNo(2));
    ASSERT_NE(line, nullptr);
    EXPECT_EQ(line->StartSpNo(), a->ShapeNo());
    EXPECT_EQ(line->EndSpNo(), b->ShapeNo());
    EXPECT_EQ(line->GetPoint(0), a->GetLinkPoint(line->StartSpPtId()));
    EXPECT_EQ(line->GetPoint(line->GetPointsCount() - 1), b->GetLinkPoint(line->EndSpPtId()));
    ExpectIntact(cad);

    // A plain line between two link points becomes a connector.
    cad.SetShapeTool(SpLine);
    click(6, 13);
    click(206, 99);
    ASSERT_EQ(cad.GetShapesCount(), 4);
    EXPECT_NE(shape_cast<TMyLinkLine>(cad.GetShapeByNo(3)), nullptr);
    EXPECT_EQ(cad.UndoActionName(), "ACT_ADD");
    ExpectIntact(cad);
}

TEST_F(Mouse, ACancelledConnectorLeavesNoLinkBehind) {
    auto* a = AddRect<TMyLineLinkLine>(cad, 0, 0, 12, 12);
    cad.SetShapeTool(SpLinkLine);
    click(13, 6);
    EXPECT_EQ(a->LinkShapeNos().size(), 1u);
    cad.SetShapeTool(SpSelecting);
    EXPECT_TRUE(a->LinkShapeNos().empty());
    ExpectIntact(cad);
}

TEST_F(Mouse, ADrawnShapeOpensTheCaptionInputAndAPressElsewhereCommitsIt) {
    cad.SetDisableTextInput(false);
    cad.SetShapeTool(SpRectangle);
    click(10, 10);
    click(60, 40);
    ASSERT_TRUE(cad.TextInputActive());
    EXPECT_EQ(cad.TextInputShape(), cad.GetShapeByNo(0));
    click(300, 300);
    EXPECT_FALSE(cad.TextInputActive());
    EXPECT_EQ(undoSteps(), 1u);  // nothing typed: the addition only
}

TEST_F(Mouse, CtrlWheelZoomsAboutTheMouse) {
    int told = 0;
    cad.OnZoomChanged = [&](TObject*) { ++told; };
    QWheelEvent plain(QPointF(50, 50), QPointF(50, 50), {}, QPoint(0, 120), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&cad, &plain);
    EXPECT_EQ(cad.Zoom(), 1.0);
    QWheelEvent zoomIn(QPointF(50, 50), QPointF(50, 50), {}, QPoint(0, 120), Qt::NoButton, Qt::ControlModifier,
                       Qt::NoScrollPhase, false);
    QApplication::sendEvent(&cad, &zoomIn);
    EXPECT_DOUBLE_EQ(cad.Zoom(), 1.25);
    EXPECT_EQ(told, 1);
}

// ---- Nodes, keys and shapes made by code --------------------------------------------------------

TEST_F(Mouse, NodesAreAddedOnSegmentsAndRemovedDownToTheMinimum) {
    auto* poly = AddShape<TMyPolygon>(cad, {{0, 0}, {100, 0}, {100, 100}, {0, 0}});
    std::vector<int> added, deleted;
    cad.OnNodeAdded = [&](TMyShape*&, int i) { added.push_back(i); };
    cad.OnNodeDeleted = [&](TMyShape*&, int i) { deleted.push_back(i); };
    cad.SetShapeTool(SpPolylinePolygonPointAdding);
    click(100, 40);
    click(100, 100);  // on a node: nothing
    EXPECT_EQ(std::as_const(*poly).Points(), (TArrMyPoint{{0, 0}, {100, 0}, {100, 40}, {100, 100}, {0, 0}}));
    cad.SetShapeTool(SpPolylinePolygonPointRemoving);
    click(0, 0);  // the first corner, closing point included
    click(100, 100);  // three corners left: refused
    EXPECT_EQ(std::as_const(*poly).Points(), (TArrMyPoint{{100, 0}, {100, 40}, {100, 100}, {100, 0}}));
    EXPECT_EQ(added, std::vector<int>{2});
    EXPECT_EQ(deleted, std::vector<int>{0});
    EXPECT_EQ(undoSteps(), 2u);
}

TEST_F(Mouse, KeysNudgeDeleteAndSelectAll) {
    TMyRectangle* a = AddRect(cad, 0, 0, 40, 40);
    TMyRectangle* b = AddRect(cad, 100, 0, 140, 40);
    cad.SetZoom(2);
    cad.AddWorkingShapes(a);
    EXPECT_TRUE(cad.HandleKey(Qt::Key_Right, {}));
    EXPECT_EQ(a->GetLeftTop(), (TMyPoint{0.5f, 0}));
    cad.GridOperation()->SetGridHeight(10);
    EXPECT_TRUE(cad.HandleKey(Qt::Key_Down, Qt::ShiftModifier));
    EXPECT_EQ(a->GetLeftTop(), (TMyPoint{0.5f, 10}));
    EXPECT_EQ(undoSteps(), 2u);
    EXPECT_TRUE(cad.HandleKey(Qt::Key_A, Qt::ControlModifier));
    EXPECT_EQ(selection(), (std::vector<TMyShape*>{a, b}));
    EXPECT_TRUE(cad.HandleKey(Qt::Key_Delete, {}));
    EXPECT_EQ(cad.GetShapesCount(), 0);
    cad.SetKeyboardEditing(false);
    EXPECT_FALSE(cad.HandleKey(Qt::Key_A, Qt::ControlModifier));
}

TEST_F(Mouse, ShapesByCodeAreAddedAsOneStepEach) {
    TMyShape* r = cad.AddShapeByCode(nullptr, SpRectangle, "box", {{10, 10}, {50, 30}}, 0, "caption");
    ASSERT_NE(r, nullptr);
    EXPECT_EQ(r->Name(), "box");
    EXPECT_EQ(r->Info(), "caption");
    EXPECT_EQ(r->GetRightBottom(), (TMyPoint{50, 30}));
    TMyShape* arc = cad.AddShapeByCode2(nullptr, SpElliArc, "", {0, 0}, 40, 20, 3, 0, "");
    ASSERT_NE(arc, nullptr);
    EXPECT_EQ(arc->Pen()->Width(), 3);
    EXPECT_EQ(std::as_const(*arc).Points(), (TArrMyPoint{{0, 10}, {20, 0}, {40, 10}}));
    EXPECT_EQ(cad.AddShapeByCode(nullptr, SpRectangle, "", {{10, 10}, {10, 30}}, 0, ""), nullptr);
    EXPECT_EQ(cad.AddShapeByCode(nullptr, SpSelecting, "", {{0, 0}, {1, 1}}, 0, ""), nullptr);
    EXPECT_EQ(undoSteps(), 2u);
}

TEST_F(Mouse, LabelsShowThePositionAndTheMeasure) {
    QLabel xy, value;
    cad.SetLabelXY(&xy);
    cad.SetLabelValue(&value);
    cad.SetUnit(pixel);
    cad.MouseMove(0, 30, 40);
    EXPECT_EQ(xy.text(), "X 30  Y 40 px");
    AddRect(cad, 0, 0, 10, 10);
    cad.SetShapeTool(SpLine);
    click(0, 0);
    cad.MouseMove(0, 30, 40);
    EXPECT_EQ(value.text(), "Length 50 px");
}

TEST_F(Mouse, HoverRaisesEnterAndLeaveOnce) {
    TMyRectangle* a = AddRect(cad, 0, 0, 40, 40);
    std::vector<std::string> log;
    cad.OnMouseEnterShape = [&](TMyShape* s) { log.push_back("enter " + s->Name().toStdString()); };
    cad.OnMouseLeaveShape = [&](TMyShape* s) { log.push_back("leave " + s->Name().toStdString()); };
    cad.MouseMove(0, 10, 10);
    cad.MouseMove(0, 20, 10);
    cad.MouseMove(0, 90, 90);
    const std::string n = a->Name().toStdString();
    EXPECT_EQ(log, (std::vector<std::string>{"enter " + n, "leave " + n}));
}

}  // namespace
}  // namespace faroven::test
