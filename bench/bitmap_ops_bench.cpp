// Bitmap effects on a photo-sized bitmap (4000 x 3000, 24 bits per pixel).
// Targets: every operation under 50 ms, RotateBitmap under 200 ms.
#include "cad/geometry/bitmap_ops.h"

#include <benchmark/benchmark.h>

using namespace faroven;

namespace {

constexpr int kWidth = 4000;
constexpr int kHeight = 3000;

// A photo stand-in: smooth gradients with some noise, so no operation meets
// only one kind of value.
std::unique_ptr<TBitmap> photo() {
    auto bmp = std::make_unique<TBitmap>(kWidth, kHeight, pf24bit);
    uint32_t seed = 12345;
    for (int y = 0; y < kHeight; ++y) {
        uint8_t* row = bmp->ScanLine(y);
        for (int x = 0; x < kWidth; ++x) {
            seed = seed * 1664525u + 1013904223u;
            const int noise = int(seed >> 28) - 8;
            row[3 * x] = uint8_t(std::clamp(x * 255 / kWidth + noise, 0, 255));
            row[3 * x + 1] = uint8_t(std::clamp(y * 255 / kHeight + noise, 0, 255));
            row[3 * x + 2] = uint8_t(std::clamp((x + y) * 255 / (kWidth + kHeight) + noise, 0, 255));
        }
    }
    return bmp;
}

TBitmap& shared() {
    static std::unique_ptr<TBitmap> bmp = photo();
    return *bmp;
}

void setCounters(benchmark::State& state) {
    state.SetItemsProcessed(state.iterations() * int64_t(kWidth) * kHeight);
}

void BM_GrayScaleBitmap(benchmark::State& state) {
    TBitmap bmp;
    for (auto _ : state) {
        state.PauseTiming();
        bmp.Assign(shared());
        state.ResumeTiming();
        GrayScaleBitmap(bmp, true);
        benchmark::DoNotOptimize(bmp.ScanLine(0));
    }
    setCounters(state);
}

void BM_AdjustBrightBitmap(benchmark::State& state) {
    TBitmap bmp;
    bmp.Assign(shared());
    int delta = 1;
    for (auto _ : state) {
        AdjustBrightBitmap(bmp, delta);
        delta = -delta;
        benchmark::DoNotOptimize(bmp.ScanLine(0));
    }
    setCounters(state);
}

void BM_AdjustContrastBitmap(benchmark::State& state) {
    TBitmap bmp;
    bmp.Assign(shared());
    int amount = 40;
    for (auto _ : state) {
        AdjustContrastBitmap(bmp, amount);
        amount = -amount;
        benchmark::DoNotOptimize(bmp.ScanLine(0));
    }
    setCounters(state);
}

void BM_FlipBitmap(benchmark::State& state) {
    const bool horizontal = state.range(0) & 1, vertical = state.range(0) & 2;
    TBitmap bmp;
    bmp.Assign(shared());
    for (auto _ : state) {
        FlipBitmap(bmp, horizontal, vertical);
        benchmark::DoNotOptimize(bmp.ScanLine(0));
    }
    setCounters(state);
}

void BM_RotateBitmap(benchmark::State& state) {
    const double angle = double(state.range(0));
    for (auto _ : state) {
        auto out = RotateBitmap(shared(), angle, 0, 0, 0, 0);
        benchmark::DoNotOptimize(out->ScanLine(0));
    }
    setCounters(state);
}

}  // namespace

BENCHMARK(BM_GrayScaleBitmap)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_AdjustBrightBitmap)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_AdjustContrastBitmap)->Unit(benchmark::kMillisecond);
// 1: horizontal, 2: vertical, 3: both.
BENCHMARK(BM_FlipBitmap)->Arg(1)->Arg(2)->Arg(3)->Unit(benchmark::kMillisecond);
// 45 degrees gives the largest result (4950 x 4950) and the least cache-friendly walk.
BENCHMARK(BM_RotateBitmap)->Arg(90)->Arg(30)->Arg(45)->Unit(benchmark::kMillisecond);
