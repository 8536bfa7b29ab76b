// Re-routing connectors in a big diagram: 8,000 boxes in a grid, each with a
// link point in the middle of every side, and 2,000 orthogonal connectors
// (10,000 shapes) between boxes two or three cells apart, so that most
// routes have to go round the boxes between their ends. One hub box carries
// 20 of the connectors. The drawing is shown at zoom 0.5 (2,400 x 1,920
// pixels: the whole diagram on a large screen).
//
//   move hub        move the hub box one unit and route its 20 connectors again
//   reroute all     route all 2,000 connectors again
// Each reports its time and, as the counter "x_repaint", its ratio to one
// full repaint of the same drawing measured in the same run (PaintTo of the
// whole control). Most of that repaint goes to the 32,000 link crosses that
// the canvas shows by default (ShowHotLink), so "x_plain" gives the ratio to
// a repaint without them as well. Target: move hub <= 0.1x.
#include "cad/canvas/mycad.h"
#include "cad/shapes/link.h"
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

constexpr int kColumns = 100, kRows = 80;
constexpr float kCell = 48, kBoxW = 24, kBoxH = 16;

struct Diagram {
    std::unique_ptr<TMyCAD> cad;
    TMyShape* hub = nullptr;
    std::vector<TMyLinkLine*> lines;
    QImage target;
};

TMyShape* boxAt(TMyCAD& cad, int column, int row) { return cad.GetShapeByNo(row * kColumns + column); }

Diagram& diagram() {
    static Diagram d;
    if (d.cad) return d;
    SetScreenPixelsPerInch(96);
    d.cad = std::make_unique<TMyCAD>();
    TMyCAD& cad = *d.cad;
    cad.GridOperation()->SetGridShow(false);
    cad.SetUndoRedoSize(0);
    cad.SetPageStyle(CustomerPage);
    cad.SetPageWidth(uint32_t(kColumns * kCell / 96 * 25.4) + 1);
    cad.SetPageHeight(uint32_t(kRows * kCell / 96 * 25.4) + 1);
    cad.SetZoom(0.5);
    for (int row = 0; row < kRows; ++row)
        for (int column = 0; column < kColumns; ++column) {
            const float x = column * kCell + 12, y = row * kCell + 16;
            auto* r = new TMyRectangle(&cad);
            for (TMyPoint p : {TMyPoint{x, y}, {x + kBoxW, y}, {x + kBoxW, y + kBoxH}, {x, y + kBoxH}}) r->AddPoint(p);
            r->AddLinkPoint({x, y + kBoxH / 2});
            r->AddLinkPoint({x + kBoxW / 2, y});
            r->AddLinkPoint({x + kBoxW, y + kBoxH / 2});
            r->AddLinkPoint({x + kBoxW / 2, y + kBoxH});
            cad.AddNewShape(r);
        }
    auto join = [&](TMyShape* a, int pa, TMyShape* b, int pb) {
        d.lines.push_back(shape_cast<TMyLinkLine>(cad.GetShapeByID(cad.CreateLink("", a, pb, b, pa))));
    };
    // The hub in the middle: 20 connectors to boxes two and three cells away.
    d.hub = boxAt(cad, kColumns / 2, kRows / 2);
    const int ring[20][2] = {{-2, -2}, {0, -2}, {2, -2}, {-2, 0}, {2, 0}, {-2, 2}, {0, 2}, {2, 2}, {-3, -1}, {3, -1},
                             {-3, 1},  {3, 1},  {-1, -3}, {1, -3}, {-1, 3}, {1, 3}, {-3, -3}, {3, 3}, {-3, 3}, {3, -3}};
    for (int i = 0; i < 20; ++i)
        join(d.hub, i % 4, boxAt(cad, kColumns / 2 + ring[i][0], kRows / 2 + ring[i][1]), (i + 2) % 4);
    std::mt19937 rng(7);
    while (d.lines.size() < 2000) {
        const int c = 3 + int(rng() % (kColumns - 6)), r = 3 + int(rng() % (kRows - 6));
        if (std::abs(c - kColumns / 2) < 5 && std::abs(r - kRows / 2) < 5) continue;  // leave the hub alone
        const int dc = int(rng() % 7) - 3, dr = int(rng() % 7) - 3;
        if (std::abs(dc) < 2 && std::abs(dr) < 2) continue;
        join(boxAt(cad, c, r), int(rng() % 4), boxAt(cad, c + dc, r + dr), int(rng() % 4));
    }
    cad.RemoveAllWorkingShapes();
    d.target = QImage(cad.Width(), cad.Height(), QImage::Format_RGB32);
    return d;
}

using faroven::bench::seconds;

double fullRepaint(Diagram& d, bool linkCrosses) {
    d.cad->SetShowHotLink(linkCrosses);
    QPainter painter(&d.target);
    const double t = seconds([&] { d.cad->PaintTo(&painter, d.cad->ClientRect()); });
    d.cad->SetShowHotLink(true);
    return t;
}

// Times work per iteration and reports it against full repaints measured in
// between, in the same run.
void againstRepaint(benchmark::State& state, const std::function<void()>& work) {
    Diagram& d = diagram();
    double ours = 0, repaint = 0, plain = 0;
    for (auto _ : state) {
        const double t = seconds(work);
        state.SetIterationTime(t);
        ours += t;
        state.PauseTiming();
        repaint += fullRepaint(d, true);
        plain += fullRepaint(d, false);
        state.ResumeTiming();
    }
    state.counters["repaint_ms"] = repaint / double(state.iterations()) * 1e3;
    state.counters["x_repaint"] = repaint > 0 ? ours / repaint : 0;
    state.counters["x_plain"] = plain > 0 ? ours / plain : 0;
}

void BM_MoveHubReroute(benchmark::State& state) {
    Diagram& d = diagram();
    float step = 1;
    againstRepaint(state, [&] {
        d.cad->DragChangeValueDxDyforShapes(d.hub, step, 0);
        d.cad->ChangeLinkShapes(d.hub);
        step = -step;
    });
}
BENCHMARK(BM_MoveHubReroute)->UseManualTime()->Unit(benchmark::kMicrosecond);

void BM_RerouteAll(benchmark::State& state) {
    Diagram& d = diagram();
    againstRepaint(state, [&] {
        for (TMyLinkLine* line : d.lines) line->ReRoute();
    });
}
BENCHMARK(BM_RerouteAll)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
