// The undo history: what a step records, its limit and numbering, taking
// steps back (deletions with groups and link lines, changes, z-order,
// grouping) and redo.
#include "cad/canvas/mycad.h"
#include "cad/shapes/line.h"
#include "cad/shapes/rectangle.h"
#include "support/drawing_state.h"
#include "support/shapes.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

using namespace faroven;
using namespace faroven::test;

// An application's own shape class.
class Stamp : public TMyRectangle {
    Q_OBJECT
public:
    using TMyRectangle::TMyRectangle;
};

namespace {

class Undo : public ::testing::Test {
protected:
    TMyRectangle* rect(float x) { return AddRect(cad, x, 0, x + 10, 10); }
    std::vector<int> steps() const {
        std::vector<int> out;
        for (const TUndoRecord& r : cad.UndoRecords()) out.push_back(r.Step);
        return out;
    }
    QStringList names() const {
        QStringList out;
        for (const TUndoRecord& r : cad.UndoRecords()) out << r.ShapeName;
        return out;
    }
    TMyCAD cad;
};

TEST_F(Undo, SizeZeroRecordsNothingAndClears) {
    TMyRectangle* a = rect(0);
    cad.PushtoUndoRedoShapeList({a}, ACT_CHANGE);
    ASSERT_TRUE(cad.CanUndo());
    cad.SetUndoRedoSize(0);
    EXPECT_FALSE(cad.CanUndo());
    EXPECT_TRUE(cad.DeleteShapeById(a->GetShapeId()));
    EXPECT_TRUE(cad.UndoRecords().empty());
    cad.PopFromUndoRedoShapeList();
    EXPECT_EQ(cad.GetShapesCount(), 0);
}

TEST_F(Undo, FullHistoryDropsTheOldestStepAndRenumbers) {
    cad.SetUndoRedoSize(3);
    TMyRectangle* a = rect(0);
    TMyRectangle* b = rect(20);
    cad.PushtoUndoRedoShapeList({a, b}, ACT_CHANGE);  // step 0: two records, the last shape first
    EXPECT_EQ(names(), (QStringList{"Shape1", "Shape0"}));
    for (int i = 0; i < 3; ++i) cad.PushtoUndoRedoShapeList({a}, ACT_CHANGE);
    EXPECT_EQ(steps(), (std::vector<int>{0, 1, 2}));
    EXPECT_EQ(names(), (QStringList{"Shape0", "Shape0", "Shape0"}));
    // A smaller limit trims at the next recording.
    cad.SetUndoRedoSize(2);
    EXPECT_EQ(cad.UndoRecords().size(), 3u);
    cad.PushtoUndoRedoShapeList({b}, ACT_CHANGE);
    EXPECT_EQ(steps(), (std::vector<int>{0, 1}));
    EXPECT_EQ(names().last(), "Shape1");
}

TEST_F(Undo, DeletedGroupComesBackWithMembersAndDetachedLinks) {
    TMyRectangle* a = rect(0);
    TMyRectangle* b = rect(20);
    TMyLine* line = AddJoiningLine(cad, a, b);
    const int group = cad.GroupShapes({a, b}, false);
    cad.GetShapeByID(group)->SetInfo("door");
    rect(40);  // stays, and moves down when the group goes

    ASSERT_TRUE(cad.DeleteShapeById(group));
    ASSERT_EQ(cad.GetShapesCount(), 2);
    EXPECT_EQ(line->StartSpNo(), -1);
    cad.PopFromUndoRedoShapeList();

    ExpectIntact(cad);
    ASSERT_EQ(cad.GetShapesCount(), 5);
    TMyShape* restored = cad.GetShapeByID(group);
    ASSERT_NE(restored, nullptr);
    EXPECT_EQ(restored->Info(), "door");
    EXPECT_EQ(restored->Name(), QString("Shape%1").arg(group));
    ASSERT_EQ(std::as_const(*restored).ChildShapeNos().size(), 2u);
    for (int no : std::as_const(*restored).ChildShapeNos()) {
        TMyShape* member = cad.GetShapeByNo(no);
        EXPECT_EQ(member->ParentShapeNo(), restored->ShapeNo());
        EXPECT_TRUE(std::as_const(*member).LinkShapeNos().empty()) << "link lines come back detached";
    }
    EXPECT_EQ(cad.GetShapeByID(0)->Points(), (TArrMyPoint{{0, 0}, {10, 0}, {10, 10}, {0, 10}}));
    EXPECT_EQ(line->EndSpNo(), -1);
}

TEST_F(Undo, DeletedMemberGoesBackIntoItsGroup) {
    TMyRectangle* a = rect(0);
    rect(20);
    rect(40);
    const int groupId = cad.GroupShapes({a, cad.GetShapeByNo(1)}, false);
    const int memberId = a->GetShapeId();
    ASSERT_TRUE(cad.DeleteShapeById(memberId));
    cad.Undo();
    ExpectIntact(cad);
    TMyShape* member = cad.GetShapeByID(memberId);
    TMyShape* group = cad.GetShapeByID(groupId);
    ASSERT_NE(member, nullptr);
    EXPECT_EQ(member->ParentShapeNo(), group->ShapeNo());
    EXPECT_EQ(std::as_const(*group).ChildShapeNos().size(), 2u);
}

TEST_F(Undo, ChangeComesBackAndRedoGoesForwardAgain) {
    TMyRectangle* a = rect(0);
    const std::string before = DrawingState(cad);
    {
        TUndoChangeScope step(cad, {a});
        cad.DragChangeValueDxDyforShapes(a, 5, 7);
        a->SetInfo("moved");
    }
    const std::string after = DrawingState(cad);
    EXPECT_EQ(cad.UndoActionName(), "ACT_CHANGE");
    cad.Undo();
    EXPECT_EQ(DrawingState(cad), before);
    ASSERT_TRUE(cad.CanRedo());
    EXPECT_EQ(cad.RedoActionName(), "ACT_CHANGE");
    cad.Redo();
    EXPECT_EQ(DrawingState(cad), after);
    EXPECT_FALSE(cad.CanRedo());
    cad.Undo();
    EXPECT_EQ(DrawingState(cad), before);
    // A new recorded edit drops what could be redone.
    cad.PushtoUndoRedoShapeList({a}, ACT_CHANGE);
    EXPECT_FALSE(cad.CanRedo());
}

TEST_F(Undo, BringToFrontIsTakenBackBySendingToBack) {
    TMyRectangle* a = rect(0);
    TMyRectangle* b = rect(20);
    TMyRectangle* c = rect(40);
    cad.BringToFront(b);
    ASSERT_EQ(cad.MyShapes(), (std::vector<TMyShape*>{a, c, b}));
    cad.Undo();
    EXPECT_EQ(cad.MyShapes(), (std::vector<TMyShape*>{b, a, c})) << "to the back, not to its former place";
    cad.Redo();
    EXPECT_EQ(cad.MyShapes(), (std::vector<TMyShape*>{a, c, b}));
    ExpectIntact(cad);
}

TEST_F(Undo, GroupAndUngroupAreTakenBack) {
    TMyRectangle* a = rect(0);
    TMyRectangle* b = rect(20);
    const std::string loose = DrawingState(cad);
    const int id = cad.GroupShapes({a, b});
    TMyShape* group = cad.GetShapeByID(id);
    group->UserData()->AddKeyandValue("k", "v");
    cad.PushtoUndoRedoShapeList({group}, ACT_CHANGE);
    group->SetInfo("grouped");

    cad.UnGroupShape(group);
    EXPECT_FALSE(a->HasParentShape());
    cad.Undo();  // a new group of the former members, with the old one's name and data
    ASSERT_TRUE(a->HasParentShape());
    TMyShape* regrouped = cad.GetShapeByNo(a->ParentShapeNo());
    EXPECT_NE(regrouped->GetShapeId(), id);
    EXPECT_EQ(regrouped->Name(), QString("Shape%1").arg(id));
    EXPECT_EQ(regrouped->UserData()->GetValueByKey("k"), "v");
    cad.Undo();  // the older change step finds the new group
    EXPECT_EQ(regrouped->Info(), "");
    cad.Undo();
    EXPECT_EQ(DrawingState(cad), loose);
    cad.Redo();
    cad.Redo();
    cad.Redo();
    EXPECT_FALSE(a->HasParentShape()) << "ungrouped again";
    EXPECT_EQ(cad.GetShapesCount(), 2);
    ExpectIntact(cad);
}

TEST(UndoOption, UngroupTakenBackWholeOnlyWhenAsked) {
    for (bool whole : {false, true}) {
        TMyCAD cad;
        cad.SetUndoRestoresWholeGroup(whole);
        TMyRectangle* a = AddRect(cad, 0, 0, 10, 10);
        TMyRectangle* b = AddRect(cad, 20, 0, 30, 10);
        auto* combine = new TMyCombine(&cad);
        for (TMyPoint p : {TMyPoint{0, 0}, TMyPoint{30, 0}, TMyPoint{30, 10}, TMyPoint{0, 10}}) combine->AddPoint(p);
        combine->SetInfo("Combine");
        combine->UserData()->AddKeyandValue("k", "v");
        cad.AddNewShape(combine);
        combine->SetChildShapeNos({a->ShapeNo(), b->ShapeNo()});
        a->SetParentShapeNo(combine->ShapeNo());
        b->SetParentShapeNo(combine->ShapeNo());

        cad.UnGroupShape(combine);
        cad.Undo();
        TMyShape* group = cad.GetShapeByNo(a->ParentShapeNo());
        ASSERT_NE(group, nullptr);
        EXPECT_EQ(group->Name(), "Shape2");
        EXPECT_EQ(group->UserData()->GetValueByKey("k"), "v");
        EXPECT_EQ(group->kind(), whole ? TShapeKind::Combine : TShapeKind::Group);
        EXPECT_EQ(group->Info(), whole ? "Combine" : "");
        ExpectIntact(cad);
    }
}

TEST_F(Undo, AddIsTakenBackByDeletingAndRedoneByRestoring) {
    rect(0);
    const std::string before = DrawingState(cad);
    TMyRectangle* b = rect(20);
    b->SetInfo("new");
    cad.PushtoUndoRedoShapeList({b}, ACT_ADD);
    const std::string added = DrawingState(cad);
    cad.Undo();
    EXPECT_EQ(DrawingState(cad), before);
    cad.Redo();
    EXPECT_EQ(DrawingState(cad), added);
    EXPECT_EQ(cad.UndoActionName(), "ACT_ADD");
}

TEST_F(Undo, LocksAndMissingLayersDoNotBreakATakeBack) {
    TMyRectangle* a = rect(0);
    cad.PushtoUndoRedoShapeList({a}, ACT_ADD);
    TMyRectangle* b = rect(20);
    TMyRectangle* c = rect(40);
    TMyShape* group = cad.GetShapeByID(cad.GroupShapes({b, c}));
    group->SetLocked(true);
    a->SetLocked(true);
    cad.Undo();
    EXPECT_FALSE(b->HasParentShape()) << "a locked group is still taken apart";
    EXPECT_EQ(cad.GetShapesCount(), 3);
    cad.Undo();
    EXPECT_EQ(cad.GetShapesCount(), 2) << "a locked shape that a step added still goes";

    cad.DeleteShapeById(b->GetShapeId());
    MessageRecorder recorder;
    cad.DeleteAllLayers();
    cad.Undo();
    EXPECT_EQ(cad.GetShapesCount(), 0);
    EXPECT_TRUE(recorder.fatal.isEmpty());
}

TEST_F(Undo, ApplicationShapeClassesAreKeptOnceRegistered) {
    auto add = [this] {
        auto* stamp = new Stamp(&cad);
        for (TMyPoint p : {TMyPoint{0, 0}, TMyPoint{9, 0}, TMyPoint{9, 9}, TMyPoint{0, 9}}) stamp->AddPoint(p);
        cad.AddNewShape(stamp);
        return stamp;
    };
    cad.DeleteShapeById(add()->GetShapeId());
    EXPECT_FALSE(cad.CanUndo()) << "an unknown class cannot be copied";
    EXPECT_FALSE(RegisterShapeClass("TMyRectangle", [](TMyCAD* c) { return new Stamp(c); }));
    ASSERT_TRUE(RegisterShapeClass("Stamp", [](TMyCAD* c) { return new Stamp(c); }));
    cad.DeleteShapeById(add()->GetShapeId());
    cad.Undo();
    ASSERT_EQ(cad.GetShapesCount(), 1);
    EXPECT_NE(dynamic_cast<Stamp*>(cad.GetShapeByNo(0)), nullptr);
    EXPECT_TRUE(ShapeClassNames().contains("Stamp"));
}

}  // namespace

#include "undo_test.moc"
