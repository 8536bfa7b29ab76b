// The marker (TMyLinkPoint) and the junction (TMyLineLinkLine): one press at
// every zoom, link points that follow every edit, their pixels, the circle's
// hit test, and the junction winning a press over a bigger shape above it.
#include "cad/canvas/mycad.h"
#include "cad/geometry/geometry.h"
#include "cad/geometry/markers.h"
#include "cad/shapes/link_point.h"
#include "support/pixels.h"
#include "support/shapes.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <utility>

using namespace faroven;
using namespace faroven::test;

namespace {

void expectNear(TMyPoint actual, TMyPoint expected, const char* what) {
    EXPECT_NEAR(actual.x, expected.x, 1e-3) << what;
    EXPECT_NEAR(actual.y, expected.y, 1e-3) << what;
}

// The shape's link points (or, with corners, its points) are these, in order.
void expectPoints(const TMyShape* s, std::vector<TMyPoint> expected, bool corners = false) {
    ASSERT_EQ(corners ? s->GetPointsCount() : s->GetLinkPointsCount(), int(expected.size()));
    for (int i = 0; i < int(expected.size()); ++i)
        expectNear(corners ? s->GetPoint(i) : s->GetLinkPoint(i), expected[size_t(i)], corners ? "corner" : "link");
}

// A shape placed with one press (pixels) and added as the canvas adds a drawn one.
template <class T>
T* press(TMyCAD& cad, TPoint p) {
    auto s = new T(&cad);
    s->AddPointByMouse(p);
    s->Drawed(p, p);
    cad.AddNewShape(s);
    return s;
}

// The junction's invariant: a square frame and link points on the circle at
// its top, right, bottom and left, whatever was done to it.
void expectLinksOnCircle(TMyLineLinkLine* j) {
    const TMyPoint c = j->GetCenterPoint();
    const float r = j->Radius();
    EXPECT_NEAR(j->UprightWidth(), j->UprightHeight(), 1e-3) << "the frame stays square";
    expectPoints(j, {{c.x, c.y - r}, {c.x + r, c.y}, {c.x, c.y + r}, {c.x - r, c.y}});
}

// ---- Creation and edits -----------------------------------------------------------------------

class LinkShapes : public ::testing::Test {
protected:
    void SetUp() override { cad.GridOperation()->SetGridShow(false); }
    TMyCAD cad;
};

TEST_F(LinkShapes, OnePressMakesTheFrameAndItsLinkPointsAtEveryZoom) {
    for (double zoom : {1.0, 2.0}) {
        cad.SetZoom(zoom);
        const TPoint at{int(40 * zoom), int(60 * zoom)};
        TMyLinkPoint m(&cad);
        TMyLineLinkLine j(&cad);
        for (TMyRectangle* s : {(TMyRectangle*)&m, (TMyRectangle*)&j}) {
            s->AddPointByMouse(at);
            EXPECT_TRUE(s->IsDrawingFinished(mbLeft, at));
            s->AddPointByMouse({at.x + 50, at.y + 30});  // a later press adds nothing
            s->Drawed(at, at);                         // places the link points again, not twice
        }
        expectPoints(&m, {{36, 56}, {44, 56}, {44, 64}, {36, 64}}, true);
        expectPoints(&m, {{40, 60}});
        expectPoints(&j, {{34, 54}, {46, 54}, {46, 66}, {34, 66}}, true);
        expectPoints(&j, {{40, 54}, {46, 60}, {40, 66}, {34, 60}});
    }
}

TEST_F(LinkShapes, MarkerLinkPointStaysOnTheCentreThroughEdits) {
    auto m = press<TMyLinkPoint>(cad, {40, 60});
    m->DragChangeValuedxdy(10, -4);
    expectNear(m->GetLinkPoint(0), {50, 56}, "moved");
    // Corner 2 dragged 12 right and 9 down of the fixed corner (46, 52): the
    // larger side wins and the square keeps corner 0.
    m->SetHotIndex(2);
    m->SizeChangeValue({54, 60}, {58, 61});
    expectNear(m->GetPoint(0), {46, 52}, "the opposite corner stays");
    expectNear(m->GetPoint(2), {58, 64}, "square of the larger side");
    EXPECT_EQ(m->Size(), 12);
    expectPoints(m, {{52, 58}});
    m->RotateChangeValueByAngle(0.7);
    m->FlipHoriz();
    expectNear(m->GetLinkPoint(0), {52, 58}, "turned and mirrored about the centre");
    m->SetSize(20);
    EXPECT_NEAR(m->UprightWidth(), 20, 1e-3);
    EXPECT_NEAR(m->UprightHeight(), 20, 1e-3);
    expectNear(m->GetCenterPoint(), {52, 58}, "SetSize keeps the centre");
    expectPoints(m, {{52, 58}});
    EXPECT_NEAR(m->GetPoint(1).y - m->GetPoint(0).y, 20 * std::sin(-0.7f), 1e-3) << "the square stays turned";
}

TEST_F(LinkShapes, JunctionLinkPointsStayOnTheCircleAtTheFourDirections) {
    auto j = press<TMyLineLinkLine>(cad, {40, 60});
    j->DragChangeValuedxdy(10, -4);
    expectNear(j->GetLinkPoint(0), {50, 50}, "moved top");
    j->RotateChangeValueByAngle(0.3);
    expectNear(j->GetLinkPoint(0), {50, 50}, "a turn leaves the top link point on top");
    expectLinksOnCircle(j);
    const TMyPoint fixed = j->GetPoint(0);
    const TPoint corner = MyPtToPt(j->GetPointInZoom(2));
    j->SetHotIndex(2);
    j->SizeChangeValue(corner, {corner.x + 9, corner.y + 2});
    expectNear(j->GetPoint(0), fixed, "the opposite corner stays");
    EXPECT_GT(j->Radius(), 6.5f) << "grown";
    expectLinksOnCircle(j);
    j->FlipVert();
    j->FlipHoriz();
    expectLinksOnCircle(j);
    // A corner dragged across the opposite one is refused.
    const TArrMyPoint before = std::as_const(*j).Points();
    const TMyPoint p0 = j->GetPointInZoom(0), p2 = j->GetPointInZoom(2);
    j->SetHotIndex(0);
    j->SizeChangeValue(MyPtToPt(p0), MyPtToPt({p2.x + (p2.x - p0.x) / 2, p2.y + (p2.y - p0.y) / 2}));
    expectPoints(j, before, true);
}

TEST_F(LinkShapes, AssignCopiesSizeAndInfoIsInTheCanvasUnit) {
    auto m = press<TMyLinkPoint>(cad, {40, 60});
    m->SetSize(20);
    TMyLinkPoint full(&cad), plain(&cad);
    full.Assign(m);
    plain.AssignWithoutRelation(m);
    for (TMyLinkPoint* copy : {&full, &plain}) {
        EXPECT_EQ(copy->Size(), 20);
        expectPoints(copy, {{40, 60}});
    }
    m->SetSize(96);
    EXPECT_EQ(m->GetInfo(), QStringLiteral("Link point: size 25.40 mm"));
    auto j = AddRect<TMyLineLinkLine>(cad, 0, 0, 48, 48);
    EXPECT_EQ(j->GetInfo(), QStringLiteral("Connector point: diameter 12.70 mm"));
    expectLinksOnCircle(j);  // a junction made by code gets its link points too
}

// ---- Pixels and hits --------------------------------------------------------------------------

TEST_F(LinkShapes, MarkerDrawsACrossInASquare) {
    cad.SetShowHotLink(false);  // the canvas's link crosses would cover the centre
    auto m = press<TMyLinkPoint>(cad, {40, 60});
    m->Pen()->SetColor(clRed);
    m->Brush()->SetColor(clBlue);
    const QImage image = cad.PaintToImage();
    EXPECT_EQ(InkBounds(image, clRed), Rect(36, 56, 45, 65)) << Ascii(image.copy(30, 50, 20, 20), clRed);
    for (TPoint p : {Point(40, 60), Point(38, 58), Point(42, 58)})
        EXPECT_EQ(PixelAt(image, p.x, p.y), clRed) << "diagonal";
    for (TPoint p : {Point(41, 58), Point(40, 57)}) EXPECT_EQ(PixelAt(image, p.x, p.y), clBlue) << "filled between";
}

TEST_F(LinkShapes, JunctionDrawsARingAndADotAndIsHitInsideTheCircleOnly) {
    cad.SetZoom(4);
    cad.SetShowHotLink(false);
    auto j = press<TMyLineLinkLine>(cad, {200, 160});  // radius 24 pixels, dot 12
    j->Pen()->SetColor(clRed);
    j->Brush()->SetColor(clBlue);
    const QImage image = cad.PaintToImage();
    EXPECT_EQ(InkBounds(image, clRed), Rect(176, 136, 225, 185));
    // Along the middle row: dot, brush, ring; the frame's corner stays empty.
    const TColor row[] = {clRed, clRed, clBlue, clBlue, clRed};
    const int xs[] = {200, 211, 215, 223, 224};
    for (int i = 0; i < 5; ++i) EXPECT_EQ(PixelAt(image, xs[i], 160), row[i]) << xs[i];
    EXPECT_EQ(PixelAt(image, 179, 139), clWhite);
    EXPECT_TRUE(j->IsClickedMe(nullptr, {176, 160})) << "the left edge is in";
    EXPECT_FALSE(j->IsClickedMe(nullptr, {175, 160}));
    EXPECT_FALSE(j->IsClickedMe(nullptr, {224, 160})) << "the right edge is out, as in every polygon region";
    EXPECT_FALSE(j->IsClickedMe(nullptr, {179, 139})) << "inside the frame but outside the circle";
    int hits = 0;
    for (int y = 130; y < 190; ++y)
        for (int x = 170; x < 230; ++x)
            if (j->IsClickedMe(nullptr, {x, y})) {
                ++hits;
                ASSERT_NE(PixelAt(image, x, y), clWhite) << "a hit on an unpainted pixel: " << x << "," << y;
            }
    EXPECT_GT(hits, 1700) << "about pi * 24^2";
}

TEST_F(LinkShapes, JunctionWinsAPressUnderABiggerShape) {
    auto j = press<TMyLineLinkLine>(cad, {60, 60});
    press<TMyLinkPoint>(cad, {120, 60});
    auto big = AddRect(cad, 0, 0, 200, 200);
    EXPECT_EQ(cad.GetShapeAtPoint({60, 60}), j);
    EXPECT_EQ(cad.GetShapeAtPoint({55, 55}), big) << "the junction's frame corner is not the junction";
    EXPECT_EQ(cad.GetShapeAtPoint({120, 60}), big) << "a marker does not win over the shape above it";
}

TEST_F(LinkShapes, RubberBandsEraseThemselves) {
    auto m = press<TMyLinkPoint>(cad, {60, 60});
    auto j = press<TMyLineLinkLine>(cad, {120, 60});
    TMyLineLinkLine fresh(&cad);  // before its press the band follows the mouse
    const std::function<void(TCanvas*)> bands[] = {
        [&](TCanvas* c) { m->Draging(c, {60, 60}, {75, 90}); },
        [&](TCanvas* c) { m->Drawing(c, {60, 60}, {60, 60}); },
        [&](TCanvas* c) { j->Draging(c, {120, 60}, {100, 130}); },
        [&](TCanvas* c) { fresh.Drawing(c, {30, 30}, {30, 30}); }};
    for (size_t i = 0; i < std::size(bands); ++i) {
        TBitmap bmp(200, 200, pf24bit);
        FillPattern(bmp);
        const QImage before = bmp.Image().copy();
        bands[i](bmp.Canvas());
        EXPECT_GT(DiffCount(bmp.Image(), before), 10) << "band " << i << " shows something";
        bands[i](bmp.Canvas());
        EXPECT_EQ(DiffCount(bmp.Image(), before), 0) << "band " << i << " erases itself";
    }
}

}  // namespace
