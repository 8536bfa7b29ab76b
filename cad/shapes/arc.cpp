#include "cad/shapes/arc.h"

#include "cad/canvas/mycad.h"
#include "cad/geometry/geometry.h"
#include "cad/shapes/shape_markers.h"
#include "cad/shapes/shape_p.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace faroven {

using namespace shape_detail;

namespace {

constexpr double kPi = std::numbers::pi;

// A value in [0, 2 pi).
double wrapped(double a) {
    a = std::fmod(a, 2 * kPi);
    return a < 0 ? a + 2 * kPi : a;
}

// The circle through three points; false for points on one line (or two
// equal points), where no circle is defined.
bool circleThrough(TMyPoint p0, TMyPoint p1, TMyPoint p2, double& cx, double& cy, double& r) {
    // Relative to p0, for precision far from the origin.
    const double bx = double(p1.x) - p0.x, by = double(p1.y) - p0.y;
    const double qx = double(p2.x) - p0.x, qy = double(p2.y) - p0.y;
    const double d = 2 * (bx * qy - by * qx);
    const double scale = std::max({std::abs(bx), std::abs(by), std::abs(qx), std::abs(qy)});
    if (scale == 0 || std::abs(d) <= 1e-9 * scale * scale) return false;
    const double b2 = bx * bx + by * by, q2 = qx * qx + qy * qy;
    const double ux = (qy * b2 - by * q2) / d, uy = (bx * q2 - qx * b2) / d;
    cx = p0.x + ux;
    cy = p0.y + uy;
    r = std::hypot(ux, uy);
    return true;
}

TMyPoint boxCentre(const TArrMyPoint& points) {
    const TMyRect box = GetPointsLTRB(points);
    return {(box.left + box.right) / 2, (box.top + box.bottom) / 2};
}

// The arc's curve followed by what closes the style's figure: nothing for an
// open arc, the start again for a chord, the centre and the start for a sector.
TArrMyPoint figure(const TArrMyPoint& points, TArcMode mode, TArcStyle style, double step) {
    TMyPoint centre;
    TArrMyPoint pts = ArcCurve(points, mode, step, centre);
    if (points.size() < 3 || style == asArc) return pts;
    if (style == asSector) pts.push_back(centre);
    pts.push_back(pts.front());
    return pts;
}

TArrPoint rounded(const TArrMyPoint& pts) {
    TArrPoint out;
    out.reserve(pts.size());
    for (const TMyPoint& p : pts) out.push_back(MyPtToPt(p));
    return out;
}

// Chords of about this many pixels keep the drawn curve within a small
// fraction of a pixel of the true one.
constexpr double kPixelStep = 3;

}  // namespace

TArrMyPoint ArcCurve(const TArrMyPoint& points, TArcMode mode, double step, TMyPoint& centre) {
    if (points.size() < 3) {
        centre = points.empty() ? TMyPoint{} : boxCentre(points);
        return points;
    }
    const TMyPoint p0 = points[0], p1 = points[1], p2 = points[2];
    step = std::max(step, 1e-3);
    TArrMyPoint curve;
    auto steps = [&](double length) { return int(std::clamp(std::ceil(length / step), 2.0, 4096.0)); };
    if (mode == amEllipse) {
        const double cx = double(p0.x) + p2.x - p1.x, cy = double(p0.y) + p2.y - p1.y;
        const double ux = double(p1.x) - p2.x, uy = double(p1.y) - p2.y;
        const double vx = double(p1.x) - p0.x, vy = double(p1.y) - p0.y;
        centre = {float(cx), float(cy)};
        const int n = steps(kPi / 2 * std::sqrt((ux * ux + uy * uy + vx * vx + vy * vy) / 2));
        for (int i = 0; i <= n; ++i) {
            const double t = kPi / 2 * i / n;
            curve.push_back({float(cx + ux * std::cos(t) + vx * std::sin(t)), float(cy + uy * std::cos(t) + vy * std::sin(t))});
        }
    } else {
        double cx, cy, r;
        if (!circleThrough(p0, p1, p2, cx, cy, r)) {
            centre = boxCentre(points);
            return {p0, p1, p2};
        }
        centre = {float(cx), float(cy)};
        const double t0 = std::atan2(p0.y - cy, p0.x - cx);
        const double sweepTo2 = wrapped(std::atan2(p2.y - cy, p2.x - cx) - t0);
        const double sweepTo1 = wrapped(std::atan2(p1.y - cy, p1.x - cx) - t0);
        // The way round from point 0 to point 2 that passes point 1.
        const double sweep = sweepTo1 <= sweepTo2 ? sweepTo2 : sweepTo2 - 2 * kPi;
        const int n = steps(std::abs(sweep) * r);
        for (int i = 0; i <= n; ++i) {
            const double t = t0 + sweep * i / n;
            curve.push_back({float(cx + r * std::cos(t)), float(cy + r * std::sin(t))});
        }
    }
    curve.front() = p0;
    curve.back() = p2;
    return curve;
}

bool ArcRadiusAndAngles(TMyPoint p1, TMyPoint p2, TMyPoint p3, double& r, double& a1, double& a2) {
    double cx, cy, radius;
    if (!circleThrough(p1, p2, p3, cx, cy, radius)) return false;
    // Angles with the y axis pointing up.
    auto angle = [&](TMyPoint p) { return wrapped(std::atan2(cy - p.y, p.x - cx)); };
    const double s = angle(p1), m = angle(p2), e = angle(p3);
    const bool counterClockwise = wrapped(m - s) <= wrapped(e - s);
    r = radius;
    a1 = (counterClockwise ? s : e) * 180 / kPi;
    a2 = (counterClockwise ? e : s) * 180 / kPi;
    return true;
}

// ---- TMyElliArc -----------------------------------------------------------------------------

TMyElliArc::TMyElliArc(TMyCAD* canvas) : TMyShape(canvas) {
    if (canvas) m_arcMode = canvas->ArcMode();
}

void TMyElliArc::assignOwnFields(const TMyShape* source, bool withRelations) {
    TMyShape::assignOwnFields(source, withRelations);
    if (const auto* s = shape_cast<TMyElliArc>(source)) {
        m_arcMode = s->m_arcMode;
        m_arcStyle = s->m_arcStyle;
    }
}

bool TMyElliArc::IsDrawingFinished(TMouseButton, TPoint) { return GetPointsCount() == 3; }

TArrMyPoint TMyElliArc::Outline() const { return figure(Points(), m_arcMode, m_arcStyle, 1.0); }

TArrPoint TMyElliArc::outlineInZoom(const TArrMyPoint& zoomed) const {
    return rounded(figure(zoomed, m_arcMode, m_arcStyle, kPixelStep));
}

void TMyElliArc::Draw(TCanvas* canvas) {
    SetDrawShapeMode(this, canvas);
    const TArrPoint outline = outlineInZoom(zoomedPoints(this));
    if (outline.size() >= 2) PowerDrawShape(canvas, outline, closedFigure());
    DrawInfo(canvas);
}

int TMyElliArc::InWhichHot(TPoint point) {
    int found = -1;
    for (int i = 0; i < GetPointsCount(); ++i)
        if (inHotSquare(GetPointInZoom(i), point)) found = i;
    SetHotIndex(found);
    return found;
}

bool TMyElliArc::IsClickedMe(TCanvas*, TPoint point) {
    const TArrPoint outline = outlineInZoom(zoomedPoints(this));
    return nearPolyline(outline, point) || (closedFigure() && polygonHasPixel(outline, point));
}

void TMyElliArc::SizeChangeValue(TPoint from, TPoint to) {
    TMyShape::SizeChangeValue(from, to);
    const int h = HotIndex();
    if (h < 0 || h >= GetPointsCount()) return;
    const double zoom = Zoom();
    SetPoint(h, TMyPoint{float(to.x / zoom), float(to.y / zoom)});
    GetCenterPoint();
}

void TMyElliArc::drawBand(TCanvas* canvas, const TArrMyPoint& zoomed) const {
    SetDragResizeRotateShapeMode(canvas);
    canvas->Polyline(outlineInZoom(zoomed));
}

void TMyElliArc::Draging(TCanvas* canvas, TPoint from, TPoint to) {
    TArrMyPoint pts = zoomedPoints(this);
    for (TMyPoint& p : pts) p = {p.x + float(to.x - from.x), p.y + float(to.y - from.y)};
    drawBand(canvas, pts);
}

void TMyElliArc::Drawing(TCanvas* canvas, TPoint, TPoint to) {
    if (GetPointsCount() == 0) return;
    TArrMyPoint pts = zoomedPoints(this);
    pts.push_back(PtToMyPt(to));
    drawBand(canvas, pts);
}

void TMyElliArc::Sizing(TCanvas* canvas, TPoint from, TPoint to) {
    TMyShape::Sizing(canvas, from, to);
    TArrMyPoint pts = zoomedPoints(this);
    if (const int h = HotIndex(); h >= 0 && h < int(pts.size())) pts[size_t(h)] = PtToMyPt(to);
    drawBand(canvas, pts);
}

void TMyElliArc::Rotating(TCanvas* canvas, TPoint from, TPoint to) {
    TArrMyPoint pts;
    for (const TPoint& p : rotatedPointsInZoom(from, to)) pts.push_back(PtToMyPt(p));
    drawBand(canvas, pts);
}

TMyPoint TMyElliArc::GetCenterPoint() {
    if (GetPointsCount() >= 3) {
        TMyPoint centre;
        ArcCurve({GetPoint(0), GetPoint(1), GetPoint(2)}, m_arcMode, 1e9, centre);
        SetCenterPoint(centre);
    }
    return CenterPoint();
}

double TMyElliArc::GetLengthByUnit() {
    TMyPoint centre;
    const TArrMyPoint curve = ArcCurve(Points(), m_arcMode, 0.5, centre);
    double length = 0;
    for (size_t i = 1; i < curve.size(); ++i) length += GetLengthinPixel(curve[i - 1], curve[i]);
    return pixelsToUnit(length, unitOf(this), ratioOf(this));
}

QString TMyElliArc::GetInfo() {
    QString text = shapeKind(this) + QStringLiteral(": ");
    double r, a1, a2;
    if (m_arcMode == amCircle && GetPointsCount() >= 3 && ArcRadiusAndAngles(GetPoint(0), GetPoint(1), GetPoint(2), r, a1, a2))
        return text + QStringLiteral("radius %1, %2 from %3")
                          .arg(formatLength(pixelsToUnit(r, unitOf(this), ratioOf(this)), unitOf(this)),
                               formatDegrees(std::fmod(a2 - a1 + 360, 360)), formatDegrees(a1));
    if (m_arcMode == amEllipse) text += QStringLiteral("elliptic, ");
    return text + QStringLiteral("length %1").arg(formatLength(GetLengthByUnit(), unitOf(this)));
}

TRect TMyElliArc::GetPaintBoundsInZoom() {
    return growBoxBy(TMyShape::GetPaintBoundsInZoom(), outlineInZoom(zoomedPoints(this)), std::max(Pen()->Width(), 1) + 2);
}

TRect TMyElliArc::GetHitBoundsInZoom() {
    return growBoxBy(TMyShape::GetHitBoundsInZoom(), outlineInZoom(zoomedPoints(this)), 9);
}

}  // namespace faroven
