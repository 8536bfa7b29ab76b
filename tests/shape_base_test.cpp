// The shape base: defaults taken from the canvas, the point and link-point
// lists, zoom conversions, bounds, relations, copying, moving, flipping,
// rotating, the text point and the caption drawing, and the class kinds.
#include "cad/canvas/mycad.h"
#include "cad/geometry/geometry.h"
#include "cad/shapes/line.h"
#include "cad/shapes/polyline.h"
#include "cad/shapes/rectangle.h"
#include "support/shapes.h"
#include "support/test_support.h"

#include <QMetaProperty>
#include <gtest/gtest.h>

using namespace faroven;
using namespace faroven::test;

namespace {

class ShapeBase : public ::testing::Test {
protected:
    TMyCAD cad;
};

TEST_F(ShapeBase, ConstructorTakesTheCanvasDefaults) {
    cad.Pen()->SetColor(clRed);
    cad.Pen()->SetWidth(3);
    cad.Brush()->SetColor(clYellow);
    cad.Font()->SetSize(14);
    cad.SetPenStyleJoinType(psjtBEVEL);
    cad.SetPenStyleEndCapType(psectFLAT);
    cad.SetDragEnable(false);
    cad.SetResizeEnable(false);
    cad.SetRotateEnable(false);
    cad.SetHotShow(false);
    const int layer = cad.NewLayer("Second", true);
    FigureShape s(&cad);
    EXPECT_EQ(s.Pen()->Color(), clRed);
    EXPECT_EQ(s.Pen()->Width(), 3);
    EXPECT_EQ(s.Brush()->Color(), clYellow);
    EXPECT_EQ(s.Font()->Size(), 14);
    EXPECT_EQ(s.PenStyleJoinType(), psjtBEVEL);
    EXPECT_EQ(s.PenStyleEndCapType(), psectFLAT);
    EXPECT_FALSE(s.DragEnable() || s.ResizeEnable() || s.RotateEnable() || s.HotShow());
    EXPECT_EQ(s.LayerId(), layer);
    // The shape owns copies: changing the canvas afterwards leaves it alone.
    cad.Pen()->SetColor(clBlue);
    EXPECT_EQ(s.Pen()->Color(), clRed);
}

TEST_F(ShapeBase, PublishedPropertiesAreVisibleToTheMetaObjectSystem) {
    FigureShape s(&cad);
    EXPECT_TRUE(s.setProperty("Info", "via meta"));
    EXPECT_EQ(s.Info(), "via meta");
    EXPECT_TRUE(s.setProperty("GradientStyle", QVariant::fromValue(gsDiamond)));
    EXPECT_EQ(s.GradientStyle(), gsDiamond);
}

TEST_F(ShapeBase, GetPointOutOfRangeGivesOrigin) {
    FigureShape s(&cad);
    s.AddPoint({3, 4});
    EXPECT_EQ(s.GetPoint(-1), (TMyPoint{0, 0}));
    EXPECT_EQ(s.GetPoint(1), (TMyPoint{0, 0}));
    EXPECT_EQ(s.GetPoint(0), (TMyPoint{3, 4}));
    s.SetPoint(5, {9, 9});  // ignored
    EXPECT_EQ(s.GetPointsCount(), 1);
    EXPECT_EQ(s.GetLinkPoint(0), (TMyPoint{0, 0}));
}

TEST_F(ShapeBase, ZoomScalesReadingNotTheStoredPoints) {
    FigureShape s(&cad);
    s.AddPoint({10.5f, 20.25f});
    cad.SetZoom(2);
    EXPECT_EQ(s.GetPointInZoom(0), (TMyPoint{21, 40.5f}));
    EXPECT_EQ(s.GetPoint(0), (TMyPoint{10.5f, 20.25f}));
    s.SetPointInZoom(0, {30, 50});
    EXPECT_EQ(s.GetPoint(0), (TMyPoint{15, 25}));
    s.SetPointXInZoom(0, 8);
    s.SetPointYInZoom(0, 6);
    EXPECT_EQ(s.GetPoint(0), (TMyPoint{4, 3}));
    s.AddPointByMouse({7, 9});
    EXPECT_EQ(s.GetPoint(1), (TMyPoint{3.5f, 4.5f}));
    s.AddLinkPoint({1, 2});
    EXPECT_EQ(s.GetLinkPointInZoom(0), (TMyPoint{2, 4}));
}

TEST_F(ShapeBase, WithModeConvertsByTheCanvasOrigin) {
    FigureShape s(&cad);
    s.AddPoint({10, 20});
    cad.SetXYMode(Mode1);
    EXPECT_EQ(s.GetPointInZoomWithMode(0), (TMyPoint{10, float(cad.Height() - 20)}));
    cad.SetXYMode(Mode2);
    EXPECT_EQ(s.GetPointInZoomWithMode(0), (TMyPoint{float(cad.Width() - 10), float(cad.Height() - 20)}));
}

TEST_F(ShapeBase, BoundsCoverThePoints) {
    FigureShape s(&cad);
    for (TMyPoint p : {TMyPoint{10, 40}, TMyPoint{30, 5}, TMyPoint{-4, 12}}) s.AddPoint(p);
    EXPECT_EQ(s.GetLeftTop(), (TMyPoint{-4, 5}));
    EXPECT_EQ(s.GetRightTop(), (TMyPoint{30, 5}));
    EXPECT_EQ(s.GetLeftBottom(), (TMyPoint{-4, 40}));
    EXPECT_EQ(s.GetRightBottom(), (TMyPoint{30, 40}));
    EXPECT_FLOAT_EQ(s.GetMyWidth(), 34);
    EXPECT_FLOAT_EQ(s.GetMyHeight(), 35);
    cad.SetZoom(1.5);
    EXPECT_EQ(s.GetWidth(), 51);
    EXPECT_EQ(s.GetHeight(), 52) << "52.5 rounds half to even";
    EXPECT_EQ(s.ComputeCenterPoint(), (TMyPoint{13, 22.5f}));
}

TEST_F(ShapeBase, DrawedPutsTheTextPointTenUnitsBelowTheBottom) {
    FigureShape s(&cad);
    s.AddPoint({10, 10});
    s.AddPoint({50, 30});
    s.Drawed({10, 10}, {50, 30});
    EXPECT_EQ(s.CenterPoint(), (TMyPoint{30, 20}));
    EXPECT_EQ(s.TextPoint(), (TMyPoint{30, 40}));
}

TEST_F(ShapeBase, RelationsAndLinkLineLists) {
    FigureShape s(&cad);
    EXPECT_FALSE(s.HasParentShape());
    EXPECT_FALSE(s.HasChildShapes());
    EXPECT_FALSE(s.HasLinkShapes());
    s.SetParentShapeNo(0);
    EXPECT_TRUE(s.HasParentShape());
    s.SetChildShapeNos({1, 2});
    EXPECT_TRUE(s.HasChildShapes());
    AddLinklineShape(&s, 7);
    AddLinklineShape(&s, 7);
    EXPECT_EQ(s.LinkShapeNos(), (TMyShapeNo{7})) << "an attached line is listed once";
    s.SetLinkShapeNos({4, 7, 5, 7, 6});
    RemoveLinklineShape(&s, 7);
    EXPECT_EQ(s.LinkShapeNos(), (TMyShapeNo{4, 7, 5, 6})) << "only the later occurrence goes";
    RemoveLinklineShape(&s, 99);
    EXPECT_EQ(s.LinkShapeNos().size(), 4u);
}

TEST_F(ShapeBase, OffsetAllPointsMovesGeometryButNotTheStoredCentre) {
    FigureShape s(&cad);
    s.AddPoint({1, 2});
    s.AddLinkPoint({3, 4});
    s.SetTextPoint({5, 6});
    s.SetCenterPoint({100, 100});
    OffsetAllPoints(&s, 10, -1);
    EXPECT_EQ(s.GetPoint(0), (TMyPoint{11, 1}));
    EXPECT_EQ(s.GetLinkPoint(0), (TMyPoint{13, 3}));
    EXPECT_EQ(s.TextPoint(), (TMyPoint{15, 5}));
    EXPECT_EQ(s.CenterPoint(), (TMyPoint{100, 100}));
    RemoveAllPoints(&s);
    EXPECT_EQ(s.GetPointsCount(), 0);
    EXPECT_EQ(s.GetLinkPointsCount(), 1) << "link points are kept";
}

TEST_F(ShapeBase, DragMovesByTheZoomedMouseOffset) {
    FigureShape s(&cad);
    s.AddPoint({10, 10});
    s.SetTextPoint({10, 20});
    cad.SetZoom(2);
    s.DragChangeValue({100, 100}, {120, 90});
    EXPECT_EQ(s.GetPoint(0), (TMyPoint{20, 5}));
    EXPECT_EQ(s.TextPoint(), (TMyPoint{20, 15}));
}

// An undo snapshot is a full Assign, and its take-back finds the live shape
// by the snapshot's id: ids and numbers travel with the relations.
TEST_F(ShapeBase, AssignCopiesRelationsAndIdsAndAssignWithoutRelationDoesNot) {
    FigureShape a(&cad);
    a.SetName("Original");
    a.SetShapeId(17);
    a.SetShapeNo(2);
    a.AddPoint({1, 2});
    a.AddLinkPoint({3, 4});
    a.SetInfo("info");
    a.MultiInfo()->Add("line");
    a.Pen()->SetColor(clRed);
    a.UserData()->AddKeyandValue("k", "v");
    a.SetParentShapeNo(3);
    a.SetChildShapeNos({4, 5});
    a.SetLinkShapeNos({6});
    a.SetAngle(0.5f);
    a.SetTag(42);
    FigureShape b(&cad);
    b.Assign(&a);
    EXPECT_EQ(b.Points(), a.Points());
    EXPECT_EQ(b.LinkPoints(), a.LinkPoints());
    EXPECT_EQ(b.Info(), "info");
    EXPECT_EQ(b.MultiInfo()->Text(), a.MultiInfo()->Text());
    EXPECT_EQ(b.Pen()->Color(), clRed);
    EXPECT_EQ(b.UserData()->GetValueByKey("k"), "v");
    EXPECT_EQ(b.ParentShapeNo(), 3);
    EXPECT_EQ(b.ChildShapeNos(), (std::vector<int32_t>{4, 5}));
    EXPECT_EQ(b.LinkShapeNos(), (TMyShapeNo{6}));
    EXPECT_EQ(b.GetShapeId(), 17);
    EXPECT_EQ(b.ShapeNo(), 2);
    EXPECT_EQ(b.Name(), "") << "the component name is not copied";
    EXPECT_EQ(b.Tag(), 42);
    FigureShape c(&cad);
    c.SetShapeId(5);
    c.SetShapeNo(0);
    c.SetParentShapeNo(1);
    c.AssignWithoutRelation(&a);
    EXPECT_EQ(c.Points(), a.Points());
    EXPECT_FLOAT_EQ(c.Angle(), 0.5f);
    EXPECT_EQ(c.GetShapeId(), 5) << "ids and relations stay the copy's own";
    EXPECT_EQ(c.ShapeNo(), 0);
    EXPECT_EQ(c.ParentShapeNo(), 1);
    EXPECT_TRUE(c.ChildShapeNos().empty());
    EXPECT_TRUE(c.LinkShapeNos().empty());
    // The copy owns its attributes.
    a.Pen()->SetColor(clBlue);
    EXPECT_EQ(b.Pen()->Color(), clRed);
}

TEST_F(ShapeBase, FlipsMirrorAboutTheCentreAndToggleTheFlags) {
    FigureShape s(&cad);
    s.AddPoint({0, 0});
    s.AddPoint({10, 0});
    s.AddPoint({10, 20});
    s.Drawed({}, {});  // stores the centre (5, 10)
    s.SetTextPoint({2, 30});
    s.FlipHoriz();
    EXPECT_TRUE(s.IsFlipHorz());
    EXPECT_EQ(s.GetPoint(0), (TMyPoint{10, 0}));
    EXPECT_EQ(s.GetPoint(2), (TMyPoint{0, 20}));
    EXPECT_EQ(s.TextPoint(), (TMyPoint{8, 30}));
    s.FlipVert();
    EXPECT_TRUE(s.IsFlipVert());
    EXPECT_EQ(s.GetPoint(2), (TMyPoint{0, 0}));
    s.FlipHoriz();
    EXPECT_FALSE(s.IsFlipHorz());
}

TEST_F(ShapeBase, RotationTurnsClockwiseAboutTheCentre) {
    FigureShape s(&cad);
    s.AddPoint({0, 0});
    s.AddPoint({20, 0});
    s.AddPoint({20, 10});
    s.AddPoint({0, 10});
    s.Drawed({}, {});
    s.RotateChangeValueByAngle(M_PI / 2);
    // A quarter turn clockwise on screen (y down) about (10, 5): (0, 0) -> (15, -5).
    EXPECT_NEAR(s.GetPoint(0).x, 15, 1e-4);
    EXPECT_NEAR(s.GetPoint(0).y, -5, 1e-4);
    EXPECT_NEAR(s.Angle(), M_PI / 2, 1e-6);
    EXPECT_EQ(s.GetCenterPoint(), (TMyPoint{10, 5})) << "the centre stays";
}

TEST_F(ShapeBase, RotatedAngleIsMeasuredAboutTheZoomedCentre) {
    FigureShape s(&cad);
    s.AddPoint({0, 0});
    s.AddPoint({20, 20});
    s.Drawed({}, {});
    cad.SetZoom(2);  // centre at (20, 20) pixels
    EXPECT_NEAR(s.GetRotatedAngle({40, 20}, {20, 40}), M_PI / 2, 1e-9) << "right to below is clockwise";
    EXPECT_NEAR(s.GetRotatedAngle({20, 40}, {40, 20}), -M_PI / 2, 1e-9);
    EXPECT_NEAR(s.GetRotatedAngle({40, 20}, {0, 21}), M_PI - std::atan(1.0 / 20), 1e-9);
}

TEST_F(ShapeBase, ScaleAboutAnOrigin) {
    FigureShape s(&cad);
    s.AddPoint({10, 10});
    s.AddPoint({20, 30});
    s.Drawed({}, {});  // centre (15, 20)
    s.SetTextPoint({20, 40});
    s.SizeChangeValueByScale(2, 0.5, {10, 10});
    EXPECT_EQ(s.GetPoint(1), (TMyPoint{30, 20}));
    EXPECT_EQ(s.TextPoint(), (TMyPoint{30, 25}));
    EXPECT_EQ(s.GetCenterPoint(), (TMyPoint{20, 15})) << "the centre scales like the points";
}

TEST_F(ShapeBase, TextPointHotAreaReachesHotSizeExcludingFarEdges) {
    FigureShape s(&cad);
    s.SetTextPoint({50, 50});
    EXPECT_TRUE(s.InTextPointHot({46, 46}));
    EXPECT_TRUE(s.InTextPointHot({53, 53}));
    EXPECT_FALSE(s.InTextPointHot({54, 50}));
    EXPECT_FALSE(s.InTextPointHot({50, 54}));
    cad.SetZoom(2);
    EXPECT_TRUE(s.InTextPointHot({100, 100}));
    EXPECT_FALSE(s.InTextPointHot({50, 50}));
}

TEST_F(ShapeBase, LinkHotFindsTheLastMatchingLinkPoint) {
    FigureShape s(&cad);
    s.AddLinkPoint({10, 10});
    s.AddLinkPoint({12, 10});
    EXPECT_EQ(s.InWhichLinkHot({11, 10}), 1);
    EXPECT_EQ(s.InWhichLinkHot({6, 10}), 0);
    EXPECT_EQ(s.InWhichLinkHot({30, 30}), -1);
}

template <class T>
bool castsTo(TMyShape* s) {
    return shape_cast<T>(s) == s;
}

// Each class reports its own kind, and shape_cast<T> accepts exactly the
// shapes of T's kind: not a subclass (a combine is no group for it), not a base.
TEST_F(ShapeBase, EveryClassHasItsOwnKindAndShapeCastMatchesExactly) {
    struct Row {
        std::unique_ptr<TMyShape> shape;
        TShapeKind kind;
        bool (*casts)(TMyShape*);
    };
    Row rows[] = {
        {std::make_unique<TMyShape>(&cad), TShapeKind::Shape, &castsTo<TMyShape>},
        {std::make_unique<TMyRectangle>(&cad), TShapeKind::Rectangle, &castsTo<TMyRectangle>},
        {std::make_unique<TMyEllipse>(&cad), TShapeKind::Ellipse, &castsTo<TMyEllipse>},
        {std::make_unique<TMyGroup>(&cad), TShapeKind::Group, &castsTo<TMyGroup>},
        {std::make_unique<TMyCombine>(&cad), TShapeKind::Combine, &castsTo<TMyCombine>},
        {std::make_unique<TMyLine>(&cad), TShapeKind::Line, &castsTo<TMyLine>},
        {std::make_unique<TMyRuleLine>(&cad), TShapeKind::RuleLine, &castsTo<TMyRuleLine>},
        {std::make_unique<TMyPolyLine>(&cad), TShapeKind::PolyLine, &castsTo<TMyPolyLine>},
        {std::make_unique<TMyPolygon>(&cad), TShapeKind::Polygon, &castsTo<TMyPolygon>},
        {std::make_unique<TMyFreeLine>(&cad), TShapeKind::FreeLine, &castsTo<TMyFreeLine>},
    };
    for (const Row& row : rows) {
        const char* name = row.shape->metaObject()->className();
        EXPECT_EQ(row.shape->kind(), row.kind) << name;
        for (const Row& other : rows)
            EXPECT_EQ(other.casts(row.shape.get()), &other == &row) << name << " as " << other.shape->metaObject()->className();
    }
    const TMyShape* constEllipse = rows[2].shape.get();
    EXPECT_EQ(shape_cast<TMyEllipse>(constEllipse), constEllipse);
    EXPECT_EQ(shape_cast<TMyRectangle>(constEllipse), nullptr);
    EXPECT_EQ(shape_cast<TMyLine>(static_cast<TMyShape*>(nullptr)), nullptr);
}

TEST_F(ShapeBase, ChangesBumpTheRevision) {
    FigureShape s(&cad);
    const uint64_t r0 = s.Revision();
    s.Pen()->SetColor(clRed);
    const uint64_t r1 = s.Revision();
    EXPECT_GT(r1, r0);
    s.Points();  // mutable access
    EXPECT_GT(s.Revision(), r1);
}

TEST_F(ShapeBase, CaptionIsDrawnBelowTheShapeInTheFontColour) {
    auto bmp = FilledBitmap(200, 120, clWhite);
    FigureShape s(&cad);
    s.Font()->SetColor(clRed);
    s.Font()->SetSize(12);
    s.SetTextPoint({100, 60});
    s.SetInfo("HELLO");
    s.DrawInfo(bmp->Canvas());
    EXPECT_GT(CountPixels(bmp->Image(), clRed), 0) << "the caption is drawn in the font colour";
    const TRect ink = InkBoundsExcept(bmp->Image(), clWhite);
    ASSERT_GT(ink.Width(), 0) << "the caption drew nothing";
    EXPECT_GE(ink.top, 60);
    EXPECT_NEAR((ink.left + ink.right) / 2.0, 100, 3) << "centred on the text point";
    s.SetCaptionShow(false);
    auto blank = FilledBitmap(200, 120, clWhite);
    s.DrawInfo(blank->Canvas());
    EXPECT_EQ(InkBoundsExcept(blank->Image(), clWhite), TRect{});
}

TEST_F(ShapeBase, LogUseReplacesTheMeasuredTextBox) {
    FigureShape s(&cad);
    TBitmap bmp(10, 10);
    s.SetLogUse(true);
    s.SetLogWidth(30);
    s.SetLogHeight(7);
    cad.SetZoom(2);
    EXPECT_EQ(s.GetTextWidthHeight(bmp.Canvas(), "anything"), (TSize{60, 14}));
}

TEST_F(ShapeBase, PowerDrawShapeFillsAndOutlines) {
    auto bmp = FilledBitmap(40, 40, clWhite);
    FigureShape s(&cad);
    s.Pen()->SetColor(clRed);
    s.Brush()->SetColor(clBlue);
    const TArrPoint square = {{5, 5}, {30, 5}, {30, 30}, {5, 30}};
    s.PowerDrawShape(bmp->Canvas(), square, true);
    EXPECT_EQ(PixelAt(*bmp, 5, 17), clRed);
    EXPECT_EQ(PixelAt(*bmp, 17, 17), clBlue);
    EXPECT_EQ(PixelAt(*bmp, 2, 2), clWhite);
    s.Brush()->SetStyle(bsClear);
    const TArrPoint open = {{2, 36}, {36, 36}};
    s.PowerDrawShape(bmp->Canvas(), open, false);
    EXPECT_EQ(PixelAt(*bmp, 20, 36), clRed);
}

}  // namespace
