#include "cad/shapes/image.h"

#include "cad/geometry/bitmap_ops.h"
#include "cad/geometry/geometry.h"
#include "cad/shapes/shape_markers.h"
#include "cad/shapes/shape_p.h"

#include <QPainter>
#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace faroven {

using namespace shape_detail;

namespace {

// Frames up to this many pixels keep their picture at the frame's size (16 MB);
// larger ones keep it at the picture's own size and let the painter stretch it.
constexpr qint64 kMaxFramedPixels = qint64(1) << 22;

// Nearest neighbour: target pixel (x, y) takes the source pixel under its
// centre. Both images have 32 bits per pixel.
QImage scaledNearest(const QImage& source, int w, int h) {
    QImage out(w, h, source.format());
    const qint64 sw = source.width(), sh = source.height();
    std::vector<int> columns(size_t(w), 0);
    for (int x = 0; x < w; ++x) columns[size_t(x)] = int((2 * x + 1) * sw / (2 * qint64(w)));
    for (int y = 0; y < h; ++y) {
        const auto* s = reinterpret_cast<const QRgb*>(source.constScanLine(int((2 * y + 1) * sh / (2 * qint64(h)))));
        auto* d = reinterpret_cast<QRgb*>(out.scanLine(y));
        for (int x = 0; x < w; ++x) d[x] = s[columns[size_t(x)]];
    }
    return out;
}

// The picture turned clockwise through RotateBitmap, which knows no alpha: a
// white-on-black mask turned the same way keeps the corners that the turn
// uncovers, and the transparent pixels, undrawn.
QImage turned(const QImage& picture, double degrees) {
    QImage maskImage(picture.size(), QImage::Format_BGR888);
    for (int y = 0; y < picture.height(); ++y) {
        const auto* s = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
        uchar* d = maskImage.scanLine(y);
        for (int x = 0; x < picture.width(); ++x) std::fill_n(d + 3 * x, 3, qAlpha(s[x]) ? 0xFF : 0);
    }
    TBitmap colour, mask;
    colour.SetPixelFormat(pf24bit);
    colour.SetImage(picture);
    mask.SetPixelFormat(pf24bit);
    mask.SetImage(maskImage);
    mask.SetTransparentColor(clBlack);
    const auto turnedColour = RotateBitmap(colour, degrees);
    const auto turnedMask = RotateBitmap(mask, degrees);
    const QImage& c = turnedColour->Image();
    const QImage& m = turnedMask->Image();
    QImage out(c.size(), QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < c.height(); ++y) {
        const uchar* cs = c.constScanLine(y);
        const uchar* ms = m.constScanLine(y);
        auto* d = reinterpret_cast<QRgb*>(out.scanLine(y));
        for (int x = 0; x < c.width(); ++x) d[x] = ms[3 * x] ? qRgb(cs[3 * x + 2], cs[3 * x + 1], cs[3 * x]) : 0;
    }
    return out;
}

}  // namespace

TMyImage::TMyImage(TMyCAD* canvas) : TMyRectangle(canvas) {}

void TMyImage::assignOwnFields(const TMyShape* source, bool withRelations) {
    TMyRectangle::assignOwnFields(source, withRelations);
    const auto* s = dynamic_cast<const TMyImage*>(source);
    if (!s) return;
    m_bitmap.Assign(s->m_bitmap);
    m_brightness = s->m_brightness;
    m_contrast = s->m_contrast;
    m_transparent = s->m_transparent;
    m_border = s->m_border;
    m_grayScale = s->m_grayScale;
    m_transparentColor = s->m_transparentColor;
    m_transparentMode = s->m_transparentMode;
}

TMyImage::PictureKey TMyImage::pictureKey() const {
    return PictureKey{m_bitmap.Image().cacheKey(), m_brightness, m_contrast, m_grayScale, m_transparent,
                      IsFlipHorz(), IsFlipVert(), m_transparentColor, m_transparentMode};
}

QImage TMyImage::processedPicture() const {
    TBitmap work;
    work.Assign(m_bitmap);
    work.SetPixelFormat(pf24bit);
    GrayScaleBitmap(work, m_grayScale);
    AdjustBrightBitmap(work, m_brightness);
    AdjustContrastBitmap(work, m_contrast);
    FlipBitmap(work, IsFlipHorz(), IsFlipVert());
    QImage out = work.Image().convertToFormat(m_transparent ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
    if (!m_transparent) return out;
    // The see-through pixels are those of the stored picture, mirrored like it.
    const QImage source = m_bitmap.Image().convertToFormat(QImage::Format_RGB32);
    const int w = source.width(), h = source.height();
    const QRgb key = (m_transparentMode == tmFixed ? ToQRgb(m_transparentColor) : source.pixel(0, h - 1)) & 0xFFFFFF;
    for (int y = 0; y < h; ++y) {
        const auto* s = reinterpret_cast<const QRgb*>(source.constScanLine(y));
        auto* d = reinterpret_cast<QRgb*>(out.scanLine(IsFlipVert() ? h - 1 - y : y));
        for (int x = 0; x < w; ++x)
            if ((s[x] & 0xFFFFFF) == key) d[IsFlipHorz() ? w - 1 - x : x] = 0;
    }
    return out;
}

double TMyImage::pictureDegrees() const {
    double degrees = std::fmod(double(Angle()) * 180.0 / std::numbers::pi, 360.0);
    if (degrees < 0) degrees += 360.0;
    // A quarter turn stored as float radians is 90.0000025 degrees.
    const double whole = std::round(degrees);
    if (std::abs(degrees - whole) < 1e-3) degrees = whole;
    return degrees >= 360.0 ? degrees - 360.0 : degrees;
}

void TMyImage::drawPicture(TCanvas* canvas) {
    QPainter* painter = canvas->Painter();
    if (!painter) return;
    const double degrees = pictureDegrees();
    const double zoom = Zoom();
    // The upright frame in pixels: an unturned one exactly on the rounded
    // corners (where the border runs), a turned one about the zoomed centre.
    const TMyPoint centre = ZoomedValuePt(ComputeCenterPoint(4));
    int left = 0, top = 0, w = Round(UprightWidth() * zoom), h = Round(UprightHeight() * zoom);
    if (degrees == 0) {
        const std::array<TMyPoint, 4> z = cornersInZoom();
        const TRect box = myRecttoRect(GetPointsLTRB(TArrMyPoint(z.begin(), z.end())));
        left = box.left;
        top = box.top;
        w = box.right - box.left;
        h = box.bottom - box.top;
    }
    if (w <= 0 || h <= 0) return;

    const FrameKey key{pictureKey(), w, h, degrees};
    const qint64 extent = degrees == 0 ? qint64(w) * h : (qint64(w) + h) * (qint64(w) + h);
    const bool framed = extent <= kMaxFramedPixels;
    const bool fresh = !m_cache.isNull() && m_cacheFramed == framed &&
                       (framed ? m_cacheKey == key : m_cacheKey.picture == key.picture);
    if (!fresh) {
        m_cache = processedPicture();
        if (framed) m_cache = scaledNearest(m_cache, w, h);
        if (framed && degrees != 0) m_cache = turned(m_cache, degrees);
        m_cacheKey = key;
        m_cacheFramed = framed;
    }

    if (framed) {
        const TPoint at = degrees == 0 ? TPoint{left, top}
                                       : TPoint{Round(centre.x - m_cache.width() / 2.0), Round(centre.y - m_cache.height() / 2.0)};
        painter->drawImage(QPoint(at.x, at.y), m_cache);
        return;
    }
    // The painter stretches and turns the picture and fills only the pixels
    // inside its clip, so a frame far larger than the screen costs no more.
    painter->save();
    painter->setRenderHint(QPainter::SmoothPixmapTransform, false);
    if (degrees == 0)
        painter->translate(left + w / 2.0, top + h / 2.0);
    else
        painter->translate(centre.x, centre.y);
    painter->rotate(degrees);
    painter->scale(double(w) / m_cache.width(), double(h) / m_cache.height());
    painter->drawImage(QPointF(-m_cache.width() / 2.0, -m_cache.height() / 2.0), m_cache);
    painter->restore();
}

void TMyImage::drawFrame(TCanvas* canvas, bool cross) {
    TArrPoint outline;
    for (const TMyPoint& p : cornersInZoom()) outline.push_back(MyPtToPt(p));
    SetDrawShapeMode(this, canvas);
    SetPS(canvas);
    canvas->Brush()->SetStyle(bsClear);
    canvas->Polygon(outline);
    if (cross) {
        canvas->MoveTo(outline[0].x, outline[0].y);
        canvas->LineTo(outline[2].x, outline[2].y);
        canvas->MoveTo(outline[1].x, outline[1].y);
        canvas->LineTo(outline[3].x, outline[3].y);
    }
    canvas->SetPenGeometry(TPenJoin::Default, TPenCap::Default);
}

void TMyImage::Draw(TCanvas* canvas) {
    if (GetPointsCount() >= 4) {
        if (m_bitmap.Empty()) {
            drawFrame(canvas, true);
        } else {
            drawPicture(canvas);
            if (m_border) drawFrame(canvas, false);
        }
    }
    SetDrawShapeMode(this, canvas);
    DrawInfo(canvas);
}

QString TMyImage::GetInfo() {
    // The rectangle's text with the picture's size after the kind.
    const QString kind = shapeKind(this) + QStringLiteral(": ");
    return kind + QStringLiteral("%1 x %2 pixels, ").arg(m_bitmap.Width()).arg(m_bitmap.Height()) +
           TMyRectangle::GetInfo().mid(kind.size());
}

}  // namespace faroven
