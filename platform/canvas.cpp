#include "platform/canvas.h"

#include <QFontMetrics>
#include <QPolygon>

namespace faroven {

namespace {

QPolygon toPolygon(const TPoint* points, int count) {
    QPolygon poly(count);
    for (int i = 0; i < count; ++i) poly.setPoint(i, points[i].x, points[i].y);
    return poly;
}

void normalize(int& a, int& b) {
    if (a > b) std::swap(a, b);
}

// Angle in degrees (Qt: counter-clockwise positive) of the radial from the
// centre of the box through (x, y), for the arc operations.
double radialAngle(const QRectF& box, int x, int y) {
    const QPointF c = box.center();
    const double rx = box.width() / 2, ry = box.height() / 2;
    if (rx <= 0 || ry <= 0) return 0;
    return std::atan2(-(y - c.y()) / ry, (x - c.x()) / rx) * 180.0 / M_PI;
}

}  // namespace

QPainter::CompositionMode CompositionModeFor(TPenMode mode) {
    switch (mode) {
    case pmBlack: return QPainter::RasterOp_ClearDestination;
    case pmWhite: return QPainter::RasterOp_SetDestination;
    case pmNop: return QPainter::CompositionMode_Destination;
    case pmNot: return QPainter::RasterOp_NotDestination;
    case pmCopy: return QPainter::CompositionMode_SourceOver;
    case pmNotCopy: return QPainter::RasterOp_NotSource;
    case pmMergePenNot: return QPainter::RasterOp_SourceOrNotDestination;
    case pmMaskPenNot: return QPainter::RasterOp_SourceAndNotDestination;
    case pmMergeNotPen: return QPainter::RasterOp_NotSourceOrDestination;
    case pmMaskNotPen: return QPainter::RasterOp_NotSourceAndDestination;
    case pmMerge: return QPainter::RasterOp_SourceOrDestination;
    case pmNotMerge: return QPainter::RasterOp_NotSourceAndNotDestination;
    case pmMask: return QPainter::RasterOp_SourceAndDestination;
    case pmNotMask: return QPainter::RasterOp_NotSourceOrNotDestination;
    case pmXor: return QPainter::RasterOp_SourceXorDestination;
    case pmNotXor: return QPainter::RasterOp_NotSourceXorDestination;
    }
    return QPainter::CompositionMode_SourceOver;
}

TCanvas::TCanvas() {
    m_pen.OnChange = [this](TObject*) { m_penDirty = true; };
    m_brush.OnChange = [this](TObject*) { m_bkTransparent = false; };
    m_font.OnChange = [this](TObject*) { m_logFont.reset(); };
}

TCanvas::TCanvas(TBitmap* bitmap) : TCanvas() { m_bitmap = bitmap; }

TCanvas::~TCanvas() { endPainting(); }

void TCanvas::endPainting() {
    if (m_ownPainter) {
        m_ownPainter->end();
        m_ownPainter.reset();
    }
}

void TCanvas::SetWindowOrg(int x, int y) {
    const TPoint next{x, y};
    if (next == m_origin) return;
    if (QPainter* p = m_external ? m_external : m_ownPainter.get()) p->translate(m_origin.x - x, m_origin.y - y);
    m_origin = next;
}

void TCanvas::AttachPainter(QPainter* painter, const TRect& clip) {
    m_origin = TPoint{};
    m_external = painter;
    m_externalClip = clip;
    m_clip.reset();
    m_penDirty = true;
}

void TCanvas::DetachPainter() {
    m_external = nullptr;
    m_clip.reset();
}

bool TCanvas::HasDevice() const {
    return m_external || (m_bitmap && !m_bitmap->Empty());
}

QPainter* TCanvas::begin() {
    if (m_external) return m_external;
    if (!m_bitmap || m_bitmap->m_image.isNull()) return nullptr;
    if (!m_ownPainter) {
        m_ownPainter = std::make_unique<QPainter>(&m_bitmap->m_image);
        m_ownPainter->setRenderHint(QPainter::Antialiasing, false);
        if (m_origin.x || m_origin.y) m_ownPainter->translate(-m_origin.x, -m_origin.y);
        if (m_clip) m_ownPainter->setClipRect(QRect(m_clip->left, m_clip->top, m_clip->Width(), m_clip->Height()));
    }
    return m_ownPainter.get();
}

QPainter* TCanvas::Painter() {
    QPainter* p = begin();
    if (p) p->setCompositionMode(QPainter::CompositionMode_SourceOver);
    return p;
}

void TCanvas::applyMode(QPainter* p) { p->setCompositionMode(CompositionModeFor(m_pen.Mode())); }

void TCanvas::applyPen(QPainter* p) {
    if (!penVisible()) {
        p->setPen(Qt::NoPen);
        return;
    }
    const int width = m_pen.Width();
    QPen pen(ToQColor(m_pen.Color()));
    // Width 0 and 1 are the exact one-pixel cosmetic pen.
    pen.setWidth(width <= 1 ? 0 : width);
    const bool geometric = m_join != TPenJoin::Default || m_cap != TPenCap::Default;
    if (width <= 1 && !geometric) {
        pen.setCapStyle(Qt::FlatCap);  // the end pixel of a line is left out
        pen.setJoinStyle(Qt::MiterJoin);
    } else {
        pen.setCapStyle(m_cap == TPenCap::Square ? Qt::SquareCap : m_cap == TPenCap::Flat ? Qt::FlatCap : Qt::RoundCap);
        pen.setJoinStyle(m_join == TPenJoin::Bevel ? Qt::BevelJoin : m_join == TPenJoin::Miter ? Qt::MiterJoin : Qt::RoundJoin);
    }
    // Styled lines exist for one-pixel pens only; wider pens draw solid.
    if (width <= 1) {
        switch (m_pen.Style()) {
        case psDash: pen.setDashPattern({18, 6}); break;
        case psDot: pen.setDashPattern({3, 3}); break;
        case psDashDot: pen.setDashPattern({9, 6, 3, 6}); break;
        case psDashDotDot: pen.setDashPattern({9, 3, 3, 3, 3, 3}); break;
        default: break;
        }
    }
    p->setPen(pen);
    m_penDirty = false;
}

void TCanvas::applyBrush(QPainter* p) {
    if (!brushVisible()) {
        p->setBrush(Qt::NoBrush);
        return;
    }
    Qt::BrushStyle style = Qt::SolidPattern;
    switch (m_brush.Style()) {
    case bsHorizontal: style = Qt::HorPattern; break;
    case bsVertical: style = Qt::VerPattern; break;
    case bsFDiagonal: style = Qt::FDiagPattern; break;
    case bsBDiagonal: style = Qt::BDiagPattern; break;
    case bsCross: style = Qt::CrossPattern; break;
    case bsDiagCross: style = Qt::DiagCrossPattern; break;
    default: break;
    }
    p->setBrush(QBrush(ToQColor(m_brush.Color()), style));
}

void TCanvas::applyNoPen(QPainter* p) { p->setPen(Qt::NoPen); }
void TCanvas::applyNoBrush(QPainter* p) { p->setBrush(Qt::NoBrush); }

void TCanvas::MoveTo(int x, int y) {
    m_penPos = TPoint{x, y};
    if (m_pathOpen) {
        m_path.moveTo(x, y);
        m_pathHasStart = true;
    }
}

void TCanvas::LineTo(int x, int y) {
    if (m_pathOpen) {
        if (!m_pathHasStart) m_path.moveTo(m_penPos.x, m_penPos.y);
        m_path.lineTo(x, y);
        m_pathHasStart = true;
    } else if (QPainter* p = begin(); p && penVisible()) {
        applyMode(p);
        applyPen(p);
        drawLineWithoutEnd(p, m_penPos, TPoint{x, y});
    }
    m_penPos = TPoint{x, y};
}

static int clampToInt(int64_t v) { return int(std::clamp<int64_t>(v, INT32_MIN, INT32_MAX)); }

// A one-pixel line from a to b that leaves out b. Qt's flat-capped cosmetic
// line always leaves out the end with the larger major coordinate, which is b
// only for lines running right (x-major) or down (y-major); any other line is
// drawn with both ends up to the pixel before b.
// Pixel-exact outlines (ends left out, edges one by one) matter where pixels
// are drawn; printers, PDF, SVG and metafiles get whole figures.
bool TCanvas::onPixels(QPainter* p) {
    const int type = p->device() ? p->device()->devType() : QInternal::UnknownDevice;
    return type == QInternal::Image || type == QInternal::Pixmap || type == QInternal::Widget;
}

void TCanvas::drawLineWithoutEnd(QPainter* p, TPoint a, TPoint b) {
    // In 64 bits: points far out (up to the whole int range) must not overflow.
    const int64_t dx = int64_t(b.x) - a.x, dy = int64_t(b.y) - a.y;
    if (dx == 0 && dy == 0) return;
    const bool xMajor = std::abs(dx) >= std::abs(dy);
    const bool forward = xMajor ? dx > 0 : dy > 0;
    if (forward || p->pen().widthF() > 1 || p->pen().capStyle() != Qt::FlatCap || !onPixels(p)) {
        p->drawLine(a.x, a.y, b.x, b.y);
        return;
    }
    // The pixel before b along the major axis.
    TPoint last;
    if (xMajor) {
        last.x = b.x - (dx > 0 ? 1 : -1);
        last.y = clampToInt(a.y + int64_t(Round(double(int64_t(last.x) - a.x) * double(dy) / double(dx))));
    } else {
        last.y = b.y - (dy > 0 ? 1 : -1);
        last.x = clampToInt(a.x + int64_t(Round(double(int64_t(last.y) - a.y) * double(dx) / double(dy))));
    }
    QPen pen = p->pen();
    pen.setCapStyle(Qt::SquareCap);
    p->setPen(pen);
    if (last == a)
        p->drawPoint(a.x, a.y);
    else
        p->drawLine(a.x, a.y, last.x, last.y);
    pen.setCapStyle(Qt::FlatCap);
    p->setPen(pen);
}

void TCanvas::Rectangle(int left, int top, int right, int bottom) {
    normalize(left, right);
    normalize(top, bottom);
    if (m_pathOpen) {
        m_path.addRect(left, top, right - left, bottom - top);
        return;
    }
    QPainter* p = begin();
    if (!p || right <= left || bottom <= top) return;
    applyMode(p);
    if (!penVisible()) {
        if (brushVisible() && right - left > 1 && bottom - top > 1) {
            applyNoPen(p);
            applyBrush(p);
            p->drawRect(QRect(left, top, right - left - 1, bottom - top - 1));
        }
        return;
    }
    int inset = 0;
    if (m_pen.Style() == psInsideFrame && m_pen.Width() > 1) inset = m_pen.Width() / 2;
    const QRect outline(left + inset, top + inset, right - left - 1 - 2 * inset, bottom - top - 1 - 2 * inset);
    // Interior first, then the outline, so that no pixel is drawn twice (this
    // matters in the exclusive-or modes).
    if (brushVisible() && outline.width() > 1 && outline.height() > 1) {
        applyNoPen(p);
        applyBrush(p);
        p->drawRect(outline.adjusted(1, 1, -1, -1).adjusted(0, 0, 1, 1));
    }
    applyPen(p);
    applyNoBrush(p);
    p->drawRect(outline);
}

void TCanvas::Ellipse(int left, int top, int right, int bottom) {
    normalize(left, right);
    normalize(top, bottom);
    if (m_pathOpen) {
        m_path.addEllipse(QRectF(left, top, right - left, bottom - top));
        return;
    }
    QPainter* p = begin();
    if (!p || right <= left || bottom <= top) return;
    applyMode(p);
    applyPen(p);
    applyBrush(p);
    const int shrink = penVisible() ? 1 : 2;
    p->drawEllipse(QRect(left, top, right - left - shrink, bottom - top - shrink));
}

void TCanvas::RoundRect(int left, int top, int right, int bottom, int rx, int ry) {
    normalize(left, right);
    normalize(top, bottom);
    if (m_pathOpen) {
        m_path.addRoundedRect(QRectF(left, top, right - left, bottom - top), rx / 2.0, ry / 2.0);
        return;
    }
    QPainter* p = begin();
    if (!p || right <= left || bottom <= top) return;
    applyMode(p);
    applyPen(p);
    applyBrush(p);
    p->drawRoundedRect(QRect(left, top, right - left - 1, bottom - top - 1), rx / 2.0, ry / 2.0);
}

void TCanvas::Polygon(const TPoint* points, int count) {
    if (count <= 0) return;
    const QPolygon poly = toPolygon(points, count);
    if (m_pathOpen) {
        m_path.addPolygon(poly);
        m_path.closeSubpath();
        return;
    }
    QPainter* p = begin();
    if (!p || count < 2) return;
    applyMode(p);
    applyPen(p);
    applyBrush(p);
    if (!penVisible() || p->pen().widthF() > 1 || p->pen().capStyle() != Qt::FlatCap || !onPixels(p)) {
        p->drawPolygon(poly, Qt::OddEvenFill);
        return;
    }
    // A thin outline edge by edge, each without its end, which is the next
    // edge's start: every vertex is drawn exactly once (Qt's own outline can
    // miss a vertex where both edges end on it).
    if (brushVisible()) {
        applyNoPen(p);
        p->drawPolygon(poly, Qt::OddEvenFill);
        applyPen(p);
    }
    for (int i = 0; i < count; ++i) drawLineWithoutEnd(p, points[i], points[(i + 1) % count]);
}

void TCanvas::Polyline(const TPoint* points, int count) {
    if (count <= 0) return;
    const QPolygon poly = toPolygon(points, count);
    if (m_pathOpen) {
        m_path.moveTo(poly.first());
        for (int i = 1; i < count; ++i) m_path.lineTo(poly.point(i));
        m_pathHasStart = true;
        return;
    }
    QPainter* p = begin();
    if (!p || count < 2 || !penVisible()) return;
    applyMode(p);
    applyPen(p);
    applyNoBrush(p);
    if (p->pen().widthF() > 1 || p->pen().capStyle() != Qt::FlatCap || !onPixels(p)) {
        p->drawPolyline(poly);
        return;
    }
    // Thin lines segment by segment, each without its end pixel, so that no
    // joint is drawn twice (which an exclusive-or pen would erase).
    for (int i = 1; i < count; ++i) drawLineWithoutEnd(p, points[i - 1], points[i]);
}

void TCanvas::PolyBezier(const TArrPoint& points) {
    if (points.size() < 4) return;
    QPainterPath path(QPointF(points[0].x, points[0].y));
    for (size_t i = 1; i + 2 < points.size(); i += 3)
        path.cubicTo(points[i].x, points[i].y, points[i + 1].x, points[i + 1].y, points[i + 2].x, points[i + 2].y);
    if (m_pathOpen) {
        m_path.addPath(path);
        return;
    }
    QPainter* p = begin();
    if (!p || !penVisible()) return;
    applyMode(p);
    applyPen(p);
    applyNoBrush(p);
    p->drawPath(path);
}

namespace {
enum class ArcKind { Arc, Chord, Pie };
// The elliptic arc in the box from the radial through (x3, y3) counter-clockwise
// to the radial through (x4, y4); a chord closes it with a straight line, a pie
// through the centre.
QPainterPath arcPath(ArcKind kind, int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4) {
    normalize(x1, x2);
    normalize(y1, y2);
    const QRectF box(x1, y1, x2 - x1 - 1, y2 - y1 - 1);
    const double start = radialAngle(box, x3, y3);
    double sweep = radialAngle(box, x4, y4) - start;
    if (sweep <= 0) sweep += 360;
    QPainterPath path;
    if (kind == ArcKind::Pie)
        path.moveTo(box.center());
    else
        path.arcMoveTo(box, start);
    path.arcTo(box, start, sweep);
    if (kind != ArcKind::Arc) path.closeSubpath();
    return path;
}
}  // namespace

void TCanvas::drawFigure(const QPainterPath& path, bool fill) {
    if (m_pathOpen)
        m_path.addPath(path);
    else
        strokeAndFill(path, fill, true);
}

void TCanvas::Arc(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4) {
    drawFigure(arcPath(ArcKind::Arc, x1, y1, x2, y2, x3, y3, x4, y4), false);
}

void TCanvas::Chord(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4) {
    drawFigure(arcPath(ArcKind::Chord, x1, y1, x2, y2, x3, y3, x4, y4), true);
}

void TCanvas::Pie(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4) {
    drawFigure(arcPath(ArcKind::Pie, x1, y1, x2, y2, x3, y3, x4, y4), true);
}

void TCanvas::strokeAndFill(const QPainterPath& path, bool fill, bool stroke) {
    QPainter* p = begin();
    if (!p) return;
    applyMode(p);
    if (fill && brushVisible()) {
        applyNoPen(p);
        applyBrush(p);
        QPainterPath filled = path;
        filled.setFillRule(Qt::OddEvenFill);
        p->drawPath(filled);
    }
    if (stroke && penVisible()) {
        applyPen(p);
        applyNoBrush(p);
        p->drawPath(path);
    }
}

TLogFont TCanvas::LogFont() const {
    if (m_logFont) return *m_logFont;
    TLogFont lf;
    lf.lfHeight = m_font.Height();
    lf.lfWeight = m_font.Style().Contains(fsBold) ? 700 : 400;
    lf.lfItalic = m_font.Style().Contains(fsItalic);
    lf.lfUnderline = m_font.Style().Contains(fsUnderline);
    lf.lfStrikeOut = m_font.Style().Contains(fsStrikeOut);
    lf.lfCharSet = m_font.Charset();
    lf.lfFaceName = m_font.Name();
    return lf;
}

void TCanvas::SetLogFont(const TLogFont& lf) { m_logFont = lf; }

QFont TCanvas::currentQFont() const {
    if (!m_logFont) return m_font.ToQFont();
    const TLogFont& lf = *m_logFont;
    QFont f(lf.lfFaceName);
    f.setPixelSize(std::max(1, std::abs(lf.lfHeight)));
    f.setWeight(lf.lfWeight >= 700 ? QFont::Bold : QFont::Normal);
    f.setItalic(lf.lfItalic);
    f.setUnderline(lf.lfUnderline);
    f.setStrikeOut(lf.lfStrikeOut);
    f.setStyleStrategy(lf.lfQuality == ANTIALIASED_QUALITY ? QFont::PreferAntialias : QFont::NoAntialias);
    return f;
}

void TCanvas::drawText(QPainter* p, int x, int y, const QString& text, bool opaque) {
    const QFont font = currentQFont();
    const QFontMetrics metrics(font);
    const double escapement = m_logFont ? m_logFont->lfEscapement / 10.0 : 0.0;
    p->save();
    p->setCompositionMode(QPainter::CompositionMode_SourceOver);
    p->setRenderHint(QPainter::TextAntialiasing, m_logFont && m_logFont->lfQuality == ANTIALIASED_QUALITY);
    p->translate(x, y);
    // The logical font counts angles counter-clockwise; the y axis points down.
    if (escapement != 0) p->rotate(-escapement);
    if (opaque) p->fillRect(QRect(0, 0, metrics.horizontalAdvance(text), metrics.height()), ToQColor(m_brush.Color()));
    p->setFont(font);
    p->setPen(ToQColor(m_font.Color()));
    p->drawText(QPoint(0, metrics.ascent()), text);
    p->restore();
    m_penDirty = true;
}

void TCanvas::TextOut(int x, int y, const QString& text) {
    QPainter* p = begin();
    if (p && !text.isEmpty()) drawText(p, x, y, text, brushVisible() && !m_bkTransparent);
    m_penPos = TPoint{x + TextWidth(text), y};
}

void TCanvas::TextRect(const TRect& rect, int x, int y, const QString& text) {
    QPainter* p = begin();
    if (!p) return;
    p->save();
    p->setClipRect(QRect(rect.left, rect.top, rect.Width(), rect.Height()), Qt::IntersectClip);
    if (brushVisible() && !m_bkTransparent) {
        p->setCompositionMode(QPainter::CompositionMode_SourceOver);
        p->fillRect(QRect(rect.left, rect.top, rect.Width(), rect.Height()), ToQColor(m_brush.Color()));
    }
    drawText(p, x, y, text, false);
    p->restore();
}

TSize TCanvas::TextExtent(const QString& text) {
    const QFontMetrics metrics(currentQFont());
    return TSize{text.isEmpty() ? 0 : metrics.horizontalAdvance(text), metrics.height()};
}

namespace {
// The bitmap's pixels ready to draw: pixels of the transparent colour made
// fully transparent when the bitmap is transparent.
QImage drawableImage(const TBitmap* bitmap) {
    const QImage& image = bitmap->Image();
    if (!bitmap->Transparent()) return image;
    QImage out = image.convertToFormat(QImage::Format_ARGB32);
    const QRgb key = ToQRgb(bitmap->TransparentColor()) & 0xFFFFFF;
    for (int y = 0; y < out.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(out.scanLine(y));
        for (int x = 0; x < out.width(); ++x)
            if ((line[x] & 0xFFFFFF) == key) line[x] = 0;
    }
    return out;
}
}  // namespace

void TCanvas::Draw(int x, int y, const TBitmap* bitmap) {
    if (!bitmap || bitmap->Empty()) return;
    const QImage image = drawableImage(bitmap);
    if (QPainter* p = begin()) {
        p->setCompositionMode(QPainter::CompositionMode_SourceOver);
        p->drawImage(QPoint(x, y), image);
    }
}

void TCanvas::StretchDraw(const TRect& rect, const TBitmap* bitmap) {
    if (!bitmap || bitmap->Empty()) return;
    const QImage image = drawableImage(bitmap);
    if (QPainter* p = begin()) {
        p->setCompositionMode(QPainter::CompositionMode_SourceOver);
        p->setRenderHint(QPainter::SmoothPixmapTransform, false);
        p->drawImage(QRect(rect.left, rect.top, rect.Width(), rect.Height()), image);
    }
}

void TCanvas::FillRect(const TRect& rect) {
    QPainter* p = begin();
    if (!p || !brushVisible() || rect.Width() <= 0 || rect.Height() <= 0) return;
    p->setCompositionMode(QPainter::CompositionMode_SourceOver);
    applyNoPen(p);
    applyBrush(p);
    p->drawRect(QRect(rect.left, rect.top, rect.Width() - 1, rect.Height() - 1).adjusted(0, 0, 1, 1));
}

void TCanvas::FrameRect(const TRect& rect) {
    QPainter* p = begin();
    if (!p || rect.Width() <= 0 || rect.Height() <= 0) return;
    p->setCompositionMode(QPainter::CompositionMode_SourceOver);
    QPen pen(ToQColor(m_brush.Color()));
    pen.setWidth(0);
    p->setPen(pen);
    applyNoBrush(p);
    p->drawRect(QRect(rect.left, rect.top, rect.Width() - 1, rect.Height() - 1));
    m_penDirty = true;
}

void TCanvas::CopyRect(const TRect& dest, TCanvas* source, const TRect& sourceRect) {
    if (!source || !source->m_bitmap || source->m_bitmap->Empty()) return;
    source->endPainting();
    const QImage& image = source->m_bitmap->m_image;
    QPainter* p = begin();
    if (!p) return;
    p->setCompositionMode(QPainter::CompositionMode_Source);
    p->drawImage(QRect(dest.left, dest.top, dest.Width(), dest.Height()), image,
                 QRect(sourceRect.left, sourceRect.top, sourceRect.Width(), sourceRect.Height()));
}

void TCanvas::InvertRect(const TRect& rect) {
    QPainter* p = begin();
    if (!p || rect.Width() <= 0 || rect.Height() <= 0) return;
    p->setCompositionMode(QPainter::RasterOp_NotDestination);
    p->fillRect(QRect(rect.left, rect.top, rect.Width(), rect.Height()), Qt::black);
}

TColor TCanvas::Pixel(int x, int y) {
    if (!m_bitmap || m_bitmap->Empty()) return clNone;
    endPainting();
    const QImage& image = m_bitmap->m_image;
    if (!image.valid(x, y)) return clNone;
    const QRgb c = image.pixel(x, y);
    return RGB(qRed(c), qGreen(c), qBlue(c));
}

void TCanvas::SetPixel(int x, int y, TColor color) {
    if (!m_bitmap || m_bitmap->Empty()) return;
    endPainting();
    QImage& image = m_bitmap->m_image;
    if (image.valid(x, y)) image.setPixel(x, y, ToQRgb(color));
}

TRect TCanvas::ClipRect() const {
    TRect full;
    if (m_external)
        full = m_externalClip;
    else if (m_bitmap)
        full = TRect{0, 0, m_bitmap->Width(), m_bitmap->Height()};
    full = TRect{full.left + m_origin.x, full.top + m_origin.y, full.right + m_origin.x, full.bottom + m_origin.y};
    if (!m_clip) return full;
    TRect out;
    IntersectRect(out, full, *m_clip);
    return out;
}

void TCanvas::SetClipRect(const TRect& rect) {
    m_clip = rect;
    if (QPainter* p = m_external ? m_external : m_ownPainter.get())
        p->setClipRect(QRect(rect.left, rect.top, rect.Width(), rect.Height()));
}

void TCanvas::ResetClip() {
    m_clip.reset();
    if (m_ownPainter) m_ownPainter->setClipping(false);
    // The painter's area is fixed to the device: under a window origin it
    // lies at the origin's offset.
    if (m_external)
        m_external->setClipRect(QRect(m_externalClip.left + m_origin.x, m_externalClip.top + m_origin.y,
                                      m_externalClip.Width(), m_externalClip.Height()));
}

void TCanvas::BeginPath() {
    m_pathOpen = true;
    m_pathHasStart = false;
    m_path = QPainterPath();
}

void TCanvas::EndPath() { m_pathOpen = false; }

void TCanvas::StrokeAndFillPath() {
    strokeAndFill(m_path, true, true);
    m_path = QPainterPath();
}

void TCanvas::StrokePath() {
    strokeAndFill(m_path, false, true);
    m_path = QPainterPath();
}

void TCanvas::FillPath() {
    strokeAndFill(m_path, true, false);
    m_path = QPainterPath();
}

// The region is scan-converted by the same rasteriser that fills Polygon, so
// that a hit test agrees pixel for pixel with what is drawn: left and top edges
// belong to the region, right and bottom edges do not.
QRegion CreatePolygonRgn(const TPoint* points, int count, TPolyFillMode mode) {
    if (count < 3) return QRegion();
    int left = points[0].x, right = points[0].x, top = points[0].y, bottom = points[0].y;
    for (int i = 1; i < count; ++i) {
        left = std::min(left, points[i].x);
        right = std::max(right, points[i].x);
        top = std::min(top, points[i].y);
        bottom = std::max(bottom, points[i].y);
    }
    const int64_t w = int64_t(right) - left + 1, h = int64_t(bottom) - top + 1;
    const Qt::FillRule rule = mode == ALTERNATE ? Qt::OddEvenFill : Qt::WindingFill;
    constexpr int64_t kMaxPixels = 64ll * 1024 * 1024;
    if (w * h > kMaxPixels) return QRegion(toPolygon(points, count), rule);  // too large to rasterise
    QImage mask(int(w), int(h), QImage::Format_Grayscale8);
    mask.fill(0);
    {
        QPainter p(&mask);
        p.setPen(Qt::NoPen);
        p.setBrush(Qt::white);
        p.translate(-left, -top);
        p.drawPolygon(toPolygon(points, count), rule);
    }
    std::vector<QRect> spans;
    for (int y = 0; y < mask.height(); ++y) {
        const uchar* row = mask.constScanLine(y);
        int x = 0;
        while (x < mask.width()) {
            while (x < mask.width() && row[x] == 0) ++x;
            const int start = x;
            while (x < mask.width() && row[x] != 0) ++x;
            if (x > start) spans.emplace_back(start + left, y + top, x - start, 1);
        }
    }
    QRegion region;
    region.setRects(spans.data(), int(spans.size()));
    return region;
}

}  // namespace faroven
