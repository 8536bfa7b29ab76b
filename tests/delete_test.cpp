// Shape deletion and renumbering: after every deletion or reorder each
// ShapeNo equals its index and every parent, member and link-line number
// points at the same shape as before (references to removed shapes cleared);
// removed shapes leave the selection, raise OnShapeDeleted once and are freed
// once; locked shapes stay; ids are never given back.
#include "cad/canvas/mycad.h"
#include "support/relations.h"
#include "support/shapes.h"
#include "support/test_support.h"

#include <gtest/gtest.h>
#include <algorithm>
#include <numeric>
#include <random>

using namespace faroven;
using namespace faroven::test;

namespace {

void makeMember(TMyShape* parent, TMyShape* member) {
    parent->ChildShapeNos().push_back(member->ShapeNo());
    member->SetParentShapeNo(parent->ShapeNo());
}

class Deletion : public ::testing::Test {
protected:
    void SetUp() override {
        cad.OnShapeDeleted = [this](TMyShape* s) { events << s->Name(); };
        for (int i = 0; i < 6; ++i) shapes.push_back(AddBox(&cad, 10.f * i, 0, 10.f * i + 8, 8, nullptr, &destroyed));
    }
    TMyCAD cad;
    int destroyed = 0;
    QStringList events;
    std::vector<FigureShape*> shapes;
};

TEST_F(Deletion, LaterShapesMoveDownAndKeepTheirIds) {
    const RelationMap expected = WithoutShapes(CaptureRelations(cad), {shapes[1]});
    ASSERT_TRUE(cad.DeleteShapeById(1));
    ExpectConsistent(cad, expected);
    EXPECT_EQ(cad.GetShapesCount(), 5);
    EXPECT_EQ(cad.GetShapeByNo(1), shapes[2]);
    EXPECT_EQ(shapes[2]->GetShapeId(), 2);
    EXPECT_EQ(cad.GetShapeNoById(2), 1);
    EXPECT_EQ(cad.GetShapeByID(1), nullptr);
    EXPECT_EQ(events, QStringList{"Shape1"});
    EXPECT_EQ(destroyed, 1);
    EXPECT_EQ(AddBox(&cad, 0, 0, 1, 1)->Name(), "Shape6") << "ids are not given back";
}

TEST_F(Deletion, UnknownIdsAndLockedShapesAreRefused) {
    EXPECT_FALSE(cad.DeleteShapeById(-1));
    EXPECT_FALSE(cad.DeleteShapeById(6));
    shapes[3]->SetLocked(true);
    EXPECT_FALSE(cad.DeleteShapeById(3));
    EXPECT_EQ(cad.GetShapesCount(), 6);
    EXPECT_TRUE(events.isEmpty());
    EXPECT_EQ(destroyed, 0);
}

TEST_F(Deletion, TheLastShapeCarryingAnIdGoes) {
    EXPECT_EQ(cad.GetShapeNoById(4), 4);
    shapes[4]->SetShapeId(1);
    EXPECT_EQ(cad.GetShapeNoById(4), -1);
    EXPECT_EQ(cad.GetShapeNoById(1), 4) << "by number, the last match";
    EXPECT_EQ(cad.GetShapeByID(1), shapes[1]) << "by id, the first in array order";
    ASSERT_TRUE(cad.DeleteShapeById(1));
    EXPECT_EQ(cad.GetShapeNoInMyShapes(shapes[1]), 1);
    EXPECT_EQ(cad.GetShapeNoInMyShapes(shapes[4]), -1);
    EXPECT_EQ(cad.GetShapeNoById(1), 1) << "the other shape with the id is found now";
}

TEST_F(Deletion, IdsAreFoundAfterReordersAndRemovals) {
    for (int id = 0; id < 6; ++id) ASSERT_EQ(cad.GetShapeNoById(id), id);
    for (TMyShape* removed : cad.remapShapeNumbers({4, 3, 2, -1, 1, 0})) delete removed;
    for (int id : {0, 1, 2, 4, 5}) EXPECT_EQ(cad.GetShapeNoById(id), cad.GetShapeNoInMyShapes(shapes[size_t(id)]));
    EXPECT_EQ(cad.GetShapeNoById(3), -1);
    TMyShape* added = AddBox(&cad, 0, 0, 1, 1);
    EXPECT_EQ(cad.GetShapeNoById(added->GetShapeId()), 5);
    EXPECT_EQ(destroyed, 1);
}

TEST_F(Deletion, AGroupGoesWithItsNestedMembersParentFirst) {
    // 5 holds 3 and 1; 3 holds 0. A member inside a locked group is deleted with it.
    makeMember(shapes[5], shapes[3]);
    makeMember(shapes[5], shapes[1]);
    makeMember(shapes[3], shapes[0]);
    shapes[0]->SetLocked(true);
    const RelationMap expected =
        WithoutShapes(CaptureRelations(cad), {shapes[5], shapes[3], shapes[1], shapes[0]});
    ASSERT_TRUE(cad.DeleteShapeById(5));
    ExpectConsistent(cad, expected);
    EXPECT_EQ(cad.MyShapes(), (std::vector<TMyShape*>{shapes[2], shapes[4]}));
    EXPECT_EQ(events, (QStringList{"Shape5", "Shape3", "Shape0", "Shape1"}));
    EXPECT_EQ(destroyed, 4);
}

TEST_F(Deletion, AMemberLeavesItsGroupsList) {
    makeMember(shapes[4], shapes[0]);
    makeMember(shapes[4], shapes[2]);
    ASSERT_TRUE(cad.DeleteShapeById(0));
    EXPECT_EQ(shapes[4]->ChildShapeNos(), std::vector<int32_t>{1});
    EXPECT_EQ(cad.GetShapeByNo(1), shapes[2]);
    EXPECT_EQ(shapes[2]->ParentShapeNo(), 3);
}

TEST_F(Deletion, LinkNumbersFollowTheirShapesAndLoseTheRemovedOnes) {
    // Shape 4 plays a link line joining 1 and 5; both know it.
    AddLinklineShape(shapes[1], 4);
    AddLinklineShape(shapes[5], 4);
    AddLinklineShape(shapes[5], 2);
    const RelationMap expected = WithoutShapes(CaptureRelations(cad), {shapes[2]});
    ASSERT_TRUE(cad.DeleteShapeById(2));
    ExpectConsistent(cad, expected);
    EXPECT_EQ(shapes[5]->LinkShapeNos(), TMyShapeNo{3});
    EXPECT_EQ(shapes[1]->LinkShapeNos(), TMyShapeNo{3});
    ASSERT_TRUE(cad.DeleteShapeById(4));
    EXPECT_TRUE(shapes[1]->LinkShapeNos().empty());
    EXPECT_TRUE(shapes[5]->LinkShapeNos().empty());
}

TEST_F(Deletion, DeletedShapesLeaveTheSelectionAndTheCurrentShape) {
    cad.AddWorkingShapes(shapes[0]);
    cad.AddWorkingShapes(shapes[2]);
    cad.SetCurrentShape(shapes[2]);
    ASSERT_TRUE(cad.DeleteShapeById(2));
    EXPECT_EQ(cad.GetSelectedShapes(), std::vector<TMyShape*>{shapes[0]});
    EXPECT_EQ(cad.CurrentShape(), nullptr);
}

TEST_F(Deletion, PaintedShapeNumbersAreRenumberedToo) {
    cad.GridOperation()->SetGridShow(false);
    cad.PaintToImage();
    ASSERT_EQ(cad.PaintedShapes(), (std::vector<int>{0, 1, 2, 3, 4, 5}));
    cad.DeleteShapeById(1);
    EXPECT_EQ(cad.PaintedShapes(), (std::vector<int>{0, 1, 2, 3, 4}));
}

TEST_F(Deletion, SelectedShapesGoTogetherExceptLockedOnes) {
    makeMember(shapes[3], shapes[4]);
    cad.AddWorkingShapes(shapes[4]);  // a member, selected before its group
    cad.AddWorkingShapes(shapes[3]);
    cad.AddWorkingShapes(shapes[1]);
    cad.AddWorkingShapes(shapes[0]);
    shapes[0]->SetLocked(true);
    const RelationMap expected = WithoutShapes(CaptureRelations(cad), {shapes[1], shapes[3], shapes[4]});
    cad.DeleteSelectedShapes();
    ExpectConsistent(cad, expected);
    EXPECT_EQ(destroyed, 3);
    EXPECT_EQ(events.size(), 3);
    EXPECT_EQ(cad.GetSelectedShapes(), std::vector<TMyShape*>{shapes[0]}) << "the locked shape stays selected";
}

TEST_F(Deletion, DeleteAllShapesFreesEverythingAndRestartsIds) {
    cad.AddWorkingShapes(shapes[0]);
    cad.DeleteAllShapes();
    EXPECT_EQ(destroyed, 6);
    EXPECT_EQ(cad.GetShapesCount(), 0);
    EXPECT_EQ(cad.GetSelectedShapesCount(), 0);
    EXPECT_EQ(cad.NextShapeId(), 0);
    EXPECT_TRUE(events.isEmpty());
    EXPECT_EQ(AddBox(&cad, 0, 0, 1, 1)->Name(), "Shape0");
}

TEST_F(Deletion, AHandlerMayDeleteAnotherShapeWhileBeingTold) {
    bool once = false;
    cad.OnShapeDeleted = [&](TMyShape* s) {
        events << s->Name();
        if (!once) {
            once = true;
            EXPECT_EQ(cad.GetShapeNoInMyShapes(s), -1) << "the shape has already left the drawing";
            EXPECT_TRUE(cad.DeleteShapeById(4));
        }
    };
    AddLinklineShape(shapes[5], 4);
    ASSERT_TRUE(cad.DeleteShapeById(0));
    EXPECT_EQ(events, (QStringList{"Shape0", "Shape4"}));
    EXPECT_EQ(cad.MyShapes(), (std::vector<TMyShape*>{shapes[1], shapes[2], shapes[3], shapes[5]}));
    EXPECT_TRUE(shapes[5]->LinkShapeNos().empty());
    EXPECT_EQ(destroyed, 2);
}

TEST_F(Deletion, ALoopInADamagedMemberListEnds) {
    makeMember(shapes[1], shapes[2]);
    makeMember(shapes[2], shapes[1]);
    shapes[2]->ChildShapeNos().push_back(9);  // out of range
    ASSERT_TRUE(cad.DeleteShapeById(1));
    EXPECT_EQ(destroyed, 2);
    EXPECT_EQ(cad.GetShapesCount(), 4);
}

// ---- The renumbering helper ------------------------------------------------------------------

TEST_F(Deletion, AReorderKeepsEveryReference) {
    makeMember(shapes[0], shapes[1]);
    makeMember(shapes[0], shapes[5]);
    AddLinklineShape(shapes[2], 3);
    AddLinklineShape(shapes[4], 3);
    const RelationMap expected = CaptureRelations(cad);
    const std::vector<TMyShape*> removed = cad.remapShapeNumbers({5, 4, 3, 2, 1, 0});
    EXPECT_TRUE(removed.empty());
    EXPECT_EQ(cad.GetShapeByNo(0), shapes[5]);
    ExpectConsistent(cad, expected);
    EXPECT_EQ(shapes[0]->ChildShapeNos(), (std::vector<int32_t>{4, 0}));
}

TEST_F(Deletion, RemovedShapesAreHandedBackNotFreed) {
    makeMember(shapes[3], shapes[2]);
    const std::vector<TMyShape*> removed = cad.remapShapeNumbers({0, -1, -1, 1, 2, 3});
    EXPECT_EQ(removed, (std::vector<TMyShape*>{shapes[1], shapes[2]}));
    EXPECT_EQ(destroyed, 0);
    EXPECT_TRUE(shapes[3]->ChildShapeNos().empty());
    for (TMyShape* s : removed) delete s;
}

TEST_F(Deletion, ABadMapIsRefusedAndChangesNothing) {
    const std::vector<TMyShape*> before = cad.MyShapes();
    EXPECT_THROW(cad.remapShapeNumbers({0, 1, 2}), std::invalid_argument) << "too short";
    EXPECT_THROW(cad.remapShapeNumbers({0, 1, 2, 3, 4, 4}), std::invalid_argument) << "a number twice";
    EXPECT_THROW(cad.remapShapeNumbers({0, 1, 2, 3, 4, 6}), std::invalid_argument) << "a gap";
    EXPECT_THROW(cad.remapShapeNumbers({0, 1, 2, 3, 4, -2}), std::invalid_argument);
    EXPECT_EQ(cad.MyShapes(), before);
    for (int i = 0; i < 6; ++i) EXPECT_EQ(shapes[size_t(i)]->ShapeNo(), i);
}

// ---- Random edit sequences --------------------------------------------------------------------

class RandomDeletion : public ::testing::TestWithParam<unsigned> {};

TEST_P(RandomDeletion, InvariantsHoldAfterEveryStep) {
    std::mt19937 rng(GetParam());
    auto pick = [&](int n) { return int(rng() % unsigned(n)); };
    TMyCAD cad;
    int destroyed = 0;
    std::set<QString> told;
    cad.OnShapeDeleted = [&](TMyShape* s) { EXPECT_TRUE(told.insert(s->Name()).second) << "told twice"; };
    cad.NewLayer("B", true);
    cad.NewLayer("C", true);
    for (int i = 0; i < 40; ++i) {
        cad.SetCurrentLayerId(pick(3));
        AddBox(&cad, float(pick(500)), float(pick(500)), float(pick(500) + 500), float(pick(500) + 500), nullptr,
               &destroyed);
    }
    // Groups (nested too: a member may already hold members), on one layer each.
    for (int g = 0; g < 10; ++g) {
        TMyShape* parent = cad.GetShapeByNo(pick(40));
        if (parent->HasParentShape()) continue;
        for (int k = 0; k < 3; ++k) {
            TMyShape* member = cad.GetShapeByNo(pick(40));
            if (member == parent || member->HasParentShape() || member->LayerId() != parent->LayerId()) continue;
            makeMember(parent, member);
        }
    }
    for (int l = 0; l < 25; ++l) {
        TMyShape* a = cad.GetShapeByNo(pick(40));
        const int line = pick(40);
        if (line != a->ShapeNo()) AddLinklineShape(a, uint32_t(line));
    }
    for (int l = 0; l < 5; ++l) cad.GetShapeByNo(pick(40))->SetLocked(true);

    int removedSoFar = 0;
    for (int step = 0; step < 30 && cad.GetShapesCount() > 0; ++step) {
        const RelationMap before = CaptureRelations(cad);
        std::set<const TMyShape*> removed;
        told.clear();
        switch (pick(4)) {
        case 0: {
            TMyShape* s = cad.GetShapeByNo(pick(cad.GetShapesCount()));
            if (!s->Locked()) removed = TreeOf(cad, s);
            EXPECT_EQ(cad.DeleteShapeById(s->GetShapeId()), !s->Locked());
            break;
        }
        case 1: {
            const int layer = pick(4);  // 3 is never a layer
            const bool existed = cad.GetLayerNoById(layer) >= 0;
            if (existed)
                for (TMyShape* s : cad.MyShapes())
                    if (!s->HasParentShape() && s->LayerId() == layer) removed.merge(TreeOf(cad, s));
            EXPECT_EQ(cad.DeleteLayerByID(layer), existed);
            EXPECT_EQ(cad.GetLayerNoById(layer), -1);
            break;
        }
        case 2: {
            for (int k = 0; k < 3; ++k) {
                TMyShape* s = cad.GetShapeByNo(pick(cad.GetShapesCount()));
                if (cad.IsInWorkingShape(s) >= 0) continue;
                cad.AddWorkingShapes(s);
                if (!s->Locked()) removed.merge(TreeOf(cad, s));
            }
            cad.DeleteSelectedShapes();
            for (TMyShape* s : cad.GetSelectedShapes()) EXPECT_TRUE(s->Locked());
            cad.RemoveAllWorkingShapes();
            break;
        }
        default: {
            std::vector<int> order(size_t(cad.GetShapesCount()));
            std::iota(order.begin(), order.end(), 0);
            std::shuffle(order.begin(), order.end(), rng);
            cad.remapShapeNumbers(order);
            break;
        }
        }
        removedSoFar += int(removed.size());
        SCOPED_TRACE("step " + std::to_string(step));
        ExpectConsistent(cad, WithoutShapes(before, removed));
        EXPECT_EQ(destroyed, removedSoFar);
        EXPECT_EQ(told.size(), removed.size());
        for (TMyShape* s : cad.MyShapes()) EXPECT_EQ(cad.GetShapeNoById(s->GetShapeId()), s->ShapeNo());
        if (HasFailure()) return;
    }
    EXPECT_GT(removedSoFar, 0) << "the sequence deleted something";
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomDeletion, ::testing::Range(1u, 13u));

}  // namespace
