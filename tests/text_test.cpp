// Text boxes: fill, border and the text's place for each alignment, word
// wrap, turning and clipping on pixels; the frame that reCaclpoints fits to
// the text; the glyph path in the platform's point types; copies.
#include "cad/canvas/mycad.h"
#include "cad/shapes/text.h"
#include "support/shapes.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

#include <QFontMetricsF>
#include <numbers>

using namespace faroven;
using namespace faroven::test;

namespace {

class Text : public ::testing::Test {
protected:
    void SetUp() override {
        cad.GridOperation()->SetGridShow(false);
        cad.SetShowHotLink(false);
    }
    // A 200 x 80 frame at (20, 20) with red 12-unit text.
    TMyText* box(const QStringList& lines, float l = 20, float t = 20, float r = 220, float b = 100) {
        auto* text = AddRect<TMyText>(cad, l, t, r, b);
        text->Font()->SetName("DejaVu Sans");
        text->Font()->SetSize(12);
        text->Font()->SetColor(clRed);
        for (const QString& line : lines) text->Lines()->Add(line);
        return text;
    }
    TRect ink() { return InkBounds(cad.PaintToImage(), clRed); }
    TMyCAD cad;
};

TEST_F(Text, FillBorderAndTheTextsPlaceForEachAlignment) {
    TMyText* t = box({"Hello"});
    EXPECT_EQ(PixelAt(cad.PaintToImage(), 100, 90), clWhite) << "neither solid nor bordered";
    t->SetIsSolid(true);
    t->SetIsBorder(true);
    t->Brush()->SetColor(clBlue);
    t->Pen()->SetColor(clBlack);
    const QImage image = cad.PaintToImage();
    EXPECT_EQ(PixelAt(image, 100, 90), clBlue);
    EXPECT_EQ(PixelAt(image, 20, 60), clBlack);
    EXPECT_EQ(PixelAt(image, 220, 60), clBlack);
    EXPECT_EQ(PixelAt(image, 230, 60), clWhite);

    const TRect topLeft = ink();
    EXPECT_GE(topLeft.left, 22);
    EXPECT_LT(topLeft.left, 30);
    EXPECT_GE(topLeft.top, 22);
    EXPECT_LT(topLeft.bottom, 45);
    t->SetHAlignment(jhRight);
    t->SetVAlignment(jvBottom);
    const TRect bottomRight = ink();
    EXPECT_LE(bottomRight.right, 218);
    EXPECT_GT(bottomRight.right, 210);
    EXPECT_LE(bottomRight.bottom, 98);
    EXPECT_GT(bottomRight.bottom, 85);
    EXPECT_EQ(bottomRight.Width(), topLeft.Width());
    t->SetHAlignment(jhCenter);
    t->SetVAlignment(jvCenter);
    const TRect centred = ink();
    EXPECT_NEAR((centred.left + centred.right) / 2.0, 120, 2);
    EXPECT_NEAR((centred.top + centred.bottom) / 2.0, 60, 4);
}

TEST_F(Text, AFittedFrameHoldsItsTextAtEveryZoom) {
    TMyText* t = box({"Fitted frame text"});
    t->SetWordWrap(true);
    t->reCaclpoints();
    for (double zoom : {0.5, 0.6, 0.75, 1.0, 1.37, 2.5}) {
        cad.SetZoom(zoom);
        const TRect frame = myRecttoRect(cad.GetShapesLTRBinZoom({t}));
        const TRect text = ink();
        // One row, not clipped: the ink reaches close to the right margin.
        EXPECT_LT(text.bottom - text.top, 14 * zoom + 3) << zoom;
        EXPECT_GT(text.right, frame.right - 2 * zoom - 3) << zoom;
    }
}

TEST_F(Text, WordWrapTurnAndClipping) {
    TMyText* t = box({"one two three four five six seven"}, 20, 20, 120, 150);
    const TRect single = ink();
    EXPECT_LE(single.right, 120) << "text is clipped to the frame";
    EXPECT_EQ(t->LayoutRows(100).size(), 1);
    t->SetWordWrap(true);
    EXPECT_GE(t->LayoutRows(100).size(), 3);
    const TRect wrapped = ink();
    EXPECT_GE(wrapped.Height(), 3 * 12) << "three rows or more";
    EXPECT_LT(wrapped.right, 118);
    // A quarter turn clockwise stands the rows on end.
    t->SetWordWrap(false);
    t->Lines()->Clear();
    t->Lines()->Add("Hello world");
    t->RotateChangeValueByAngle(std::numbers::pi / 2);
    const TRect turned = ink();
    EXPECT_GT(turned.Height(), 2 * turned.Width());
}

TEST_F(Text, ReCaclpointsFitsTheFrameToTheTextAndTheAngle) {
    auto* t = new TMyText(&cad);
    t->Font()->SetName("DejaVu Sans");
    t->Font()->SetSize(20);
    t->SetInfo("Imported");
    t->AddPoint({50, 40});
    t->reCaclpoints();
    const double width = QFontMetricsF(t->FontRef().ToQFont(20)).horizontalAdvance("Imported");
    ASSERT_EQ(t->GetPointsCount(), 4);
    EXPECT_NEAR(t->GetPoint(1).x - 50, width + 4, 0.01);
    EXPECT_EQ(t->GetPoint(0), (TMyPoint{50, 40}));
    EXPECT_GT(t->UprightHeight(), 20);
    // Turned a quarter clockwise about point 0: the top edge runs down.
    t->SetAngle(float(std::numbers::pi / 2));
    t->reCaclpoints();
    EXPECT_NEAR(t->Points()[1].x, 50, 0.01);
    EXPECT_NEAR(t->Points()[1].y, 40 + width + 4, 0.01);
    EXPECT_EQ(t->Text(), "Imported") << "Info is the text while there are no lines";
    delete t;
}

TEST_F(Text, GlyphPathUsesThePlatformPointTypesWhereTheTextIsDrawn) {
    TMyText* t = box({"Ob", "8"});
    cad.SetZoom(2);
    TArrPoint points;
    std::vector<uint8_t> types;
    t->GetPathPoints(cad.Canvas(), points, types);
    ASSERT_FALSE(points.empty());
    ASSERT_EQ(points.size(), types.size());
    EXPECT_EQ(types.front(), 6);
    int figures = 0, closed = 0, curveRun = 0;
    const TRect drawn = ink();
    for (size_t i = 0; i < types.size(); ++i) {
        const uint8_t base = types[i] & ~1;
        ASSERT_TRUE(base == 6 || base == 2 || base == 4) << int(types[i]);
        EXPECT_FALSE(types[i] == 7) << "a move-to closes nothing";
        figures += base == 6;
        closed += types[i] & 1;
        if (base == 4) {
            ++curveRun;
        } else {
            EXPECT_EQ(curveRun % 3, 0) << "curve points come in threes";
            curveRun = 0;
        }
        EXPECT_TRUE(points[i].x >= drawn.left - 2 && points[i].x <= drawn.right + 2 && points[i].y >= drawn.top - 2 &&
                    points[i].y <= drawn.bottom + 2)
            << "point " << i << " lies off the drawn text";
    }
    EXPECT_GE(figures, 5) << "O, b and 8 have outer and inner outlines";
    EXPECT_EQ(closed, figures) << "every glyph outline is a closed figure";
}

TEST_F(Text, AssignCopiesEveryField) {
    TMyText* t = box({"a", "b"});
    t->SetIsBorder(true);
    t->SetIsSolid(true);
    t->SetVAlignment(jvBottom);
    t->SetHAlignment(jhCenter);
    t->SetWordWrap(true);
    t->SetCharacterSpace(3);
    TMyText copy(&cad);
    copy.Assign(t);
    EXPECT_TRUE(copy.IsBorder() && copy.IsSolid() && copy.WordWrap());
    EXPECT_EQ(copy.Lines()->Lines(), (QStringList{"a", "b"}));
    EXPECT_EQ(copy.VAlignment(), jvBottom);
    EXPECT_EQ(copy.HAlignment(), jhCenter);
    EXPECT_EQ(copy.CharacterSpace(), 3);
    EXPECT_EQ(t->GetInfo().left(13), "Text: 2 lines");
}

}  // namespace
