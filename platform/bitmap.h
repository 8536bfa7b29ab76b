// TBitmap: a picture in memory over QImage. A 24-bit bitmap keeps its scan
// lines as blue, green, red bytes (QImage::Format_BGR888); every other pixel
// format is held as 32-bit blue, green, red, pad (Format_RGB32), which is also
// the fastest target for painting. A bitmap saves and loads itself as a BMP
// file image.
#pragma once

#include "platform/color.h"
#include "platform/types.h"

#include <QImage>
#include <QObject>
#include <memory>

namespace faroven {
// Enumerations registered with Qt's meta-object system live in inline
// namespaces, one per header, because Qt allows one Q_NAMESPACE per namespace.
inline namespace bitmap_enums {
Q_NAMESPACE

enum TPixelFormat : uint8_t { pfDevice, pf1bit, pf4bit, pf8bit, pf15bit, pf16bit, pf24bit, pf32bit, pfCustom };
Q_ENUM_NS(TPixelFormat)
enum TTransparentMode : uint8_t { tmAuto, tmFixed };
Q_ENUM_NS(TTransparentMode)
}  // namespace bitmap_enums

class TCanvas;
class TStream;

class TBitmap : public TPersistent {
public:
    TBitmap();
    TBitmap(int width, int height, TPixelFormat format = pfDevice);
    ~TBitmap() override;
    TBitmap(const TBitmap&) = delete;
    TBitmap& operator=(const TBitmap&) = delete;

    // The size as set. While one side is 0 the bitmap has no pixels (Empty),
    // but the other side is kept, so that SetWidth(w) then SetHeight(h) gives
    // a w x h bitmap in either order.
    int Width() const { return m_image.isNull() ? m_width : m_image.width(); }
    int Height() const { return m_image.isNull() ? m_height : m_image.height(); }
    void SetWidth(int w) { SetSize(w, Height()); }
    void SetHeight(int h) { SetSize(Width(), h); }
    // Resizes, keeping the overlapping pixels; new pixels are white.
    void SetSize(int width, int height);
    bool Empty() const { return m_image.isNull(); }

    TPixelFormat PixelFormat() const { return m_format; }
    void SetPixelFormat(TPixelFormat format);
    // Bytes per pixel of the scan lines: 3 for pf24bit, 4 otherwise.
    int BytesPerPixel() const { return m_format == pf24bit ? 3 : 4; }

    // Row y of the pixels; ends any painting in progress on the bitmap's canvas.
    // Raises EInvalidGraphic for a row outside the pixels (every row of an
    // empty bitmap).
    uint8_t* ScanLine(int row);
    const uint8_t* ScanLine(int row) const;

    TCanvas* Canvas();

    bool Transparent() const { return m_transparent; }
    void SetTransparent(bool v) { m_transparent = v; }
    // tmAuto: the colour of the bottom-left pixel; tmFixed: the stored colour.
    TColor TransparentColor() const;
    void SetTransparentColor(TColor c) { m_transparentColor = c; m_transparentMode = tmFixed; }
    TTransparentMode TransparentMode() const { return m_transparentMode; }
    void SetTransparentMode(TTransparentMode m) { m_transparentMode = m; }

    void Assign(const TPersistent* source) override;
    void Assign(const TBitmap& source) { Assign(&source); }

    // Writes a complete BMP file image (file header included) at the stream's position.
    void SaveToStream(TStream& stream) const;
    // Reads a BMP file image at the stream's position; raises EInvalidGraphic on a bad image.
    void LoadFromStream(TStream& stream);
    void SaveToFile(const QString& fileName) const;
    void LoadFromFile(const QString& fileName);

    // The pixels. The non-const form ends any painting in progress first.
    QImage& Image();
    const QImage& Image() const;
    // Takes the pixels of image, converted to this bitmap's pixel format.
    void SetImage(const QImage& image);

    TNotifyEvent OnChange;

private:
    friend class TCanvas;
    QImage::Format qtFormat() const;
    void endPainting() const;

    QImage m_image;
    // The size as set, kept while m_image is null (a side of 0).
    int m_width = 0;
    int m_height = 0;
    TPixelFormat m_format = pfDevice;
    bool m_transparent = false;
    TColor m_transparentColor = clDefault;
    TTransparentMode m_transparentMode = tmAuto;
    std::unique_ptr<TCanvas> m_canvas;
};

}  // namespace faroven
