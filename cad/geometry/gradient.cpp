#include "cad/geometry/gradient.h"

#include <QImage>
#include <QPainter>
#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace faroven {

namespace {

// Steps of the colour ramp. A position t in [0, 1] becomes ramp index
// round(t * kSteps); the channels are interpolated per index.
constexpr int kSteps = 1024;
using Ramp = std::array<QRgb, kSteps + 1>;

Ramp makeRamp(TColor colorBegin, TColor colorEnd) {
    const TColor b = ColorToRGB(colorBegin), e = ColorToRGB(colorEnd);
    auto channel = [](int from, int to, int k) { return Round(from + double(to - from) * k / kSteps); };
    Ramp ramp;
    for (int k = 0; k <= kSteps; ++k)
        ramp[k] = qRgb(channel(GetRValue(b), GetRValue(e), k), channel(GetGValue(b), GetGValue(e), k),
                       channel(GetBValue(b), GetBValue(e), k));
    return ramp;
}

// Position along one axis of n + 1 pixels (n = last index), in ramp steps.
// An axis of a single pixel sits at 0 whichever way it runs.
double along(int64_t i, int64_t n, bool reversed) {
    if (n <= 0) return 0;
    return double(reversed ? n - i : i) * kSteps / double(n);
}
// Distance from the axis's middle, 0 in the middle and kSteps at both ends;
// integer numerators keep pixel i and pixel n - i exactly equal.
double fromMiddle(int64_t i, int64_t n) {
    if (n <= 0) return 0;
    return double(std::abs(2 * i - n)) * kSteps / double(n);
}

// Where a radial style starts, on a grid of doubled pixel coordinates where
// 0, n and 2n are the first pixel, the middle and the last pixel of an axis.
enum class Anchor { Start, Middle, End };
struct RadialOrigin {
    Anchor x, y;
};

bool radialOrigin(TGradientStyle style, RadialOrigin& o) {
    switch (style) {
    case gsRadialC: o = {Anchor::Middle, Anchor::Middle}; return true;
    case gsRadialT: o = {Anchor::Middle, Anchor::Start}; return true;
    case gsRadialB: o = {Anchor::Middle, Anchor::End}; return true;
    case gsRadialL: o = {Anchor::Start, Anchor::Middle}; return true;
    case gsRadialR: o = {Anchor::End, Anchor::Middle}; return true;
    case gsRadialTL: o = {Anchor::Start, Anchor::Start}; return true;
    case gsRadialTR: o = {Anchor::End, Anchor::Start}; return true;
    case gsRadialBL: o = {Anchor::Start, Anchor::End}; return true;
    case gsRadialBR: o = {Anchor::End, Anchor::End}; return true;
    default: return false;
    }
}

int64_t anchorAt(Anchor a, int64_t n) { return a == Anchor::Start ? 0 : a == Anchor::Middle ? n : 2 * n; }

// The ramp position of every pixel of the part is the sum of a column term and
// a row term (separable styles), both in ramp steps, halved when `halve`.
struct Separable {
    std::vector<double> col, row;
    bool halve = false;
};

// Column and row terms of the separable styles; false for the radial ones.
bool separableTerms(TGradientStyle style, int64_t w1, int64_t h1, const TRect& full, const TRect& part,
                    Separable& s) {
    enum Term { Zero, Fwd, Rev, Mid, MidInv };
    Term tx = Zero, ty = Zero;
    bool halve = true;
    switch (style) {
    case gsLinearH: tx = Fwd; halve = false; break;
    case gsLinearV: ty = Fwd; halve = false; break;
    case gsReflectedH: tx = Mid; halve = false; break;
    case gsReflectedV: ty = Mid; halve = false; break;
    case gsDiagonalLF: tx = Fwd; ty = Fwd; break;
    case gsDiagonalLB: tx = Fwd; ty = Rev; break;
    case gsDiagonalRF: tx = Rev; ty = Rev; break;
    case gsDiagonalRB: tx = Rev; ty = Fwd; break;
    case gsArrowL: tx = Rev; ty = Mid; break;
    case gsArrowR: tx = Fwd; ty = Mid; break;
    case gsArrowU: tx = Mid; ty = Rev; break;
    case gsArrowD: tx = Mid; ty = Fwd; break;
    case gsDiamond: tx = Mid; ty = Mid; break;
    case gsButterfly: tx = MidInv; ty = Mid; break;
    default: return false;
    }
    auto term = [](Term t, int64_t i, int64_t n) -> double {
        switch (t) {
        case Fwd: return along(i, n, false);
        case Rev: return along(i, n, true);
        case Mid: return fromMiddle(i, n);
        case MidInv: return n <= 0 ? 0 : kSteps - fromMiddle(i, n);
        case Zero: break;
        }
        return 0;
    };
    s.halve = halve;
    s.col.resize(size_t(part.Width()));
    s.row.resize(size_t(part.Height()));
    for (int x = part.left; x < part.right; ++x) s.col[size_t(x - part.left)] = term(tx, int64_t(x) - full.left, w1);
    for (int y = part.top; y < part.bottom; ++y) s.row[size_t(y - part.top)] = term(ty, int64_t(y) - full.top, h1);
    return true;
}

inline int rampIndex(double steps) {
    // steps is never negative; clamp guards the last bit of rounding.
    return std::clamp(int(steps + 0.5), 0, kSteps);
}

// The pixels of `part` (inside `full`) of the gradient, or a null image.
QImage renderGradient(const TRect& full, const TRect& part, TGradientStyle style, TColor colorBegin,
                      TColor colorEnd) {
    if (part.Width() <= 0 || part.Height() <= 0) return QImage();
    const int64_t w1 = int64_t(full.right) - full.left - 1;  // last column index
    const int64_t h1 = int64_t(full.bottom) - full.top - 1;  // last row index
    const Ramp ramp = makeRamp(colorBegin, colorEnd);
    QImage image(part.Width(), part.Height(), QImage::Format_RGB32);
    if (image.isNull()) return image;

    Separable s;
    RadialOrigin origin{};
    if (separableTerms(style, w1, h1, full, part, s)) {
        const double factor = s.halve ? 0.5 : 1.0;
        for (int y = 0; y < part.Height(); ++y) {
            auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
            const double rowTerm = s.row[size_t(y)];
            for (int x = 0; x < part.Width(); ++x) line[x] = ramp[size_t(rampIndex((s.col[size_t(x)] + rowTerm) * factor))];
        }
        return image;
    }
    if (radialOrigin(style, origin)) {
        // Doubled coordinates: pixel i sits at 2i, the origin at 0, n or 2n.
        const int64_t ox = anchorAt(origin.x, w1), oy = anchorAt(origin.y, h1);
        auto farthest = [](int64_t o, int64_t n) { return double(std::max(o, 2 * n - o)); };
        const double fx = farthest(ox, w1), fy = farthest(oy, h1);
        const double maxSquare = fx * fx + fy * fy;
        std::vector<double> dx2(size_t(part.Width())), dy2(size_t(part.Height()));
        for (int x = part.left; x < part.right; ++x) {
            const double d = double(std::abs(2 * (int64_t(x) - full.left) - ox));
            dx2[size_t(x - part.left)] = d * d;
        }
        for (int y = part.top; y < part.bottom; ++y) {
            const double d = double(std::abs(2 * (int64_t(y) - full.top) - oy));
            dy2[size_t(y - part.top)] = d * d;
        }
        const double scale = maxSquare > 0 ? 1.0 / maxSquare : 0.0;
        for (int y = 0; y < part.Height(); ++y) {
            auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
            const double rowTerm = dy2[size_t(y)];
            for (int x = 0; x < part.Width(); ++x)
                line[x] = ramp[size_t(rampIndex(std::sqrt((dx2[size_t(x)] + rowTerm) * scale) * kSteps))];
        }
        return image;
    }
    return QImage();  // gsNone and values outside the enumeration
}

TRect normalized(const TRect& r) {
    return TRect{std::min(r.left, r.right), std::min(r.top, r.bottom), std::max(r.left, r.right),
                 std::max(r.top, r.bottom)};
}

// Computes the visible part of the gradient and draws it, clipped to region
// when one is given.
// The polygon clipped to the rectangle grown by two pixels (Sutherland and
// Hodgman): inside the rectangle it covers the same pixels, under either
// fill rule, as the new edges run outside it.
TArrPoint clipToRect(const TArrPoint& polygon, const TRect& rect) {
    const double l = rect.left - 2.0, t = rect.top - 2.0, r = rect.right + 2.0, b = rect.bottom + 2.0;
    struct P { double x, y; };
    std::vector<P> points;
    for (const TPoint& p : polygon) points.push_back({double(p.x), double(p.y)});
    // One side at a time: the signed distance inside, and where an edge crosses it.
    const auto clipSide = [&](auto inside, auto cross) {
        std::vector<P> out;
        for (size_t i = 0; i < points.size(); ++i) {
            const P a = points[i], b2 = points[(i + 1) % points.size()];
            const bool ina = inside(a), inb = inside(b2);
            if (ina) out.push_back(a);
            if (ina != inb) out.push_back(cross(a, b2));
        }
        points.swap(out);
    };
    const auto atX = [](double x) { return [x](P a, P b) { return P{x, a.y + (b.y - a.y) * (x - a.x) / (b.x - a.x)}; }; };
    const auto atY = [](double y) { return [y](P a, P b) { return P{a.x + (b.x - a.x) * (y - a.y) / (b.y - a.y), y}; }; };
    clipSide([l](P p) { return p.x >= l; }, atX(l));
    clipSide([r](P p) { return p.x <= r; }, atX(r));
    clipSide([t](P p) { return p.y >= t; }, atY(t));
    clipSide([b](P p) { return p.y <= b; }, atY(b));
    TArrPoint clipped;
    clipped.reserve(points.size());
    for (const P& p : points) clipped.push_back({Round(p.x), Round(p.y)});
    return clipped;
}

void drawGradient(TCanvas* canvas, const QRegion* region, const TRect& rect, TGradientStyle style,
                  TColor colorBegin, TColor colorEnd) {
    if (!canvas || style == gsNone) return;
    const TRect full = normalized(rect);
    TRect part;
    if (!IntersectRect(part, full, canvas->ClipRect())) return;
    if (region) {
        const QRect box = region->boundingRect();
        TRect regionBox{box.left(), box.top(), box.left() + box.width(), box.top() + box.height()};
        if (region->isEmpty() || !IntersectRect(part, part, regionBox)) return;
    }
    const QImage image = renderGradient(full, part, style, colorBegin, colorEnd);
    if (image.isNull()) return;
    QPainter* p = canvas->Painter();
    if (!p) return;
    p->save();
    p->setCompositionMode(QPainter::CompositionMode_Source);
    if (region) p->setClipRegion(*region, Qt::IntersectClip);
    p->drawImage(QPoint(part.left, part.top), image);
    p->restore();
}

}  // namespace

void DrawGradientRect(TCanvas* canvas, const TRect& rect, TGradientStyle style, TColor colorBegin, TColor colorEnd) {
    drawGradient(canvas, nullptr, rect, style, colorBegin, colorEnd);
}

void DrawGradientRegion(TCanvas* canvas, const QRegion& region, const TRect& rect, TGradientStyle style,
                        TColor colorBegin, TColor colorEnd) {
    drawGradient(canvas, &region, rect, style, colorBegin, colorEnd);
}

void DrawGradientPolygon(TCanvas* canvas, const TArrPoint& outline, TGradientStyle style, TColor colorBegin,
                         TColor colorEnd) {
    if (!canvas || style == gsNone || outline.size() < 3) return;
    TRect bounds{outline[0].x, outline[0].y, outline[0].x, outline[0].y};
    for (const TPoint& p : outline) {
        bounds.left = std::min(bounds.left, p.x);
        bounds.top = std::min(bounds.top, p.y);
        bounds.right = std::max(bounds.right, p.x);
        bounds.bottom = std::max(bounds.bottom, p.y);
    }
    TRect visible;
    if (!IntersectRect(visible, bounds, canvas->ClipRect())) return;
    // The region is built from the part of the outline near the visible
    // area only: Qt's polygon regions of shapes millions of pixels long are
    // slow, and fail (leaking) past their limits.
    const QRegion region = CreatePolygonRgn(clipToRect(outline, visible), ALTERNATE);
    drawGradient(canvas, &region, bounds, style, colorBegin, colorEnd);
}

}  // namespace faroven
