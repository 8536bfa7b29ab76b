// What the DXF import fuzz target checks on every input, shared with the test
// suite that replays stored inputs. Whatever the bytes, the basic and the
// extended import end with shapes or one of the documented errors
// (EConvertError, EDXFImportError); a failed import leaves the canvas's bytes,
// layers and current layer as they were; imported shapes paint, and the
// drawing saves and loads again to the same bytes. Anything else aborts,
// which the fuzzer reports as a finding.
#pragma once

#include "dxf/dxf_import.h"
#include "fuzz/drawing_harness.h"

#include <QImage>
#include <QPainter>

namespace faroven::fuzz {

inline void runDxfImport(const uint8_t* data, size_t size) {
    ensureApplication();
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    for (const bool extended : {false, true}) {
        TMyCAD cad;
        fillCanvas(cad);
        const QByteArray before = savedBytes(cad);
        const int layers = cad.GetLayersCount(), current = cad.CurrentLayerId();
        // The reader reads up to the first section when it is made, so a bad
        // number there raises from the constructor.
        std::unique_ptr<TDXF2DImport> importer;
        bool failed = false;
        try {
            importer = std::make_unique<TDXF2DImport>(bytes, &cad);
            importer->SetExtended(extended);
            // Keeps block expansion small enough for the fuzzer's time and memory.
            importer->SetMaxExpandedEntities(20'000);
            importer->ReadDXF();
        } catch (const EConvertError&) {
            failed = true;
        } catch (const EDXFImportError&) {
            failed = true;
        }
        if (importer && importer->ReadFailed() != failed) failDrawing("ReadFailed does not tell the failure");
        if (failed) {
            if (savedBytes(cad) != before) failDrawing("a failed import changed the drawing");
            if (cad.GetLayersCount() != layers || cad.CurrentLayerId() != current)
                failDrawing("a failed import changed the layers");
            continue;
        }
        QImage image(64, 64, QImage::Format_RGB32);
        QPainter painter(&image);
        TCanvas canvas;
        canvas.AttachPainter(&painter, TRect{0, 0, 64, 64});
        std::vector<TMyShape*> roots;
        for (TMyShape* shape : cad.MyShapes())
            if (!shape->HasParentShape()) roots.push_back(shape);
        cad.DrawShapes(&canvas, roots);
        canvas.DetachPainter();
        checkStable(cad);
    }
}

}  // namespace faroven::fuzz
