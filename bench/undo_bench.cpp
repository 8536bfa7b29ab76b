// The cost of one undo step must not grow with the drawing: the history keeps
// copies only of the shapes a step touches.
//   move     record "ACT_CHANGE" for one shape, move it, take the step back
//   delete   delete one shape (recorded as "ACT_DELETE"), take it back
//            (deletion renumbers the list, so it is linear by nature)
//   memory   heap bytes of a full 10-step history of single-shape edits, as
//            a share of the drawing's own heap bytes (mallinfo2 deltas)
// at 1,000 and 100,000 rectangles. Targets: move at 100,000 at most 2x its
// cost at 1,000; delete linear; memory under 1 %.
#include "cad/canvas/mycad.h"
#include "cad/shapes/rectangle.h"

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <memory>

using namespace faroven;

namespace {

size_t heapBytes() { return mallinfo2().uordblks; }

std::unique_ptr<TMyCAD> drawing(int n) {
    auto cad = std::make_unique<TMyCAD>();
    for (int i = 0; i < n; ++i) {
        auto* r = new TMyRectangle(cad.get());
        const float x = float(i % 700), y = float((i / 700) % 1000);
        for (TMyPoint p : {TMyPoint{x, y}, TMyPoint{x + 20, y}, TMyPoint{x + 20, y + 10}, TMyPoint{x, y + 10}})
            r->AddPoint(p);
        r->Drawed({}, {});
        cad->AddNewShape(r);
    }
    return cad;
}

void BM_UndoMoveStep(benchmark::State& state) {
    const auto cad = drawing(int(state.range(0)));
    TMyShape* shape = cad->GetShapeByNo(cad->GetShapesCount() / 2);
    for (auto _ : state) {
        cad->PushtoUndoRedoShapeList({shape}, ACT_CHANGE);
        cad->DragChangeValueDxDyforShapes(shape, 3, 4);
        cad->PopFromUndoRedoShapeList();
    }
}
BENCHMARK(BM_UndoMoveStep)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);

void BM_UndoDeleteStep(benchmark::State& state) {
    const auto cad = drawing(int(state.range(0)));
    for (auto _ : state) {
        // Taking the deletion back appends the shape, so each round deletes
        // the shape in the middle of the list anew.
        cad->DeleteShapeById(cad->GetShapeByNo(cad->GetShapesCount() / 2)->GetShapeId());
        cad->PopFromUndoRedoShapeList();
    }
}
BENCHMARK(BM_UndoDeleteStep)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);

void BM_UndoHistoryMemory(benchmark::State& state) {
    for (auto _ : state) {
        const size_t empty = heapBytes();
        const auto cad = drawing(int(state.range(0)));
        const size_t withDrawing = heapBytes();
        for (int i = 0; i < 10; ++i) {
            TMyShape* shape = cad->GetShapeByNo(i * 97 % cad->GetShapesCount());
            cad->PushtoUndoRedoShapeList({shape}, ACT_CHANGE);
            cad->DragChangeValueDxDyforShapes(shape, 1, 1);
        }
        const size_t withHistory = heapBytes();
        state.counters["drawing_bytes"] = double(withDrawing - empty);
        state.counters["history_bytes"] = double(withHistory - withDrawing);
        state.counters["history_share_pct"] = 100.0 * double(withHistory - withDrawing) / double(withDrawing - empty);
    }
}
BENCHMARK(BM_UndoHistoryMemory)->Arg(100000)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
