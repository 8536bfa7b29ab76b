// Opening a shape library of 500 entries and rendering every entry's
// thumbnail (64 pixels on the longer side), against opening a drawing file
// that holds the same shapes, in the same run. Reported:
//   open_s            opening the library and walking its entries (names)
//   thumbnails_s      reading and rendering all 500 thumbnails
//   drawing_open_s    loading the drawing file with the same shapes
//   lib_vs_drawing    (open_s + thumbnails_s) / drawing_open_s
#include "bench/bench_timing.h"
#include "cad/canvas/mycad.h"
#include "cad/persistence/lib_manager.h"
#include "cad/shapes/line.h"
#include "cad/shapes/link_point.h"
#include "cad/shapes/polyline.h"
#include "cad/shapes/rectangle.h"
#include "cad/shapes/text.h"
#include "platform/bitmap.h"

#include <QTemporaryDir>
#include <benchmark/benchmark.h>

#include <algorithm>

using namespace faroven;
using faroven::bench::seconds;

namespace {

constexpr int kEntries = 500;

// One entry's shapes at (x, y): a frame, an ellipse, a polyline, a text and
// four link points, as a flowchart symbol might be.
void addEntryShapes(TMyCAD& cad, float x, float y, int i) {
    auto add = [&](TMyShape* s, std::initializer_list<TMyPoint> points) {
        for (TMyPoint p : points) s->AddPoint({x + p.x, y + p.y});
        s->Drawed({}, {});
        cad.AddNewShape(s);
        return s;
    };
    add(new TMyRectangle(&cad), {{0, 0}, {80, 0}, {80, 40}, {0, 40}})->SetCaption(QStringLiteral("Entry %1").arg(i));
    add(new TMyEllipse(&cad), {{10, 5}, {30, 5}, {30, 20}, {10, 20}});
    add(new TMyPolyLine(&cad), {{40, 10}, {50, 30}, {60, 10}, {70, 30}});
    auto* text = static_cast<TMyText*>(add(new TMyText(&cad), {{5, 25}, {75, 25}, {75, 38}, {5, 38}}));
    text->Lines()->Add(QStringLiteral("Step %1").arg(i));
    for (TMyPoint p : {TMyPoint{40, 0}, TMyPoint{80, 20}, TMyPoint{40, 40}, TMyPoint{0, 20}})
        add(new TMyLinkPoint(&cad), {{p.x - 2, p.y - 2}, {p.x + 2, p.y - 2}, {p.x + 2, p.y + 2}, {p.x - 2, p.y + 2}});
}

void BM_OpenLibraryAndRenderThumbnails(benchmark::State& state) {
    QTemporaryDir dir;
    const QString libFile = dir.filePath(QStringLiteral("bench.fvl")), drawingFile = dir.filePath(QStringLiteral("bench.fvd"));
    {
        TLibManager lib;
        TMyCAD all;
        for (int i = 0; i < kEntries; ++i) {
            TMyCAD one;
            addEntryShapes(one, 0, 0, i);
            lib.AppendNewShape(QStringLiteral("Entry %1").arg(i), {one.MyShapes().begin(), one.MyShapes().end()},
                               nullptr);
            addEntryShapes(all, float(i % 20) * 100, float(i / 20) * 60, i);
        }
        lib.SaveToFile(libFile);
        all.SaveToFile(drawingFile);
    }
    double open = 0, thumbnails = 0, drawing = 0;
    for (auto _ : state) {
        TLibManager lib;
        QStringList names;
        open += seconds([&] {
            lib.LoadFromFile(libFile);
            names = lib.GetCmbShapesNames();
        });
        thumbnails += seconds([&] {
            for (const QString& name : names) {
                int w = 0, h = 0;
                lib.GetCmbShapeSize(name, w, h);
                TBitmap picture;
                lib.GetCmbShapeImage(name, 64.0 / std::max({w, h, 1}), picture, clWhite);
                benchmark::DoNotOptimize(picture.Width());
            }
        });
        TMyCAD cad;
        drawing += seconds([&] { cad.LoadFromFile(drawingFile); });
    }
    const double n = double(state.iterations());
    state.counters["open_s"] = open / n;
    state.counters["thumbnails_s"] = thumbnails / n;
    state.counters["drawing_open_s"] = drawing / n;
    state.counters["lib_vs_drawing"] = (open + thumbnails) / drawing;
}
BENCHMARK(BM_OpenLibraryAndRenderThumbnails)->Unit(benchmark::kMillisecond)->Iterations(5);

}  // namespace
