// Random edit sequences over many seeds: adding, deleting, grouping,
// ungrouping, z-order, swaps, alignment, spacing, flips, locks, resizes,
// connections, splitting lines, mouse gestures (drags, resizes, rotations,
// rubber bands, clicks) and drawing with the tools, undo and redo. After every
// step the drawing's references must be intact; taking
// back a change or an addition must give back the drawing exactly, and
// redoing then undoing again must give back the same drawing.
#include "cad/canvas/mycad.h"
#include "cad/shapes/line.h"
#include "cad/shapes/polyline.h"
#include "cad/shapes/rectangle.h"
#include "support/drawing_state.h"

#include <gtest/gtest.h>
#include <random>

using namespace faroven;
using namespace faroven::test;

namespace {

class Sequence {
public:
    explicit Sequence(unsigned seed) : m_rng(seed) {
        m_cad.NewLayer("second", true);
        m_cad.SetDisableTextInput(true);
    }

    void Run(int steps) {
        for (int i = 0; i < 8; ++i) addShape();
        for (int i = 0; i < steps && !::testing::Test::HasFailure(); ++i) {
            const std::string before = DrawingState(m_cad);
            const int op = pick(18);
            m_log += std::to_string(op) + ' ';
            bool exact = false;  // taking this step back restores the drawing exactly
            switch (op) {
            case 0: addShape(); exact = true; break;
            case 1: if (TMyShape* s = anyShape()) m_cad.DeleteShapeById(s->GetShapeId()); break;
            case 2: group(); exact = true; break;
            case 3: m_cad.UnGroupShape(anyRoot()); break;
            case 4: zOrder(); break;
            case 5: m_cad.SwapShape(anyShape(), anyShape()); continue;  // not recorded
            case 6: align(); exact = true; break;
            case 7: spread(); exact = true; break;
            case 8: flip(); exact = true; break;
            case 9: lock(); exact = true; break;
            case 10: resize(); exact = true; break;
            case 11: m_cad.Undo(); break;
            case 12: m_cad.Redo(); break;
            case 13: undoRedoUndo(); break;
            case 14: link(); exact = true; break;
            case 15: m_cad.BreakLine(anyShape()); break;  // two steps
            case 16: mouseGesture(); exact = true; break;
            case 17: drawWithTool(); exact = true; break;
            }
            SCOPED_TRACE("after " + m_log);
            ExpectIntact(m_cad);
            if (exact && m_cad.UndoRecords().size() && before != DrawingState(m_cad)) {
                m_cad.Undo();
                ASSERT_EQ(DrawingState(m_cad), before) << "taking back op " << op << " after " << m_log;
                ExpectIntact(m_cad);
                m_cad.Redo();
                ExpectIntact(m_cad);
            }
        }
    }
    const std::string& Log() const { return m_log; }

private:
    int pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(m_rng); }
    float coord() { return float(pick(400)); }

    TMyShape* anyShape() { return m_cad.GetShapesCount() ? m_cad.GetShapeByNo(pick(m_cad.GetShapesCount())) : nullptr; }
    TMyShape* anyRoot() {
        std::vector<TMyShape*> roots;
        for (TMyShape* s : m_cad.MyShapes())
            if (!s->HasParentShape()) roots.push_back(s);
        return roots.empty() ? nullptr : roots[size_t(pick(int(roots.size())))];
    }
    std::vector<TMyShape*> someRoots(int most) {
        std::vector<TMyShape*> out;
        for (int i = pick(most) + 1; i > 0; --i)
            if (TMyShape* s = anyRoot(); s && std::find(out.begin(), out.end(), s) == out.end()) out.push_back(s);
        return out;
    }

    void addShape() {
        m_cad.SetCurrentLayerId(m_cad.GetLayerIdByNo(pick(2)));
        const float x = coord(), y = coord();
        TMyShape* s = nullptr;
        switch (pick(4)) {
        case 0: s = new TMyRectangle(&m_cad); break;
        case 1: s = new TMyEllipse(&m_cad); break;
        case 2: {
            auto* p = new TMyPolygon(&m_cad);
            for (TMyPoint q : {TMyPoint{x, y}, TMyPoint{x + 30, y + 5}, TMyPoint{x + 10, y + 40}, TMyPoint{x, y}}) p->AddPoint(q);
            s = p;
            break;
        }
        default: {
            auto* line = new TMyLine(&m_cad);
            line->AddPoint({x, y});
            line->AddPoint({x + 50, y + 20});
            s = line;
        }
        }
        if (s->GetPointsCount() == 0) {
            for (TMyPoint q : {TMyPoint{x, y}, TMyPoint{x + 40, y}, TMyPoint{x + 40, y + 25}, TMyPoint{x, y + 25}})
                s->AddPoint(q);
            for (TMyPoint q : {TMyPoint{x, y + 12}, TMyPoint{x + 20, y}, TMyPoint{x + 40, y + 12}}) s->AddLinkPoint(q);
        }
        s->Drawed({}, {});
        s->SetInfo(QString::number(pick(100)));
        m_cad.AddNewShape(s);
        // A line may join two shapes.
        if (auto* line = dynamic_cast<TMyLine*>(s); line && m_cad.GetShapesCount() > 2 && pick(2)) {
            TMyShape* a = m_cad.GetShapeByNo(pick(m_cad.GetShapesCount() - 1));
            TMyShape* b = m_cad.GetShapeByNo(pick(m_cad.GetShapesCount() - 1));
            line->SetStartSpNo(a->ShapeNo());
            line->SetEndSpNo(b->ShapeNo());
            AddLinklineShape(a, uint32_t(line->ShapeNo()));
            AddLinklineShape(b, uint32_t(line->ShapeNo()));
        }
        m_cad.PushtoUndoRedoShapeList({s}, ACT_ADD);
    }

    // A connector between link points of two shapes (of any layer).
    void link() {
        TMyShape* a = anyShape();
        TMyShape* b = anyShape();
        if (a && b && a->GetLinkPointsCount() && b->GetLinkPointsCount())
            m_cad.CreateLink("link", a, pick(b->GetLinkPointsCount()), b, pick(a->GetLinkPointsCount()));
    }

    void group() {
        std::vector<TMyShape*> shapes = someRoots(3);
        if (!shapes.empty()) m_cad.GroupShapes(shapes);
    }

    void zOrder() {
        TMyShape* s = anyRoot();
        switch (pick(4)) {
        case 0: m_cad.BringToFront(s); break;
        case 1: m_cad.SendToBack(s); break;
        case 2: m_cad.BringToFrontByStep(s); break;
        default: m_cad.SendToBackByStep(s); break;
        }
    }

    void align() {
        m_cad.RemoveAllWorkingShapes();
        for (TMyShape* s : someRoots(4)) m_cad.AddWorkingShapes(s);
        switch (pick(6)) {
        case 0: m_cad.AlignLeft(); break;
        case 1: m_cad.AlignRight(); break;
        case 2: m_cad.AlignTop(); break;
        case 3: m_cad.AlignBottom(); break;
        case 4: m_cad.AlignHorizontalCenter(); break;
        default: m_cad.AlignVerticalCenter(); break;
        }
    }

    void spread() {
        const std::vector<TMyShape*> shapes = someRoots(5);
        TUndoChangeScope step(m_cad, shapes);
        if (pick(2)) m_cad.AverageWidth(shapes);
        else m_cad.AverageHeight(shapes);
    }

    void flip() {
        if (pick(2)) m_cad.FlipHoriz(anyRoot());
        else m_cad.FlipVert(anyRoot());
    }

    void lock() {
        TMyShape* s = anyRoot();
        if (!s) return;
        TUndoChangeScope step(m_cad, {s});
        m_cad.LockUnLockforShapes(s, pick(2));
    }

    void resize() {
        TMyShape* s = anyRoot();
        if (!s) return;
        TUndoChangeScope step(m_cad, {s});
        m_cad.SizeShape(s, pick(s->GetPointsCount()), TPoint{pick(500), pick(500)});
    }

    // A press, a move and a release with the selecting or rotating tool, often
    // on a shape's point so that hot marks, bodies and empty paper all get hit.
    void mouseGesture() {
        m_cad.SetShapeTool(pick(3) == 0 ? SpRotateSelecting : SpSelecting);
        TPoint from{pick(500), pick(500)};
        if (TMyShape* s = anyShape(); s && s->GetPointsCount() && pick(4) > 0) {
            const TMyPoint p = s->GetPointInZoom(pick(s->GetPointsCount()));
            from = TPoint{Round(p.x) + pick(5) - 2, Round(p.y) + pick(5) - 2};
        }
        const TShiftState shift = pick(4) == 0 ? ssShift : 0;
        const TPoint to = pick(3) == 0 ? from : TPoint{from.x + pick(81) - 40, from.y + pick(81) - 40};
        m_cad.MouseDown(mbLeft, shift, from.x, from.y);
        m_cad.MouseMove(shift | ssLeft, to.x, to.y);
        m_cad.MouseUp(mbLeft, shift, to.x, to.y);
    }

    // Two clicks with a drawing tool; a shape that they do not finish is dropped.
    void drawWithTool() {
        const TDrawTool tools[] = {SpRectangle, SpEllipse, SpLine, SpLinkLine, SpText};
        m_cad.SetShapeTool(tools[pick(5)]);
        for (int i = 0; i < 2; ++i) {
            const int x = pick(500), y = pick(500);
            m_cad.MouseDown(mbLeft, 0, x, y);
            m_cad.MouseUp(mbLeft, 0, x, y);
        }
        m_cad.SetShapeTool(SpSelecting);
    }

    void undoRedoUndo() {
        if (!m_cad.CanUndo()) return;
        m_cad.Undo();
        const std::string undone = DrawingState(m_cad);
        const QString action = m_cad.RedoActionName();
        m_cad.Redo();
        ExpectIntact(m_cad);
        m_cad.Undo();
        EXPECT_EQ(DrawingState(m_cad), undone) << "redo then undo of " << action.toStdString() << " after " << m_log;
    }

    std::mt19937 m_rng;
    TMyCAD m_cad;
    std::string m_log;
};

// FAROVEN_UNDO_SEEDS=N runs N seeds instead of 60 (a longer soak);
// FAROVEN_UNDO_FIRST_SEED=S starts at seed S (to replay a failure).
TEST(UndoSequence, RandomEditsKeepTheDrawingIntact) {
    const unsigned seeds = qEnvironmentVariableIsSet("FAROVEN_UNDO_SEEDS") ? qEnvironmentVariableIntValue("FAROVEN_UNDO_SEEDS") : 60;
    const unsigned first = std::max(1, qEnvironmentVariableIntValue("FAROVEN_UNDO_FIRST_SEED"));
    for (unsigned seed = first; seed < first + seeds && !::testing::Test::HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Sequence(seed).Run(80);
    }
}

}  // namespace
