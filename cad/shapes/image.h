// TMyImage: a picture in the rectangle's frame, drawn through the bitmap
// operations with brightness, contrast, grey scale, transparency and a border.
//
// The picture is stretched into the upright frame (the four points turned back
// by -Angle) and turned with the frame about its centre. Handles, hit test
// (the inside of the frame) and sizing are the rectangle's.
//
// Effects, in this order: GrayScale, Brightness (added to every channel,
// -255..255 covers everything: AdjustBrightBitmap), Contrast (-255..255,
// AdjustContrastBitmap: 255 pushes every channel away from 127 by up to its
// distance, -255 flattens it to 127), then the IsFlipHorz / IsFlipVert
// mirroring. Values outside those ranges act like the nearest end.
//
// Transparent: the pixels of the stored picture that have the transparent
// colour are not drawn. With tmFixed the colour is TransparentColor; with
// tmAuto it is the colour of the picture's bottom-left pixel (as the platform
// bitmap reports it). The colour is compared with the stored picture, before
// the effects, so grey scale, brightness and mirroring never change which
// pixels are see-through.
//
// An empty bitmap draws the frame and its two diagonals with the shape's pen,
// so the shape stays visible and pickable. Border outlines the frame with the
// shape's pen on top of the picture.
#pragma once

#include "cad/shapes/rectangle.h"
#include "platform/bitmap.h"

#include <QImage>

namespace faroven {

class TMyImage : public TMyRectangle {
    Q_OBJECT
    Q_PROPERTY(faroven::TBitmap* Bitmap READ Bitmap)
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

    // The picture; owned. SetBitmap copies. Pixels changed in place through
    // Bitmap() show at the next paint (the drawn picture follows the bitmap's
    // contents, not only the shape's revision).
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

    // The picture in the frame (placeholder for an empty bitmap), the border,
    // then the caption.
    void Draw(TCanvas* canvas) override;
    // "Image: 64 x 48 pixels, width 16.93 mm, height 12.70 mm, angle 0.0°".
    QString GetInfo() override;

    // The record: the parent's, then the bitmap and, by version, the effects and the transparency.
    void LoadFromStream(TStream& stream) override;
    void SaveToStream(TStream& stream) override;

protected:
    // Every field, the bitmap included.
    void assignOwnFields(const TMyShape* source, bool withRelations) override;

private:
    // Everything the drawn picture is made from. Repaints reuse the picture
    // until one of these changes; moving the shape only moves where it goes.
    struct PictureKey {
        qint64 bitmap = 0;  // the bitmap's contents (QImage::cacheKey)
        int brightness = 0, contrast = 0;
        bool grayScale = false, transparent = false, flipHorz = false, flipVert = false;
        TColor transparentColor = clNone;
        TTransparentMode transparentMode = tmAuto;
        bool operator==(const PictureKey&) const = default;
    };
    struct FrameKey {
        PictureKey picture;
        int width = 0, height = 0;  // the upright frame in pixels
        double degrees = 0;
        bool operator==(const FrameKey&) const = default;
    };
    PictureKey pictureKey() const;
    // The effects, the mirroring and (alpha 0) the transparent pixels, at the
    // picture's own size.
    QImage processedPicture() const;
    // The angle the picture turns by, in degrees clockwise: a whole degree
    // when Angle is within float noise of one, so that right angles are exact.
    double pictureDegrees() const;
    void drawPicture(TCanvas* canvas);
    // The frame through the four rounded zoomed corners, with the diagonals
    // when cross is set, in the shape's pen without fill.
    void drawFrame(TCanvas* canvas, bool cross);

    TBitmap m_bitmap;
    int m_brightness = 0;
    int m_contrast = 0;
    bool m_transparent = false;
    bool m_border = false;
    bool m_grayScale = false;
    TColor m_transparentColor = clWhite;
    TTransparentMode m_transparentMode = tmAuto;
    // The picture as last drawn: scaled to the frame and turned (framed), or,
    // for frames too large to keep, processed at its own size and stretched
    // by the painter at every paint.
    FrameKey m_cacheKey;
    bool m_cacheFramed = false;
    QImage m_cache;
};

}  // namespace faroven
