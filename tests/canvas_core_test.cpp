// The canvas core: the defaults read back elsewhere, the registry (numbers,
// ids never reused, default names, lookups and their bounds), tools, and the
// paint pipeline (order, visibility of roots and children, partial repaints,
// hot marks on top, OnPaint).
#include "cad/canvas/mycad.h"
#include "cad/geometry/markers.h"
#include "support/pixels.h"
#include "support/shapes.h"
#include "support/test_support.h"

#include <QLabel>
#include <QMetaProperty>
#include <gtest/gtest.h>

using namespace faroven;
using namespace faroven::test;

namespace {

// Only the defaults that other code reads back: the file format marks, the
// first layer and tool, the id counter and an opaque control.
TEST(CanvasConstruction, FreshCanvasHasOneLayerTheSelectingToolAndTheFileMarks) {
    TMyCAD cad;
    EXPECT_EQ(cad.GetLayersCount(), 1);
    EXPECT_EQ(cad.GetLayerNameByID(cad.CurrentLayerId()), "Layer0");
    EXPECT_EQ(cad.CurrentLayerId(), 0);
    EXPECT_EQ(cad.ShapeTool(), SpSelecting);
    EXPECT_EQ(cad.Action(), dtSelecting);
    EXPECT_EQ(cad.DiskFileVersion(), "XP.j");
    EXPECT_EQ(cad.Version(), "2013");
    EXPECT_EQ(cad.NextShapeId(), 0);
    EXPECT_EQ(cad.LinkHotShapeNo(), -1);
    EXPECT_TRUE(cad.ControlStyle() & csOpaque);
    EXPECT_FALSE(cad.ControlStyle() & csReplicatable);
}

TEST(CanvasConstruction, PublishedPropertiesAndEnumerationsReachTheMetaObjectSystem) {
    TMyCAD cad;
    EXPECT_TRUE(cad.setProperty("TheUNIT", QVariant::fromValue(inch)));
    EXPECT_EQ(cad.TheUNIT(), inch);
    const QMetaEnum tools = QMetaEnum::fromType<TDrawTool>();
    EXPECT_EQ(tools.keyCount(), 22);
    EXPECT_STREQ(tools.valueToKey(1), "SpSelecting");
    EXPECT_EQ(QMetaEnum::fromType<TGradientStyle>().keyCount(), 24);
    EXPECT_EQ(QMetaEnum::fromType<TActionTools>().keyToValue("dtBrowse"), 11);
}

TEST(CanvasConstruction, DestructionFreesEveryShape) {
    int destroyed = 0;
    {
        TMyCAD cad;
        for (int i = 0; i < 5; ++i) AddBox(&cad, 0, 0, 10, 10, nullptr, &destroyed);
        cad.AddWorkingShapes(cad.GetShapeByNo(2));
    }
    EXPECT_EQ(destroyed, 5);
}

class Registry : public ::testing::Test {
protected:
    TMyCAD cad;
};

TEST_F(Registry, AddedShapesGetNumberIdAndDefaultName) {
    std::vector<TMyShape*> added;
    int counted = -1;
    cad.OnShapeAdded = [&](TMyShape*&, int count) { counted = count; };
    for (int i = 0; i < 3; ++i) added.push_back(AddBox(&cad, 0, 0, 5, 5));
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(added[i]->ShapeNo(), i);
        EXPECT_EQ(added[i]->GetShapeId(), i);
        EXPECT_EQ(added[i]->Name(), QString("Shape%1").arg(i));
        EXPECT_EQ(added[i]->LayerId(), 0);
    }
    EXPECT_EQ(cad.NextShapeId(), 3);
    EXPECT_EQ(cad.GetShapesCount(), 3);
    EXPECT_EQ(counted, -1) << "adding by code raises no mouse event";
}

TEST_F(Registry, AddShapeFlags) {
    EXPECT_FALSE(cad.AddShape(nullptr));
    const int second = cad.NewLayer("Second", true);
    auto kept = new FigureShape(&cad);
    kept->SetLayerId(0);
    ASSERT_TRUE(cad.AddShape(kept, true, true));
    EXPECT_EQ(kept->LayerId(), 0) << "keepLayer keeps the shape's own layer";
    EXPECT_EQ(cad.NextShapeId(), 0) << "noCount leaves the counter";
    auto moved = new FigureShape(&cad);
    moved->SetLayerId(0);
    ASSERT_TRUE(cad.AddShape(moved));
    EXPECT_EQ(moved->LayerId(), second);
    EXPECT_EQ(cad.NextShapeId(), 1);
}

TEST_F(Registry, LookupByIdStopsAtTheCounter) {
    AddBox(&cad, 0, 0, 1, 1);
    AddBox(&cad, 0, 0, 1, 1);
    auto stray = new FigureShape(&cad);
    stray->SetShapeId(2);
    cad.AddShape(stray, false, true);
    ASSERT_EQ(cad.NextShapeId(), 2);
    EXPECT_EQ(cad.GetShapeByID(2), nullptr) << "an id equal to the counter is never looked up";
    EXPECT_EQ(cad.GetShapeByID(-1), nullptr);
    EXPECT_EQ(cad.GetShapeByID(1), cad.GetShapeByNo(1));
}

TEST_F(Registry, LookupByNumberAndName) {
    AddBox(&cad, 0, 0, 1, 1);
    EXPECT_EQ(cad.GetShapeByNo(-1), nullptr);
    EXPECT_EQ(cad.GetShapeByNo(1), nullptr);
    EXPECT_NE(cad.GetShapeByNo(0), nullptr);
    EXPECT_EQ(cad.GetShapeByName("Shape0"), cad.GetShapeByNo(0));
    EXPECT_EQ(cad.GetShapeByName("shape0"), nullptr) << "names compare exactly";
    EXPECT_EQ(cad.GetShapeNoInMyShapes(cad.GetShapeByNo(0)), 0);
    FigureShape outsider(&cad);
    EXPECT_EQ(cad.GetShapeNoInMyShapes(&outsider), -1);
}

TEST_F(Registry, RootsAndNeighbours) {
    auto group = AddBox(&cad, 0, 0, 10, 10);
    auto member = AddBox(&cad, 1, 1, 5, 5);
    auto inner = AddBox(&cad, 2, 2, 3, 3);
    auto single = AddBox(&cad, 20, 20, 30, 30);
    group->SetChildShapeNos({1});
    member->SetParentShapeNo(0);
    member->SetChildShapeNos({2});
    inner->SetParentShapeNo(1);
    EXPECT_EQ(cad.GetRootParentShape(inner), group);
    EXPECT_EQ(cad.GetRootParentShape(single), single);
    EXPECT_EQ(cad.GetNextSingleorRootShape(0), single);
    EXPECT_EQ(cad.GetNextSingleorRootShape(3), nullptr);
    EXPECT_EQ(cad.GetPrevSingleorRootShape(3), group);
    EXPECT_EQ(cad.GetPrevSingleorRootShape(0), nullptr);
    // A parent chain that loops (a damaged drawing) still ends.
    group->SetParentShapeNo(2);
    EXPECT_NE(cad.GetRootParentShape(inner), nullptr);
}

TEST_F(Registry, SelectedShapeOnlyWhenExactlyOne) {
    auto a = AddBox(&cad, 0, 0, 1, 1);
    auto b = AddBox(&cad, 0, 0, 1, 1);
    EXPECT_EQ(cad.GetSelectedShape(), nullptr);
    cad.AddWorkingShapes(a);
    EXPECT_EQ(cad.GetSelectedShape(), a);
    cad.AddWorkingShapes(b);
    EXPECT_EQ(cad.GetSelectedShape(), nullptr);
    EXPECT_EQ(cad.GetSelectedShapesCount(), 2);
    EXPECT_EQ(cad.IsInWorkingShape(b), 1);
    cad.RemoveWorkingShape(a);
    EXPECT_EQ(cad.GetSelectedShapes(), std::vector<TMyShape*>{b});
    cad.RemoveAllWorkingShapes();
    EXPECT_EQ(cad.GetWorkingShapesCount(), 0);
}

TEST(CanvasTools, ToolsSetTheirActions) {
    TMyCAD cad;
    const std::pair<TDrawTool, TActionTools> table[] = {
        {SpSelecting, dtSelecting}, {SpRotateSelecting, dtRotateSelecting}, {SpClose, dtClose},
        {SpDragWhole, dtDragWhole}, {SpBrowse, dtBrowse}, {SpRectangle, dtDrawing}, {SpLinkLine, dtDrawing},
        {SpPolylinePolygonPointAdding, dtPolylinePolygonPointAdding},
        {SpPolylinePolygonPointRemoving, dtPolylinePolygonPointRemoving}, {SpBLine, dtDrawing}};
    for (auto [tool, action] : table) {
        cad.SetShapeTool(tool);
        EXPECT_EQ(cad.Action(), action) << int(tool);
    }
    FigureShape pending(&cad);
    cad.SetCurrentShape(&pending);
    cad.SetShapeTool(SpEllipse);
    EXPECT_EQ(cad.CurrentShape(), nullptr);
}

TEST(CanvasLabels, RemovedLabelsAreForgotten) {
    TMyCAD cad;
    auto label = new QLabel;
    cad.SetLabelXY(label);
    cad.SetLabelValue(label);
    EXPECT_EQ(cad.LabelXY(), label);
    delete label;
    EXPECT_EQ(cad.LabelXY(), nullptr);
    EXPECT_EQ(cad.LabelValue(), nullptr);
}

class Painting : public ::testing::Test {
protected:
    void SetUp() override {
        m_savedHot = HotColor();
        SetHotColor(clLime);
        cad.GridOperation()->SetGridShow(false);
    }
    void TearDown() override { SetHotColor(m_savedHot); }
    TMyCAD cad;
    std::vector<std::string> log;
    TColor m_savedHot = clLime;
};

TEST_F(Painting, ShapesPaintInListOrderSoLaterOnesCoverEarlier) {
    auto a = AddBox(&cad, 10, 10, 60, 60, &log);
    auto b = AddBox(&cad, 30, 30, 90, 90, &log);
    a->Brush()->SetColor(clRed);
    b->Brush()->SetColor(clBlue);
    const QImage image = cad.PaintToImage();
    EXPECT_EQ(log, (std::vector<std::string>{"Shape0", "Shape1"}));
    EXPECT_EQ(PixelAt(image, 45, 45), clBlue);
    EXPECT_EQ(PixelAt(image, 20, 20), clRed);
    EXPECT_EQ(PixelAt(image, 100, 100), clWhite);
}

TEST_F(Painting, ChildrenPaintBeforeTheirParentAndOnlyThroughIt) {
    auto parent = AddBox(&cad, 0, 0, 100, 100, &log);
    auto c1 = AddBox(&cad, 10, 10, 20, 20, &log);
    auto c2 = AddBox(&cad, 30, 30, 40, 40, &log);
    auto other = AddBox(&cad, 200, 200, 210, 210, &log);
    parent->SetChildShapeNos({2, 1});
    c1->SetParentShapeNo(0);
    c2->SetParentShapeNo(0);
    cad.PaintToImage();
    EXPECT_EQ(log, (std::vector<std::string>{"Shape2", "Shape1", "Shape0", "Shape3"}));
    EXPECT_EQ(cad.PaintedShapes(), (std::vector<int>{0, 3})) << "only roots are listed";
    (void)other;
}

TEST_F(Painting, InvisibleRootsSkipTheirChildrenAndInvisibleChildrenSkipAlone) {
    auto parent = AddBox(&cad, 0, 0, 100, 100, &log);
    auto c1 = AddBox(&cad, 10, 10, 20, 20, &log);
    auto c2 = AddBox(&cad, 30, 30, 40, 40, &log);
    parent->SetChildShapeNos({1, 2});
    c1->SetParentShapeNo(0);
    c2->SetParentShapeNo(0);
    c1->SetVisible(false);
    cad.PaintToImage();
    EXPECT_EQ(log, (std::vector<std::string>{"Shape2", "Shape0"}));
    log.clear();
    parent->SetVisible(false);
    cad.PaintToImage();
    EXPECT_TRUE(log.empty());
}

TEST_F(Painting, ZoomScalesTheDrawing) {
    auto s = AddBox(&cad, 10, 10, 20, 20);
    s->Pen()->SetColor(clRed);
    s->Brush()->SetColor(clRed);
    cad.SetZoom(3);
    const QImage image = cad.PaintToImage();
    EXPECT_EQ(InkBounds(image, clRed), Rect(30, 30, 61, 61));
}

TEST_F(Painting, PartialRepaintMatchesTheSameAreaOfAFullOne) {
    cad.GridOperation()->SetGridShow(true);
    TBitmap tile(7, 5, pf24bit);
    tile.Canvas()->Brush()->SetColor(clYellow);
    tile.Canvas()->FillRect(Rect(0, 0, 7, 5));
    tile.Canvas()->SetPixel(3, 2, clNavy);
    cad.SetBkBitmap(tile);
    cad.SetBkBitmapMode(Tiled);
    auto a = AddBox(&cad, 13.3f, 17.6f, 140.2f, 90.7f);
    a->Brush()->SetColor(clRed);
    a->SetInfo("Caption text");
    a->Drawed({}, {});
    auto b = AddBox(&cad, -50, 60, 400, 75.5f);  // crosses the area with no point inside it
    b->Brush()->SetColor(clGreen);
    cad.AddWorkingShapes(a);
    cad.SetZoom(1.37);
    ExpectPartialMatchesFull(cad, TRect{61, 43, 233, 171});
}

TEST_F(Painting, SelectionHotMarksAreDrawnOnTop) {
    auto a = AddBox(&cad, 20, 20, 60, 60);
    AddBox(&cad, 0, 0, 100, 100)->Brush()->SetColor(clBlue);  // covers a
    cad.AddWorkingShapes(a);
    const QImage image = cad.PaintToImage();
    EXPECT_EQ(PixelAt(image, 60, 60), clLime);
    EXPECT_EQ(PixelAt(image, 56, 56), clBlack);
    EXPECT_EQ(PixelAt(image, 40, 40), clBlue);
}

TEST_F(Painting, OnPaintIsRaisedAfterEachPaint) {
    int paints = 0;
    TObject* sender = nullptr;
    cad.OnPaint = [&](TObject* s) {
        ++paints;
        sender = s;
    };
    cad.PaintToImage();
    cad.PaintToImage();
    EXPECT_EQ(paints, 2);
    EXPECT_EQ(sender, &cad);
}

TEST_F(Painting, BackgroundColourAndHeaderFill) {
    cad.SetColorOfBackGround(clCream);
    cad.SetPageHead("Title");
    cad.PageHeadFont()->SetColor(clRed);
    cad.PageHeadFont()->SetSize(20);
    const QImage image = cad.PaintToImage();
    EXPECT_EQ(PixelAt(image, 5, 5), clCream);
    QImage top = image.copy(0, 0, image.width(), 120);
    const TRect ink = InkBoundsExcept(top, clCream);
    EXPECT_GT(ink.Width(), 0);
    EXPECT_NEAR((ink.left + ink.right) / 2.0, cad.Width() / 2.0, 4) << "a centred header";
    EXPECT_GE(ink.top, 56) << "15 mm from the page's top";
}

}  // namespace
