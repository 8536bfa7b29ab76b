// The inspector with many shapes: showing a selection of n shapes of three
// classes (the shared properties and their values), one edit on all of them
// (tried, then written inside one undo step), and rebuilding the component
// combo box and tree.
#include "cad/canvas/mycad.h"
#include "cad/shapes/line.h"
#include "cad/shapes/rectangle.h"
#include "inspector/component_combo_box.h"
#include "inspector/component_inspector.h"
#include "inspector/component_tree.h"

#include <benchmark/benchmark.h>

#include <memory>

using namespace faroven;

namespace {

std::unique_ptr<TMyCAD> makeDrawing(int n) {
    auto cad = std::make_unique<TMyCAD>();
    for (int i = 0; i < n; ++i) {
        const float x = float(i % 100) * 7, y = float(i / 100) * 7;
        TMyShape* shape = i % 3 == 0 ? static_cast<TMyShape*>(new TMyRectangle(cad.get()))
                          : i % 3 == 1 ? static_cast<TMyShape*>(new TMyEllipse(cad.get()))
                                       : static_cast<TMyShape*>(new TMyLine(cad.get()));
        shape->AddPoint({x, y});
        shape->AddPoint({x + 5, y + 5});
        shape->Drawed({}, {});
        cad->AddNewShape(shape);
    }
    return cad;
}

std::vector<QObject*> everyShape(const TMyCAD& cad) {
    std::vector<QObject*> out(cad.MyShapes().begin(), cad.MyShapes().end());
    return out;
}

void BM_ShowSelection(benchmark::State& state) {
    auto cad = makeDrawing(int(state.range(0)));
    TComponentInspector inspector;
    const std::vector<QObject*> shapes = everyShape(*cad);
    for (auto _ : state) inspector.SetObjects(shapes);
    state.counters["rows"] = double(inspector.PropertyPaths().size());
}
BENCHMARK(BM_ShowSelection)->Arg(1)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

void BM_EditSelection(benchmark::State& state) {
    auto cad = makeDrawing(int(state.range(0)));
    TComponentInspector inspector;
    inspector.SetObjects(everyShape(*cad));
    int width = 1;
    for (auto _ : state) inspector.SetPropertyValue("Pen.Width", 1 + (width++ % 5));
}
BENCHMARK(BM_EditSelection)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

void BM_ListComponents(benchmark::State& state) {
    auto cad = makeDrawing(int(state.range(0)));
    TComponentComboBox combo;
    TComponentTree tree;
    combo.SetCanvas(cad.get());
    tree.SetCanvas(cad.get());
    for (auto _ : state) {
        combo.Refresh();
        tree.Refresh();
    }
}
BENCHMARK(BM_ListComponents)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

}  // namespace
