#include "cad/shapes/line.h"

#include "cad/canvas/mycad.h"
#include "cad/geometry/geometry.h"
#include "cad/geometry/rotated_text.h"
#include "cad/shapes/shape_markers.h"
#include "cad/shapes/shape_p.h"

#include <QFontMetrics>
#include <cmath>
#include <numbers>

namespace faroven {

using namespace shape_detail;

namespace {

// The hit band of a segment, in screen pixels at every zoom.
constexpr int kBand = 8;
// Gap in pixels between a measuring line and the bottom of its label.
constexpr double kLabelGap = 2;

}  // namespace

// ---- TMyLine -------------------------------------------------------------------------------

TMyLine::TMyLine(TMyCAD* canvas) : TMyShape(canvas) {
    if (canvas) {
        m_arrowAngle = canvas->ArrowAngle();
        m_arrowLength = canvas->ArrowLength();
        m_arrowOffset = canvas->ArrowOffset();
        m_arrowStyle = canvas->ArrowStyle();
    }
}

void TMyLine::assignOwnFields(const TMyShape* source, bool withRelations) {
    TMyShape::assignOwnFields(source, withRelations);
    const auto* line = dynamic_cast<const TMyLine*>(source);
    if (!line) return;
    m_arrowAngle = line->m_arrowAngle;
    m_arrowLength = line->m_arrowLength;
    m_arrowOffset = line->m_arrowOffset;
    m_arrowStyle = line->m_arrowStyle;
    // The ends' shape numbers and link points are relations.
    if (!withRelations) return;
    m_startSpNo = line->m_startSpNo;
    m_startSpPtId = line->m_startSpPtId;
    m_endSpNo = line->m_endSpNo;
    m_endSpPtId = line->m_endSpPtId;
}

bool TMyLine::IsDrawingFinished(TMouseButton, TPoint) { return GetPointsCount() == 2; }

void TMyLine::drawSegments(TCanvas* canvas, const TArrPoint& pts) {
    for (size_t i = 1; i < pts.size(); ++i) LineDraw(this, canvas, PtToMyPt(pts[i - 1]), PtToMyPt(pts[i]));
}

void TMyLine::drawLineAndArrows(TCanvas* canvas) {
    SetDrawShapeMode(this, canvas);
    SetPS(canvas);
    const int n = GetPointsCount();
    for (int i = 0; i + 1 < n; ++i) LineDraw(this, canvas, GetPointInZoom(i), GetPointInZoom(i + 1));
    canvas->SetPenGeometry(TPenJoin::Default, TPenCap::Default);
    if (n < 2 || m_arrowStyle == ANone || m_arrowStyle > ADouble) return;
    SetDrawTriangleMode(this, canvas);
    if (m_arrowStyle == ALeft || m_arrowStyle == ADouble) DrawTriangle(canvas, GetPointInZoom(n - 1), GetPointInZoom(n - 2));
    if (m_arrowStyle == ARight || m_arrowStyle == ADouble) DrawTriangle(canvas, GetPointInZoom(0), GetPointInZoom(1));
}

void TMyLine::Draw(TCanvas* canvas) {
    drawLineAndArrows(canvas);
    SetDrawShapeMode(this, canvas);
    DrawInfo(canvas);
}

TArrPoint TMyLine::arrowHead(TMyPoint tip, TMyPoint other) const {
    const TMyRect split = SplitLine(tip, other, m_arrowOffset);
    const TMyPoint t{split.left, split.top};
    const float halfAngle = float(m_arrowAngle * std::numbers::pi / 180);
    // The length goes on as a byte: beyond 255 pixels it wraps.
    const auto length = uint8_t(Round(Zoom() * m_arrowLength));
    const TMyRect wings = GetTriangle(t, other, halfAngle, length);
    return TArrPoint{MyPtToPt(t), MyPtToPt(TMyPoint{wings.left, wings.top}), MyPtToPt(TMyPoint{wings.right, wings.bottom})};
}

void TMyLine::DrawTriangle(TCanvas* canvas, TMyPoint tip, TMyPoint other) { canvas->Polygon(arrowHead(tip, other)); }

void TMyLine::DrawHot(TCanvas* canvas) {
    for (int i = 0; i < GetPointsCount(); ++i) DrawSquare(this, canvas, GetPointInZoom(i));
}

int TMyLine::InWhichHot(TPoint point) {
    SetHotIndex(-1);
    int found = -1;
    for (int i = 0; i < GetPointsCount(); ++i)
        if (inHotSquare(GetPointInZoom(i), point)) found = i;
    SetHotIndex(found);
    return found;
}

bool TMyLine::segmentHit(int i, TPoint p) const {
    const TPoint a = MyPtToPt(GetPointInZoom(i)), b = MyPtToPt(GetPointInZoom(i + 1));
    const int minX = std::min(a.x, b.x), maxX = std::max(a.x, b.x);
    const int minY = std::min(a.y, b.y), maxY = std::max(a.y, b.y);
    if (a.x == b.x) return PtInRect(TRect{minX - kBand, minY, maxX + kBand, maxY}, p);
    if (a.y == b.y) return PtInRect(TRect{minX, minY - kBand, maxX, maxY + kBand}, p);
    // A sloped segment is hit only inside its own bounding box.
    if (!PtInRect(TRect{minX, minY, maxX, maxY}, p)) return false;
    const double dx = double(a.x) - b.x, dy = double(a.y) - b.y;
    if (std::abs(dx) > std::abs(dy)) {
        const double yl = dy / dx * (p.x - b.x) + b.y;
        return yl - kBand <= p.y && p.y <= yl + kBand;
    }
    const double xl = dx / dy * (p.y - b.y) + b.x;
    return xl - kBand <= p.x && p.x <= xl + kBand;
}

bool TMyLine::IsClickedMe(TCanvas*, TPoint point) {
    for (int i = 0; i + 1 < GetPointsCount(); ++i)
        if (segmentHit(i, point)) return true;
    return false;
}

bool TMyLine::IsClickedMeBeforeWhichPoint(int& index, TPoint point) {
    for (int i = 0; i + 1 < GetPointsCount(); ++i) {
        if (segmentHit(i, point)) {
            index = i + 1;
            return true;
        }
    }
    index = -1;
    return false;
}

void TMyLine::Draging(TCanvas* canvas, TPoint from, TPoint to) {
    TArrPoint pts = pointsInZoom();
    for (TPoint& p : pts) p = TPoint{p.x + to.x - from.x, p.y + to.y - from.y};
    SetDragResizeRotateShapeMode(canvas);
    drawSegments(canvas, pts);
}

void TMyLine::Drawing(TCanvas* canvas, TPoint from, TPoint to) {
    const TPoint a = GetPointsCount() > 0 ? MyPtToPt(GetPointInZoom(GetPointsCount() - 1)) : from;
    SetDragResizeRotateShapeMode(canvas);
    LineDraw(this, canvas, PtToMyPt(a), PtToMyPt(to));
}

void TMyLine::Sizing(TCanvas* canvas, TPoint from, TPoint to) {
    TMyShape::Sizing(canvas, from, to);
    TArrPoint pts = pointsInZoom();
    if (const int h = HotIndex(); h >= 0 && h < int(pts.size())) pts[size_t(h)] = to;
    SetDragResizeRotateShapeMode(canvas);
    drawSegments(canvas, pts);
}

void TMyLine::Rotating(TCanvas* canvas, TPoint from, TPoint to) {
    const TArrPoint pts = rotatedPointsInZoom(from, to);
    SetDragResizeRotateShapeMode(canvas);
    drawSegments(canvas, pts);
}

void TMyLine::SizeChangeValue(TPoint from, TPoint to) {
    TMyShape::SizeChangeValue(from, to);
    const int h = HotIndex();
    if (h < 0 || h >= GetPointsCount()) return;
    const double zoom = Zoom();
    SetPoint(h, TMyPoint{float(to.x / zoom), float(to.y / zoom)});
    SetCenterPoint(ComputeCenterPoint());
}

double TMyLine::pathLength(bool closed) const {
    double length = 0;
    const int n = GetPointsCount();
    for (int i = 0; i + 1 < n; ++i) length += std::hypot(double(GetPoint(i + 1).x) - GetPoint(i).x, double(GetPoint(i + 1).y) - GetPoint(i).y);
    if (closed && n > 2) length += std::hypot(double(GetPoint(0).x) - GetPoint(n - 1).x, double(GetPoint(0).y) - GetPoint(n - 1).y);
    return length;
}

double TMyLine::GetLengthByUnit() { return pixelsToUnit(pathLength(false), unitOf(this), ratioOf(this)); }

QString TMyLine::GetInfo() {
    const int n = GetPointsCount();
    const TMyPoint a = GetPoint(0), b = GetPoint(n - 1);
    const double direction = n > 1 ? std::atan2(double(b.y) - a.y, double(b.x) - a.x) : 0;
    QString text = shapeKind(this) + QStringLiteral(": ");
    if (n != 2) text += QStringLiteral("%1 points, ").arg(n);
    return text + QStringLiteral("length %1, angle %2")
                      .arg(formatLength(GetLengthByUnit(), unitOf(this)), formatDegrees(normalisedDegrees(direction)));
}

TRect TMyLine::GetPaintBoundsInZoom() {
    TRect box = TMyShape::GetPaintBoundsInZoom();
    const int n = GetPointsCount();
    if (n < 2 || m_arrowStyle == ANone || m_arrowStyle > ADouble) return box;
    const int margin = std::max(Pen()->Width(), 1) + 1;
    if (m_arrowStyle == ALeft || m_arrowStyle == ADouble)
        box = growBoxBy(box, arrowHead(GetPointInZoom(n - 1), GetPointInZoom(n - 2)), margin);
    if (m_arrowStyle == ARight || m_arrowStyle == ADouble)
        box = growBoxBy(box, arrowHead(GetPointInZoom(0), GetPointInZoom(1)), margin);
    return box;
}

// ---- TMyRuleLine ---------------------------------------------------------------------------

TMyRuleLine::TMyRuleLine(TMyCAD* canvas) : TMyLine(canvas) {
    if (FontRef().Size() != 8) Font()->SetSize(8);
    SetArrowAngle(10);
    SetArrowLength(20);
    SetArrowStyle(ADouble);
}

void TMyRuleLine::assignOwnFields(const TMyShape* source, bool withRelations) {
    TMyLine::assignOwnFields(source, withRelations);
    const auto* rule = dynamic_cast<const TMyRuleLine*>(source);
    if (!rule) return;
    m_showUserInfo = rule->m_showUserInfo;
    m_tickStyle = rule->m_tickStyle;
    m_userInfo = rule->m_userInfo;
}

int TMyRuleLine::TickHalfLength() const { return std::max(1, Round(8 * Zoom())); }

TArrPoint TMyRuleLine::tickAt(TMyPoint end, TMyPoint other) const {
    float slope = float(GetSlopeAngle(end, other));
    RecaclinRad(slope);
    // A vertical stroke turned by the line's slope stands across the line.
    const float h = float(TickHalfLength());
    return TArrPoint{MyPtToPt(RotateAPoint(TMyPoint{end.x, end.y - h}, end, slope)),
                     MyPtToPt(RotateAPoint(TMyPoint{end.x, end.y + h}, end, slope))};
}

QString TMyRuleLine::LabelText() {
    if (m_showUserInfo) return m_userInfo;
    const int n = GetPointsCount();
    if (n < 2) return Info();
    return formatLength(GetLengthByUnit(GetPointInZoom(0), GetPointInZoom(n - 1)), unitOf(this));
}

namespace {
// The label's direction: along the line, turned half a turn when it would
// otherwise read upside down.
double labelAngle(TMyPoint a, TMyPoint b) {
    double angle = std::atan2(double(b.y) - a.y, double(b.x) - a.x);
    if (angle > std::numbers::pi / 2) angle -= std::numbers::pi;
    if (angle <= -std::numbers::pi / 2) angle += std::numbers::pi;
    return angle;
}
}  // namespace

void TMyRuleLine::Draw(TCanvas* canvas) {
    drawLineAndArrows(canvas);
    const int n = GetPointsCount();
    if (n < 2) return;
    const TMyPoint first = GetPointInZoom(0), last = GetPointInZoom(n - 1);
    if (m_tickStyle == tsLine) {
        SetDrawShapeMode(this, canvas);
        SetPS(canvas);
        for (const TArrPoint& tick : {tickAt(first, GetPointInZoom(1)), tickAt(last, GetPointInZoom(n - 2))})
            LineDraw(this, canvas, PtToMyPt(tick[0]), PtToMyPt(tick[1]));
        canvas->SetPenGeometry(TPenJoin::Default, TPenCap::Default);
    }
    const QString label = LabelText();
    // The measured length is the caption: stored only when it changes, so a
    // repaint does not count as an edit.
    if (!m_showUserInfo && Info() != label) SetInfo(label);
    if (label.isEmpty() || !CaptionShow()) return;
    // The label stands on the line's middle, centred, its bottom kLabelGap
    // pixels away from the line, turned along the line.
    const double angle = labelAngle(first, last);
    const TSize size = faroven::GetTextWidthHeight(canvas, label, &FontRef(), angle, Zoom());
    const double ux = std::cos(angle), uy = std::sin(angle);
    const double nx = std::sin(angle), ny = -std::cos(angle);  // the text's "up"
    const double mx = (first.x + last.x) / 2.0, my = (first.y + last.y) / 2.0;
    const double x = mx - ux * size.cx / 2.0 + nx * (kLabelGap + size.cy);
    const double y = my - uy * size.cx / 2.0 + ny * (kLabelGap + size.cy);
    faroven::MyLogTextOut(canvas, Round(x), Round(y), label, &FontRef(), angle, Zoom());
}

TRect TMyRuleLine::GetPaintBoundsInZoom() {
    TRect box = TMyLine::GetPaintBoundsInZoom();
    const int n = GetPointsCount();
    if (n < 2) return box;
    const TMyPoint first = GetPointInZoom(0), last = GetPointInZoom(n - 1);
    const int margin = std::max(Pen()->Width(), 1) + 1;
    if (m_tickStyle == tsLine) {
        box = growBoxBy(box, tickAt(first, GetPointInZoom(1)), margin);
        box = growBoxBy(box, tickAt(last, GetPointInZoom(n - 2)), margin);
    }
    // The label lies within a circle about the middle that holds its box.
    const QString label = LabelText();
    if (!label.isEmpty() && CaptionShow()) {
        const TFont& font = FontRef();
        const QFontMetrics metrics(font.ToQFont(std::max(1, Round(font.Size() * Zoom()))));
        const double radius = std::hypot(metrics.horizontalAdvance(label) / 2.0 + 4, metrics.height() * 1.5 + kLabelGap + 4) + 4;
        const TPoint mid = MyPtToPt(TMyPoint{(first.x + last.x) / 2, (first.y + last.y) / 2});
        box = growBoxBy(box, TArrPoint{mid}, int(std::ceil(radius)));
    }
    return box;
}

void TMyLine::remapShapeNos(const std::vector<int>& oldToNew) {
    if (m_startSpNo >= 0) {
        m_startSpNo = MapShapeNo(oldToNew, m_startSpNo);
        if (m_startSpNo < 0) m_startSpPtId = -1;
    }
    if (m_endSpNo >= 0) {
        m_endSpNo = MapShapeNo(oldToNew, m_endSpNo);
        if (m_endSpNo < 0) m_endSpPtId = -1;
    }
    TMyShape::remapShapeNos(oldToNew);
}

}  // namespace faroven
