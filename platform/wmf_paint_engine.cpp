#include "platform/wmf_paint_engine.h"

#include "platform/ansi.h"
#include "platform/wmf_objects.h"

#include <QFontMetricsF>
#include <QPainterPath>
#include <QPixmap>
#include <QTextItem>
#include <algorithm>
#include <cmath>

namespace faroven {

using namespace wmf;

namespace {

constexpr int kMaxPoints = 32767;  // point counts are 16-bit
// More pieces than this for one image under a clip region or with holes, and
// the image is written whole instead.
constexpr int kMaxImagePieces = 10000;
enum : int { ALTERNATE = 1, WINDING = 2 };
enum : int { TA_BASELINE = 24 };

int Coord(qreal v) { return int(std::lround(std::clamp(v, -32768.0, 32767.0))); }

void AddPoints(TWmfParams& params, const QPolygonF& points) {
    for (const QPointF& p : points) params.Word(Coord(p.x())).Word(Coord(p.y()));
}

// A polygon with more points than a record can count keeps an even spread of them.
QPolygonF Fit(const QPolygonF& polygon) {
    if (polygon.size() <= kMaxPoints) return polygon;
    QPolygonF fewer;
    const double step = double(polygon.size() - 1) / (kMaxPoints - 1);
    for (int i = 0; i < kMaxPoints; ++i) fewer.append(polygon[qsizetype(i * step)]);
    return fewer;
}

bool IsClosed(const QPolygonF& polygon) { return polygon.size() > 2 && polygon.first() == polygon.last(); }

// The integer rectangle whose edges are the nearest to the rectangle's.
QRect DeviceRect(const QRectF& r) {
    const QRectF n = r.normalized();
    return QRect(QPoint(Coord(n.left()), Coord(n.top())), QPoint(Coord(n.right()) - 1, Coord(n.bottom()) - 1));
}

// The clip only matters on the picture, and Qt's polygon regions fail (and
// leak) for coordinates far out, so a clip reaching far beyond the picture is
// cut to a margin around it first.
QRegion PathRegion(const QPainterPath& devicePath, const QRect& picture) {
    const QRectF room = QRectF(picture).adjusted(-picture.width(), -picture.height(), picture.width(), picture.height());
    if (room.contains(devicePath.boundingRect()))
        return QRegion(devicePath.toFillPolygon().toPolygon(), devicePath.fillRule());
    QPainterPath box;
    box.addRect(room);
    const QPainterPath cut = devicePath.intersected(box);
    return QRegion(cut.toFillPolygon().toPolygon(), cut.fillRule());
}

// Rotation, uniform scale and translation, without mirroring: what a
// metafile font can follow.
bool IsSimilarity(const QTransform& m) {
    const qreal scale = std::hypot(m.m11(), m.m12());
    const qreal eps = 1e-6 * std::max<qreal>(scale, 1);
    return m.isAffine() && scale > 0 && std::abs(m.m11() - m.m22()) < eps && std::abs(m.m12() + m.m21()) < eps;
}

bool HasClearPixels(const QImage& image) {
    if (!image.hasAlphaChannel()) return false;
    const QImage argb = image.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < argb.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(argb.constScanLine(y));
        for (int x = 0; x < argb.width(); ++x)
            if (qAlpha(line[x]) == 0) return true;
    }
    return false;
}

// The pixels that are not fully clear, as bands of rectangles: rows with the
// same runs share one band.
QRegion OpaqueRegion(const QImage& image) {
    const QImage argb = image.convertToFormat(QImage::Format_ARGB32);
    std::vector<QRect> rects;
    std::vector<std::pair<int, int>> runs, previous;
    size_t bandStart = 0;
    for (int y = 0; y <= argb.height(); ++y) {
        runs.clear();
        if (y < argb.height()) {
            const auto* line = reinterpret_cast<const QRgb*>(argb.constScanLine(y));
            for (int x = 0; x < argb.width();) {
                if (qAlpha(line[x]) == 0) { ++x; continue; }
                const int start = x;
                while (x < argb.width() && qAlpha(line[x]) > 0) ++x;
                runs.emplace_back(start, x - start);
            }
        }
        if (y > 0 && runs == previous) {
            for (size_t i = bandStart; i < rects.size(); ++i) rects[i].setHeight(rects[i].height() + 1);
            continue;
        }
        bandStart = rects.size();
        for (auto [x, w] : runs) rects.emplace_back(x, y, w, 1);
        previous = runs;
    }
    QRegion region;
    region.setRects(rects.data(), int(rects.size()));
    return region;
}

}  // namespace

TWmfPaintEngine::TWmfPaintEngine(int width, int height, int unitsPerInch)
    : QPaintEngine(PrimitiveTransform | PatternTransform | PixmapTransform | PatternBrush | AlphaBlend | PainterPaths |
                   RasterOpModes | PorterDuff | MaskedBrush | PaintOutsidePaintEvent),
      m_width(width), m_height(height), m_unitsPerInch(unitsPerInch) {
    m_out.Add(META_SETWINDOWORG, {0, 0});
    m_out.Add(META_SETWINDOWEXT, {height, width});
    m_out.Add(META_SETBKMODE, {1});  // TRANSPARENT: QPainter fills opaque backgrounds itself
}

QByteArray TWmfPaintEngine::Metafile() const {
    return m_out.Metafile(m_width, m_height, m_unitsPerInch, m_dc.ObjectTableSize());
}

bool TWmfPaintEngine::begin(QPaintDevice*) {
    m_clip.reset();
    m_clipEnabled = false;
    return true;
}

bool TWmfPaintEngine::end() {
    // The next painter starts from a device context without a clip.
    m_dc.SetClip(std::nullopt);
    return true;
}

void TWmfPaintEngine::updateState(const QPaintEngineState& state) {
    const DirtyFlags flags = state.state();
    if (flags & DirtyTransform) m_transform = state.transform();
    if (flags & DirtyPen) m_pen = state.pen();
    if (flags & DirtyBrush) m_brush = state.brush();
    if (flags & DirtyCompositionMode) m_mode = state.compositionMode();
    // Clips arrive in the coordinates of the transform they were set under,
    // which is the current one, also when QPainter replays them on restore.
    if (flags & DirtyClipPath) {
        ChangeClip(PathRegion(state.clipPath() * m_transform, QRect(0, 0, m_width, m_height)), state.clipOperation());
    } else if (flags & DirtyClipRegion) {
        QPainterPath path;
        path.addRegion(state.clipRegion());
        ChangeClip(PathRegion(path * m_transform, QRect(0, 0, m_width, m_height)), state.clipOperation());
    }
    if (flags & DirtyClipEnabled) m_clipEnabled = state.isClipEnabled();
}

void TWmfPaintEngine::ChangeClip(const QRegion& deviceRegion, Qt::ClipOperation operation) {
    if (operation == Qt::NoClip) m_clip.reset();
    else if (operation == Qt::IntersectClip && m_clip) m_clip = m_clip->intersected(deviceRegion);
    else m_clip = deviceRegion;
}

std::optional<QRegion> TWmfPaintEngine::Clip() const {
    if (!m_clipEnabled || !m_clip) return std::nullopt;
    return m_clip;
}

bool TWmfPaintEngine::Prepare(const QPen* pen, const QBrush* brush) {
    const std::optional<QRegion> clip = Clip();
    // The clip as the metafile can hold it: within the picture.
    const QRect clipRect = clip ? clip->boundingRect() & QRect(0, 0, m_width, m_height) : QRect();
    if (clip && clipRect.isEmpty()) return false;
    m_dc.SetClip(clip ? std::optional<QRect>(clipRect) : std::nullopt);
    m_dc.SetRop2(Rop2For(m_mode));
    if (pen) m_dc.Select(TObjectKind::Pen, PenObject(*pen, m_transform));
    if (brush) m_dc.Select(TObjectKind::Brush, BrushObject(*brush));
    return true;
}

void TWmfPaintEngine::Polygons(QList<QPolygonF> polygons, Qt::FillRule rule, const QPen& pen, const QBrush& brush) {
    // Players close polygons themselves.
    for (QPolygonF& p : polygons)
        if (IsClosed(p)) p.removeLast();
    polygons.removeIf([](const QPolygonF& p) { return p.size() < 2; });
    if (polygons.isEmpty() || !Prepare(&pen, &brush)) return;
    if (brush.style() != Qt::NoBrush) m_dc.SetPolyFillMode(rule == Qt::WindingFill ? WINDING : ALTERNATE);
    TWmfParams params;
    if (polygons.size() == 1) {
        const QPolygonF points = Fit(polygons.first());
        params.Word(int(points.size()));
        AddPoints(params, points);
        m_out.Add(META_POLYGON, params.Bytes());
        return;
    }
    if (polygons.size() > kMaxPoints) polygons.resize(kMaxPoints);  // the count is 16-bit too
    for (QPolygonF& p : polygons) p = Fit(p);
    params.Word(int(polygons.size()));
    for (const QPolygonF& p : polygons) params.Word(int(p.size()));
    for (const QPolygonF& p : polygons) AddPoints(params, p);
    m_out.Add(META_POLYPOLYGON, params.Bytes());
}

void TWmfPaintEngine::Polyline(const QPolygonF& devicePoints, const QPen& pen) {
    if (devicePoints.size() < 2 || pen.style() == Qt::NoPen || !Prepare(&pen, nullptr)) return;
    // Longer lines go in pieces that share their end points.
    for (qsizetype start = 0; start + 1 < devicePoints.size(); start += kMaxPoints - 1) {
        const QPolygonF piece = devicePoints.mid(start, kMaxPoints);
        TWmfParams params;
        params.Word(int(piece.size()));
        AddPoints(params, piece);
        m_out.Add(META_POLYLINE, params.Bytes());
    }
}

void TWmfPaintEngine::Box(uint16_t function, const QRectF& deviceRect) {
    if (!Prepare(&m_pen, &m_brush)) return;
    const QRectF r = deviceRect.normalized();
    m_out.Add(function, {Coord(r.bottom()), Coord(r.right()), Coord(r.top()), Coord(r.left())});
}

void TWmfPaintEngine::drawPath(const QPainterPath& path) {
    QList<QPolygonF> closed, open;
    for (QPolygonF& p : path.toSubpathPolygons(m_transform)) (IsClosed(p) ? closed : open).append(p);
    const bool stroked = m_pen.style() != Qt::NoPen;
    if (open.isEmpty() || !stroked) {
        Polygons(closed + open, path.fillRule(), m_pen, m_brush);
        return;
    }
    // Open subpaths are filled as if closed but stroked open.
    if (m_brush.style() != Qt::NoBrush) Polygons(closed + open, path.fillRule(), QPen(Qt::NoPen), m_brush);
    if (!closed.isEmpty()) Polygons(closed, path.fillRule(), m_pen, QBrush(Qt::NoBrush));
    for (const QPolygonF& p : open) Polyline(p, m_pen);
}

void TWmfPaintEngine::drawPolygon(const QPointF* points, int pointCount, PolygonDrawMode mode) {
    const QPolygonF device = m_transform.map(QPolygonF(QList<QPointF>(points, points + pointCount)));
    if (mode == PolylineMode) Polyline(device, m_pen);
    else Polygons({device}, mode == WindingMode ? Qt::WindingFill : Qt::OddEvenFill, m_pen, m_brush);
}

void TWmfPaintEngine::drawRects(const QRectF* rects, int rectCount) {
    for (int i = 0; i < rectCount; ++i) {
        if (m_transform.type() <= QTransform::TxScale) Box(META_RECTANGLE, m_transform.mapRect(rects[i]));
        else Polygons({m_transform.map(QPolygonF(rects[i]))}, Qt::OddEvenFill, m_pen, m_brush);
    }
}

void TWmfPaintEngine::drawLines(const QLineF* lines, int lineCount) {
    for (int i = 0; i < lineCount; ++i) Polyline(m_transform.map(QPolygonF({lines[i].p1(), lines[i].p2()})), m_pen);
}

void TWmfPaintEngine::drawEllipse(const QRectF& rect) {
    if (m_transform.type() <= QTransform::TxScale) {
        Box(META_ELLIPSE, m_transform.mapRect(rect));
        return;
    }
    QPainterPath path;
    path.addEllipse(rect);
    drawPath(path);
}

void TWmfPaintEngine::drawPoints(const QPointF* points, int pointCount) {
    if (m_pen.style() == Qt::NoPen) return;
    const qreal width = PenWidthOnDevice(m_pen, m_transform);
    if (width <= 1.5) {
        if (!Prepare(nullptr, nullptr)) return;
        const uint32_t color = ColorRefOf(m_pen.color());
        for (int i = 0; i < pointCount; ++i) {
            const QPointF p = m_transform.map(points[i]);
            m_out.Add(META_SETPIXEL, TWmfParams().DWord(color).Words({Coord(p.y()), Coord(p.x())}).Bytes());
        }
        return;
    }
    // A wide pen's point is a dot of its width, round for round caps.
    const QPen noPen(Qt::NoPen);
    const QBrush ink(m_pen.color());
    if (!Prepare(&noPen, &ink)) return;
    const uint16_t shape = m_pen.capStyle() == Qt::RoundCap ? META_ELLIPSE : META_RECTANGLE;
    const qreal r = width / 2;
    for (int i = 0; i < pointCount; ++i) {
        const QPointF c = m_transform.map(points[i]);
        m_out.Add(shape, {Coord(c.y() + r), Coord(c.x() + r), Coord(c.y() - r), Coord(c.x() - r)});
    }
}

void TWmfPaintEngine::drawTextItem(const QPointF& p, const QTextItem& textItem) {
    const QString text = textItem.text();
    if (text.isEmpty()) return;
    const QFont font = textItem.font();
    const QByteArray ansi = ToAnsi(text);
    if (FromAnsi(ansi) != text || !IsSimilarity(m_transform)) {
        TextOutline(p, font, text);
        return;
    }
    if (!Prepare(nullptr, nullptr)) return;

    const qreal scale = std::hypot(m_transform.m11(), m_transform.m12());
    const qreal em = font.pixelSize() > 0 ? font.pixelSize() : font.pointSizeF() * paintDevice()->logicalDpiY() / 72.0;
    // Counter-clockwise on the page, where the transform's angle turns clockwise (y down).
    const qreal degrees = qRadiansToDegrees(std::atan2(-m_transform.m12(), m_transform.m11()));
    const int escapement = (int(std::lround(degrees * 10)) % 3600 + 3600) % 3600;
    m_dc.Select(TObjectKind::Font, FontObject(font, std::max(1, int(std::lround(em * scale))), escapement));
    m_dc.SetTextColor(ColorRefOf(m_pen.color()));
    m_dc.SetTextAlign(TA_BASELINE);

    // The distance from each character to the next as Qt lays them out, so
    // that the text is as wide as on screen whatever font the player finds.
    const QFontMetricsF metrics(font, paintDevice());
    TWmfParams dx;
    qreal before = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const qreal after = metrics.horizontalAdvance(text.left(i + 1)) * scale;
        dx.Word(int(std::lround(after) - std::lround(before)));
        before = after;
    }
    const QPointF origin = m_transform.map(p);
    TWmfParams params;
    params.Words({Coord(origin.y()), Coord(origin.x()), int(ansi.size()), 0}).Padded(ansi);
    m_out.Add(META_EXTTEXTOUT, params.Bytes() + dx.Bytes());
}

// Text the metafile cannot hold as text (characters outside Windows-1252,
// mirrored, stretched or slanted) is drawn as the outlines of its glyphs.
void TWmfPaintEngine::TextOutline(const QPointF& p, const QFont& font, const QString& text) {
    QPainterPath path;
    path.addText(p, font, text);
    Polygons(path.toSubpathPolygons(m_transform), Qt::WindingFill, QPen(Qt::NoPen), QBrush(m_pen.color()));
}

void TWmfPaintEngine::drawPixmap(const QRectF& r, const QPixmap& pixmap, const QRectF& sr) {
    drawImage(r, pixmap.toImage(), sr, Qt::AutoColor);
}

void TWmfPaintEngine::drawImage(const QRectF& r, const QImage& image, const QRectF& sr, Qt::ImageConversionFlags) {
    const QRect source = sr.toAlignedRect() & image.rect();
    if (source.isEmpty() || r.isEmpty()) return;
    const QImage part = source == image.rect() ? image : image.copy(source);
    if (m_transform.type() <= QTransform::TxScale) {
        DeviceImage(DeviceRect(m_transform.mapRect(r)), part.mirrored(m_transform.m11() < 0, m_transform.m22() < 0));
        return;
    }
    // Turned or slanted: drawn into a picture of its bounding box on the
    // device, whose corners stay clear and are left out.
    const QRect box = m_transform.mapRect(r).toAlignedRect() & QRect(0, 0, m_width, m_height);
    if (box.isEmpty()) return;
    QImage turned(box.size(), QImage::Format_ARGB32_Premultiplied);
    turned.fill(Qt::transparent);
    QPainter painter(&turned);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.translate(-box.topLeft());
    painter.setTransform(m_transform, true);
    painter.drawImage(r, part);
    painter.end();
    DeviceImage(box, turned);
}

void TWmfPaintEngine::drawTiledPixmap(const QRectF& r, const QPixmap& pixmap, const QPointF& offset) {
    // The tiles are put together at the device's resolution and written as one image.
    if (r.isEmpty() || pixmap.isNull()) return;
    const QRectF device = m_transform.mapRect(r);
    const QSize size(std::clamp(int(std::ceil(device.width())), 1, std::min(m_width, 8192)),
                     std::clamp(int(std::ceil(device.height())), 1, std::min(m_height, 8192)));
    QImage tiles(size, QImage::Format_ARGB32_Premultiplied);
    tiles.fill(Qt::transparent);
    QPainter painter(&tiles);
    painter.scale(size.width() / r.width(), size.height() / r.height());
    painter.drawTiledPixmap(QRectF(QPointF(0, 0), r.size()), pixmap, offset);
    painter.end();
    drawImage(r, tiles, tiles.rect(), Qt::AutoColor);
}

// An image on its device rectangle. Under a clip region that is not one
// rectangle, and where the image has clear pixels, only the rectangles of the
// visible part are written, each with its own piece of the image, so the
// picture is exact where players clip to rectangles only. Partly clear pixels
// are composited onto white.
void TWmfPaintEngine::DeviceImage(const QRect& target, const QImage& image) {
    const std::optional<QRegion> clip = Clip();
    if (target.isEmpty() || (clip && !clip->intersects(target))) return;
    const bool holes = HasClearPixels(image);
    if (holes || (clip && clip->rectCount() > 1)) {
        // The image's pixels at device resolution, over the part of the page
        // where they can show.
        const QRect area = target & QRect(0, 0, m_width, m_height) & (clip ? clip->boundingRect() : target);
        if (area.isEmpty()) return;
        const qreal sx = qreal(image.width()) / target.width(), sy = qreal(image.height()) / target.height();
        const QRectF source((area.x() - target.x()) * sx, (area.y() - target.y()) * sy, area.width() * sx,
                            area.height() * sy);
        const QImage pixels = image.copy(source.toAlignedRect())
                                  .scaled(area.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        QRegion visible = clip ? clip->intersected(area) : QRegion(area);
        if (holes) visible &= OpaqueRegion(pixels).translated(area.topLeft());
        if (visible.rectCount() <= kMaxImagePieces) {
            for (const QRect& piece : visible) StretchDib(piece, pixels.copy(piece.translated(-area.topLeft())));
            return;
        }
    }
    StretchDib(target, image);
}

void TWmfPaintEngine::StretchDib(const QRect& target, const QImage& image) {
    if (!Prepare(nullptr, nullptr)) return;
    // Sizes in the record are 16-bit. A bitmap one pixel wide or high is
    // doubled that way, which changes no pixel for any player: libwmf draws
    // such a bitmap as a single dot.
    QImage fitted = image.width() > 32767 || image.height() > 32767
                        ? image.scaled(32767, 32767, Qt::KeepAspectRatio, Qt::SmoothTransformation)
                        : image;
    if (fitted.width() == 1 || fitted.height() == 1)
        fitted = fitted.scaled(fitted.width() == 1 ? 2 : fitted.width(), fitted.height() == 1 ? 2 : fitted.height());
    TWmfParams params;
    params.DWord(Rop3For(m_mode)).Word(0 /* DIB_RGB_COLORS */);
    params.Words({fitted.height(), fitted.width(), 0, 0, target.height(), target.width(), target.top(), target.left()});
    m_out.Add(META_STRETCHDIB, params.Bytes() + Dib24(fitted));
}

}  // namespace faroven
