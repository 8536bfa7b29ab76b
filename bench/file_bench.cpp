// Saving and loading a drawing of 100,000 mixed shapes through a file, each
// against the obvious Qt way of serialising the same fields: a QDataStream
// over a QFile, read back into the same shapes of a fresh canvas. Reported
// (same run, same drawing):
//   save_ratio, load_ratio   ours / QDataStream, fastest of five runs each;
//                            target at most 1.0 each
//   load_peak_ratio          the heap's peak during our load / the loaded
//                            drawing's own heap bytes; target at most 1.5
#include "bench/bench_timing.h"
#include "cad/canvas/mycad.h"
#include "cad/shapes/line.h"
#include "cad/shapes/polyline.h"
#include "cad/shapes/rectangle.h"
#include "cad/shapes/shape_factory.h"
#include "cad/shapes/text.h"

#include <QDataStream>
#include <QFile>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <memory>

using namespace faroven;
using faroven::bench::seconds;

namespace {

size_t heapBytes() { return mallinfo2().uordblks; }

std::unique_ptr<TMyCAD> mixedDrawing(int n) {
    auto cad = std::make_unique<TMyCAD>();
    for (int i = 0; i < n; ++i) {
        const float x = float(i % 700), y = float((i / 700) % 1000);
        TMyShape* s = nullptr;
        switch (i % 5) {
        case 0: s = new TMyRectangle(cad.get()); break;
        case 1: s = new TMyEllipse(cad.get()); break;
        case 2: s = new TMyText(cad.get()); break;
        case 3: s = new TMyLine(cad.get()); break;
        default: s = new TMyPolyLine(cad.get()); break;
        }
        if (i % 5 == 3) {
            s->AddPoint({x, y});
            s->AddPoint({x + 30, y + 12});
        } else {
            for (TMyPoint p : {TMyPoint{x, y}, TMyPoint{x + 20, y}, TMyPoint{x + 20, y + 10}, TMyPoint{x, y + 10}})
                s->AddPoint(p);
        }
        if (auto* text = shape_cast<TMyText>(s)) text->Lines()->Add(QStringLiteral("Text %1").arg(i));
        if (i % 10 == 0) s->SetCaption(QStringLiteral("Caption %1").arg(i));
        s->Drawed({}, {});
        cad->AddNewShape(s);
    }
    return cad;
}

// ---- The QDataStream peer: the same fields, written and read the Qt way ----------------------

void writeQt(QDataStream& out, TMyShape* s) {
    out << ShapeClassName(s) << s->Name() << qint32(s->GetShapeId()) << qint32(s->ShapeNo()) << qint32(s->LayerId())
        << qint32(s->ParentShapeNo());
    const TMyShape& c = *s;
    out << QList<qint32>(c.ChildShapeNos().begin(), c.ChildShapeNos().end());
    out << QList<quint32>(c.LinkShapeNos().begin(), c.LinkShapeNos().end());
    for (const TArrMyPoint* list : {&c.Points(), &c.LinkPoints()}) {
        out << qint32(list->size());
        for (const TMyPoint& p : *list) out << p.x << p.y;
    }
    out << s->TextPoint().x << s->TextPoint().y << qint32(s->Tag()) << s->Angle();
    out << quint32(s->Brush()->Color()) << quint8(s->Brush()->Style()) << s->Caption() << quint32(s->ColorBegin())
        << quint32(s->ColorEnd());
    const TFont& f = s->FontRef();
    out << f.Name() << quint8(f.Charset()) << quint32(f.Color()) << qint32(f.Height()) << qint32(f.Size())
        << quint8(f.Pitch()) << quint8(f.Style().Bits());
    out << quint8(s->GradientStyle()) << s->Info() << quint32(s->Pen()->Color()) << quint8(s->Pen()->Mode())
        << quint8(s->Pen()->Style()) << qint32(s->Pen()->Width());
    out << qint32(s->UserData()->GetCount()) << s->IsFlipHorz() << s->IsFlipVert() << s->Visible();
    out << (s->MultiInfoCount() ? s->MultiInfo()->Lines() : QStringList()) << quint8(s->MultiInfoAlignment());
    out << qint32(s->LogHeight()) << s->LogUse() << qint32(s->LogWidth()) << s->Locked()
        << quint8(s->PenStyleEndCapType()) << quint8(s->PenStyleJoinType()) << s->HotShow() << s->ResizeEnable()
        << s->RotateEnable();
    if (auto* line = dynamic_cast<TMyLine*>(s))
        out << qint32(line->ArrowAngle()) << quint8(line->ArrowLength()) << quint8(line->ArrowOffset())
            << quint8(line->ArrowStyle());
    if (auto* text = shape_cast<TMyText>(s))
        out << text->IsBorder() << text->IsSolid() << text->Lines()->Lines() << quint8(text->VAlignment())
            << quint8(text->HAlignment()) << text->WordWrap();
}

TMyShape* readQt(QDataStream& in, TMyCAD* cad) {
    QString className, name, caption, fontName, info;
    qint32 id, no, layer, parent, count, tag, fontHeight, fontSize, penWidth, userData, logHeight, logWidth;
    QList<qint32> children;
    QList<quint32> links;
    float tx, ty, angle;
    quint32 brushColor, colorBegin, colorEnd, fontColor, penColor;
    quint8 brushStyle, charset, pitch, fontStyle, gradient, penMode, penStyle, alignment, endCap, join;
    bool flipH, flipV, visible, logUse, locked, hotShow, resize, rotate;
    QStringList multiInfo;
    in >> className >> name >> id >> no >> layer >> parent >> children >> links;
    TMyShape* s = NewShapeOfClass(className, cad);
    s->setObjectName(name);
    s->SetShapeId(id);
    s->SetShapeNo(no);
    s->SetLayerId(layer);
    s->SetParentShapeNo(parent);
    if (!children.isEmpty()) s->SetChildShapeNos({children.begin(), children.end()});
    if (!links.isEmpty()) s->SetLinkShapeNos({links.begin(), links.end()});
    for (int list = 0; list < 2; ++list) {
        in >> count;
        TArrMyPoint points(size_t(std::max(count, 0)));
        for (TMyPoint& p : points) in >> p.x >> p.y;
        if (list == 0) s->SetPoints(points);
        else s->SetLinkPoints(points);
    }
    in >> tx >> ty >> tag >> angle >> brushColor >> brushStyle >> caption >> colorBegin >> colorEnd;
    in >> fontName >> charset >> fontColor >> fontHeight >> fontSize >> pitch >> fontStyle;
    in >> gradient >> info >> penColor >> penMode >> penStyle >> penWidth;
    in >> userData >> flipH >> flipV >> visible >> multiInfo >> alignment;
    in >> logHeight >> logUse >> logWidth >> locked >> endCap >> join >> hotShow >> resize >> rotate;
    s->SetTextPoint({tx, ty});
    s->SetTag(tag);
    s->SetAngle(angle);
    s->Brush()->SetColor(TColor(brushColor));
    s->Brush()->SetStyle(TBrushStyle(brushStyle));
    if (!caption.isEmpty()) s->SetCaption(caption);
    s->SetColorBegin(TColor(colorBegin));
    s->SetColorEnd(TColor(colorEnd));
    const TFont& f = s->FontRef();
    if (fontName != f.Name() || fontSize != f.Size() || fontColor != quint32(f.Color())) {
        s->Font()->SetName(fontName);
        s->Font()->SetSize(fontSize);
        s->Font()->SetColor(TColor(fontColor));
    }
    s->SetGradientStyle(TGradientStyle(gradient));
    s->SetInfo(info);
    s->Pen()->SetColor(TColor(penColor));
    s->Pen()->SetMode(TPenMode(penMode));
    s->Pen()->SetStyle(TPenStyle(penStyle));
    s->Pen()->SetWidth(penWidth);
    s->SetIsFlipHorz(flipH);
    s->SetIsFlipVert(flipV);
    s->SetVisible(visible);
    if (!multiInfo.isEmpty()) s->MultiInfo()->SetLines(multiInfo);
    s->SetMultiInfoAlignment(TAlignment(alignment));
    s->SetLogHeight(logHeight);
    s->SetLogUse(logUse);
    s->SetLogWidth(logWidth);
    s->SetLocked(locked);
    s->SetPenStyleEndCapType(TPenStyleEndCapType(endCap));
    s->SetPenStyleJoinType(TPenStyleJoinType(join));
    s->SetHotShow(hotShow);
    s->SetResizeEnable(resize);
    s->SetRotateEnable(rotate);
    if (auto* line = dynamic_cast<TMyLine*>(s)) {
        qint32 arrowAngle;
        quint8 length, offset, style;
        in >> arrowAngle >> length >> offset >> style;
        line->SetArrowAngle(arrowAngle);
        line->SetArrowLength(length);
        line->SetArrowOffset(offset);
        line->SetArrowStyle(TArrowStyle(style));
    }
    if (auto* text = shape_cast<TMyText>(s)) {
        bool border, solid, wrap;
        QStringList lines;
        quint8 v, h;
        in >> border >> solid >> lines >> v >> h >> wrap;
        text->SetIsBorder(border);
        text->SetIsSolid(solid);
        text->Lines()->SetLines(lines);
        text->SetVAlignment(TVJustification(v));
        text->SetHAlignment(THJustification(h));
        text->SetWordWrap(wrap);
    }
    s->SetCenterPoint(s->ComputeCenterPoint());
    return s;
}

void saveQt(TMyCAD& cad, const QString& fileName) {
    QFile file(fileName);
    file.open(QIODevice::WriteOnly);
    QDataStream out(&file);
    out << qint32(cad.GetShapesCount());
    for (TMyShape* s : cad.MyShapes()) writeQt(out, s);
}

void loadQt(TMyCAD& cad, const QString& fileName) {
    QFile file(fileName);
    file.open(QIODevice::ReadOnly);
    QDataStream in(&file);
    qint32 count;
    in >> count;
    cad.SetShapesCountForLoad(count);
    for (int i = 0; i < count; ++i) cad.AddShapeforLoadfromStream(i, readQt(in, &cad), true);
}

void BM_SaveAndLoad100k(benchmark::State& state) {
    const int n = int(state.range(0));
    const auto drawing = mixedDrawing(n);
    QTemporaryDir dir;
    const QString ours = dir.filePath("ours.fvd"), peer = dir.filePath("peer.bin");
    // The fastest of the iterations for each: the machine's noise (page
    // cache, other work) only ever adds time.
    double saveOurs = 1e9, savePeer = 1e9, loadOurs = 1e9, loadPeer = 1e9, peak = 0, own = 0;
    const auto fastest = [](double& best, double t) { best = std::min(best, t); };
    for (auto _ : state) {
        fastest(saveOurs, seconds([&] { drawing->SaveToFile(ours); }));
        fastest(savePeer, seconds([&] { saveQt(*drawing, peer); }));
        {
            const size_t before = heapBytes();
            size_t highest = before;
            auto cad = std::make_unique<TMyCAD>();
            cad->OnLoadProgress = [&](int64_t, int64_t) { highest = std::max(highest, heapBytes()); };
            fastest(loadOurs, seconds([&] { cad->LoadFromFile(ours); }));
            highest = std::max(highest, heapBytes());
            own = double(heapBytes() - before);
            peak = double(highest - before);
            if (cad->GetShapesCount() != n) state.SkipWithError("the drawing did not load whole");
        }
        {
            auto cad = std::make_unique<TMyCAD>();
            fastest(loadPeer, seconds([&] { loadQt(*cad, peer); }));
        }
    }
    state.counters["save_ratio"] = saveOurs / savePeer;
    state.counters["load_ratio"] = loadOurs / loadPeer;
    state.counters["load_peak_ratio"] = peak / own;
    state.counters["file_MB"] = double(QFile(ours).size()) / 1e6;
    state.counters["peer_file_MB"] = double(QFile(peer).size()) / 1e6;
}
BENCHMARK(BM_SaveAndLoad100k)->Arg(100000)->Unit(benchmark::kMillisecond)->Iterations(5);

}  // namespace
