// The canvas against Qt's Graphics View framework on the same page of figures:
// 40 % rectangles, 30 % ellipses, 30 % lines, 5 to 60 pixels, solid one-pixel
// pens and solid brushes, from a fixed seed, once as Faroven shapes on a
// TMyCAD and once as items of a QGraphicsScene, both rendered without
// antialiasing into a 794 x 1123 image (A4 at 96 pixels per inch).
//
// Each benchmark times both sides in the same iteration, one after the other,
// and reports Faroven's time as the benchmark's time, the peer's time and the
// ratio (Faroven / peer) as counters, so the ratio comes from one run:
//   full repaint    TMyCAD's Paint path (PaintTo: buffer of the invalid
//                   rectangle, then the copy) vs QGraphicsScene::render
//   200 x 200       the same for a 200 x 200 invalid rectangle
//   hit             GetShapeAtPoint (the search a press makes) vs itemAt
//   miss            GetShapeAtPoint on points no shape answers vs a plain
//                   scan of precomputed bounding boxes
//   memory          heap bytes per shape vs per item (mallinfo2 deltas, the
//                   spatial indexes of both sides included)
// Targets: full repaint <= 0.6x at 100,000; 200 x 200 <= 0.5x; hit <= 0.1x at
// 100,000; a miss no slower than the plain scan; memory <= 0.3x.
#include "cad/canvas/mycad.h"
#include "cad/shapes/line.h"
#include "cad/shapes/rectangle.h"
#include "platform/system.h"
#include "bench_timing.h"

#include <QGraphicsEllipseItem>
#include <QGraphicsLineItem>
#include <QGraphicsRectItem>
#include <QGraphicsScene>
#include <QImage>
#include <QPainter>
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <chrono>
#include <map>
#include <memory>
#include <random>

using namespace faroven;

namespace {

constexpr int kPageWidth = 794;
constexpr int kPageHeight = 1123;

struct Figure {
    int kind;  // 0 rectangle, 1 ellipse, 2 line
    float x, y, w, h;
    int color;
};

const TColor kPens[] = {clBlack, clNavy, clMaroon, clGreen, clPurple, clTeal, clOlive, clGray};
const TColor kBrushes[] = {clYellow, clAqua, clLime, clFuchsia, clSilver, clWhite, clCream, clSkyBlue};

std::vector<Figure> makeFigures(int n) {
    std::mt19937 rng(20240607);
    std::uniform_real_distribution<float> unit(0, 1), side(5, 60);
    std::vector<Figure> figures;
    figures.reserve(size_t(n));
    for (int i = 0; i < n; ++i) {
        const float k = unit(rng);
        Figure f;
        f.kind = k < 0.4f ? 0 : k < 0.7f ? 1 : 2;
        f.w = side(rng);
        f.h = side(rng);
        f.x = unit(rng) * (kPageWidth - f.w);
        f.y = unit(rng) * (kPageHeight - f.h);
        f.color = int(rng() % 8);
        if (f.kind == 2 && unit(rng) < 0.5f) f.h = -f.h;  // lines run both ways
        figures.push_back(f);
    }
    return figures;
}

size_t heapInUse() {
    malloc_trim(0);
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

QImage& target() {
    static QImage image(kPageWidth, kPageHeight, QImage::Format_RGB32);
    return image;
}

// ---- The two worlds, built once per size --------------------------------------------------

struct FarovenWorld {
    std::unique_ptr<TMyCAD> cad;
    double bytesPerShape = 0;
};

struct PeerWorld {
    std::unique_ptr<QGraphicsScene> scene;
    double bytesPerItem = 0;
};

void paintFaroven(TMyCAD& cad, const TRect& area) {
    QPainter painter(&target());
    cad.PaintTo(&painter, area);
}

void renderPeer(QGraphicsScene& scene, const QRectF& area) {
    QPainter painter(&target());
    painter.setClipRect(area);
    scene.render(&painter, area, area);
}

FarovenWorld& faroven(int n) {
    static std::map<int, FarovenWorld> worlds;
    FarovenWorld& w = worlds[n];
    if (w.cad) return w;
    SetScreenPixelsPerInch(96);
    target();
    w.cad = std::make_unique<TMyCAD>();
    TMyCAD& cad = *w.cad;
    cad.GridOperation()->SetGridShow(false);
    // The canvas's own cost (paint buffer, empty index) is paid before counting.
    paintFaroven(cad, cad.ClientRect());
    cad.GetShapeAtPoint({1, 1});
    const size_t before = heapInUse();
    for (const Figure& f : makeFigures(n)) {
        TMyShape* s = nullptr;
        if (f.kind == 2) {
            s = new TMyLine(&cad);
            s->AddPoint({f.x, f.h < 0 ? f.y - f.h : f.y});
            s->AddPoint({f.x + f.w, f.h < 0 ? f.y : f.y + f.h});
        } else {
            s = f.kind == 0 ? static_cast<TMyShape*>(new TMyRectangle(&cad)) : new TMyEllipse(&cad);
            s->AddPoint({f.x, f.y});
            s->AddPoint({f.x + f.w, f.y});
            s->AddPoint({f.x + f.w, f.y + f.h});
            s->AddPoint({f.x, f.y + f.h});
        }
        s->Pen()->SetColor(kPens[f.color]);
        s->Brush()->SetColor(kBrushes[f.color]);
        cad.AddNewShape(s);
    }
    paintFaroven(cad, cad.ClientRect());
    cad.GetShapeAtPoint({1, 1});
    w.bytesPerShape = double(heapInUse() - before) / n;
    return w;
}

PeerWorld& peer(int n) {
    static std::map<int, PeerWorld> worlds;
    PeerWorld& w = worlds[n];
    if (w.scene) return w;
    target();
    w.scene = std::make_unique<QGraphicsScene>(0, 0, kPageWidth, kPageHeight);
    QGraphicsScene& scene = *w.scene;
    scene.setBackgroundBrush(Qt::white);
    // Pens and brushes shared by all items of a colour, as cheap as Qt allows.
    std::vector<QPen> pens;
    std::vector<QBrush> brushes;
    for (int i = 0; i < 8; ++i) {
        pens.emplace_back(ToQColor(kPens[i]), 0);
        brushes.emplace_back(ToQColor(kBrushes[i]));
    }
    renderPeer(scene, QRectF(0, 0, kPageWidth, kPageHeight));
    scene.itemAt(QPointF(1, 1), QTransform());
    const size_t before = heapInUse();
    for (const Figure& f : makeFigures(n)) {
        QGraphicsItem* item = nullptr;
        if (f.kind == 0) {
            auto r = new QGraphicsRectItem(f.x, f.y, f.w, f.h);
            r->setPen(pens[size_t(f.color)]);
            r->setBrush(brushes[size_t(f.color)]);
            item = r;
        } else if (f.kind == 1) {
            auto e = new QGraphicsEllipseItem(f.x, f.y, f.w, f.h);
            e->setPen(pens[size_t(f.color)]);
            e->setBrush(brushes[size_t(f.color)]);
            item = e;
        } else {
            auto l = new QGraphicsLineItem(f.x, f.h < 0 ? f.y - f.h : f.y, f.x + f.w, f.h < 0 ? f.y : f.y + f.h);
            l->setPen(pens[size_t(f.color)]);
            item = l;
        }
        scene.addItem(item);
    }
    renderPeer(scene, QRectF(0, 0, kPageWidth, kPageHeight));
    scene.itemAt(QPointF(1, 1), QTransform());
    w.bytesPerItem = double(heapInUse() - before) / n;
    return w;
}

// ---- Paired timing ----------------------------------------------------------------------------

using faroven::bench::seconds;

// Runs ours and theirs once per iteration; the iteration's time is ours.
template <class Ours, class Theirs>
void paired(benchmark::State& state, Ours&& ours, Theirs&& theirs, const char* peerName) {
    double oursTotal = 0, theirsTotal = 0;
    for (auto _ : state) {
        const double a = seconds(ours);
        const double b = seconds(theirs);
        oursTotal += a;
        theirsTotal += b;
        state.SetIterationTime(a);
    }
    const double iterations = double(state.iterations());
    state.counters[std::string(peerName) + "_us"] = theirsTotal / iterations * 1e6;
    state.counters["faroven_us"] = oursTotal / iterations * 1e6;
    state.counters["ratio"] = theirsTotal > 0 ? oursTotal / theirsTotal : 0;
}

void BM_FullRepaint(benchmark::State& state) {
    const int n = int(state.range(0));
    TMyCAD& cad = *faroven(n).cad;
    QGraphicsScene& scene = *peer(n).scene;
    paired(
        state, [&] { paintFaroven(cad, cad.ClientRect()); },
        [&] { renderPeer(scene, QRectF(0, 0, kPageWidth, kPageHeight)); }, "scene");
}
BENCHMARK(BM_FullRepaint)->Arg(10000)->Arg(100000)->UseManualTime()->Unit(benchmark::kMillisecond)->MinTime(2);

void BM_Repaint200(benchmark::State& state) {
    const int n = int(state.range(0));
    TMyCAD& cad = *faroven(n).cad;
    QGraphicsScene& scene = *peer(n).scene;
    std::mt19937 rng(7);
    std::uniform_int_distribution<int> x(0, kPageWidth - 200), y(0, kPageHeight - 200);
    std::vector<TRect> areas;
    for (int i = 0; i < 64; ++i) areas.push_back(Bounds(x(rng), y(rng), 200, 200));
    size_t next = 0, nextPeer = 0;
    paired(
        state, [&] { paintFaroven(cad, areas[next++ % areas.size()]); },
        [&] {
            const TRect& r = areas[nextPeer++ % areas.size()];
            renderPeer(scene, QRectF(r.left, r.top, r.Width(), r.Height()));
        },
        "scene");
}

std::vector<TPoint> randomPoints(int count, uint32_t seed) {
    std::mt19937 rng(seed);
    std::uniform_int_distribution<int> x(0, kPageWidth - 1), y(0, kPageHeight - 1);
    std::vector<TPoint> pts;
    for (int i = 0; i < count; ++i) pts.push_back(TPoint{x(rng), y(rng)});
    return pts;
}

void BM_Hit(benchmark::State& state) {
    const int n = int(state.range(0));
    TMyCAD& cad = *faroven(n).cad;
    QGraphicsScene& scene = *peer(n).scene;
    const std::vector<TPoint> pts = randomPoints(1024, 11);
    size_t a = 0, b = 0;
    paired(
        state, [&] { benchmark::DoNotOptimize(cad.GetShapeAtPoint(pts[a++ % pts.size()])); },
        [&] {
            const TPoint p = pts[b++ % pts.size()];
            benchmark::DoNotOptimize(scene.itemAt(QPointF(p.x, p.y), QTransform()));
        },
        "scene");
}

// Points where no shape answers a press. Inside the page they are rare (at
// 10,000 figures the page is covered about seven times over) and at 100,000
// there are none, so the page is sampled for them and, failing that, the
// strip just right of the figures is used.
std::vector<TPoint> missPoints(TMyCAD& cad) {
    std::vector<TPoint> misses;
    for (const TPoint& p : randomPoints(40000, 13)) {
        if (!cad.GetShapeAtPoint(p)) misses.push_back(p);
        if (misses.size() >= 256) break;
    }
    if (misses.size() < 16)
        for (int i = 0; i < 256; ++i) misses.push_back(TPoint{kPageWidth + 4 + i % 16, 40 + i * 4});
    return misses;
}

void BM_MissVsPlainBoxScan(benchmark::State& state) {
    const int n = int(state.range(0));
    TMyCAD& cad = *faroven(n).cad;
    const std::vector<TPoint> pts = missPoints(cad);
    // The plain scan: every shape's zoomed bounding box, precomputed.
    std::vector<TRect> boxes;
    for (TMyShape* s : cad.MyShapes()) {
        const TMyRect r = s->GetBounds();
        boxes.push_back(TRect{int(r.left), int(r.top), int(r.right) + 1, int(r.bottom) + 1});
    }
    size_t a = 0, b = 0;
    paired(
        state, [&] { benchmark::DoNotOptimize(cad.GetShapeAtPoint(pts[a++ % pts.size()])); },
        [&] {
            const TPoint p = pts[b++ % pts.size()];
            int inside = 0;
            for (const TRect& r : boxes) inside += PtInRect(r, p);
            benchmark::DoNotOptimize(inside);
        },
        "boxscan");
    state.counters["miss_points"] = double(pts.size());
}

void BM_Memory(benchmark::State& state) {
    const int n = int(state.range(0));
    const double ours = faroven(n).bytesPerShape;
    const double theirs = peer(n).bytesPerItem;
    for (auto _ : state) benchmark::DoNotOptimize(ours);
    state.counters["faroven_bytes_per_shape"] = ours;
    state.counters["scene_bytes_per_item"] = theirs;
    state.counters["ratio"] = ours / theirs;
}

}  // namespace

BENCHMARK(BM_Repaint200)->Arg(10000)->Arg(100000)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Hit)->Arg(10000)->Arg(100000)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_MissVsPlainBoxScan)->Arg(10000)->Arg(100000)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Memory)->Arg(10000)->Arg(100000)->Iterations(1);
