#include "cad/shapes/shape_p.h"

#include "cad/canvas/mycad.h"
#include "platform/system.h"

#include <QHash>
#include <QImage>
#include <QPainter>
#include <QPolygon>
#include <QRegion>
#include <climits>
#include <cmath>
#include <numbers>

namespace faroven::shape_detail {

namespace {

double unitsPerPixel(TUnits unit) {
    const double ppi = std::max(1, ScreenPixelsPerInch());
    switch (unit) {
    case pixel: return 1.0;
    case mm: return 25.4 / ppi;
    case cm: return 2.54 / ppi;
    case dm: return 0.254 / ppi;
    case m: return 0.0254 / ppi;
    case inch: return 1.0 / ppi;
    }
    return 1.0;
}

double usableRatio(double ratio) { return ratio > 0 && std::isfinite(ratio) ? ratio : 1.0; }

// The rectangle's corners when the outline is an axis-aligned rectangle
// walked corner to corner (the fifth point, if any, closing it).
bool axisAlignedRect(const TArrPoint& o, TRect& r) {
    if (o.size() != 4 && o.size() != 5) return false;
    if (o.size() == 5 && !(o[4] == o[0])) return false;
    const bool horizontalFirst = o[0].y == o[1].y && o[1].x == o[2].x && o[2].y == o[3].y && o[3].x == o[0].x;
    const bool verticalFirst = o[0].x == o[1].x && o[1].y == o[2].y && o[2].x == o[3].x && o[3].y == o[0].y;
    if (!horizontalFirst && !verticalFirst) return false;
    r = TRect{std::min(o[0].x, o[2].x), std::min(o[0].y, o[2].y), std::max(o[0].x, o[2].x), std::max(o[0].y, o[2].y)};
    return true;
}

}  // namespace

double pixelsToUnit(double pixels, TUnits unit, double ratio) { return pixels * unitsPerPixel(unit) / usableRatio(ratio); }

double squarePixelsToUnit(double squarePixels, TUnits unit, double ratio) {
    const double k = unitsPerPixel(unit) / usableRatio(ratio);
    return squarePixels * k * k;
}

QString unitSuffix(TUnits unit) {
    switch (unit) {
    case pixel: return QStringLiteral("px");
    case mm: return QStringLiteral("mm");
    case cm: return QStringLiteral("cm");
    case dm: return QStringLiteral("dm");
    case m: return QStringLiteral("m");
    case inch: return QStringLiteral("in");
    }
    return QString();
}

QString formatLength(double value, TUnits unit) {
    return QString::number(value, 'f', 2) + QLatin1Char(' ') + unitSuffix(unit);
}

QString formatDegrees(double degrees) { return QString::number(degrees, 'f', 1) + QChar(0x00B0); }

QString shapeKind(const QObject* shape) {
    QString name = QString::fromLatin1(shape->metaObject()->className());
    name = name.mid(name.lastIndexOf(QLatin1Char(':')) + 1);
    static const QHash<QString, QString> names{
        {"TMyRectangle", "Rectangle"}, {"TMyEllipse", "Ellipse"},      {"TMyGroup", "Group"},
        {"TMyCombine", "Combine"},     {"TMyLine", "Line"},            {"TMyRuleLine", "Measuring line"},
        {"TMyPolyLine", "Polyline"},   {"TMyPolygon", "Polygon"},      {"TMyFreeLine", "Freehand line"},
    };
    if (const auto it = names.find(name); it != names.end()) return *it;
    return name.startsWith(QLatin1String("TMy")) ? name.mid(3) : name;
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
