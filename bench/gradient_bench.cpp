// Gradient fills of a 200 x 200 shape: the target is well under a millisecond
// per fill for every style, inside a rectangle and inside an outline.
#include "cad/geometry/gradient.h"
#include "platform/bitmap.h"

#include <QMetaEnum>
#include <benchmark/benchmark.h>

using namespace faroven;

namespace {

void BM_GradientRect(benchmark::State& state) {
    const auto style = TGradientStyle(state.range(0));
    TBitmap bmp(200, 200, pf24bit);
    for (auto _ : state) {
        DrawGradientRect(bmp.Canvas(), Rect(0, 0, 200, 200), style, clWhite, clNavy);
        benchmark::DoNotOptimize(bmp.Canvas());
    }
    state.SetLabel(QMetaEnum::fromType<TGradientStyle>().valueToKey(style));
}
BENCHMARK(BM_GradientRect)->DenseRange(gsRadialC, gsButterfly)->Unit(benchmark::kMicrosecond);

void BM_GradientPolygon(benchmark::State& state) {
    const auto style = TGradientStyle(state.range(0));
    TBitmap bmp(200, 200, pf24bit);
    const TArrPoint outline{Point(0, 0), Point(200, 40), Point(160, 200), Point(0, 200)};
    for (auto _ : state) {
        DrawGradientPolygon(bmp.Canvas(), outline, style, clWhite, clNavy);
        benchmark::DoNotOptimize(bmp.Canvas());
    }
    state.SetLabel(QMetaEnum::fromType<TGradientStyle>().valueToKey(style));
}
BENCHMARK(BM_GradientPolygon)->Arg(gsRadialC)->Arg(gsLinearH)->Arg(gsDiamond)->Unit(benchmark::kMicrosecond);

}  // namespace
