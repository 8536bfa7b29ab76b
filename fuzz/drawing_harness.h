// What the drawing-stream fuzz targets check on every input, shared with the
// test suite that replays stored inputs. Whatever the bytes, a load ends
// with the drawing loaded or with EReadError; a load that fails leaves the
// canvas exactly as it was; a drawing that loaded saves, and what it saved
// loads again to the same bytes. Anything else aborts, which the fuzzer
// reports as a finding.
#pragma once

#include "cad/canvas/mycad.h"
#include "cad/shapes/rectangle.h"
#include "platform/stream.h"

#include <QApplication>
#include <cstdio>
#include <cstdlib>

namespace faroven::fuzz {

inline void failDrawing(const char* what) {
    std::fprintf(stderr, "drawing harness: %s\n", what);
    std::abort();
}

inline void ensureApplication() {
    if (QCoreApplication::instance()) return;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static int argc = 1;
    static char name[] = "fuzz";
    static char* argv[] = {name, nullptr};
    new QApplication(argc, argv);
}

inline QByteArray savedBytes(TMyCAD& cad) {
    TMemoryStream s;
    cad.SaveToStream(s);
    return s.ToByteArray();
}

// A canvas holding a little drawing, so that a failed load has something to spoil.
inline void fillCanvas(TMyCAD& cad) {
    auto* r = new TMyRectangle(&cad);
    for (TMyPoint p : {TMyPoint{1, 1}, TMyPoint{9, 1}, TMyPoint{9, 9}, TMyPoint{1, 9}}) r->AddPoint(p);
    cad.AddNewShape(r);
    cad.NewLayer("Other", true);
}

// After a successful load: the drawing saves, and loads again to the same bytes.
inline void checkStable(TMyCAD& cad) {
    const QByteArray once = savedBytes(cad);
    TMyCAD again;
    auto s = TMemoryStream::FromBytes(once);
    try {
        again.LoadFromStream(*s);
    } catch (const EReadError&) {
        failDrawing("a saved drawing does not load");
    }
    if (savedBytes(again) != once) failDrawing("a saved drawing loads to different bytes");
}

inline void runDrawingLoad(const uint8_t* data, size_t size) {
    ensureApplication();
    TMyCAD cad;
    fillCanvas(cad);
    const QByteArray before = savedBytes(cad);
    auto stream = TMemoryStream::FromBytes(QByteArray(reinterpret_cast<const char*>(data), int(size)));
    try {
        cad.LoadFromStream(*stream);
    } catch (const EReadError&) {
        if (savedBytes(cad) != before) failDrawing("a failed load changed the drawing");
        return;
    }
    checkStable(cad);
    // Whatever a file holds, its page becomes a metafile or a clear refusal.
    try {
        if (cad.WmfBytes().isEmpty()) failDrawing("an empty metafile");
    } catch (const EInvalidGraphic&) {
    }
}

// The first byte picks the layer mode; the rest is the block.
inline void runBlockLoad(const uint8_t* data, size_t size) {
    if (size == 0) return;
    ensureApplication();
    TMyCAD cad;
    fillCanvas(cad);
    const QByteArray before = savedBytes(cad);
    const TBlockLayerMode mode = data[0] & 1 ? Import : Merge;
    auto stream = TMemoryStream::FromBytes(QByteArray(reinterpret_cast<const char*>(data + 1), int(size - 1)));
    try {
        cad.LoadFromStreamforBlock(*stream, mode);
    } catch (const EReadError&) {
        if (savedBytes(cad) != before) failDrawing("a failed block load changed the drawing");
        return;
    }
    cad.PasteforBlock();
    checkStable(cad);
}

}  // namespace faroven::fuzz
