// One orthogonal connector route across a field of shapes: the canvas routes
// thousands of connectors with the 0-30 boxes near their ends, so the target is
// well under 100 us per route with 20 obstacles.
#include "cad/geometry/route.h"

#include <benchmark/benchmark.h>

#include <random>

using namespace faroven;

namespace {

// n boxes on a lattice of 120-unit cells (at most 12 per row), the route from
// the first box's right side to the last box's left side, across the field.
struct Scene {
    std::vector<TMyRect> boxes;
    TRouteEnd from, to;
};

Scene MakeScene(int obstacles) {
    Scene s;
    std::mt19937 rng(7);
    auto uni = [&](float lo, float hi) { return std::uniform_real_distribution<float>(lo, hi)(rng); };
    const int n = obstacles + 2, columns = std::min(n, 12);
    for (int k = 0; k < n; ++k) {
        const float x = float(k % columns) * 120, y = float(k / columns) * 120;
        s.boxes.push_back({x + uni(15, 40), y + uni(15, 40), x + uni(80, 105), y + uni(80, 105)});
    }
    const TMyRect& a = s.boxes.front();
    const TMyRect& b = s.boxes.back();
    s.from = {{a.right, (a.top + a.bottom) / 2}, dRight, a};
    s.to = {{b.left, (b.top + b.bottom) / 2}, dLeft, b};
    return s;
}

void BM_Route(benchmark::State& state) {
    const Scene s = MakeScene(int(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(RouteOrthogonal(s.from, s.to, s.boxes));
}
BENCHMARK(BM_Route)->Arg(0)->Arg(20)->Arg(100)->Unit(benchmark::kMicrosecond);

// The same after a small move of the end, with the route before it as a hint.
void BM_RouteAfterMove(benchmark::State& state) {
    Scene s = MakeScene(int(state.range(0)));
    const TArrMyPoint before = RouteOrthogonal(s.from, s.to, s.boxes);
    s.to.point.y += 3;
    s.to.box.top += 3;
    s.to.box.bottom += 3;
    TRouteOptions options;
    options.previous = &before;
    for (auto _ : state) benchmark::DoNotOptimize(RouteOrthogonal(s.from, s.to, s.boxes, options));
}
BENCHMARK(BM_RouteAfterMove)->Arg(20)->Unit(benchmark::kMicrosecond);

}  // namespace
