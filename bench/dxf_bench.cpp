// DXF import and export at scale. Reported (same run, same file):
//   import_s, dxflib_s     importing a 50 MB R2000 file of 200,000 LINEs and
//                          50,000 LWPOLYLINEs into a canvas, against Debian's
//                          dxflib merely parsing it into a counting adapter;
//                          fastest of three runs each
//   import_ratio           import_s / dxflib_s; target at most 0.5
//   import_peak_MB         the heap's peak during the import above its start
//   export_s, export_MB    exporting 100,000 mixed shapes, time and file size
#include "bench/bench_timing.h"
#include "cad/canvas/mycad.h"
#include "cad/shapes/line.h"
#include "cad/shapes/polyline.h"
#include "cad/shapes/rectangle.h"
#include "dxf/dxf_export.h"
#include "dxf/dxf_import.h"

#include <QFile>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <memory>

#if __has_include(<dl_dxf.h>)
#include <dl_creationadapter.h>
#include <dl_dxf.h>
#define FAROVEN_HAVE_DXFLIB 1
#endif

using namespace faroven;
using faroven::bench::seconds;

namespace {

size_t heapBytes() { return mallinfo2().uordblks; }

// An R2000 file as CAD programs write it: header, layer table, and in the
// entities each LINE and LWPOLYLINE with handle, owner and subclass markers.
void writeLargeDxf(const QString& path, int lines, int polylines) {
    FILE* f = std::fopen(path.toLocal8Bit().constData(), "wb");
    std::fputs("  0\nSECTION\n  2\nHEADER\n  9\n$ACADVER\n  1\nAC1015\n  9\n$INSUNITS\n 70\n4\n  0\nENDSEC\n", f);
    std::fputs("  0\nSECTION\n  2\nTABLES\n  0\nTABLE\n  2\nLAYER\n 70\n2\n", f);
    for (const char* layer : {"0", "WALLS"}) std::fprintf(f, "  0\nLAYER\n  2\n%s\n 70\n0\n 62\n7\n  6\nCONTINUOUS\n", layer);
    std::fputs("  0\nENDTAB\n  0\nENDSEC\n  0\nSECTION\n  2\nENTITIES\n", f);
    int handle = 0x100;
    for (int i = 0; i < lines; ++i) {
        const double x = (i % 1000) * 1.25, y = (i / 1000) * 2.5;
        std::fprintf(f,
                     "  0\nLINE\n  5\n%X\n330\n1F\n100\nAcDbEntity\n  8\n%s\n100\nAcDbLine\n 10\n%.4f\n 20\n%.4f\n 30\n0.0\n"
                     " 11\n%.4f\n 21\n%.4f\n 31\n0.0\n",
                     handle++, i % 2 ? "WALLS" : "0", x, y, x + 12.345678, y + 3.456789);
    }
    for (int i = 0; i < polylines; ++i) {
        const double x = (i % 500) * 3.5, y = 600 + (i / 500) * 4.0;
        std::fprintf(f, "  0\nLWPOLYLINE\n  5\n%X\n330\n1F\n100\nAcDbEntity\n  8\n0\n100\nAcDbPolyline\n 90\n12\n 70\n1\n 43\n0.0\n",
                     handle++);
        for (int v = 0; v < 12; ++v) std::fprintf(f, " 10\n%.4f\n 20\n%.4f\n", x + (v % 4) * 0.75, y + (v / 4) * 1.125);
    }
    std::fputs("  0\nENDSEC\n  0\nEOF\n", f);
    std::fclose(f);
}

#ifdef FAROVEN_HAVE_DXFLIB
struct CountingAdapter : DL_CreationAdapter {
    long lines = 0, polylines = 0, vertices = 0;
    void addLine(const DL_LineData&) override { ++lines; }
    void addPolyline(const DL_PolylineData&) override { ++polylines; }
    void addVertex(const DL_VertexData&) override { ++vertices; }
};
#endif

void BM_ImportLargeDxf(benchmark::State& state) {
    QTemporaryDir dir;
    const QString path = dir.filePath("large.dxf");
    writeLargeDxf(path, 200000, 50000);
    double ours = 1e9, theirs = 1e9, peak = 0;
    for (auto _ : state) {
        auto cad = std::make_unique<TMyCAD>();
        const size_t before = heapBytes();
        size_t highest = before;
        ours = std::min(ours, seconds([&] {
            TDXF2DImport importer(path, cad.get());
            importer.OnProgress = [&](int) { highest = std::max(highest, heapBytes()); };
            importer.ReadDXF();
        }));
        peak = double(std::max(highest, heapBytes()) - before);
        if (cad->GetShapesCount() != 250000) state.SkipWithError("the file did not import whole");
        cad.reset();
#ifdef FAROVEN_HAVE_DXFLIB
        theirs = std::min(theirs, seconds([&] {
            CountingAdapter adapter;
            DL_Dxf().in(path.toStdString(), &adapter);
            if (adapter.lines != 200000 || adapter.polylines != 50000) state.SkipWithError("dxflib read another count");
        }));
#endif
    }
    state.counters["file_MB"] = double(QFile(path).size()) / 1e6;
    state.counters["import_s"] = ours;
    state.counters["import_peak_MB"] = peak / 1e6;
#ifdef FAROVEN_HAVE_DXFLIB
    state.counters["dxflib_s"] = theirs;
    state.counters["import_ratio"] = ours / theirs;
#endif
}
BENCHMARK(BM_ImportLargeDxf)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_Export100k(benchmark::State& state) {
    TMyCAD cad;
    cad.resize(1000, 1000);
    for (int i = 0; i < 100000; ++i) {
        const float x = float(i % 700), y = float((i / 700) % 1000);
        TMyShape* s = i % 4 == 0 ? static_cast<TMyShape*>(new TMyRectangle(&cad))
                    : i % 4 == 1 ? static_cast<TMyShape*>(new TMyEllipse(&cad))
                    : i % 4 == 2 ? static_cast<TMyShape*>(new TMyLine(&cad))
                                 : static_cast<TMyShape*>(new TMyPolyLine(&cad));
        if (i % 4 == 2) {
            s->AddPoint({x, y});
            s->AddPoint({x + 30, y + 12});
        } else {
            for (TMyPoint p : {TMyPoint{x, y}, TMyPoint{x + 20, y}, TMyPoint{x + 20, y + 10 + float(i % 3)}, TMyPoint{x, y + 10}})
                s->AddPoint(p);
        }
        cad.AddNewShape(s);
    }
    QTemporaryDir dir;
    const QString path = dir.filePath("out.dxf");
    double best = 1e9;
    for (auto _ : state) best = std::min(best, seconds([&] { cad.SaveToDxf(path); }));
    state.counters["export_s"] = best;
    state.counters["export_MB"] = double(QFile(path).size()) / 1e6;
}
BENCHMARK(BM_Export100k)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace
