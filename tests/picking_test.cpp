// Picking and painting through the canvas's spatial index: the shape a press
// picks follows the winner rule (top-most, roots only, visible layers, the
// current layer unless OperateAllLayer) and always equals a plain scan of
// MyShapes, through moves, turns, zooms, new shapes, regrouping and layer
// changes; painting lists every root that reaches the invalid rectangle.
#include "cad/canvas/mycad.h"
#include "cad/geometry/geometry.h"
#include "cad/shapes/polyline.h"
#include "cad/shapes/rectangle.h"
#include "support/shapes.h"
#include "support/test_support.h"

#include <QPainter>
#include <gtest/gtest.h>

#include <random>

using namespace faroven;
using namespace faroven::test;

namespace {

// The winner rule spelled out over the whole list, top-most first.
TMyShape* scanPick(TMyCAD& cad, TPoint p) {
    std::vector<TMyShape*> candidates;
    const auto& shapes = cad.MyShapes();
    for (int i = int(shapes.size()) - 1; i >= 0; --i) {
        TMyShape* s = shapes[size_t(i)];
        if (!s || !cad.IsVisibleLayerByID(s->LayerId())) continue;
        if (!cad.OperateAllLayer() && s->LayerId() != cad.CurrentLayerId()) continue;
        if (cad.IsClickedMeforShape(cad.Canvas(), s, p)) candidates.push_back(s);
    }
    for (TMyShape* c : candidates)
        if (c->kind() == TShapeKind::LineLinkLine && !c->HasParentShape()) return c;
    for (TMyShape* c : candidates)
        if (c->kind() != TShapeKind::LineLinkLine && !c->HasParentShape()) return c;
    return nullptr;
}


// Makes the shapes members of a new group drawn around them.
TMyGroup* group(TMyCAD& cad, std::initializer_list<TMyShape*> members) {
    TMyRect box{1e9f, 1e9f, -1e9f, -1e9f};
    for (TMyShape* m : members) {
        const TMyRect b = m->GetBounds();
        box = {std::min(box.left, b.left), std::min(box.top, b.top), std::max(box.right, b.right), std::max(box.bottom, b.bottom)};
    }
    auto g = AddRect<TMyGroup>(cad, box.left, box.top, box.right, box.bottom);
    std::vector<int32_t> children;
    for (TMyShape* m : members) {
        m->SetParentShapeNo(g->ShapeNo());
        children.push_back(m->ShapeNo());
    }
    g->SetChildShapeNos(children);
    return g;
}

class Picking : public ::testing::Test {
protected:
    void SetUp() override { cad.GridOperation()->SetGridShow(false); }
    TMyCAD cad;
};

TEST_F(Picking, TopMostShapeWins) {
    auto below = AddRect(cad, 10, 10, 100, 100);
    auto above = AddRect(cad, 50, 50, 150, 150);
    EXPECT_EQ(cad.GetShapeAtPoint({70, 70}), above);
    EXPECT_EQ(cad.GetShapeAtPoint({20, 20}), below);
    EXPECT_EQ(cad.GetShapeAtPoint({140, 20}), nullptr);
    above->SetVisible(false);
    EXPECT_EQ(cad.GetShapeAtPoint({70, 70}), below) << "an invisible shape is passed over";
}

TEST_F(Picking, FollowsMovesTurnsAndZoom) {
    auto r = AddRect(cad, 10, 10, 50, 50);
    EXPECT_EQ(cad.GetShapeAtPoint({30, 30}), r);
    r->DragChangeValuedxdy(200, 0);
    EXPECT_EQ(cad.GetShapeAtPoint({30, 30}), nullptr);
    EXPECT_EQ(cad.GetShapeAtPoint({230, 30}), r);
    cad.SetZoom(2);
    EXPECT_EQ(cad.GetShapeAtPoint({230, 30}), nullptr);
    EXPECT_EQ(cad.GetShapeAtPoint({460, 60}), r);
    r->RotateChangeValueByAngle(0.7);
    EXPECT_EQ(cad.GetShapeAtPoint({460, 60}), r) << "the centre stays under the mouse";
    // Points changed in place through the list are seen as well.
    for (TMyPoint& p : r->Points()) p.y += 300;
    EXPECT_EQ(cad.GetShapeAtPoint({460, 60}), nullptr);
    EXPECT_EQ(cad.GetShapeAtPoint({460, 660}), r);
}

TEST_F(Picking, ChildrenAreReachedThroughTheirRootOnly) {
    auto a = AddRect(cad, 10, 10, 40, 40);
    auto b = AddRect(cad, 300, 300, 340, 340);
    auto g = group(cad, {a, b});
    EXPECT_EQ(cad.GetShapeAtPoint({20, 20}), g);
    EXPECT_EQ(cad.GetShapeAtPoint({100, 100}), g) << "the group's rectangle is hit although it draws nothing";
    EXPECT_EQ(cad.GetShapeAtPoint({400, 400}), nullptr);
    // A child moved out of the group's rectangle is still reached through it.
    a->DragChangeValuedxdy(500, 0);
    EXPECT_EQ(cad.GetShapeAtPoint({520, 20}), g);
}

TEST_F(Picking, LineBandsReachBeyondTheLinesBox) {
    auto l = new TMyLine(&cad);
    l->AddPoint({100, 100});
    l->AddPoint({200, 100});
    cad.AddNewShape(l);
    EXPECT_EQ(cad.GetShapeAtPoint({150, 92}), l);
    EXPECT_EQ(cad.GetShapeAtPoint({150, 107}), l);
    EXPECT_EQ(cad.GetShapeAtPoint({150, 108}), nullptr);
}

TEST_F(Picking, AgreesWithAPlainScanThroughRandomEdits) {
    std::mt19937 rng(2024);
    std::uniform_real_distribution<float> pos(0, 700), size(3, 80), unit(0, 1);
    const int second = cad.NewLayer("Second", true);
    std::vector<TMyShape*> roots;
    auto addRandom = [&] {
        const float x = pos(rng), y = pos(rng), w = size(rng), h = size(rng);
        const float kind = unit(rng);
        TMyShape* s = nullptr;
        if (kind < 0.3f) {
            s = AddRect(cad, x, y, x + w, y + h);
        } else if (kind < 0.5f) {
            s = AddRect<TMyEllipse>(cad, x, y, x + w, y + h);
        } else if (kind < 0.75f) {
            auto l = new TMyLine(&cad);
            l->AddPoint({x, y});
            l->AddPoint({x + w * (unit(rng) < 0.3f ? 0 : 1), y + h * (unit(rng) < 0.3f ? 0 : 1)});
            cad.AddNewShape(l);
            s = l;
        } else if (kind < 0.9f) {
            auto p = new TMyPolygon(&cad);
            for (int i = 0; i < 5; ++i) p->AddPoint({x + w * unit(rng), y + h * unit(rng)});
            cad.AddNewShape(p);
            s = p;
        } else {
            auto p = new TMyRuleLine(&cad);
            p->AddPoint({x, y});
            p->AddPoint({x + w, y + h / 4});
            cad.AddNewShape(p);
            s = p;
        }
        if (unit(rng) < 0.3f) s->RotateChangeValueByAngle(unit(rng) * 3);
        if (unit(rng) < 0.3f) s->SetLayerId(second);
        roots.push_back(s);
    };
    for (int i = 0; i < 120; ++i) addRandom();
    auto compare = [&](const char* step) {
        std::uniform_int_distribution<int> px(-20, int(760 * cad.Zoom()));
        for (int i = 0; i < 300; ++i) {
            const TPoint p{px(rng), px(rng)};
            ASSERT_EQ(cad.GetShapeAtPoint(p), scanPick(cad, p)) << step << " at " << p.x << "," << p.y;
        }
        // Right at the shapes' points, where hits are most likely.
        for (TMyShape* s : cad.MyShapes()) {
            const TPoint p = MyPtToPt(s->GetPointInZoom(0));
            for (TPoint q : {p, TPoint{p.x + 1, p.y + 1}, TPoint{p.x - 3, p.y + 5}})
                ASSERT_EQ(cad.GetShapeAtPoint(q), scanPick(cad, q)) << step << " at " << q.x << "," << q.y;
        }
    };
    compare("start");
    for (int round = 0; round < 12; ++round) {
        std::uniform_int_distribution<size_t> pick(0, roots.size() - 1);
        for (int i = 0; i < 10; ++i) roots[pick(rng)]->DragChangeValuedxdy(unit(rng) * 60 - 30, unit(rng) * 60 - 30);
        roots[pick(rng)]->RotateChangeValueByAngle(0.4);
        roots[pick(rng)]->SetVisible(unit(rng) < 0.5f);
        for (int i = 0; i < 3; ++i) addRandom();
        compare("after moves");
        if (round % 3 == 0) {
            // Group two free roots.
            std::vector<TMyShape*> free;
            for (TMyShape* s : roots)
                if (!s->HasParentShape() && s->kind() != TShapeKind::Group) free.push_back(s);
            if (free.size() >= 2) roots.push_back(group(cad, {free[0], free[1]}));
            compare("after grouping");
        }
        if (round % 4 == 1) {
            cad.SetZoom(round % 8 == 1 ? 1.5 : 0.75);
            compare("after zooming");
        }
        if (round % 4 == 2) {
            if (cad.IsVisibleLayerByID(second))
                cad.InVisibleLayerByID(second);
            else
                cad.VisibleAllLayer();
            cad.SetOperateAllLayer(!cad.OperateAllLayer());
            compare("after layer changes");
        }
    }
}

// ---- Painting through the index ----------------------------------------------------------------

TEST_F(Picking, PaintingListsRootsReachedThroughTheirChildren) {
    auto a = AddRect(cad, 10, 10, 40, 40);
    auto b = AddRect(cad, 300, 300, 340, 340);
    auto g = group(cad, {a, b});
    a->DragChangeValuedxdy(400, 0);  // outside the group's rectangle now
    auto other = AddRect(cad, 600, 600, 640, 640);
    QImage image(cad.Width(), cad.Height(), QImage::Format_RGB32);
    QPainter painter(&image);
    cad.PaintTo(&painter, TRect{405, 5, 450, 50});
    EXPECT_EQ(cad.PaintedShapes(), (std::vector<int>{g->ShapeNo()}));
    cad.PaintTo(&painter, TRect{0, 0, cad.Width(), cad.Height()});
    EXPECT_EQ(cad.PaintedShapes(), (std::vector<int>{g->ShapeNo(), other->ShapeNo()})) << "roots, in list order";
}

TEST_F(Picking, PaintedShapesCoverEveryRootWithAPointInTheRectangle) {
    std::mt19937 rng(99);
    std::uniform_real_distribution<float> pos(0, 700), size(2, 150);
    for (int i = 0; i < 200; ++i) {
        const float x = pos(rng), y = pos(rng);
        AddRect(cad, x, y, x + size(rng), y + size(rng));
    }
    QImage image(cad.Width(), cad.Height(), QImage::Format_RGB32);
    QPainter painter(&image);
    std::uniform_int_distribution<int> corner(0, 700), extent(1, 120);
    for (int i = 0; i < 40; ++i) {
        const int l = corner(rng), t = corner(rng);
        const TRect rect{l, t, l + extent(rng), t + extent(rng)};
        cad.PaintTo(&painter, rect);
        const std::vector<int>& painted = cad.PaintedShapes();
        EXPECT_TRUE(std::is_sorted(painted.begin(), painted.end()));
        for (int no = 0; no < cad.GetShapesCount(); ++no) {
            TMyShape* s = cad.GetShapeByNo(no);
            const bool required = cad.IsPtinRegion(rect, s) || cad.IsShapeBigthanRegion(rect, s);
            const bool listed = std::binary_search(painted.begin(), painted.end(), no);
            if (required) EXPECT_TRUE(listed) << "shape " << no << " in rectangle " << i;
            TRect overlap;
            if (listed) EXPECT_TRUE(IntersectRect(overlap, s->GetPaintBoundsInZoom(), rect) ||
                                    IntersectRect(overlap, s->GetHitBoundsInZoom(), rect))
                << "shape " << no << " listed without reaching rectangle " << i;
        }
    }
}

TEST_F(Picking, NewShapesShareTheCanvasFontUntilTheyChangeTheirOwn) {
    cad.Font()->SetSize(13);
    TMyRectangle a(&cad), b(&cad);
    EXPECT_EQ(&a.FontRef(), &b.FontRef()) << "one shared font";
    EXPECT_EQ(a.FontRef().Size(), 13);
    a.Font()->SetSize(20);
    EXPECT_EQ(a.FontRef().Size(), 20);
    EXPECT_EQ(b.FontRef().Size(), 13) << "changing one shape's font leaves the others alone";
    cad.Font()->SetSize(9);
    TMyRectangle c(&cad);
    EXPECT_EQ(c.FontRef().Size(), 9) << "a later canvas font is taken by later shapes";
    EXPECT_EQ(b.FontRef().Size(), 13) << "and not by earlier ones";
}

}  // namespace
