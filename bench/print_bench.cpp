// Printing and pictures of an A4 page with n figures (40 % rectangles, 30 %
// ellipses, 30 % lines, 5 to 60 pixels, from a fixed seed): the time of each
// export and the size of its output, so that a change to the rendering that
// slows one device down shows. Outputs go to memory (PDF and SVG through
// QBuffer-backed writers), so the disk is not measured.
#include "cad/canvas/mycad.h"
#include "cad/shapes/line.h"
#include "cad/shapes/rectangle.h"
#include "platform/system.h"

#include <QBuffer>
#include <QPdfWriter>
#include <benchmark/benchmark.h>

#include <memory>
#include <random>

using namespace faroven;

namespace {

std::unique_ptr<TMyCAD> makePage(int n) {
    SetScreenPixelsPerInch(96);
    auto cad = std::make_unique<TMyCAD>();
    cad->SetPageHead("Benchmark");
    std::mt19937 rng(20261125);
    std::uniform_real_distribution<float> x(0, 750), y(0, 1080), side(5, 60), unit(0, 1);
    for (int i = 0; i < n; ++i) {
        const float l = x(rng), t = y(rng), w = side(rng), h = side(rng), kind = unit(rng);
        TMyShape* shape = kind < 0.4f ? static_cast<TMyShape*>(new TMyRectangle(cad.get()))
                          : kind < 0.7f ? static_cast<TMyShape*>(new TMyEllipse(cad.get()))
                                        : static_cast<TMyShape*>(new TMyLine(cad.get()));
        if (kind < 0.7f) {
            shape->AddPoint({l, t});
            shape->AddPoint({l + w, t});
            shape->AddPoint({l + w, t + h});
            shape->AddPoint({l, t + h});
            shape->Brush()->SetColor(clYellow);
            shape->Brush()->SetStyle(bsSolid);
        } else {
            shape->AddPoint({l, t});
            shape->AddPoint({l + w, t + h});
        }
        shape->Drawed({}, {});
        cad->AddNewShape(shape);
    }
    return cad;
}

template <typename Export>
void run(benchmark::State& state, Export exportPage) {
    auto cad = makePage(int(state.range(0)));
    qint64 bytes = 0;
    for (auto _ : state) bytes = exportPage(*cad);
    state.counters["bytes"] = double(bytes);
}

void BM_PageImage(benchmark::State& s) {
    run(s, [](TMyCAD& cad) { return cad.PageImage().sizeInBytes(); });
}
void BM_Pdf(benchmark::State& s) {
    run(s, [](TMyCAD& cad) {
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        QPdfWriter pdf(&buffer);
        cad.PreparePrinter(&pdf);
        cad.PrintTo(&pdf);
        return qint64(bytes.size());
    });
}
void BM_Svg(benchmark::State& s) {
    run(s, [](TMyCAD& cad) { return qint64(cad.SvgBytes().size()); });
}
void BM_Wmf(benchmark::State& s) {
    run(s, [](TMyCAD& cad) { return qint64(cad.WmfBytes().size()); });
}

BENCHMARK(BM_PageImage)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Pdf)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Svg)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Wmf)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

}  // namespace
