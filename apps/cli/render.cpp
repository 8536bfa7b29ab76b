#include "render.h"

#include "cad/canvas/mycad.h"
#include "platform/canvas.h"

#include <QFileInfo>
#include <QImage>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>
#include <QSvgGenerator>

namespace faroven::cli {

namespace {
constexpr int kMargin = 10;
}

void RenderPicture(TMyCAD& canvas, const QString& path, double zoom) {
    canvas.SetZoom(zoom);
    std::vector<TMyShape*> roots;
    TRect box{};
    for (TMyShape* shape : canvas.MyShapes()) {
        if (shape->HasParentShape() || !shape->Visible() || !canvas.IsVisibleLayerByID(shape->LayerId())) continue;
        const TRect b = shape->GetPaintBoundsInZoom();
        box = roots.empty() ? b : TRect{std::min(box.left, b.left), std::min(box.top, b.top), std::max(box.right, b.right),
                                        std::max(box.bottom, b.bottom)};
        roots.push_back(shape);
    }
    box = TRect{box.left - kMargin, box.top - kMargin, box.right + kMargin, box.bottom + kMargin};
    const int w = std::max(box.right - box.left, 1), h = std::max(box.bottom - box.top, 1);
    auto paint = [&](QPaintDevice* device) {
        QPainter painter(device);
        painter.fillRect(QRect(0, 0, w, h), Qt::white);
        TCanvas target;
        target.AttachPainter(&painter, TRect{0, 0, w, h});
        target.SetWindowOrg(box.left, box.top);
        canvas.DrawShapes(&target, roots);
        target.DetachPainter();
    };

    const QString suffix = QFileInfo(path).suffix().toLower();
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        throw EFCreateError(QStringLiteral("Cannot create file \"%1\". %2").arg(path, file.errorString()));
    if (suffix == u"png") {
        QImage image(w, h, QImage::Format_RGB32);
        paint(&image);
        if (!image.save(&file, "PNG")) throw EWriteError(QStringLiteral("Cannot write file \"%1\"").arg(path));
    } else if (suffix == u"svg") {
        QSvgGenerator svg;
        svg.setOutputDevice(&file);
        svg.setSize(QSize(w, h));
        svg.setViewBox(QRect(0, 0, w, h));
        svg.setTitle(QFileInfo(path).completeBaseName());
        paint(&svg);
    } else {
        // One page the size of the picture at 96 pixels per inch.
        QPdfWriter pdf(&file);
        pdf.setResolution(96);
        pdf.setPageSize(QPageSize(QSizeF(w * 72.0 / 96, h * 72.0 / 96), QPageSize::Point));
        pdf.setPageMargins(QMarginsF(0, 0, 0, 0));
        paint(&pdf);
    }
    if (!file.commit()) throw EWriteError(QStringLiteral("Cannot write file \"%1\". %2").arg(path, file.errorString()));
}

}  // namespace faroven::cli
