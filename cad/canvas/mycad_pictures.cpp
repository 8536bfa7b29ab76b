// TMyCAD: the drawing as picture files. Pixel pictures are the screen's
// rendering of the page at the current zoom; vector pictures are the
// printer's rendering of the page at zoom 1. Both go through RenderPage's
// path, so they show what the screen and the printer show.
#include "cad/canvas/mycad.h"

#include "platform/system.h"
#include "platform/wmf_device.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImageWriter>
#include <QSaveFile>
#include <QSvgGenerator>

namespace faroven {

namespace {
// Writes the file through QSaveFile; write fills the open file and returns
// false when it failed.
template <typename Write>
void saveFile(const QString& fileName, Write write) {
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly))
        throw EFCreateError(QStringLiteral("Cannot create file \"%1\". %2").arg(fileName, file.errorString()));
    if (!write(file) || !file.commit())
        throw EWriteError(QStringLiteral("Cannot write file \"%1\". %2").arg(fileName, file.errorString()));
}

void saveImage(const QString& fileName, const QImage& image, const char* format, int quality = -1) {
    saveFile(fileName, [&](QIODevice& file) {
        QImageWriter writer(&file, format);
        writer.setQuality(quality);
        return writer.write(image);
    });
}
}  // namespace

QImage TMyCAD::PageImage() {
    const TRect page = ClientRect();
    const int64_t pixels = int64_t(page.Width()) * page.Height();
    if (pixels > MaxPicturePixels)
        throw EInvalidGraphic(QStringLiteral("The page is too large for a picture (%1 x %2 pixels at zoom %3)")
                                  .arg(page.Width())
                                  .arg(page.Height())
                                  .arg(m_zoom));
    // Drawn in the paint buffer, as a paint draws, so the pixels are the
    // screen's; the buffer is given back afterwards, as it may be large.
    m_paintBuffer.SetSize(page.Width(), page.Height());
    if (m_paintBuffer.Empty()) throw EInvalidGraphic(QStringLiteral("Not enough memory for a picture of the page"));
    renderArea(m_paintBuffer.Canvas(), page, page, page, ScreenRenderOptions());
    QImage image = m_paintBuffer.Image().copy();
    m_paintBuffer.SetSize(0, 0);
    return image;
}

void TMyCAD::SaveToBmp(const QString& fileName) {
    saveImage(fileName, PageImage().convertToFormat(QImage::Format_RGB888), "BMP");
}

void TMyCAD::SaveToJpg(const QString& fileName, int quality) {
    saveImage(fileName, PageImage(), "JPEG", std::clamp(quality, 0, 100));
}

void TMyCAD::SaveToPng(const QString& fileName) { saveImage(fileName, PageImage(), "PNG"); }

QByteArray TMyCAD::SvgBytes() {
    const TRect page = PageRectAt(1.0);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QSvgGenerator svg;
    svg.setOutputDevice(&buffer);
    svg.setSize(QSize(page.Width(), page.Height()));
    svg.setViewBox(QRect(0, 0, page.Width(), page.Height()));
    svg.setResolution(ScreenPixelsPerInch());
    svg.setTitle(Name().isEmpty() ? QStringLiteral("Drawing") : Name());
    svg.setDescription(QStringLiteral("Drawn with Faroven"));
    RenderTo(&svg, page, PrintRenderOptions(), 1.0);
    return bytes;
}

void TMyCAD::SaveToSvg(const QString& fileName) {
    const QByteArray bytes = SvgBytes();
    saveFile(fileName, [&](QIODevice& file) { return file.write(bytes) == bytes.size(); });
}

QByteArray TMyCAD::WmfBytes() {
    const TRect page = PageRectAt(1.0);
    if (page.Width() > TWmfDevice::MaxSize || page.Height() > TWmfDevice::MaxSize)
        throw EInvalidGraphic(QStringLiteral("The page is too large for a metafile (%1 x %2 units, at most %3)")
                                  .arg(page.Width())
                                  .arg(page.Height())
                                  .arg(TWmfDevice::MaxSize));
    TWmfDevice wmf(page.Width(), page.Height(), ScreenPixelsPerInch());
    RenderTo(&wmf, page, PrintRenderOptions(), 1.0);
    return wmf.Data();
}

void TMyCAD::SaveToWmf(const QString& fileName) {
    const QByteArray bytes = WmfBytes();
    saveFile(fileName, [&](QIODevice& file) { return file.write(bytes) == bytes.size(); });
}

void TMyCAD::CopyToClipBoardAsWmf() {
    const TRect page = PageRectAt(1.0);
    QImage picture(page.Width(), page.Height(), QImage::Format_RGB32);
    picture.fill(Qt::white);
    RenderTo(&picture, page, PrintRenderOptions(), 1.0);
    Clipboard()->SetFormats({{QStringLiteral("image/x-wmf"), WmfBytes()}, {QStringLiteral("image/svg+xml"), SvgBytes()}},
                            picture);
}

}  // namespace faroven
