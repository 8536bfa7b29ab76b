#include "cad/shapes/curve.h"

#include "cad/canvas/mycad.h"
#include "cad/geometry/geometry.h"
#include "cad/shapes/shape_markers.h"
#include "cad/shapes/shape_p.h"

#include <QPointF>
#include <algorithm>
#include <cmath>
#include <utility>

namespace faroven {

using namespace shape_detail;

namespace {

// Greatest distance between a drawn chord and the curve, in pixels.
constexpr double kPixelTolerance = 0.25;
// The same for measuring lengths, in drawing units.
constexpr double kLengthTolerance = 0.01;
// Steps of one segment at most, whatever its size.
constexpr double kMaxSteps = 4096;

QPointF qpoint(TMyPoint p) { return QPointF(p.x, p.y); }
TMyPoint mypoint(QPointF p) { return TMyPoint{float(p.x()), float(p.y())}; }

TArrMyPoint completedChain(TArrMyPoint chain) {
    while (!chain.empty() && (chain.size() - 1) % 3 != 0) chain.push_back(chain.back());
    return chain;
}

// Samples of the chain, the first and the last point exactly, with no chord
// farther than tolerance from the curve. Each segment takes the step count of
// Wang's bound, sqrt(3/4 * M / tolerance), where M is the larger of the
// control polygon's two second differences.
std::vector<QPointF> flatten(const TArrMyPoint& input, double tolerance) {
    const TArrMyPoint chain = completedChain(input);
    std::vector<QPointF> out;
    if (chain.empty()) return out;
    out.push_back(qpoint(chain[0]));
    for (size_t i = 0; i + 3 < chain.size(); i += 3) {
        const QPointF p0 = qpoint(chain[i]), p1 = qpoint(chain[i + 1]), p2 = qpoint(chain[i + 2]), p3 = qpoint(chain[i + 3]);
        const QPointF d1 = p0 - 2 * p1 + p2, d2 = p1 - 2 * p2 + p3;
        const double m = std::max(std::hypot(d1.x(), d1.y()), std::hypot(d2.x(), d2.y()));
        const double wanted = std::ceil(std::sqrt(0.75 * m / tolerance));
        int steps = int(kMaxSteps);  // also when unbounded points give not-a-number
        if (wanted < kMaxSteps) steps = std::max(1, int(wanted));
        for (int s = 1; s < steps; ++s) {
            const double t = double(s) / steps, u = 1 - t;
            out.push_back(p0 * (u * u * u) + p1 * (3 * u * u * t) + p2 * (3 * u * t * t) + p3 * (t * t * t));
        }
        out.push_back(p3);
    }
    return out;
}

// Inserts knot u into the cubic B-spline (knots, points) without changing the curve.
void insertKnot(std::vector<double>& knots, std::vector<QPointF>& points, double u) {
    constexpr int p = 3;
    const int k = int(std::upper_bound(knots.begin(), knots.end(), u) - knots.begin()) - 1;
    std::vector<QPointF> out;
    out.reserve(points.size() + 1);
    for (int i = 0; i <= k - p; ++i) out.push_back(points[size_t(i)]);
    for (int i = k - p + 1; i <= k; ++i) {
        const double a = (u - knots[size_t(i)]) / (knots[size_t(i + p)] - knots[size_t(i)]);
        out.push_back((1 - a) * points[size_t(i - 1)] + a * points[size_t(i)]);
    }
    for (size_t i = size_t(k); i < points.size(); ++i) out.push_back(points[i]);
    knots.insert(knots.begin() + k + 1, u);
    points = std::move(out);
}

double polylineLength(const std::vector<QPointF>& pts) {
    double length = 0;
    for (size_t i = 1; i < pts.size(); ++i) length += std::hypot(pts[i].x() - pts[i - 1].x(), pts[i].y() - pts[i - 1].y());
    return length;
}

TArrMyPoint zoomedBy(TArrMyPoint pts, double zoom) {
    for (TMyPoint& p : pts) p = TMyPoint{float(p.x * zoom), float(p.y * zoom)};
    return pts;
}

TArrMyPoint movedZoomedPoints(const TMyShape* shape, TPoint from, TPoint to) {
    TArrMyPoint pts = zoomedPoints(shape);
    for (TMyPoint& p : pts) p = TMyPoint{p.x + float(to.x - from.x), p.y + float(to.y - from.y)};
    return pts;
}

TArrMyPoint turnedZoomedPoints(TMyShape* shape, TPoint from, TPoint to) {
    const float angle = float(shape->GetRotatedAngle(from, to));
    const TMyPoint c = shape->GetCenterPointInZoom();
    TArrMyPoint pts = zoomedPoints(shape);
    for (TMyPoint& p : pts) p = RotateAPoint(p, c, angle);
    return pts;
}

// A rubber band of the chain (zoomed), in the exclusive-or state.
void drawBand(TCanvas* canvas, const TArrMyPoint& chain) {
    SetDragResizeRotateShapeMode(canvas);
    canvas->Polyline(FlattenPolyBezier(chain));
}

// The control point nearest to the chain's end (or start) that differs from
// it: the direction the curve leaves that end in, for its arrow head.
TMyPoint inwardNeighbour(const TArrMyPoint& chain, bool atEnd) {
    const size_t n = chain.size();
    const TMyPoint tip = atEnd ? chain[n - 1] : chain[0];
    for (size_t k = 1; k < n; ++k) {
        const TMyPoint q = atEnd ? chain[n - 1 - k] : chain[k];
        if (!(q == tip)) return q;
    }
    return tip;
}

// The (tip, other) pairs of the arrow heads of the zoomed chain, the last
// point's first, as the line orders them.
std::vector<std::pair<TMyPoint, TMyPoint>> arrowEnds(const TMyLine* shape, const TArrMyPoint& chain) {
    std::vector<std::pair<TMyPoint, TMyPoint>> ends;
    const TArrowStyle style = shape->ArrowStyle();
    if (chain.size() < 2 || style == ANone || style > ADouble) return ends;
    if (style == ALeft || style == ADouble) ends.emplace_back(chain.back(), inwardNeighbour(chain, true));
    if (style == ARight || style == ADouble) ends.emplace_back(chain.front(), inwardNeighbour(chain, false));
    // A curve whose points all coincide has no direction to point in.
    std::erase_if(ends, [](const auto& e) { return e.first == e.second; });
    return ends;
}

// The curve of the zoomed chain with the shape's pen, its arrow heads, then the caption.
void drawCurve(TMyLine* shape, TCanvas* canvas, const TArrMyPoint& chain) {
    shape->PowerDrawShape(canvas, FlattenPolyBezier(chain), false);
    const auto ends = arrowEnds(shape, chain);
    if (!ends.empty()) SetDrawTriangleMode(shape, canvas);
    for (const auto& [tip, other] : ends) shape->DrawTriangle(canvas, tip, other);
    SetDrawShapeMode(shape, canvas);
    shape->DrawInfo(canvas);
}

// A thin grey line joining two hot marks.
void drawGuide(TCanvas* canvas, TMyPoint a, TMyPoint b) {
    TPen* pen = canvas->Pen();
    pen->SetColor(clGray);
    pen->SetStyle(psSolid);
    pen->SetWidth(1);
    pen->SetMode(pmCopy);
    LineDraw(nullptr, canvas, a, b);
}

// A round hot mark inside the square that DrawSquare would draw, one pixel
// smaller on each side, so that a handle reads differently from an anchor.
void drawHandleMark(TMyShape* shape, TCanvas* canvas, TMyPoint p) {
    if (!shape->HotShow()) return;
    int h = std::max(2, (shape->Canvas() ? shape->Canvas()->HotSize() : 4) - 1);
    if (shape->HasParentShape()) h = std::max(1, h / 2);
    if (shape->Locked())
        SetDrawLockedHotMode(canvas);
    else
        SetDrawHotMode(canvas);
    canvas->Ellipse(TRect{Round(p.x - h), Round(p.y - h), Round(p.x + h), Round(p.y + h)});
}

double curveLengthByUnit(const TMyShape* shape, const TArrMyPoint& chain) {
    return pixelsToUnit(polylineLength(flatten(chain, kLengthTolerance)), unitOf(shape), ratioOf(shape));
}

// The pen's reach around an arrow head's corners.
int arrowMargin(TMyShape* shape) { return std::max(shape->Pen()->Width(), 1) + 1; }

}  // namespace

TArrPoint FlattenPolyBezier(const TArrMyPoint& chain) {
    TArrPoint out;
    for (const QPointF& q : flatten(chain, kPixelTolerance)) {
        const TPoint p = MyPtToPt(mypoint(q));
        if (out.empty() || !(out.back() == p)) out.push_back(p);
    }
    return out;
}

TArrMyPoint BSplineToPolyBezier(const TArrMyPoint& controls) {
    const size_t n = controls.size();
    if (n <= 1) return controls;
    const QPointF a = qpoint(controls[0]), b = qpoint(controls[1]), c = qpoint(controls[n - 1]);
    if (n == 2) return {controls[0], mypoint(a + (c - a) / 3), mypoint(a + (c - a) * 2 / 3), controls[1]};
    // The quadratic curve raised to a cubic one.
    if (n == 3) return {controls[0], mypoint(a + (b - a) * 2 / 3), mypoint(c + (b - c) * 2 / 3), controls[2]};
    // Every inner knot raised to multiplicity three splits the spline into
    // its Bézier segments; the control points are then the chain.
    const int m = int(n) - 3;
    std::vector<double> knots{0, 0, 0};
    for (int k = 0; k <= m; ++k) knots.push_back(k);
    knots.insert(knots.end(), {double(m), double(m), double(m)});
    std::vector<QPointF> points;
    for (const TMyPoint& p : controls) points.push_back(qpoint(p));
    for (int k = 1; k < m; ++k) {
        insertKnot(knots, points, k);
        insertKnot(knots, points, k);
    }
    TArrMyPoint chain;
    for (const QPointF& q : points) chain.push_back(mypoint(q));
    // The ends are the first and last control points exactly.
    chain.front() = controls.front();
    chain.back() = controls.back();
    return chain;
}

// ---- TMyPolyBezier -------------------------------------------------------------------------

TMyPolyBezier::TMyPolyBezier(TMyCAD* canvas) : TMyPolyLine(canvas) {}

TArrMyPoint TMyPolyBezier::BezierChain() const { return completedChain(Points()); }

TArrPoint TMyPolyBezier::CurveInZoom() const { return FlattenPolyBezier(zoomedPoints(this)); }

bool TMyPolyBezier::IsDrawingFinished(TMouseButton button, TPoint point) {
    if (!TMyPolyLine::IsDrawingFinished(button, point)) return false;
    if ((GetPointsCount() - 1) % 3 != 0) SetPoints(BezierChain());
    return true;
}

void TMyPolyBezier::Draw(TCanvas* canvas) { drawCurve(this, canvas, completedChain(zoomedPoints(this))); }

namespace {
bool isAnchor(int i, int count) { return i % 3 == 0 || i == count - 1; }
}  // namespace

void TMyPolyBezier::DrawHot(TCanvas* canvas) {
    const int n = GetPointsCount();
    if (HotShow()) {
        // Handle 3j + 1 belongs to anchor 3j, handle 3j + 2 to anchor 3j + 3.
        for (int i = 0; i < n; ++i)
            if (!isAnchor(i, n)) drawGuide(canvas, GetPointInZoom(i), GetPointInZoom(i % 3 == 1 ? i - 1 : i + 1));
    }
    for (int i = 0; i < n; ++i)
        if (!isAnchor(i, n)) drawHandleMark(this, canvas, GetPointInZoom(i));
    for (int i = 0; i < n; ++i)
        if (isAnchor(i, n)) DrawSquare(this, canvas, GetPointInZoom(i));
}

bool TMyPolyBezier::IsClickedMe(TCanvas*, TPoint point) { return shape_detail::nearPolyline(CurveInZoom(), point); }

void TMyPolyBezier::Draging(TCanvas* canvas, TPoint from, TPoint to) {
    drawBand(canvas, completedChain(movedZoomedPoints(this, from, to)));
}

void TMyPolyBezier::Drawing(TCanvas* canvas, TPoint, TPoint to) {
    TArrMyPoint pts = zoomedPoints(this);
    pts.push_back(PtToMyPt(to));
    drawBand(canvas, completedChain(pts));
}

void TMyPolyBezier::Sizing(TCanvas* canvas, TPoint from, TPoint to) {
    TMyShape::Sizing(canvas, from, to);
    drawBand(canvas, completedChain(zoomedBy(sizedPoints(to), Zoom())));
}

void TMyPolyBezier::Rotating(TCanvas* canvas, TPoint from, TPoint to) {
    drawBand(canvas, completedChain(turnedZoomedPoints(this, from, to)));
}

TArrMyPoint TMyPolyBezier::sizedPoints(TPoint to) const {
    TArrMyPoint pts = Points();
    const int n = int(pts.size()), h = HotIndex();
    if (h < 0 || h >= n) return pts;
    const double zoom = Zoom();
    const TMyPoint target{float(to.x / zoom), float(to.y / zoom)};
    const float dx = target.x - pts[size_t(h)].x, dy = target.y - pts[size_t(h)].y;
    pts[size_t(h)] = target;
    if (h % 3 != 0) return pts;
    for (int i : {h - 1, h + 1})
        if (i >= 0 && i < n && !isAnchor(i, n)) pts[size_t(i)] = TMyPoint{pts[size_t(i)].x + dx, pts[size_t(i)].y + dy};
    return pts;
}

void TMyPolyBezier::SizeChangeValue(TPoint from, TPoint to) {
    TMyShape::SizeChangeValue(from, to);
    const int h = HotIndex();
    if (h < 0 || h >= GetPointsCount()) return;
    SetPoints(sizedPoints(to));
    SetCenterPoint(ComputeCenterPoint());
}

double TMyPolyBezier::GetLengthByUnit() { return curveLengthByUnit(this, BezierChain()); }

TRect TMyPolyBezier::GetPaintBoundsInZoom() {
    TRect box = TMyShape::GetPaintBoundsInZoom();
    for (const auto& [tip, other] : arrowEnds(this, completedChain(zoomedPoints(this))))
        box = growBoxBy(box, arrowHead(tip, other), arrowMargin(this));
    return box;
}

// ---- TMyBLine ------------------------------------------------------------------------------

TMyBLine::TMyBLine(TMyCAD* canvas) : TMyPolyLine(canvas) {}

void TMyBLine::assignOwnFields(const TMyShape* source, bool withRelations) {
    TMyPolyLine::assignOwnFields(source, withRelations);
    if (const auto* line = shape_cast<TMyBLine>(source)) m_drawingFlag = line->m_drawingFlag;
}

TArrMyPoint TMyBLine::BezierChain() const { return BSplineToPolyBezier(Points()); }

TArrPoint TMyBLine::CurveInZoom() const { return FlattenPolyBezier(BSplineToPolyBezier(zoomedPoints(this))); }

void TMyBLine::Draw(TCanvas* canvas) { drawCurve(this, canvas, BSplineToPolyBezier(zoomedPoints(this))); }

void TMyBLine::DrawHot(TCanvas* canvas) {
    const int n = GetPointsCount();
    if (HotShow())
        for (int i = 0; i + 1 < n; ++i) drawGuide(canvas, GetPointInZoom(i), GetPointInZoom(i + 1));
    for (int i = 0; i < n; ++i) DrawSquare(this, canvas, GetPointInZoom(i));
}

bool TMyBLine::IsClickedMe(TCanvas*, TPoint point) { return shape_detail::nearPolyline(CurveInZoom(), point); }

void TMyBLine::Drawing(TCanvas* canvas, TPoint from, TPoint to) {
    if (!m_drawingFlag) {
        TMyPolyLine::Drawing(canvas, from, to);
        return;
    }
    TArrMyPoint pts = zoomedPoints(this);
    pts.push_back(PtToMyPt(to));
    drawBand(canvas, BSplineToPolyBezier(pts));
}

void TMyBLine::Draging(TCanvas* canvas, TPoint from, TPoint to) {
    drawBand(canvas, BSplineToPolyBezier(movedZoomedPoints(this, from, to)));
}

void TMyBLine::Sizing(TCanvas* canvas, TPoint from, TPoint to) {
    TMyShape::Sizing(canvas, from, to);
    TArrMyPoint pts = zoomedPoints(this);
    if (const int h = HotIndex(); h >= 0 && h < int(pts.size())) pts[size_t(h)] = PtToMyPt(to);
    drawBand(canvas, BSplineToPolyBezier(pts));
}

void TMyBLine::Rotating(TCanvas* canvas, TPoint from, TPoint to) {
    drawBand(canvas, BSplineToPolyBezier(turnedZoomedPoints(this, from, to)));
}

double TMyBLine::GetLengthByUnit() { return curveLengthByUnit(this, BezierChain()); }

TRect TMyBLine::GetPaintBoundsInZoom() {
    TRect box = TMyShape::GetPaintBoundsInZoom();
    for (const auto& [tip, other] : arrowEnds(this, BSplineToPolyBezier(zoomedPoints(this))))
        box = growBoxBy(box, arrowHead(tip, other), arrowMargin(this));
    return box;
}

}  // namespace faroven
