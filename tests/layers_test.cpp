// Layers: unique names, ids from a counter that restarts only after every
// layer is gone, the current layer after deletions and merges, deletion of a
// layer's shapes (locked ones too) with consistent references and events, the
// fatal add without layers, and visibility as painting and picking see it.
#include "cad/canvas/mycad.h"
#include "support/relations.h"
#include "support/shapes.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

using namespace faroven;
using namespace faroven::test;

namespace {

struct LayerEvent {
    int id;
    QString name;
    bool visible;
    bool operator==(const LayerEvent&) const = default;
};

class Layers : public ::testing::Test {
protected:
    void SetUp() override {
        cad.OnNewLayer = [this](int id, const QString& name, bool visible) { created.push_back({id, name, visible}); };
        cad.OnDeleteLayer = [this](int id, const QString& name, bool visible) { deleted.push_back({id, name, visible}); };
        cad.OnShapeDeleted = [this](TMyShape* s) { deletedShapes.push_back(s->Name()); };
    }
    TMyCAD cad;
    std::vector<LayerEvent> created, deleted;
    QStringList deletedShapes;
};

// ---- Creation, lookups, renaming ----------------------------------------------------------------

TEST_F(Layers, NewLayerTakesTheCounterAndBecomesCurrent) {
    EXPECT_EQ(cad.NewLayer("A", true), 1);
    EXPECT_EQ(cad.NewLayer("B", false), 2);
    EXPECT_EQ(cad.CurrentLayerId(), 2);
    EXPECT_EQ(created, (std::vector<LayerEvent>{{1, "A", true}, {2, "B", false}}));
    EXPECT_FALSE(cad.IsVisibleLayerByID(2));
    EXPECT_EQ(cad.GetLayersCount(), 3);
}

TEST_F(Layers, ADuplicateNameIsRefusedAndLeavesTheCurrentLayer) {
    cad.NewLayer("A", true);
    cad.SetCurrentLayerId(0);
    EXPECT_EQ(cad.NewLayer("A", true), -1);
    EXPECT_EQ(cad.NewLayer("Layer0", true), -1);
    EXPECT_EQ(cad.CurrentLayerId(), 0);
    EXPECT_EQ(cad.GetLayersCount(), 2);
    EXPECT_EQ(created.size(), 1u);
    EXPECT_EQ(cad.NewLayer("a", true), 2) << "names compare case-sensitively";
}

TEST_F(Layers, LookupsBetweenNameIndexAndId) {
    cad.NewLayer("A", true);
    cad.NewLayer("B", true);
    cad.DeleteLayerByName("A");
    // Records: Layer0 (id 0), B (id 2).
    EXPECT_EQ(cad.GetLayerNoById(2), 1);
    EXPECT_EQ(cad.GetLayerNoById(1), -1);
    EXPECT_EQ(cad.GetLayerNoByName("B"), 1);
    EXPECT_EQ(cad.GetLayerNoByName("A"), -1);
    EXPECT_EQ(cad.GetLayerIdByName("B"), 2);
    EXPECT_EQ(cad.GetLayerIdByName("nope"), -1);
    EXPECT_EQ(cad.GetLayerIdByNo(1), 2);
    EXPECT_EQ(cad.GetLayerIdByNo(2), -1);
    EXPECT_EQ(cad.GetLayerIdByNo(-1), -1);
    EXPECT_EQ(cad.GetLayerNameByID(2), "B");
    EXPECT_EQ(cad.GetLayerNameByID(7), "");
}

TEST_F(Layers, MaxLayerIdIsTheLastRecordNotTheLargest) {
    cad.NewLayer("A", true);  // 1
    cad.NewLayer("B", true);  // 2
    EXPECT_EQ(cad.GetMaxLayerId(), 2);
    cad.DeleteLayerByID(2);
    EXPECT_EQ(cad.GetMaxLayerId(), 1);
    cad.DeleteAllLayers();
    EXPECT_EQ(cad.GetMaxLayerId(), -1);
}

TEST_F(Layers, RenamingKeepsNamesUnique) {
    const int a = cad.NewLayer("A", true);
    EXPECT_TRUE(cad.SetLayerNameByID(a, "Walls"));
    EXPECT_EQ(cad.GetLayerNameByID(a), "Walls");
    EXPECT_FALSE(cad.SetLayerNameByID(a, "Layer0"));
    EXPECT_TRUE(cad.SetLayerNameByID(a, "Walls")) << "a layer may keep its own name";
    EXPECT_TRUE(cad.SetLayerNameByName("Layer0", "Base"));
    EXPECT_EQ(cad.GetLayerIdByName("Base"), 0);
    EXPECT_FALSE(cad.SetLayerNameByName("nope", "X"));
    EXPECT_FALSE(cad.SetLayerNameByID(9, "X"));
}

TEST_F(Layers, CurrentLayerOnlyChangesToAnExistingLayerAndDropsTheSelection) {
    auto s = AddBox(&cad, 0, 0, 10, 10);
    cad.NewLayer("A", true);
    cad.AddWorkingShapes(s);
    cad.SetCurrentLayerId(42);
    EXPECT_EQ(cad.CurrentLayerId(), 1);
    EXPECT_EQ(cad.GetSelectedShapesCount(), 1);
    cad.SetCurrentLayerId(0);
    EXPECT_EQ(cad.CurrentLayerId(), 0);
    EXPECT_EQ(cad.GetSelectedShapesCount(), 0);
}

TEST_F(Layers, AtMost255LayersAndIdsBeyond255StillWork) {
    for (int i = 1; i < 255; ++i) ASSERT_GE(cad.NewLayer(QString("L%1").arg(i), true), 0);
    EXPECT_EQ(cad.GetLayersCount(), 255);
    EXPECT_EQ(cad.NewLayer("one too many", true), -1);
    // Push the counter past 255 and check a shape on such a layer is painted.
    for (int i = 1; i < 255; ++i) cad.DeleteLayerByName(QString("L%1").arg(i));
    cad.DeleteLayerByID(cad.NewLayer("t", true));
    const int high = cad.NewLayer("High", true);
    ASSERT_EQ(high, 256);
    std::vector<std::string> log;
    AddBox(&cad, 0, 0, 10, 10, &log);
    EXPECT_EQ(cad.MyShapes()[0]->LayerId(), high);
    cad.SetCurrentLayerId(0);
    AddBox(&cad, 20, 0, 30, 10, &log);
    cad.GridOperation()->SetGridShow(false);
    cad.PaintToImage();
    EXPECT_EQ(log.size(), 2u);
    cad.InVisibleLayerByID(high);
    EXPECT_FALSE(cad.IsVisibleLayerByID(high));
    EXPECT_TRUE(cad.IsVisibleLayerByID(0)) << "hiding layer 256 leaves layer 0 alone";
    log.clear();
    cad.PaintToImage();
    EXPECT_EQ(log, std::vector<std::string>{"Shape1"});
}

// ---- Visibility ----------------------------------------------------------------------------------

TEST_F(Layers, VisibilityByIdAndNameAndAll) {
    const int a = cad.NewLayer("A", true);
    cad.InVisibleLayerByName("A");
    EXPECT_FALSE(cad.IsVisibleLayerByID(a));
    cad.VisibleLayerByID(a);
    EXPECT_TRUE(cad.IsVisibleLayerByID(a));
    cad.InVisibleLayerByID(a);
    cad.InVisibleLayerByID(0);
    cad.VisibleLayerByName("Layer0");
    EXPECT_TRUE(cad.IsVisibleLayerByID(0));
    cad.InVisibleLayerByName("Layer0");
    cad.VisibleAllLayer();
    EXPECT_TRUE(cad.IsVisibleLayerByID(0));
    EXPECT_TRUE(cad.IsVisibleLayerByID(a));
    EXPECT_FALSE(cad.IsVisibleLayerByID(99));
    cad.InVisibleLayerByName("nope");  // nothing to do, nothing breaks
}

TEST_F(Layers, HidingALayerDeselectsItsShapes) {
    auto a = AddBox(&cad, 0, 0, 10, 10);
    const int second = cad.NewLayer("B", true);
    auto b = AddBox(&cad, 20, 0, 30, 10);
    cad.AddWorkingShapes(a);
    cad.AddWorkingShapes(b);
    cad.SetCurrentShape(b);
    cad.InVisibleLayerByID(second);
    EXPECT_EQ(cad.GetSelectedShapes(), std::vector<TMyShape*>{a});
    EXPECT_EQ(cad.CurrentShape(), nullptr);
}

TEST_F(Layers, PickingHonoursVisibilityAndTheCurrentLayer) {
    AddBox(&cad, 0, 0, 100, 100);  // layer 0, below
    const int top = cad.NewLayer("Top", true);
    auto upper = AddBox(&cad, 0, 0, 100, 100);
    cad.MouseMove(0, 50, 50);
    EXPECT_EQ(cad.HoverShape(), upper);
    cad.InVisibleLayerByID(top);
    cad.MouseMove(0, 51, 50);
    EXPECT_EQ(cad.HoverShape(), cad.GetShapeByNo(0)) << "the shape on the hidden layer is passed over";
    EXPECT_FALSE(cad.IsShapePickable(upper));
    cad.VisibleAllLayer();
    cad.SetOperateAllLayer(false);
    cad.SetCurrentLayerId(0);
    cad.MouseMove(0, 50, 51);
    EXPECT_EQ(cad.HoverShape(), cad.GetShapeByNo(0)) << "only the current layer's shapes";
    EXPECT_TRUE(cad.IsShapeOnVisibleLayer(upper));
    EXPECT_FALSE(cad.IsShapePickable(upper));
}

// ---- Shape queries by layer -----------------------------------------------------------------

TEST_F(Layers, ShapesByLayerAndSelectingALayer) {
    auto g = AddBox(&cad, 0, 0, 50, 50);
    auto m = AddBox(&cad, 10, 10, 20, 20);
    g->SetChildShapeNos({1});
    m->SetParentShapeNo(0);
    const int b = cad.NewLayer("B", true);
    auto other = AddBox(&cad, 60, 0, 70, 10);
    EXPECT_EQ(cad.GetShapesByLayerId(0), (std::vector<TMyShape*>{g, m}));
    EXPECT_EQ(cad.GetShapesCountInALayer(0), 2);
    EXPECT_EQ(cad.GetShapesCountInALayer(b), 1);
    EXPECT_EQ(cad.GetShapesCountInALayer(77), 0);
    cad.AddWorkingShapes(other);
    cad.SelectAllShapesByLayerId(0);
    EXPECT_EQ(cad.GetSelectedShapes(), std::vector<TMyShape*>{g}) << "members come through their group";
}

// ---- Deletion --------------------------------------------------------------------------------

TEST_F(Layers, DeletingAnyLayerMakesTheFirstRemainingCurrent) {
    cad.NewLayer("A", true);
    cad.NewLayer("B", true);
    cad.NewLayer("C", true);
    cad.SetCurrentLayerId(2);
    ASSERT_TRUE(cad.DeleteLayerByID(2));
    EXPECT_EQ(cad.CurrentLayerId(), 0) << "the first record, not the latest one";
    EXPECT_EQ(deleted, (std::vector<LayerEvent>{{2, "B", true}}));
    cad.SetCurrentLayerId(3);
    ASSERT_TRUE(cad.DeleteLayerByName("A"));
    EXPECT_EQ(cad.CurrentLayerId(), 0) << "deleting another layer resets the current one too";
    ASSERT_TRUE(cad.DeleteLayerByID(0));
    EXPECT_EQ(cad.CurrentLayerId(), 3);
    ASSERT_TRUE(cad.MergeLayers(3, cad.NewLayer("D", true)));
    EXPECT_EQ(cad.CurrentLayerId(), 3) << "merged into the first layer, which stays current";
}

TEST_F(Layers, DeletingAnUnknownLayerFailsButDropsTheSelection) {
    auto s = AddBox(&cad, 0, 0, 10, 10);
    cad.AddWorkingShapes(s);
    cad.SetCurrentShape(s);
    EXPECT_FALSE(cad.DeleteLayerByID(5));
    EXPECT_FALSE(cad.DeleteLayerByName("nope"));
    EXPECT_EQ(cad.GetSelectedShapesCount(), 0);
    EXPECT_EQ(cad.CurrentShape(), nullptr);
    EXPECT_EQ(cad.GetLayersCount(), 1);
    EXPECT_TRUE(deleted.empty());
}

TEST_F(Layers, DeletingALayerDeletesItsShapesWithTheirMembersAndKeepsTheOthers) {
    int destroyed = 0;
    auto keep1 = AddBox(&cad, 0, 0, 10, 10, nullptr, &destroyed);  // 0
    const int b = cad.NewLayer("B", true);
    auto group = AddBox(&cad, 0, 0, 50, 50, nullptr, &destroyed);   // 1
    auto member = AddBox(&cad, 5, 5, 9, 9, nullptr, &destroyed);    // 2
    cad.SetCurrentLayerId(0);
    auto keep2 = AddBox(&cad, 60, 0, 70, 10, nullptr, &destroyed);  // 3, linked to the group
    group->SetChildShapeNos({2});
    member->SetParentShapeNo(1);
    keep2->SetLinkShapeNos({1, 0});
    keep1->SetLinkShapeNos({3});
    const RelationMap expected = WithoutShapes(CaptureRelations(cad), {group, member});

    ASSERT_TRUE(cad.DeleteLayerByID(b));
    EXPECT_EQ(destroyed, 2);
    EXPECT_EQ(cad.MyShapes(), (std::vector<TMyShape*>{keep1, keep2}));
    ExpectConsistent(cad, expected);
    EXPECT_EQ(deletedShapes, (QStringList{"Shape1", "Shape2"})) << "the group, then its member";
    EXPECT_EQ(deleted, (std::vector<LayerEvent>{{b, "B", true}}));
    EXPECT_EQ(cad.NextShapeId(), 4) << "ids are not given back";
}

TEST_F(Layers, ALockedRootShapeOnADeletedLayerIsUnlockedAndDeleted) {
    const int b = cad.NewLayer("B", false);
    auto locked = AddBox(&cad, 0, 0, 10, 10);
    locked->SetLocked(true);
    EXPECT_FALSE(cad.DeleteShapeById(locked->GetShapeId())) << "a locked shape resists a plain deletion";
    TMyShape* seen = nullptr;
    bool wasLocked = true;
    cad.OnShapeDeleted = [&](TMyShape* s) {
        seen = s;
        wasLocked = s->Locked();
    };
    ASSERT_TRUE(cad.DeleteLayerByID(b));
    EXPECT_EQ(seen, locked);
    EXPECT_FALSE(wasLocked);
    EXPECT_EQ(cad.GetShapesCount(), 0);
    EXPECT_EQ(deleted, (std::vector<LayerEvent>{{b, "B", false}}));
}

TEST_F(Layers, DeleteAllLayersRestartsTheCounterAndTheCurrentLayer) {
    cad.NewLayer("A", true);
    AddBox(&cad, 0, 0, 10, 10);
    cad.NewLayer("B", true);
    ASSERT_TRUE(cad.DeleteAllLayers());
    EXPECT_EQ(cad.GetLayersCount(), 0);
    EXPECT_EQ(cad.CurrentLayerId(), -1);
    EXPECT_EQ(cad.GetShapesCount(), 0);
    EXPECT_EQ(deleted, (std::vector<LayerEvent>{{0, "Layer0", true}, {1, "A", true}, {2, "B", true}}));
    EXPECT_EQ(cad.NewLayer("Fresh", true), 0) << "a new layer gets id 0 again";
    EXPECT_EQ(cad.CurrentLayerId(), 0);
}

TEST_F(Layers, AddingAShapeWithoutAnyLayerIsFatal) {
    MessageRecorder recorder;
    ASSERT_TRUE(cad.DeleteAllLayers());
    auto shape = std::make_unique<FigureShape>(&cad);
    EXPECT_FALSE(cad.AddShape(shape.get()));
    EXPECT_EQ(recorder.fatal, QStringList{"Error!There is no Layer!"});
    EXPECT_EQ(cad.GetShapesCount(), 0);
    EXPECT_EQ(cad.NextShapeId(), 0);
    cad.SetShapesCountForLoad(1);
    EXPECT_FALSE(cad.AddShapeforLoadfromStream(0, shape.get(), false));
    EXPECT_EQ(recorder.fatal.size(), 2);
    cad.SetShapesCountForLoad(0);
    EXPECT_FALSE(cad.AddShape(nullptr)) << "nil is refused before the layer check";
    EXPECT_EQ(recorder.fatal.size(), 2);
}

// ---- Merging -----------------------------------------------------------------------------------

TEST_F(Layers, MergingALayerIntoItselfOrAMissingOneChangesNothing) {
    const int a = cad.NewLayer("A", true);
    AddBox(&cad, 0, 0, 10, 10);
    EXPECT_FALSE(cad.MergeLayers(a, a));
    EXPECT_FALSE(cad.MergeLayers(a, 9));
    EXPECT_FALSE(cad.MergeLayers(9, a));
    EXPECT_EQ(cad.GetLayersCount(), 2);
    EXPECT_EQ(cad.CurrentLayerId(), a);
    EXPECT_EQ(cad.GetShapesCountInALayer(a), 1);
    EXPECT_TRUE(deleted.empty());
}

TEST_F(Layers, MergingMovesEveryShapeAndDeletesTheSource) {
    const int a = cad.NewLayer("A", true);
    const int b = cad.NewLayer("B", false);
    auto g = AddBox(&cad, 0, 0, 50, 50);
    auto m = AddBox(&cad, 10, 10, 20, 20);
    g->SetChildShapeNos({1});
    m->SetParentShapeNo(0);
    ASSERT_TRUE(cad.MergeLayers(a, b));
    EXPECT_EQ(g->LayerId(), a);
    EXPECT_EQ(m->LayerId(), a) << "members move too";
    EXPECT_EQ(cad.GetShapesCount(), 2) << "nothing is deleted with the emptied layer";
    EXPECT_EQ(cad.GetLayerNoById(b), -1);
    EXPECT_EQ(deleted, (std::vector<LayerEvent>{{b, "B", false}}));
    EXPECT_TRUE(deletedShapes.empty());
    // The emptied layer's deletion makes the first layer current.
    EXPECT_EQ(cad.CurrentLayerId(), 0);
}

}  // namespace
