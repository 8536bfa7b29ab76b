#include "cad/shapes/shape_p.h"

#include "cad/canvas/mycad.h"
#include "platform/bitmap.h"
#include "platform/canvas.h"
#include "platform/convert.h"
#include "platform/system.h"

#include <QImage>
#include <QPainter>
#include <QPointF>
#include <QPolygon>
#include <QRegion>
#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>
#include <numbers>

namespace faroven::shape_detail {

namespace {

bool g_directPainting = true;

}  // namespace

bool axisAlignedRect(const TArrPoint& o, TRect& r) {
    if (o.size() != 4 && o.size() != 5) return false;
    if (o.size() == 5 && !(o[4] == o[0])) return false;
    const bool horizontalFirst = o[0].y == o[1].y && o[1].x == o[2].x && o[2].y == o[3].y && o[3].x == o[0].x;
    const bool verticalFirst = o[0].x == o[1].x && o[1].y == o[2].y && o[2].x == o[3].x && o[3].y == o[0].y;
    if (!horizontalFirst && !verticalFirst) return false;
    r = TRect{std::min(o[0].x, o[2].x), std::min(o[0].y, o[2].y), std::max(o[0].x, o[2].x), std::max(o[0].y, o[2].y)};
    return true;
}

double pixelsToUnit(double pixels, TUnits unit, double ratio) { return PixelsToUnit(pixels, unit, ratio); }

double squarePixelsToUnit(double squarePixels, TUnits unit, double ratio) {
    // A unit length squared, so the ratio applies twice as it should.
    const double k = PixelsToUnit(1.0, unit, ratio);
    return squarePixels * k * k;
}

QString formatLength(double value, TUnits unit) {
    return FormatFloatFixed(value, 2) + QLatin1Char(' ') + UnitAbbreviation(unit);
}

QString formatDegrees(double degrees) { return FormatFloatFixed(degrees, 1) + QChar(0x00B0); }

QString shapeKind(const TMyShape* shape) {
    switch (shape->kind()) {
    case TShapeKind::Shape: return QStringLiteral("Shape");
    case TShapeKind::Rectangle: return QStringLiteral("Rectangle");
    case TShapeKind::Ellipse: return QStringLiteral("Ellipse");
    case TShapeKind::Group: return QStringLiteral("Group");
    case TShapeKind::Combine: return QStringLiteral("Combine");
    case TShapeKind::Line: return QStringLiteral("Line");
    case TShapeKind::RuleLine: return QStringLiteral("Measuring line");
    case TShapeKind::PolyLine: return QStringLiteral("Polyline");
    case TShapeKind::Polygon: return QStringLiteral("Polygon");
    case TShapeKind::FreeLine: return QStringLiteral("Freehand line");
    case TShapeKind::PolyBezier: return QStringLiteral("Bezier curve");
    case TShapeKind::BLine: return QStringLiteral("B-spline");
    case TShapeKind::ElliArc: return QStringLiteral("Arc");
    case TShapeKind::Text: return QStringLiteral("Text");
    case TShapeKind::Image: return QStringLiteral("Image");
    case TShapeKind::LinkPoint: return QStringLiteral("Link point");
    case TShapeKind::LineLinkLine: return QStringLiteral("Connector point");
    case TShapeKind::LinkLine: return QStringLiteral("Connector");
    }
    return QStringLiteral("Shape");
}

TUnits unitOf(const TMyShape* shape) { return shape->Canvas() ? shape->Canvas()->TheUNIT() : mm; }

double ratioOf(const TMyShape* shape) { return shape->Canvas() ? shape->Canvas()->Ratio() : 1.0; }

double normalisedDegrees(double radians) {
    double d = std::fmod(radians * 180.0 / std::numbers::pi, 360.0);
    if (d < 0) d += 360.0;
    // -0.04 degrees prints as 360.0 otherwise.
    if (d >= 359.95) d = 0;
    return d;
}

int pixelFloor(double v) {
    const double f = std::floor(v);
    if (!(f >= INT_MIN / 2)) return INT_MIN / 2;
    if (!(f <= INT_MAX / 2)) return INT_MAX / 2;
    return int(f);
}

int pixelCeil(double v) {
    const double c = std::ceil(v);
    if (!(c >= INT_MIN / 2)) return INT_MIN / 2;
    if (!(c <= INT_MAX / 2)) return INT_MAX / 2;
    return int(c);
}

TRect growBoxBy(TRect box, const TArrPoint& pts, int margin) {
    // Saturated: points far out may sit at the ends of the int range.
    const auto at = [](int64_t v) { return int(std::clamp<int64_t>(v, INT_MIN, INT_MAX)); };
    for (const TPoint& p : pts) {
        const TRect r{at(int64_t(p.x) - margin), at(int64_t(p.y) - margin), at(int64_t(p.x) + margin + 1),
                      at(int64_t(p.y) + margin + 1)};
        if (box.right <= box.left || box.bottom <= box.top) {
            box = r;
            continue;
        }
        box.left = std::min(box.left, r.left);
        box.top = std::min(box.top, r.top);
        box.right = std::max(box.right, r.right);
        box.bottom = std::max(box.bottom, r.bottom);
    }
    return box;
}

namespace {
// The squared distance from p to the segment ab.
double squaredDistance(QPointF p, QPointF a, QPointF b) {
    const QPointF ab = b - a, ap = p - a;
    const double len2 = QPointF::dotProduct(ab, ab);
    const double t = len2 > 0 ? std::clamp(QPointF::dotProduct(ap, ab) / len2, 0.0, 1.0) : 0.0;
    const QPointF d = ap - t * ab;
    return QPointF::dotProduct(d, d);
}
}  // namespace

TArrMyPoint zoomedPoints(const TMyShape* shape) {
    TArrMyPoint pts;
    pts.reserve(size_t(shape->GetPointsCount()));
    for (int i = 0; i < shape->GetPointsCount(); ++i) pts.push_back(shape->GetPointInZoom(i));
    return pts;
}

bool nearPolyline(const TArrPoint& polyline, TPoint p) {
    // The hit band is 8 screen pixels at every zoom.
    constexpr double band = 8;
    const QPointF q(p.x, p.y);
    for (size_t i = 0; i < polyline.size(); ++i) {
        const QPointF a(polyline[i].x, polyline[i].y);
        const QPointF b = i + 1 < polyline.size() ? QPointF(polyline[i + 1].x, polyline[i + 1].y) : a;
        if (squaredDistance(q, a, b) <= band * band) return true;
    }
    return false;
}

bool polygonHasPixel(const TArrPoint& outline, TPoint p) {
    if (outline.size() < 3) return false;
    // An axis-aligned rectangle fills its left and top edges and leaves out
    // its right and bottom ones.
    if (TRect r; axisAlignedRect(outline, r)) return p.x >= r.left && p.x < r.right && p.y >= r.top && p.y < r.bottom;
    int left = outline[0].x, right = left, top = outline[0].y, bottom = top;
    for (const TPoint& q : outline) {
        left = std::min(left, q.x);
        right = std::max(right, q.x);
        top = std::min(top, q.y);
        bottom = std::max(bottom, q.y);
    }
    if (p.x < left || p.x > right || p.y < top || p.y > bottom) return false;
    QPolygon poly(int(outline.size()));
    for (int i = 0; i < poly.size(); ++i) poly.setPoint(i, outline[size_t(i)].x, outline[size_t(i)].y);
    // The same limit as CreatePolygonRgn: beyond it the region comes from Qt's polygon region.
    const int64_t w = int64_t(right) - left + 1, h = int64_t(bottom) - top + 1;
    if (w * h > 64ll * 1024 * 1024) return QRegion(poly, Qt::OddEvenFill).contains(QPoint(p.x, p.y));
    // Scan-convert the outline onto a one-pixel image placed at p.
    QImage pixelImage(1, 1, QImage::Format_Grayscale8);
    pixelImage.fill(0);
    {
        QPainter painter(&pixelImage);
        painter.setPen(Qt::NoPen);
        painter.setBrush(Qt::white);
        painter.translate(-p.x, -p.y);
        painter.drawPolygon(poly, Qt::OddEvenFill);
    }
    return pixelImage.constScanLine(0)[0] != 0;
}

// ---- Direct painting ------------------------------------------------------------------------

void setDirectPainting(bool on) { g_directPainting = on; }
bool directPainting() { return g_directPainting; }

namespace {
uint32_t pixelOf(TColor color) { return ToQColor(color).rgb() | 0xFF000000u; }
}  // namespace

bool directTarget(TMyShape* shape, TCanvas* canvas, PixelTarget& t) {
    if (!g_directPainting || !shape || !canvas || shape->GradientStyle() != gsNone) return false;
    TMyCAD* cad = shape->Canvas();
    if (!cad || cad->PaintBuffer()->Canvas() != canvas || canvas->InPath()) return false;
    const TPen* pen = canvas->Pen();
    const TBrush* brush = canvas->Brush();
    if (pen->Mode() != pmCopy || pen->Style() != psSolid || pen->Width() > 1) return false;
    if (brush->Style() != bsSolid && brush->Style() != bsClear) return false;
    QPainter* painter = canvas->Painter();
    if (!painter || !painter->device() || painter->device()->devType() != QInternal::Image) return false;
    auto* image = static_cast<QImage*>(painter->device());
    if (image->format() != QImage::Format_RGB32) return false;
    const QTransform& m = painter->transform();
    if (m.type() > QTransform::TxTranslate || m.dx() != std::floor(m.dx()) || m.dy() != std::floor(m.dy())) return false;
    t.dx = int(m.dx());
    t.dy = int(m.dy());
    // The writable area: the canvas's clip, and never beyond the image.
    const TRect clip = canvas->ClipRect();
    t.clip = TRect{std::max(clip.left, -t.dx), std::max(clip.top, -t.dy), std::min(clip.right, image->width() - t.dx),
                   std::min(clip.bottom, image->height() - t.dy)};
    // The painter's pixels are written in place: the raster engine holds the
    // same memory and nothing is cached between figures.
    t.bits = const_cast<uchar*>(image->constBits());
    t.bytesPerLine = image->bytesPerLine();
    t.pen = pixelOf(pen->Color());
    t.brush = pixelOf(brush->Color());
    t.fill = brush->Style() == bsSolid;
    return true;
}

void fillRow(const PixelTarget& t, int y, int x0, int x1, uint32_t pixel) {
    if (y < t.clip.top || y >= t.clip.bottom) return;
    x0 = std::max(x0, t.clip.left);
    x1 = std::min(x1, t.clip.right);
    if (x0 >= x1) return;
    auto* row = reinterpret_cast<uint32_t*>(t.bits + qsizetype(y + t.dy) * t.bytesPerLine);
    std::fill(row + x0 + t.dx, row + x1 + t.dx, pixel);
}

void writeRectangle(const PixelTarget& t, const TRect& r) {
    fillRow(t, r.top, r.left, r.right + 1, t.pen);
    for (int y = std::max(r.top + 1, t.clip.top); y < std::min(r.bottom, t.clip.bottom); ++y) {
        fillRow(t, y, r.left, r.left + 1, t.pen);
        if (t.fill) fillRow(t, y, r.left + 1, r.right, t.brush);
        fillRow(t, y, r.right, r.right + 1, t.pen);
    }
    fillRow(t, r.bottom, r.left, r.right + 1, t.pen);
}

namespace {
constexpr uint32_t kScratchPen = 0xFF0000;    // red as RGB
constexpr uint32_t kScratchBrush = 0x0000FF;  // blue
constexpr int kMaxCaptureWidth = 126;
constexpr int kMaxCaptureHeight = 2048;

// The bitmap captures are drawn on; its painter stays open between captures.
TBitmap& scratch() {
    static TBitmap bitmap(kMaxCaptureWidth + 4, 64, pfDevice);
    return bitmap;
}
}  // namespace

namespace {
// Draws the outline on the scratch bitmap, one pixel in from the corner and
// framed by one pixel of background, with the same canvas operations as the
// real drawing, and reads it back as rows. False when a row has another form.
bool captureRows(const TArrPoint& outline, int l, int t, int w, int rows, std::vector<uint8_t>& data) {
    TBitmap& bmp = scratch();
    if (bmp.Height() < rows + 2) bmp.SetSize(bmp.Width(), rows + 2);
    TCanvas* c = bmp.Canvas();
    c->SetWindowOrg(0, 0);
    c->ResetClip();
    c->SetPenGeometry(TPenJoin::Default, TPenCap::Default);
    c->Brush()->SetStyle(bsSolid);
    c->Brush()->SetColor(clBlack);
    c->FillRect(TRect{0, 0, w + 2, rows + 2});
    c->Pen()->SetColor(TColor(RGB(0xFF, 0, 0)));
    c->Pen()->SetStyle(psSolid);
    c->Pen()->SetWidth(1);
    c->Pen()->SetMode(pmCopy);
    c->Brush()->SetColor(TColor(RGB(0, 0, 0xFF)));
    TArrPoint shifted(outline);
    for (TPoint& p : shifted) p = TPoint{p.x - l + 1, p.y - t + 1};
    c->Polygon(shifted);
    const auto* image = static_cast<const QImage*>(c->Painter()->device());
    auto kind = [&](int x, int y) { return reinterpret_cast<const uint32_t*>(image->constScanLine(y))[x] & 0xFFFFFF; };
    // Nothing may be drawn in the frame.
    for (int x = 0; x < w + 2; ++x)
        if (kind(x, 0) || kind(x, rows + 1)) return false;
    data.resize(size_t(rows) * 4);
    const int end = w + 1;
    for (int y = 1; y <= rows; ++y) {
        if (kind(0, y) || kind(end, y)) return false;
        int x = 1;
        auto run = [&](uint32_t k) {
            while (x < end && kind(x, y) == k) ++x;
        };
        run(0);
        const int a = x;
        run(kScratchPen);
        const int b = x;
        int cc = b, d = b;
        bool gap = false;
        if (x < end) {
            const uint32_t middle = kind(x, y);
            if (middle == kScratchBrush) {
                run(kScratchBrush);
                cc = x;
                run(kScratchPen);
                d = x;
            } else if (middle == 0) {
                run(0);
                if (x < end && kind(x, y) == kScratchPen) {
                    gap = true;
                    cc = x;
                    run(kScratchPen);
                    d = x;
                }
            } else {
                return false;  // a colour that neither pen nor brush drew
            }
        }
        run(0);
        if (x != end) return false;                  // a further run: not of the kept form
        if (a == b && cc > b && !gap) return false;  // brush before any pen
        uint8_t* row = data.data() + size_t(y - 1) * 4;
        row[0] = uint8_t(a - 1);
        row[1] = uint8_t(b - 1);
        row[2] = uint8_t(cc - 1);
        row[3] = uint8_t((d - 1) | (gap ? 0x80 : 0));
    }
    return true;
}
}  // namespace

RasterRows RasterRows::Capture(const TArrPoint& outline, uint64_t revision, double zoom) {
    int l = 0, t = 0, r = -1, b = -1;
    if (!outline.empty()) {
        l = r = outline[0].x;
        t = b = outline[0].y;
        for (const TPoint& p : outline) {
            l = std::min(l, p.x);
            r = std::max(r, p.x);
            t = std::min(t, p.y);
            b = std::max(b, p.y);
        }
    }
    const int64_t w = int64_t(r) - l + 1, h = int64_t(b) - t + 1;
    std::vector<uint8_t> data;
    const bool ok = outline.size() >= 3 && w > 0 && w <= kMaxCaptureWidth && h > 0 && h <= kMaxCaptureHeight &&
                    captureRows(outline, l, t, int(w), int(h), data);
    const Header header{revision, zoom, l, t, ok ? int32_t(h) : -1, 0};
    RasterRows out;
    out.m_block = std::make_unique<uint8_t[]>(sizeof(Header) + (ok ? data.size() : 0));
    std::memcpy(out.m_block.get(), &header, sizeof header);
    if (ok) std::memcpy(out.m_block.get() + sizeof(Header), data.data(), data.size());
    return out;
}

bool RasterRows::Matches(uint64_t revision, double zoom) const {
    if (!m_block) return false;
    Header h;
    std::memcpy(&h, m_block.get(), sizeof h);
    return h.revision == revision && h.zoom == zoom;
}

bool RasterRows::Usable() const {
    if (!m_block) return false;
    Header h;
    std::memcpy(&h, m_block.get(), sizeof h);
    return h.rows >= 0;
}

void RasterRows::Write(const PixelTarget& target) const {
    Header h;
    std::memcpy(&h, m_block.get(), sizeof h);
    const uint8_t* data = m_block.get() + sizeof(Header);
    const int first = std::max(0, target.clip.top - h.top), last = std::min(h.rows, target.clip.bottom - h.top);
    for (int i = first; i < last; ++i) {
        const uint8_t* row = data + size_t(i) * 4;
        const int y = h.top + i;
        const bool gap = row[3] & 0x80;
        const int a = h.left + row[0], b = h.left + row[1], c = h.left + row[2], d = h.left + (row[3] & 0x7F);
        fillRow(target, y, a, b, target.pen);
        if (target.fill && !gap) fillRow(target, y, b, c, target.brush);
        fillRow(target, y, c, d, target.pen);
    }
}

const EllipseTable& ellipseTable() {
    static const EllipseTable table = [] {
        EllipseTable t;
        for (int i = 0; i <= 72; ++i) {
            const double a = i * std::numbers::pi / 36;
            t.sin[size_t(i)] = std::sin(a);
            t.cos[size_t(i)] = std::cos(a);
        }
        return t;
    }();
    return table;
}

}  // namespace faroven::shape_detail
