// TMyImage: a picture in the rectangle's frame, drawn through the bitmap
// operations with brightness, contrast, grey scale, transparency and a border.
#pragma once

#include "cad/shapes/rectangle.h"
#include "platform/bitmap.h"

namespace faroven {

class TMyImage : public TMyRectangle {
    Q_OBJECT
    Q_PROPERTY(int Brightness READ Brightness WRITE SetBrightness)
    Q_PROPERTY(int Contrast READ Contrast WRITE SetContrast)
    Q_PROPERTY(bool Transparent READ Transparent WRITE SetTransparent)
    Q_PROPERTY(bool Border READ Border WRITE SetBorder)
    Q_PROPERTY(bool GrayScale READ GrayScale WRITE SetGrayScale)
    Q_PROPERTY(int TransparentColor READ TransparentColor WRITE SetTransparentColor)
    Q_PROPERTY(faroven::TTransparentMode TransparentMode READ TransparentMode WRITE SetTransparentMode)
public:
    static constexpr TShapeKind Kind = TShapeKind::Image;
    TShapeKind kind() const override { return Kind; }
    explicit TMyImage(TMyCAD* canvas);

    // The picture; owned. SetBitmap copies.
    TBitmap* Bitmap() { return &m_bitmap; }
    const TBitmap* Bitmap() const { return &m_bitmap; }
    void SetBitmap(const TBitmap& v) { m_bitmap.Assign(v); changed(); }
    int Brightness() const { return m_brightness; }
    void SetBrightness(int v) { m_brightness = v; changed(); }
    int Contrast() const { return m_contrast; }
    void SetContrast(int v) { m_contrast = v; changed(); }
    bool Transparent() const { return m_transparent; }
    void SetTransparent(bool v) { m_transparent = v; changed(); }
    bool Border() const { return m_border; }
    void SetBorder(bool v) { m_border = v; changed(); }
    bool GrayScale() const { return m_grayScale; }
    void SetGrayScale(bool v) { m_grayScale = v; changed(); }
    TColor TransparentColor() const { return m_transparentColor; }
    void SetTransparentColor(TColor v) { m_transparentColor = v; changed(); }
    TTransparentMode TransparentMode() const { return m_transparentMode; }
    void SetTransparentMode(TTransparentMode v) { m_transparentMode = v; changed(); }

private:
    TBitmap m_bitmap;
    int m_brightness = 0;
    int m_contrast = 0;
    bool m_transparent = false;
    bool m_border = false;
    bool m_grayScale = false;
    TColor m_transparentColor = clWhite;
    TTransparentMode m_transparentMode = tmAuto;
};

}  // namespace faroven
