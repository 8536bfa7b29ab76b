// Interaction frames in a big drawing: 100,000 figures (rectangles, ellipses
// and lines, 5 to 60 pixels, from a fixed seed) on an A4 page at 96 pixels
// per inch. A frame is one MouseMove and the paint of what it invalidated
// (the previous and the new feedback area), as the next paint event would
// draw it. Each benchmark first times a full repaint of the page (no edit in
// progress) and reports it, the frame and their ratio:
//   drag      a selection of 1,000 shapes dragged to and fro
//   band      a rubber band stretched from corner to corner of the page
//   press     a press and release that picks a shape, against the hit test
//             (GetShapeAtPoint) alone at the same points
// Targets: drag and band frames at most 0.25x a full repaint.
#include "cad/canvas/mycad.h"
#include "cad/shapes/line.h"
#include "cad/shapes/rectangle.h"
#include "platform/system.h"
#include "bench_timing.h"

#include <QImage>
#include <QPainter>
#include <benchmark/benchmark.h>

#include <chrono>
#include <memory>
#include <random>

using namespace faroven;

namespace {

constexpr int kPageWidth = 794;
constexpr int kPageHeight = 1123;
constexpr int kShapes = 100000;
constexpr int kSelected = 1000;

QImage& target() {
    static QImage image(kPageWidth, kPageHeight, QImage::Format_RGB32);
    return image;
}

void paint(TMyCAD& cad, const TRect& area) {
    QPainter painter(&target());
    cad.PaintTo(&painter, area);
}

TRect unite(const TRect& a, const TRect& b) {
    if (a.Width() <= 0 || a.Height() <= 0) return b;
    if (b.Width() <= 0 || b.Height() <= 0) return a;
    return TRect{std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
                 std::max(a.bottom, b.bottom)};
}

TMyCAD& world() {
    static std::unique_ptr<TMyCAD> cad;
    if (cad) return *cad;
    SetScreenPixelsPerInch(96);
    cad = std::make_unique<TMyCAD>();
    cad->GridOperation()->SetGridShow(false);
    cad->SetSnap(false);
    cad->SetCrossLine(false);
    std::mt19937 rng(20240607);
    std::uniform_real_distribution<float> unit(0, 1), side(5, 60);
    for (int i = 0; i < kShapes; ++i) {
        const float k = unit(rng), w = side(rng), h = side(rng);
        const float x = unit(rng) * (kPageWidth - w), y = unit(rng) * (kPageHeight - h);
        TMyShape* s = nullptr;
        if (k < 0.3f) {
            s = new TMyLine(cad.get());
            s->AddPoint({x, y});
            s->AddPoint({x + w, y + h});
        } else {
            s = k < 0.7f ? static_cast<TMyShape*>(new TMyRectangle(cad.get())) : new TMyEllipse(cad.get());
            s->AddPoint({x, y});
            s->AddPoint({x + w, y});
            s->AddPoint({x + w, y + h});
            s->AddPoint({x, y + h});
        }
        s->Brush()->SetColor(clYellow);
        cad->AddNewShape(s);
    }
    paint(*cad, cad->ClientRect());
    return *cad;
}

using faroven::bench::seconds;

// A full repaint of the page without an edit in progress, averaged.
double fullRepaintSeconds(TMyCAD& cad) {
    constexpr int kRepaints = 20;
    paint(cad, cad.ClientRect());
    return seconds([&] {
               for (int i = 0; i < kRepaints; ++i) paint(cad, cad.ClientRect());
           }) /
           kRepaints;
}

// Times frame() in every iteration and reports it against the full repaint
// measured before the edit began.
template <class Frame>
void againstFullRepaint(benchmark::State& state, double full, Frame&& frame) {
    double frames = 0;
    for (auto _ : state) {
        const double a = seconds(frame);
        frames += a;
        state.SetIterationTime(a);
    }
    const double perFrame = frames / double(state.iterations());
    state.counters["frame_us"] = perFrame * 1e6;
    state.counters["full_repaint_us"] = full * 1e6;
    state.counters["ratio"] = perFrame / full;
}

// One move of the edit in progress and the paint of the area it touched.
void moveAndPaint(TMyCAD& cad, TPoint p) {
    const TRect before = cad.EditFeedbackRect();
    cad.MouseMove(ssLeft, p.x, p.y);
    paint(cad, unite(before, cad.EditFeedbackRect()));
}

void BM_DragFrame(benchmark::State& state) {
    TMyCAD& cad = world();
    cad.RemoveAllWorkingShapes();
    // Every hundredth shape, spread over the page; the press is on the first one's middle.
    for (int i = 0; i < kSelected; ++i) cad.AddWorkingShapes(cad.GetShapeByNo(i * (kShapes / kSelected)));
    TMyShape* first = cad.WorkingShapes().front();
    const TMyPoint c = first->GetCenterPointInZoom();
    const TPoint start{Round(c.x), Round(c.y)};
    cad.SetShapeTool(SpSelecting);
    const double full = fullRepaintSeconds(cad);
    cad.MouseDown(mbLeft, ssLeft, start.x, start.y);
    int step = 0;
    moveAndPaint(cad, TPoint{start.x + 5, start.y + 5});  // the first frame takes the picture of the page
    againstFullRepaint(state, full, [&] {
        ++step;
        moveAndPaint(cad, TPoint{start.x + 20 + step % 40, start.y + 10 + step % 30});
    });
    cad.CancelMouseEdit();
    cad.RemoveAllWorkingShapes();
}
BENCHMARK(BM_DragFrame)->UseManualTime()->Unit(benchmark::kMillisecond)->MinTime(2);

void BM_RubberBandFrame(benchmark::State& state) {
    TMyCAD& cad = world();
    cad.RemoveAllWorkingShapes();
    // On an empty layer every press starts a band.
    const int drawingLayer = cad.CurrentLayerId();
    cad.SetOperateAllLayer(false);
    cad.SetCurrentLayerId(cad.NewLayer(QStringLiteral("empty"), true));
    const double full = fullRepaintSeconds(cad);
    cad.MouseDown(mbLeft, ssLeft, 2, 2);
    int step = 0;
    moveAndPaint(cad, TPoint{10, 10});
    againstFullRepaint(state, full, [&] {
        ++step;
        const int k = step % 50;
        moveAndPaint(cad, TPoint{kPageWidth - 1 - k, kPageHeight - 1 - k});
    });
    cad.CancelMouseEdit();
    cad.SetCurrentLayerId(drawingLayer);
    cad.SetOperateAllLayer(true);
}
BENCHMARK(BM_RubberBandFrame)->UseManualTime()->Unit(benchmark::kMillisecond)->MinTime(2);

void BM_PressPick(benchmark::State& state) {
    TMyCAD& cad = world();
    std::mt19937 rng(11);
    std::uniform_int_distribution<int> x(0, kPageWidth - 1), y(0, kPageHeight - 1);
    std::vector<TPoint> pts;
    for (int i = 0; i < 1024; ++i) pts.push_back(TPoint{x(rng), y(rng)});
    // The hit test alone at the same points, for comparison.
    const double hit = seconds([&] {
                           for (const TPoint& p : pts) benchmark::DoNotOptimize(cad.GetShapeAtPoint(p));
                       }) /
                       double(pts.size());
    size_t next = 0;
    const double total = seconds([&] {
        for (auto _ : state) {
            const TPoint p = pts[next++ % pts.size()];
            cad.MouseDown(mbLeft, ssLeft, p.x, p.y);
            cad.MouseUp(mbLeft, 0, p.x, p.y);
        }
    });
    state.counters["hit_test_us"] = hit * 1e6;
    state.counters["ratio_to_hit_test"] = total / double(state.iterations()) / hit;
    cad.RemoveAllWorkingShapes();
}
BENCHMARK(BM_PressPick)->Unit(benchmark::kMicrosecond)->MinTime(2);

}  // namespace
