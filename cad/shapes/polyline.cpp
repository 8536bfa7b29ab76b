#include "cad/shapes/polyline.h"

#include "cad/canvas/mycad.h"
#include "cad/geometry/geometry.h"
#include "cad/shapes/shape_markers.h"
#include "cad/shapes/shape_p.h"

#include <cmath>

namespace faroven {

using namespace shape_detail;

// ---- TMyPolyLine ---------------------------------------------------------------------------

TMyPolyLine::TMyPolyLine(TMyCAD* canvas) : TMyLine(canvas) { SetArrowStyle(ANone); }

void TMyPolyLine::AppendPoint(TPoint p) {
    int x = p.x, y = p.y;
    if (const TMyCAD* cad = Canvas()) {
        switch (cad->XYMode()) {
        case Mode0: break;
        case Mode1: y = cad->Height() - y; break;
        case Mode2:
            x = cad->Width() - x;
            y = cad->Height() - y;
            break;
        case Mode3: x = cad->Width() - x; break;
        }
    }
    AddPoint(TMyPoint{float(x), float(y)});
}

bool TMyPolyLine::IsDrawingFinished(TMouseButton, TPoint) {
    const int n = GetPointsCount();
    if (n <= 2) return false;
    const TMyPoint a = GetPointInZoom(n - 2), b = GetPointInZoom(n - 1);
    if (a.x != b.x || a.y != b.y) return false;
    TArrMyPoint pts = std::as_const(*this).Points();
    pts.pop_back();
    SetPoints(pts);
    return true;
}

// ---- TMyPolygon ----------------------------------------------------------------------------

TMyPolygon::TMyPolygon(TMyCAD* canvas) : TMyPolyLine(canvas) {}

bool TMyPolygon::IsDrawingFinished(TMouseButton, TPoint p) {
    const int n = GetPointsCount();
    if (n <= 3) return false;
    const float h = Canvas() ? Canvas()->HotSize() : 4;
    auto near = [&](TMyPoint q) { return std::abs(p.x - q.x) < h && std::abs(p.y - q.y) < h; };
    // Closing on the start, or a repeated click on the point before the one
    // that follows the mouse.
    if (!near(GetPointInZoom(0)) && !near(GetPointInZoom(n - 2))) return false;
    SetPoint(n - 1, GetPoint(0));
    return true;
}

void TMyPolygon::Draw(TCanvas* canvas) {
    SetDrawShapeMode(this, canvas);
    if (GetPointsCount() > 0) PowerDrawShape(canvas, pointsInZoom(), true);
    DrawInfo(canvas);
}

void TMyPolygon::DrawHot(TCanvas* canvas) {
    for (int i = 0; i < GetPointsCount(); ++i) DrawSquare(this, canvas, GetPointInZoom(i));
}

bool TMyPolygon::IsClickedMe(TCanvas*, TPoint point) { return polygonHasPixel(pointsInZoom(), point); }

void TMyPolygon::SizeChangeValue(TPoint from, TPoint to) {
    TMyShape::SizeChangeValue(from, to);
    const int n = GetPointsCount(), h = HotIndex();
    if (h < 0 || h >= n) return;
    const double zoom = Zoom();
    const float dx = float((to.x - from.x) / zoom), dy = float((to.y - from.y) / zoom);
    PointAddXY(h, dx, dy);
    if (n > 1 && h == 0) PointAddXY(n - 1, dx, dy);
    if (n > 1 && h == n - 1) PointAddXY(0, dx, dy);
    SetCenterPoint(ComputeCenterPoint(4));
}

TArrPoint TMyPolygon::movedOutline(TPoint d) const {
    TArrPoint pts = pointsInZoom();
    const int n = int(pts.size()), h = HotIndex();
    auto move = [&](int i) { pts[size_t(i)] = TPoint{pts[size_t(i)].x + d.x, pts[size_t(i)].y + d.y}; };
    if (h >= 0 && h < n) {
        move(h);
        if (n > 1 && h == 0) move(n - 1);
        if (n > 1 && h == n - 1) move(0);
    }
    return pts;
}

namespace {
// A closed outline with the thin-line drawing, each pixel once, so that the
// exclusive-or band erases itself when drawn again.
void drawClosed(TCanvas* canvas, TArrPoint pts) {
    if (pts.size() < 2) return;
    if (!(pts.back() == pts.front())) pts.push_back(pts.front());
    canvas->Polyline(pts);
}
}  // namespace

void TMyPolygon::Sizing(TCanvas* canvas, TPoint from, TPoint to) {
    TMyShape::Sizing(canvas, from, to);
    SetDragResizeRotateShapeMode(canvas);
    drawClosed(canvas, movedOutline(TPoint{to.x - from.x, to.y - from.y}));
}

void TMyPolygon::Draging(TCanvas* canvas, TPoint from, TPoint to) {
    TArrPoint pts = pointsInZoom();
    for (TPoint& p : pts) p = TPoint{p.x + to.x - from.x, p.y + to.y - from.y};
    SetDragResizeRotateShapeMode(canvas);
    drawClosed(canvas, pts);
}

void TMyPolygon::Rotating(TCanvas* canvas, TPoint from, TPoint to) {
    const TArrPoint pts = rotatedPointsInZoom(from, to);
    SetDragResizeRotateShapeMode(canvas);
    drawClosed(canvas, pts);
}

double TMyPolygon::GetLengthByUnit() {
    const int n = GetPointsCount();
    // A finished polygon ends on point 0 already; one built by code is closed here.
    const bool closedByPoints = n > 1 && GetPoint(0) == GetPoint(n - 1);
    return pixelsToUnit(pathLength(!closedByPoints), unitOf(this), ratioOf(this));
}

double TMyPolygon::GetAreaByUnit() const {
    const int n = GetPointsCount();
    double twice = 0;
    for (int i = 0; i < n; ++i) {
        const TMyPoint a = GetPoint(i), b = GetPoint((i + 1) % n);
        twice += double(a.x) * b.y - double(b.x) * a.y;
    }
    return squarePixelsToUnit(std::abs(twice) / 2, unitOf(this), ratioOf(this));
}

QString TMyPolygon::GetInfo() {
    int corners = GetPointsCount();
    if (corners > 1 && GetPoint(0) == GetPoint(corners - 1)) --corners;
    const TUnits unit = unitOf(this);
    return QStringLiteral("%1: %2 points, perimeter %3, area %4\u00B2")
        .arg(shapeKind(this))
        .arg(corners)
        .arg(formatLength(GetLengthByUnit(), unit), formatLength(GetAreaByUnit(), unit));
}

// ---- TMyFreeLine ---------------------------------------------------------------------------

TMyFreeLine::TMyFreeLine(TMyCAD* canvas) : TMyPolyLine(canvas) {}

bool TMyFreeLine::IsDrawingFinished(TMouseButton, TPoint) { return GetPointsCount() >= 2; }

void TMyFreeLine::Drawing(TCanvas* canvas, TPoint from, TPoint to) {
    SetDrawShapeMode(this, canvas);
    LineDraw(this, canvas, PtToMyPt(from), PtToMyPt(to));
}

}  // namespace faroven
