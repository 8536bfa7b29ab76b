#include "cad/shapes/rectangle.h"

#include "cad/canvas/mycad.h"
#include "cad/geometry/geometry.h"
#include "cad/shapes/shape_markers.h"
#include "cad/shapes/shape_p.h"

#include <cmath>
#include <numbers>
#include <utility>

namespace faroven {

using namespace shape_detail;

namespace {

bool rotatingAction(const TMyShape* shape) {
    const TMyCAD* cad = shape->Canvas();
    return cad && (cad->Action() == dtRotating || cad->Action() == dtRotateSelecting);
}

TArrPoint rounded(const std::array<TMyPoint, 4>& pts) {
    TArrPoint out;
    out.reserve(5);
    for (const TMyPoint& p : pts) out.push_back(MyPtToPt(p));
    return out;
}

// The handle table: for handle h, the moved point m and its neighbours a and b.
constexpr int kSizeTable[8][3] = {{0, 1, 3}, {1, 0, 2}, {2, 3, 1}, {3, 2, 0}, {0, 0, 1}, {1, 1, 2}, {2, 2, 3}, {3, 3, 0}};

// Side middles of the upright corners u, by the handle table.
TMyPoint sideMiddle(const std::array<TMyPoint, 4>& u, int handle) {
    switch (handle) {
    case 4: return TMyPoint{u[0].x + (u[1].x - u[0].x) / 2, u[0].y};
    case 5: return TMyPoint{u[1].x, u[1].y + (u[2].y - u[1].y) / 2};
    case 6: return TMyPoint{u[3].x + (u[2].x - u[3].x) / 2, u[2].y};
    case 7: return TMyPoint{u[0].x, u[1].y + (u[2].y - u[1].y) / 2};
    default: return TMyPoint{};
    }
}

std::array<TMyPoint, 4> turned(const std::array<TMyPoint, 4>& pts, TMyPoint centre, float angle) {
    std::array<TMyPoint, 4> out;
    for (size_t i = 0; i < 4; ++i) out[i] = RotateAPoint(pts[i], centre, angle);
    return out;
}

}  // namespace

// ---- TMyRectangle ------------------------------------------------------------------------

TMyRectangle::TMyRectangle(TMyCAD* canvas) : TMyShape(canvas) {}

void TMyRectangle::assignOwnFields(const TMyShape* source, bool withRelations) {
    TMyShape::assignOwnFields(source, withRelations);
    const auto* r = dynamic_cast<const TMyRectangle*>(source);
    if (!r) return;
    m_associateSideResizing = r->m_associateSideResizing;
    m_showSideHot = r->m_showSideHot;
    m_showHorizontalSideHot = r->m_showHorizontalSideHot;
    m_showVerticalSideHot = r->m_showVerticalSideHot;
}

std::array<TMyPoint, 4> TMyRectangle::corners() const {
    return {GetPointsCount() > 0 ? Points()[0] : TMyPoint{}, GetPointsCount() > 1 ? Points()[1] : TMyPoint{},
            GetPointsCount() > 2 ? Points()[2] : TMyPoint{}, GetPointsCount() > 3 ? Points()[3] : TMyPoint{}};
}

std::array<TMyPoint, 4> TMyRectangle::cornersInZoom() const {
    std::array<TMyPoint, 4> out = corners();
    for (TMyPoint& p : out) p = ZoomedValuePt(p);
    return out;
}

void TMyRectangle::AddPointByMouse(TPoint point) {
    const double zoom = Zoom();
    if (GetPointsCount() == 0) {
        TMyShape::AddPointByMouse(point);
        return;
    }
    if (GetPointsCount() != 1) return;
    const TMyPoint p0 = GetPoint(0);
    const TMyPoint q = GetPointInZoom(0);
    // A second press in the same row or column would give a flat rectangle.
    if (point.x == q.x || point.y == q.y) return;
    const float x = float(point.x / zoom), y = float(point.y / zoom);
    AddPoint(TMyPoint{x, p0.y});
    AddPoint(TMyPoint{x, y});
    AddPoint(TMyPoint{p0.x, y});
}

bool TMyRectangle::IsDrawingFinished(TMouseButton, TPoint) { return GetPointsCount() == 4; }

void TMyRectangle::Draw(TCanvas* canvas) {
    SetDrawShapeMode(this, canvas);
    if (GetPointsCount() >= 4) {
        TArrPoint outline = rounded(cornersInZoom());
        outline.push_back(outline[0]);
        PowerDrawShape(canvas, outline, true);
    }
    if (kind() != TShapeKind::Text) DrawInfo(canvas);
}

void TMyRectangle::DrawRectangle(TCanvas* canvas, const TArrPoint& pts) {
    if (pts.size() < 4) return;
    canvas->MoveTo(pts[0].x, pts[0].y);
    canvas->LineTo(pts[1].x, pts[1].y);
    canvas->LineTo(pts[2].x, pts[2].y);
    canvas->LineTo(pts[3].x, pts[3].y);
    canvas->LineTo(pts[0].x, pts[0].y);
}

void TMyRectangle::Draging(TCanvas* canvas, TPoint from, TPoint to) {
    if (GetPointsCount() < 4) return;
    TArrPoint pts = rounded(cornersInZoom());
    for (TPoint& p : pts) p = TPoint{p.x + to.x - from.x, p.y + to.y - from.y};
    SetDragResizeRotateShapeMode(canvas);
    DrawRectangle(canvas, pts);
}

void TMyRectangle::Drawing(TCanvas* canvas, TPoint from, TPoint to) {
    // While the first corner waits for the second, the band spans the
    // first corner and the mouse (from, the press, when there is no corner yet).
    const TPoint a = GetPointsCount() > 0 ? MyPtToPt(GetPointInZoom(0)) : from;
    SetDragResizeRotateShapeMode(canvas);
    DrawRectangle(canvas, TArrPoint{a, TPoint{to.x, a.y}, to, TPoint{a.x, to.y}});
}

std::optional<std::array<TMyPoint, 4>> TMyRectangle::sizedCorners(const std::array<TMyPoint, 4>& pts, TMyPoint ctr,
                                                                   float angle, int h, TMyPoint q) {
    if (h < 0 || h > 7) return std::nullopt;
    const int m = kSizeTable[h][0], a = kSizeTable[h][1], b = kSizeTable[h][2];
    const std::array<TMyPoint, 4> u = turned(pts, ctr, -angle);
    float l = u[0].x, t = u[0].y, r = u[0].x, bo = u[0].y;
    for (const TMyPoint& p : u) {
        l = std::min(l, p.x);
        t = std::min(t, p.y);
        r = std::max(r, p.x);
        bo = std::max(bo, p.y);
    }
    const TMyPoint LT{l, t}, RB{r, bo}, RT{r, t}, LB{l, bo};
    const TMyPoint mu = u[size_t(m)];
    const TMyPoint qu = RotateAPoint(q, ctr, -angle);
    // A handle may reach the opposite corner but never cross it.
    const bool allowed = (IsAtLeftTop(ctr, mu) && IsAtLeftTop(RB, qu)) ||
                         (IsAtRightBottom(ctr, mu) && IsAtRightBottom(LT, qu)) ||
                         (IsAtRightTop(ctr, mu) && IsAtRightTop(LB, qu)) ||
                         (IsAtLeftBottom(ctr, mu) && IsAtLeftBottom(RT, qu));
    if (!allowed) return std::nullopt;
    float dx = qu.x - mu.x, dy = qu.y - mu.y;
    const bool side = h > 3;
    if (side && (m == 0 || m == 2)) dx = 0;
    if (side && (m == 1 || m == 3)) dy = 0;
    std::array<TMyPoint, 4> out = pts;
    if (!side) out[size_t(m)] = q;
    TMyPoint pa = u[size_t(a)];
    pa.y += dy;
    if (side) pa.x += dx;
    out[size_t(a)] = RotateAPoint(pa, ctr, angle);
    TMyPoint pb = u[size_t(b)];
    pb.x += dx;
    if (side) pb.y += dy;
    out[size_t(b)] = RotateAPoint(pb, ctr, angle);
    return out;
}

void TMyRectangle::SizeChangeValue(TPoint from, TPoint to) {
    TMyShape::SizeChangeValue(from, to);
    if (GetPointsCount() < 4) return;
    const double zoom = Zoom();
    const TMyPoint ctr = GetCenterPoint();
    const TMyPoint q{float(to.x / zoom), float(to.y / zoom)};
    const std::array<TMyPoint, 4> before = corners();
    if (const auto moved = sizedCorners(before, ctr, Angle(), HotIndex(), q)) {
        TArrMyPoint pts = std::as_const(*this).Points();
        for (size_t i = 0; i < 4; ++i) pts[i] = (*moved)[i];
        SetPoints(pts);
        carryLinkPoints(before, *moved);
    }
    SetCenterPoint(ComputeCenterPoint(4));
}

void TMyRectangle::carryLinkPoints(const std::array<TMyPoint, 4>& before, const std::array<TMyPoint, 4>& after) {
    // Each link point keeps its place relative to the frame: its coordinates
    // along the sides 0-1 and 0-3 stay the same.
    const double ux = double(before[1].x) - before[0].x, uy = double(before[1].y) - before[0].y;
    const double vx = double(before[3].x) - before[0].x, vy = double(before[3].y) - before[0].y;
    const double det = ux * vy - uy * vx;
    if (det == 0) return;  // a flat frame gives no proportions to keep
    for (int i = 0; i < GetLinkPointsCount(); ++i) {
        const TMyPoint p = GetLinkPoint(i);
        const double dx = double(p.x) - before[0].x, dy = double(p.y) - before[0].y;
        const double s = (dx * vy - dy * vx) / det, t = (ux * dy - uy * dx) / det;
        SetLinkPoint(i, {float(after[0].x + s * (after[1].x - after[0].x) + t * (after[3].x - after[0].x)),
                         float(after[0].y + s * (after[1].y - after[0].y) + t * (after[3].y - after[0].y))});
    }
}

void TMyRectangle::Sizing(TCanvas* canvas, TPoint from, TPoint to) {
    TMyShape::Sizing(canvas, from, to);
    if (GetPointsCount() < 4) return;
    const std::array<TMyPoint, 4> z = cornersInZoom();
    const auto moved = sizedCorners(z, GetCenterPointInZoom(), Angle(), HotIndex(), PtToMyPt(to));
    SetDragResizeRotateShapeMode(canvas);
    // A refused move shows the figure as it stays.
    DrawRectangle(canvas, rounded(moved ? *moved : z));
}

void TMyRectangle::Rotating(TCanvas* canvas, TPoint from, TPoint to) {
    if (GetPointsCount() < 4) return;
    const float angle = float(GetRotatedAngle(from, to));
    const std::array<TMyPoint, 4> pts = turned(cornersInZoom(), GetCenterPointInZoom(), angle);
    SetDragResizeRotateShapeMode(canvas);
    DrawRectangle(canvas, rounded(pts));
}

std::array<TMyPoint, 8> TMyRectangle::handlesInZoom() const {
    std::array<TMyPoint, 8> h{};
    const TMyPoint c = ZoomedValuePt(ComputeCenterPoint(4));
    const float angle = Angle();
    const std::array<TMyPoint, 4> u = turned(cornersInZoom(), c, -angle);
    for (size_t i = 0; i < 4; ++i) h[i] = u[i];
    if (m_showSideHot) {
        if (m_showVerticalSideHot) {
            h[4] = sideMiddle(u, 4);
            h[6] = sideMiddle(u, 6);
        }
        if (m_showHorizontalSideHot) {
            h[5] = sideMiddle(u, 5);
            h[7] = sideMiddle(u, 7);
        }
        for (TMyPoint& p : h) p = RotateAPoint(p, c, angle);
    } else {
        // Hidden side handles stay at the origin: they still answer there.
        for (size_t i = 0; i < 4; ++i) h[i] = RotateAPoint(h[i], c, angle);
    }
    return h;
}

int TMyRectangle::InWhichHot(TPoint point) {
    SetHotIndex(-1);
    if (GetPointsCount() < 4) return -1;
    const std::array<TMyPoint, 8> h = handlesInZoom();
    const int last = rotatingAction(this) ? 3 : 7;
    int found = -1;
    for (int i = 0; i <= last; ++i)
        if (inHotSquare(h[size_t(i)], point)) found = i;
    SetHotIndex(found);
    return found;
}

void TMyRectangle::DrawHot(TCanvas* canvas) {
    if (GetPointsCount() >= 4) {
        const std::array<TMyPoint, 8> h = handlesInZoom();
        for (size_t i = 0; i < 4; ++i) DrawSquare(this, canvas, h[i]);
        if (!rotatingAction(this) && m_showSideHot) {
            if (m_showVerticalSideHot) {
                DrawSquare(this, canvas, h[4]);
                DrawSquare(this, canvas, h[6]);
            }
            if (m_showHorizontalSideHot) {
                DrawSquare(this, canvas, h[5]);
                DrawSquare(this, canvas, h[7]);
            }
        }
    }
    DrawDiamond(this, canvas, ZoomedValuePt(TextPoint()), clYellow);
}

TCursor TMyRectangle::GetMouseCursor(int x, int y) {
    const int h = InWhichHot(TPoint{x, y});
    if (h == 4 || h == 6) return crSizeNS;
    if (h == 5 || h == 7) return crSizeWE;
    if (h < 0) return crCross;
    const double zoom = Zoom();
    const TMyPoint m{float(x / zoom), float(y / zoom)};
    const TMyPoint c = GetCenterPoint();
    TCursor cursor = crCross;
    if (IsAtLeftTop(c, m)) cursor = crSizeNWSE;
    if (IsAtLeftBottom(c, m)) cursor = crSizeNESW;
    if (IsAtRightTop(c, m)) cursor = crSizeNESW;
    if (IsAtRightBottom(c, m)) cursor = crSizeNWSE;
    return cursor;
}

bool TMyRectangle::IsClickedMe(TCanvas*, TPoint point) {
    if (GetPointsCount() < 4) return false;
    return polygonHasPixel(rounded(cornersInZoom()), point);
}

void TMyRectangle::FlipHoriz() {
    TMyShape::FlipHoriz();
    SetAngle(-Angle());
}

void TMyRectangle::FlipVert() {
    TMyShape::FlipVert();
    SetAngle(-Angle());
}

TMyPoint TMyRectangle::GetPoint(int index) const {
    if (index >= 0 && index <= 3) return TMyShape::GetPoint(index);
    if (index < -1 || index > 7) return TMyPoint{};
    const TMyPoint c = ComputeCenterPoint(4);
    if (index == -1) return RotateAPoint(TMyPoint{}, c, Angle());
    const std::array<TMyPoint, 4> u = turned(corners(), c, -Angle());
    return RotateAPoint(sideMiddle(u, index), c, Angle());
}

TMyPoint TMyRectangle::GetCenterPoint() {
    if (GetPointsCount() > 0) SetCenterPoint(ComputeCenterPoint(4));
    return CenterPoint();
}

TMyPoint TMyRectangle::GetCenterPointInZoom() { return ZoomedValuePt(GetCenterPoint()); }

float TMyRectangle::UprightWidth() const {
    if (GetPointsCount() < 4) return GetMyWidth();
    const std::array<TMyPoint, 4> u = turned(corners(), ComputeCenterPoint(4), -Angle());
    float l = u[0].x, r = u[0].x;
    for (const TMyPoint& p : u) {
        l = std::min(l, p.x);
        r = std::max(r, p.x);
    }
    return r - l;
}

float TMyRectangle::UprightHeight() const {
    if (GetPointsCount() < 4) return GetMyHeight();
    const std::array<TMyPoint, 4> u = turned(corners(), ComputeCenterPoint(4), -Angle());
    float t = u[0].y, b = u[0].y;
    for (const TMyPoint& p : u) {
        t = std::min(t, p.y);
        b = std::max(b, p.y);
    }
    return b - t;
}

QString TMyRectangle::GetInfo() {
    const TUnits unit = unitOf(this);
    const double ratio = ratioOf(this);
    return QStringLiteral("%1: width %2, height %3, angle %4")
        .arg(shapeKind(this), formatLength(pixelsToUnit(UprightWidth(), unit, ratio), unit),
             formatLength(pixelsToUnit(UprightHeight(), unit, ratio), unit), formatDegrees(normalisedDegrees(Angle())));
}

double TMyRectangle::GetLengthByUnit() {
    if (GetPointsCount() < 4) return 0;
    const std::array<TMyPoint, 4> z = cornersInZoom();
    double length = 0;
    for (size_t i = 0; i < 4; ++i) length += GetLengthByUnit(z[i], z[(i + 1) % 4]);
    return length;
}

// ---- TMyEllipse --------------------------------------------------------------------------

TMyEllipse::TMyEllipse(TMyCAD* canvas) : TMyRectangle(canvas) {}

TArrPoint TMyEllipse::EllipsePoints(double cx, double cy, double rx, double ry, double angle) {
    const EllipseTable& table = ellipseTable();
    const double ca = std::cos(angle), sa = std::sin(angle);
    TArrPoint out(73);
    for (size_t i = 0; i < 73; ++i) {
        const double ex = table.sin[i] * rx, ey = table.cos[i] * ry;
        out[i] = TPoint{Round(ex * ca - ey * sa + cx), Round(ex * sa + ey * ca + cy)};
    }
    return out;
}

TArrPoint TMyEllipse::OutlineInZoom() const {
    const double zoom = Zoom();
    const TMyPoint c = ZoomedValuePt(ComputeCenterPoint(4));
    return EllipsePoints(c.x, c.y, zoom * UprightWidth() / 2, zoom * UprightHeight() / 2, Angle());
}

void TMyEllipse::Draw(TCanvas* canvas) {
    SetDrawShapeMode(this, canvas);
    if (GetPointsCount() >= 4) {
        PixelTarget target;
        bool written = false;
        if (directTarget(this, canvas, target)) {
            if (!m_rows.Matches(Revision(), Zoom())) m_rows = RasterRows::Capture(OutlineInZoom(), Revision(), Zoom());
            if (m_rows.Usable()) {
                m_rows.Write(target);
                written = true;
            }
        }
        if (!written) PowerDrawShape(canvas, OutlineInZoom(), true);
    }
    DrawInfo(canvas);
}

namespace {
void strokePath(TCanvas* canvas, const TArrPoint& pts) {
    canvas->BeginPath();
    canvas->MoveTo(pts[0].x, pts[0].y);
    for (size_t i = 1; i < pts.size(); ++i) canvas->LineTo(pts[i].x, pts[i].y);
    canvas->EndPath();
    canvas->StrokeAndFillPath();
}
}  // namespace

void TMyEllipse::Draging(TCanvas* canvas, TPoint from, TPoint to) {
    if (GetPointsCount() < 4) return;
    TArrPoint pts = OutlineInZoom();
    for (TPoint& p : pts) p = TPoint{p.x + to.x - from.x, p.y + to.y - from.y};
    SetDragResizeRotateShapeMode(canvas);
    strokePath(canvas, pts);
}

void TMyEllipse::Drawing(TCanvas* canvas, TPoint from, TPoint to) {
    const TPoint a = GetPointsCount() > 0 ? MyPtToPt(GetPointInZoom(0)) : from;
    SetDragResizeRotateShapeMode(canvas);
    strokePath(canvas, EllipsePoints((a.x + to.x) / 2.0, (a.y + to.y) / 2.0, std::abs(to.x - a.x) / 2.0,
                                     std::abs(to.y - a.y) / 2.0, 0));
}

QString TMyEllipse::GetInfo() {
    const TUnits unit = unitOf(this);
    const double ratio = ratioOf(this);
    return QStringLiteral("%1: axes %2 x %3, angle %4")
        .arg(shapeKind(this), formatLength(pixelsToUnit(UprightWidth(), unit, ratio), unit),
             formatLength(pixelsToUnit(UprightHeight(), unit, ratio), unit), formatDegrees(normalisedDegrees(Angle())));
}

double TMyEllipse::GetLengthByUnit() {
    if (GetPointsCount() < 4) return 0;
    const double a = UprightWidth() / 2.0, b = UprightHeight() / 2.0;
    const double h = (a + b) > 0 ? (a - b) * (a - b) / ((a + b) * (a + b)) : 0;
    const double circumference = std::numbers::pi * (a + b) * (1 + 3 * h / (10 + std::sqrt(4 - 3 * h)));
    return pixelsToUnit(circumference, unitOf(this), ratioOf(this));
}

// ---- TMyGroup, TMyCombine -----------------------------------------------------------------

TMyGroup::TMyGroup(TMyCAD* canvas) : TMyRectangle(canvas) {}

void TMyGroup::Draw(TCanvas* canvas) { DrawInfo(canvas); }

TMyCombine::TMyCombine(TMyCAD* canvas) : TMyGroup(canvas) {}

}  // namespace faroven
