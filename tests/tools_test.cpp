// The class each drawing tool creates, and creation by class name: every
// shape class of the file formats is made by its exact name, and the name of
// what is made is that name again.
#include "cad/canvas/mycad.h"
#include "cad/shapes/link.h"
#include "cad/shapes/shape_factory.h"

#include <gtest/gtest.h>
#include <memory>

namespace faroven {
namespace {

TEST(Tools, EveryDrawingToolCreatesItsClassAndTheOthersNothing) {
    TMyCAD cad;
    cad.SetLinkLineDrawStyle(lldsFree);
    const std::pair<TDrawTool, const char*> drawing[] = {
        {SpLinkLine, "TMyLinkLine"},     {SpLine, "TMyLine"},           {SpRuleLine, "TMyRuleLine"},
        {SpPolyLine, "TMyPolyLine"},     {SpRectangle, "TMyRectangle"}, {SpLinkPoint, "TMyLinkPoint"},
        {SpLineLinkLine, "TMyLineLinkLine"}, {SpEllipse, "TMyEllipse"}, {SpText, "TMyText"},
        {SpImage, "TMyImage"},           {SpPolygon, "TMyPolygon"},     {SpPolyBezier, "TMyPolyBezier"},
        {SpElliArc, "TMyElliArc"},       {SpFreeLine, "TMyFreeLine"},   {SpBLine, "TMyBLine"}};
    for (const auto& [tool, name] : drawing) {
        std::unique_ptr<TMyShape> shape(cad.CreateShapeBySpTool(tool));
        ASSERT_NE(shape, nullptr) << name;
        EXPECT_EQ(ShapeClassName(shape.get()), name);
        EXPECT_EQ(shape->Canvas(), &cad);
        EXPECT_EQ(shape->GetShapeId(), -1) << "unnumbered and unnamed";
        cad.SetShapeTool(tool);
        EXPECT_EQ(cad.Action(), dtDrawing) << name;
    }
    std::unique_ptr<TMyShape> link(cad.CreateShapeBySpTool(SpLinkLine));
    EXPECT_EQ(shape_cast<TMyLinkLine>(link.get())->LinkLineDrawStyle(), lldsFree);
    for (TDrawTool tool : {SpSelecting, SpRotateSelecting, SpClose, SpPolylinePolygonPointRemoving,
                           SpPolylinePolygonPointAdding, SpDragWhole, SpBrowse})
        EXPECT_EQ(cad.CreateShapeBySpTool(tool), nullptr) << int(tool);
    EXPECT_EQ(cad.GetShapesCount(), 0);
}

TEST(Tools, EveryFileClassNameMakesItsClass) {
    TMyCAD cad;
    const char* names[] = {"TMyRectangle", "TMyLinkPoint",  "TMyLineLinkLine", "TMyEllipse", "TMyLine",
                           "TMyFreeLine",  "TMyRuleLine",   "TMyPolyLine",     "TMyPolygon", "TMyPolyBezier",
                           "TMyText",      "TMyImage",      "TMyElliArc",      "TMyLinkLine", "TMyCombine",
                           "TMyGroup",     "TMyBLine"};
    for (const char* name : names) {
        std::unique_ptr<TMyShape> shape(cad.CreateShapeByName(name));
        ASSERT_NE(shape, nullptr) << name;
        EXPECT_EQ(ShapeClassName(shape.get()), name);
    }
    EXPECT_EQ(cad.CreateShapeByName("tmyrectangle"), nullptr) << "names are compared exactly";
    EXPECT_EQ(cad.CreateShapeByName("TMyShape"), nullptr);
}

TEST(Tools, CreateAddShapeByNameAddsACopyAsANewShape) {
    TMyCAD cad;
    TMyShape* source = cad.AddShapeByCode(nullptr, SpEllipse, "source", {{0, 0}, {40, 20}}, 0, "caption");
    TMyShape* copy = cad.CreateAddShapeByName("TMyRectangle", source);
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(ShapeClassName(copy), "TMyRectangle");
    EXPECT_EQ(std::as_const(*copy).Points(), std::as_const(*source).Points());
    EXPECT_EQ(copy->Info(), "caption");
    EXPECT_EQ(copy->ShapeNo(), 1);
    EXPECT_EQ(copy->Name(), QStringLiteral("Shape%1").arg(copy->GetShapeId()));
    EXPECT_EQ(cad.UndoRecords().size(), 1u) << "only the shape made by code is recorded";
    EXPECT_EQ(cad.CreateAddShapeByName("TMyNothing", source), nullptr);
    EXPECT_EQ(cad.GetShapesCount(), 2);
}

}  // namespace
}  // namespace faroven
