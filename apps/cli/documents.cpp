#include "documents.h"

#include "render.h"

#include "cad/canvas/mycad.h"
#include "cad/persistence/lib_manager.h"
#include "dxf/dxf_export.h"
#include "dxf/dxf_import.h"

#include <QFile>
#include <QFileInfo>
#include <cmath>

namespace faroven::cli {

namespace {
constexpr double kPixelsPerMm = 96 / 25.4;

QString suffixOf(const QString& path) { return QFileInfo(path).suffix().toLower(); }

// The extent of the shapes in drawing units (an empty canvas gives nothing).
bool drawingBounds(const TMyCAD& canvas, TMyRect& box) {
    bool any = false;
    for (TMyShape* shape : canvas.MyShapes()) {
        const TMyRect b = shape->GetBounds();
        if (!any) box = b;
        box = TMyRect{std::min(box.left, b.left), std::min(box.top, b.top), std::max(box.right, b.right),
                      std::max(box.bottom, b.bottom)};
        any = true;
    }
    return any;
}
}  // namespace

FileKind KindOf(const QString& path) {
    if (TMyCAD::IsZEMAFile(path)) return FileKind::Drawing;
    if (ReadLibFileTag(path).startsWith(u"ZEMALIB")) return FileKind::Library;
    if (suffixOf(path) == u"dxf") return FileKind::Dxf;
    QFile file(path);
    if (file.open(QIODevice::ReadOnly)) {
        const QByteArray first = file.readLine(64).trimmed();
        if (first == "0" || first == "999") return FileKind::Dxf;
    }
    return FileKind::Unknown;
}

QString KindName(FileKind kind) {
    switch (kind) {
    case FileKind::Drawing: return QStringLiteral("drawing");
    case FileKind::Library: return QStringLiteral("library");
    case FileKind::Dxf: return QStringLiteral("DXF");
    case FileKind::Unknown: break;
    }
    return QStringLiteral("unknown");
}

QStringList OpenInto(TMyCAD& canvas, const QString& path, const DxfOptions& options, const Progress& progress) {
    if (!QFileInfo(path).isFile()) throw EFOpenError(QStringLiteral("%1: no such file").arg(path));
    switch (KindOf(path)) {
    case FileKind::Drawing:
        if (progress)
            canvas.OnLoadProgress = [&](int64_t done, int64_t total) { progress(QStringLiteral("Loading"), done, total); };
        canvas.LoadFromFile(path);
        canvas.OnLoadProgress = nullptr;
        return {};
    case FileKind::Dxf: {
        TDXF2DImport importer(path, &canvas);
        importer.SetExtended(options.extended);
        importer.SetScalex(float(kPixelsPerMm * options.scale));
        importer.SetScaley(float(-kPixelsPerMm * options.scale));
        importer.SetOffSetX(float(options.offsetX));
        importer.SetOffSetY(float(options.offsetY));
        if (!options.offsetGiven) importer.SetDestRegion(TRect{0, 0, 1, 1});
        if (progress) importer.OnProgress = [&](int entities) { progress(QStringLiteral("Importing"), entities, 0); };
        importer.ReadDXF();
        return importer.Skipped();
    }
    case FileKind::Library:
        throw EReadError(QStringLiteral("%1: a shape library; use \"faroven info\" to list its entries").arg(path));
    case FileKind::Unknown: break;
    }
    throw EReadError(QStringLiteral("%1: neither a Faroven drawing nor a DXF file").arg(path));
}

void SaveFrom(TMyCAD& canvas, const QString& path, const DxfOptions& options, double zoom, bool page) {
    const QString suffix = suffixOf(path);
    if (suffix == u"fvd") {
        canvas.SaveToFile(path);
    } else if (suffix == u"dxf") {
        // DXF's y axis points up from the bottom of the canvas: the canvas
        // ends at the drawing's bottom edge, so every y is positive.
        TMyRect box{0, 0, 1, 1};
        drawingBounds(canvas, box);
        canvas.resize(std::max(1, int(std::ceil(box.right))), std::max(1, int(std::ceil(box.bottom))));
        TDxfExportOptions dxf;
        dxf.Interchange = options.interchange;
        canvas.SaveToDxf(path, dxf);
    } else if (IsPictureSuffix(suffix)) {
        RenderPicture(canvas, path, zoom, page);
    } else {
        throw EWriteError(
            QStringLiteral("%1: unknown output type \".%2\" (use .fvd, .dxf, .png, .jpg, .bmp, .svg, .pdf or .wmf)").arg(path, suffix));
    }
}

}  // namespace faroven::cli
