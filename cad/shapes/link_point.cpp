#include "cad/shapes/link_point.h"

#include "cad/geometry/geometry.h"
#include "cad/shapes/shape_markers.h"
#include "cad/shapes/shape_p.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace faroven {

using namespace shape_detail;

namespace {

// The corners of a square of the given side centred on c, in the rectangle's
// point order (top-left, top-right, bottom-right, bottom-left when upright),
// turned by angle about c.
TArrMyPoint squareCorners(TMyPoint c, float side, float angle) {
    const float h = side / 2;
    TArrMyPoint pts{{c.x - h, c.y - h}, {c.x + h, c.y - h}, {c.x + h, c.y + h}, {c.x - h, c.y + h}};
    if (angle != 0)
        for (TMyPoint& p : pts) p = RotateAPoint(p, c, angle);
    return pts;
}

// A press in pixels as a point in drawing units.
TMyPoint pressInUnits(const TMyShape* shape, TPoint press) {
    const double zoom = shape->Zoom();
    return TMyPoint{float(press.x / zoom), float(press.y / zoom)};
}

// The rectangle's resize, then the frame made square again: the corner
// opposite the dragged handle stays, the side is the larger of the new upright
// width and height. Returns the side.
float sizeSquare(TMyRectangle* shape, TPoint from, TPoint to) {
    const TMyPoint ctr = shape->GetCenterPoint();
    const float angle = shape->Angle();
    const int handle = shape->HotIndex();
    const TArrMyPoint before = std::as_const(*shape).Points();
    shape->TMyRectangle::SizeChangeValue(from, to);
    if (shape->GetPointsCount() < 4 || handle < 0 || handle > 7) return shape->UprightWidth();
    TArrMyPoint pts = std::as_const(*shape).Points();
    auto upright = [&](const TArrMyPoint& p, int i) { return RotateAPoint(p[size_t(i)], ctr, -angle); };
    // Points 0 and 1 share a row, 1 and 2 a column (the order of the presses).
    auto column = [](int i) { return i == 1 || i == 2; };
    auto row = [](int i) { return i >= 2; };
    const int fixed = (handle % 4 + 2) % 4;
    const int acrossX = fixed ^ 1, acrossY = 3 - fixed;
    const TMyPoint f = upright(pts, fixed);
    const float w = upright(pts, acrossX).x - f.x, h = upright(pts, acrossY).y - f.y;
    const float side = std::max(std::abs(w), std::abs(h));
    // A resize never crosses the fixed corner, so the frame before it tells on
    // which side of that corner the others lie, even when one side is now 0.
    auto direction = [](float old, float now) {
        if (std::abs(old) > 1e-4f) return old > 0 ? 1.0f : -1.0f;
        return now < 0 ? -1.0f : 1.0f;
    };
    const float sx = direction(upright(before, acrossX).x - upright(before, fixed).x, w);
    const float sy = direction(upright(before, acrossY).y - upright(before, fixed).y, h);
    for (int i = 0; i < 4; ++i) {
        if (i == fixed) continue;
        const TMyPoint u{column(i) == column(fixed) ? f.x : f.x + sx * side,
                         row(i) == row(fixed) ? f.y : f.y + sy * side};
        pts[size_t(i)] = RotateAPoint(u, ctr, angle);
    }
    shape->SetPoints(pts);
    shape->SetCenterPoint(shape->ComputeCenterPoint(4));
    return side;
}

TArrPoint closedOutline(const std::array<TMyPoint, 4>& corners) {
    TArrPoint out;
    for (const TMyPoint& p : corners) out.push_back(MyPtToPt(p));
    out.push_back(out[0]);
    return out;
}

TArrPoint moved(TArrPoint pts, TPoint from, TPoint to) {
    for (TPoint& p : pts) p = TPoint{p.x + to.x - from.x, p.y + to.y - from.y};
    return pts;
}

}  // namespace

// ---- TMyLinkPoint ---------------------------------------------------------------------------

TMyLinkPoint::TMyLinkPoint(TMyCAD* canvas) : TMyRectangle(canvas) { SetShowSideHot(false); }

void TMyLinkPoint::assignOwnFields(const TMyShape* source, bool withRelations) {
    TMyRectangle::assignOwnFields(source, withRelations);
    if (const auto* p = shape_cast<TMyLinkPoint>(source)) m_size = p->m_size;
}

void TMyLinkPoint::SetSize(int v) {
    m_size = uint8_t(std::clamp(v, 0, 255));
    if (GetPointsCount() >= 4) {
        SetPoints(squareCorners(ComputeCenterPoint(4), m_size, Angle()));
        SetCenterPoint(ComputeCenterPoint(4));
        placeLinkPoints();
    }
    changed();
}

void TMyLinkPoint::placeLinkPoints() {
    if (GetPointsCount() < 4) return;
    SetLinkPoints(TArrMyPoint{ComputeCenterPoint(4)});
}

void TMyLinkPoint::AddPointByMouse(TPoint point) {
    if (GetPointsCount() != 0) return;
    SetPoints(squareCorners(pressInUnits(this, point), m_size, 0));
    placeLinkPoints();
}

void TMyLinkPoint::Drawed(TPoint from, TPoint to) {
    TMyRectangle::Drawed(from, to);
    placeLinkPoints();
}

void TMyLinkPoint::Draw(TCanvas* canvas) {
    SetDrawShapeMode(this, canvas);
    if (GetPointsCount() >= 4) {
        const TArrPoint o = closedOutline(cornersInZoom());
        PowerDrawShape(canvas, o, true);
        SetDrawShapeMode(this, canvas);
        canvas->MoveTo(o[0].x, o[0].y);
        canvas->LineTo(o[2].x, o[2].y);
        canvas->MoveTo(o[1].x, o[1].y);
        canvas->LineTo(o[3].x, o[3].y);
    }
    DrawInfo(canvas);
}

void TMyLinkPoint::Drawing(TCanvas* canvas, TPoint, TPoint to) {
    const double zoom = Zoom();
    std::array<TMyPoint, 4> corners = cornersInZoom();
    if (GetPointsCount() < 4) {
        const TArrMyPoint around = squareCorners(PtToMyPt(to), float(m_size * zoom), 0);
        std::copy(around.begin(), around.end(), corners.begin());
    }
    SetDragResizeRotateShapeMode(canvas);
    DrawRectangle(canvas, closedOutline(corners));
}

void TMyLinkPoint::SizeChangeValue(TPoint from, TPoint to) {
    m_size = uint8_t(std::clamp(Round(sizeSquare(this, from, to)), 0, 255));
    placeLinkPoints();
}

QString TMyLinkPoint::GetInfo() {
    const TUnits unit = unitOf(this);
    return QStringLiteral("Link point: size %1")
        .arg(formatLength(pixelsToUnit(UprightWidth(), unit, ratioOf(this)), unit));
}

double TMyLinkPoint::GetLengthByUnit() { return 0; }

// ---- TMyLineLinkLine ------------------------------------------------------------------------

TMyLineLinkLine::TMyLineLinkLine(TMyCAD* canvas) : TMyRectangle(canvas) { SetShowSideHot(false); }

float TMyLineLinkLine::Radius() const {
    return std::min(UprightWidth(), UprightHeight()) / 2;
}

TArrPoint TMyLineLinkLine::CircleInZoom(bool inner) const {
    const TMyPoint c = ZoomedValuePt(ComputeCenterPoint(4));
    const double r = Radius() * Zoom() / (inner ? 2 : 1);
    return TMyEllipse::EllipsePoints(c.x, c.y, r, r, 0);
}

void TMyLineLinkLine::placeLinkPoints() {
    if (GetPointsCount() < 4) return;
    const TMyPoint c = ComputeCenterPoint(4);
    const float r = Radius();
    SetLinkPoints(TArrMyPoint{{c.x, c.y - r}, {c.x + r, c.y}, {c.x, c.y + r}, {c.x - r, c.y}});
}

void TMyLineLinkLine::AddPointByMouse(TPoint point) {
    if (GetPointsCount() != 0) return;
    SetPoints(squareCorners(pressInUnits(this, point), DefaultDiameter, 0));
    placeLinkPoints();
}

void TMyLineLinkLine::Drawed(TPoint from, TPoint to) {
    TMyRectangle::Drawed(from, to);
    placeLinkPoints();
}

void TMyLineLinkLine::Draw(TCanvas* canvas) {
    SetDrawShapeMode(this, canvas);
    if (GetPointsCount() >= 4) {
        PowerDrawShape(canvas, CircleInZoom(), true);
        // The dot takes the pen's colour as the canvas has it (grey on a
        // black-and-white printer).
        SetDrawShapeMode(this, canvas);
        canvas->Brush()->SetStyle(bsSolid);
        canvas->Brush()->SetColor(canvas->Pen()->Color());
        canvas->Polygon(CircleInZoom(true));
    }
    DrawInfo(canvas);
}

void TMyLineLinkLine::Draging(TCanvas* canvas, TPoint from, TPoint to) {
    if (GetPointsCount() < 4) return;
    SetDragResizeRotateShapeMode(canvas);
    canvas->Polyline(moved(CircleInZoom(), from, to));
}

void TMyLineLinkLine::Drawing(TCanvas* canvas, TPoint, TPoint to) {
    const double r = DefaultDiameter * Zoom() / 2;
    SetDragResizeRotateShapeMode(canvas);
    canvas->Polyline(GetPointsCount() >= 4 ? CircleInZoom() : TMyEllipse::EllipsePoints(to.x, to.y, r, r, 0));
}

bool TMyLineLinkLine::IsClickedMe(TCanvas*, TPoint point) {
    if (GetPointsCount() < 4) return false;
    return polygonHasPixel(CircleInZoom(), point);
}

void TMyLineLinkLine::SizeChangeValue(TPoint from, TPoint to) {
    sizeSquare(this, from, to);
    placeLinkPoints();
}

void TMyLineLinkLine::RotateChangeValueByAngle(double angle) {
    TMyRectangle::RotateChangeValueByAngle(angle);
    placeLinkPoints();
}

void TMyLineLinkLine::FlipHoriz() {
    TMyRectangle::FlipHoriz();
    placeLinkPoints();
}

void TMyLineLinkLine::FlipVert() {
    TMyRectangle::FlipVert();
    placeLinkPoints();
}

QString TMyLineLinkLine::GetInfo() {
    const TUnits unit = unitOf(this);
    return QStringLiteral("Connector point: diameter %1")
        .arg(formatLength(pixelsToUnit(2 * Radius(), unit, ratioOf(this)), unit));
}

double TMyLineLinkLine::GetLengthByUnit() { return 0; }

}  // namespace faroven
