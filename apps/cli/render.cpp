#include "render.h"

#include "cad/canvas/mycad.h"
#include "platform/wmf_device.h"

#include <QFileInfo>
#include <QImageWriter>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>
#include <QSvgGenerator>

namespace faroven::cli {

namespace {
constexpr int kMargin = 10;

QString suffixOf(const QString& path) { return QFileInfo(path).suffix().toLower(); }

void savePage(TMyCAD& canvas, const QString& path, double zoom) {
    const QString suffix = suffixOf(path);
    canvas.SetZoom(zoom);
    if (suffix == u"png") canvas.SaveToPng(path);
    else if (suffix == u"jpg" || suffix == u"jpeg") canvas.SaveToJpg(path);
    else if (suffix == u"bmp") canvas.SaveToBmp(path);
    else if (suffix == u"svg") canvas.SaveToSvg(path);
    else if (suffix == u"wmf") canvas.SaveToWmf(path);
    else canvas.SaveToPdf(path);
}
}  // namespace

bool IsPictureSuffix(const QString& suffix) {
    static const QStringList kinds{"png", "jpg", "jpeg", "bmp", "svg", "pdf", "wmf"};
    return kinds.contains(suffix);
}

void RenderPicture(TMyCAD& canvas, const QString& path, double zoom, bool page) {
    if (page) {
        savePage(canvas, path, zoom);
        return;
    }
    TRect box = canvas.VisibleShapesBoundsAt(zoom);
    box = TRect{box.left - kMargin, box.top - kMargin, box.right + kMargin, box.bottom + kMargin};
    const int w = std::max(box.Width(), 1), h = std::max(box.Height(), 1);
    const TRenderOptions shapesOnly{false, false, false, false};
    auto paint = [&](QPaintDevice* device) {
        QPainter painter(device);
        painter.fillRect(QRect(0, 0, w, h), Qt::white);
        canvas.RenderTo(&painter, box, shapesOnly, zoom);
    };

    const QString suffix = suffixOf(path);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        throw EFCreateError(QStringLiteral("Cannot create file \"%1\". %2").arg(path, file.errorString()));
    if (suffix == u"svg") {
        QSvgGenerator svg;
        svg.setOutputDevice(&file);
        svg.setSize(QSize(w, h));
        svg.setViewBox(QRect(0, 0, w, h));
        svg.setTitle(QFileInfo(path).completeBaseName());
        paint(&svg);
    } else if (suffix == u"wmf") {
        if (w > TWmfDevice::MaxSize || h > TWmfDevice::MaxSize)
            throw EWriteError(QStringLiteral("%1: a metafile of %2 x %3 units is too large").arg(path).arg(w).arg(h));
        TWmfDevice wmf(w, h);
        paint(&wmf);
        const QByteArray bytes = wmf.Data();
        if (file.write(bytes) != bytes.size())
            throw EWriteError(QStringLiteral("Cannot write file \"%1\". %2").arg(path, file.errorString()));
    } else if (suffix == u"pdf") {
        // One page the size of the picture at 96 pixels per inch.
        QPdfWriter pdf(&file);
        pdf.setResolution(96);
        pdf.setPageSize(QPageSize(QSizeF(w * 72.0 / 96, h * 72.0 / 96), QPageSize::Point));
        pdf.setPageMargins(QMarginsF(0, 0, 0, 0));
        paint(&pdf);
    } else {
        if (int64_t(w) * h > TMyCAD::MaxPicturePixels)
            throw EWriteError(QStringLiteral("%1: a picture of %2 x %3 pixels is too large").arg(path).arg(w).arg(h));
        QImage image(w, h, QImage::Format_RGB32);
        if (image.isNull()) throw EWriteError(QStringLiteral("%1: a picture of %2 x %3 pixels is too large").arg(path).arg(w).arg(h));
        paint(&image);
        const bool jpg = suffix == u"jpg" || suffix == u"jpeg";
        QImageWriter writer(&file, jpg ? "JPEG" : suffix == u"bmp" ? "BMP" : "PNG");
        if (!writer.write(suffix == u"bmp" ? image.convertToFormat(QImage::Format_RGB888) : image))
            throw EWriteError(QStringLiteral("Cannot write file \"%1\". %2").arg(path, writer.errorString()));
    }
    if (!file.commit()) throw EWriteError(QStringLiteral("Cannot write file \"%1\". %2").arg(path, file.errorString()));
}

}  // namespace faroven::cli
