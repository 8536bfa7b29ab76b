#include "cad/shapes/shape.h"

#include "cad/canvas/mycad.h"
#include "cad/geometry/geometry.h"
#include "cad/geometry/gradient.h"
#include "cad/geometry/rotated_text.h"
#include "cad/shapes/shape_markers.h"

#include "cad/shapes/shape_p.h"

#include <QFontMetrics>

namespace faroven {

namespace {
// The font of shapes made without a canvas: the platform's default font.
std::shared_ptr<const TFont> defaultSharedFont() {
    static const std::shared_ptr<const TFont> font = std::make_shared<const TFont>();
    return font;
}
}  // namespace

TMyShape::TMyShape(TMyCAD* canvas) : TComponent(nullptr), m_canvas(canvas) {
    if (canvas) {
        m_pen.Assign(*canvas->Pen());
        m_brush.Assign(*canvas->Brush());
        m_sharedFont = canvas->SharedShapeFont();
        m_penStyleJoinType = canvas->PenStyleJoinType();
        m_penStyleEndCapType = canvas->PenStyleEndCapType();
        m_dragEnable = canvas->DragEnable();
        m_resizeEnable = canvas->ResizeEnable();
        m_rotateEnable = canvas->RotateEnable();
        m_hotShow = canvas->HotShow();
        m_layerId = canvas->CurrentLayerId();
    } else {
        m_sharedFont = defaultSharedFont();
    }
    m_pen.OnChange = [this](TObject* s) { DoPenBrushChange(s); };
    m_brush.OnChange = [this](TObject* s) { DoPenBrushChange(s); };
}

TMyShape::~TMyShape() {
    // Only a shape the canvas still keeps track of tells it; a canvas that
    // went first has already let go of its shapes.
    if (m_canvas && (m_indexSlot >= 0 || m_dirtyPos >= 0)) m_canvas->shapeDestroyed(this);
}

TFont* TMyShape::Font() {
    if (!m_font) {
        m_font = std::make_unique<TFont>();
        m_font->Assign(*m_sharedFont);
        m_font->OnChange = [this](TObject* s) { DoFontChange(s); };
        m_sharedFont.reset();
    }
    return m_font.get();
}

TMyShape::Extras& TMyShape::extras() {
    if (!m_extras) {
        m_extras = std::make_unique<Extras>();
        m_extras->multiInfo.OnChange = [this](TObject*) { changed(); };
    }
    return *m_extras;
}

namespace {
const std::vector<int32_t>& noChildren() {
    static const std::vector<int32_t> none;
    return none;
}
const TMyShapeNo& noLinkLines() {
    static const TMyShapeNo none;
    return none;
}
}  // namespace

const std::vector<int32_t>& TMyShape::ChildShapeNos() const { return m_extras ? m_extras->childShapeNos : noChildren(); }

void TMyShape::SetChildShapeNos(const std::vector<int32_t>& v) {
    if (v.empty() && !m_extras) return;
    extras().childShapeNos = v;
}

const TMyShapeNo& TMyShape::LinkShapeNos() const { return m_extras ? m_extras->linkShapeNos : noLinkLines(); }

void TMyShape::SetLinkShapeNos(const TMyShapeNo& v) {
    if (v.empty() && !m_extras) return;
    extras().linkShapeNos = v;
}

TBitmap* TMyShape::WorkBitmap() {
    Extras& e = extras();
    if (!e.workBitmap) e.workBitmap = std::make_unique<TBitmap>(0, 0, pf24bit);
    return e.workBitmap.get();
}

void TMyShape::SetShapeId(int v) {
    if (v == m_shapeId) return;
    m_shapeId = v;
    // The canvas looks shapes up by id.
    if (m_canvas) m_canvas->shapeIdChanged(this);
}

double TMyShape::Zoom() const { return m_canvas ? m_canvas->Zoom() : 1.0; }

int TMyShape::hotSize() const { return m_canvas ? m_canvas->HotSize() : 4; }

void TMyShape::changed() {
    ++m_revision;
    if (m_canvas) m_canvas->ShapeChanged(this);
}

void TMyShape::DoPenBrushChange(TObject*) { changed(); }
void TMyShape::DoFontChange(TObject*) { changed(); }

// ---- Virtual operations ------------------------------------------------------------------

void TMyShape::DragChangeValue(TPoint from, TPoint to) {
    const double zoom = Zoom();
    DragChangeValuedxdy((to.x - from.x) / zoom, (to.y - from.y) / zoom);
}

void TMyShape::DragChangeValuedxdy(double dx, double dy) {
    OffsetAllPoints(this, dx, dy);
    m_centerPoint.x = float(m_centerPoint.x + dx);
    m_centerPoint.y = float(m_centerPoint.y + dy);
    changed();
}

void TMyShape::Draging(TCanvas*, TPoint, TPoint) {}

void TMyShape::Drawed(TPoint, TPoint) {
    m_centerPoint = ComputeCenterPoint();
    m_textPoint = TMyPoint{m_centerPoint.x, GetBounds().bottom + 10};
    changed();
}

void TMyShape::DrawHot(TCanvas* canvas) {
    for (int i = 0; i < GetPointsCount(); ++i) DrawSquare(this, canvas, GetPointInZoom(i));
    DrawLinkHot(this, canvas);
    DrawDiamond(this, canvas, ZoomedValuePt(m_textPoint), clYellow);
}

void TMyShape::Drawing(TCanvas* canvas, TPoint, TPoint to) {
    if (m_points.empty()) return;
    SetDragResizeRotateShapeMode(canvas);
    TArrPoint line = pointsInZoom();
    line.push_back(to);
    canvas->Polyline(line);
}

double TMyShape::GetLengthByUnit() { return 0; }

double TMyShape::GetLengthByUnit(TMyPoint zoomed1, TMyPoint zoomed2) const {
    const double pixels = std::hypot(double(zoomed2.x) - zoomed1.x, double(zoomed2.y) - zoomed1.y) / Zoom();
    return m_canvas ? shape_detail::pixelsToUnit(pixels, m_canvas->TheUNIT(), m_canvas->Ratio()) : pixels;
}

TCursor TMyShape::GetMouseCursor(int, int) { return crCross; }

bool TMyShape::IsDrawingFinished(TMouseButton, TPoint) { return GetPointsCount() >= 2; }

void TMyShape::RotateChangeValueByAngle(double angle) {
    const TMyPoint c = GetCenterPoint();
    for (TMyPoint& p : m_points) p = RotateAPoint(p, c, float(angle));
    for (TMyPoint& p : m_linkPoints) p = RotateAPoint(p, c, float(angle));
    m_textPoint = RotateAPoint(m_textPoint, c, float(angle));
    m_angle = float(m_angle + angle);
    changed();
}

TArrPoint TMyShape::rotatedPointsInZoom(TPoint from, TPoint to) {
    const float angle = float(GetRotatedAngle(from, to));
    const TMyPoint c = GetCenterPointInZoom();
    TArrPoint out;
    out.reserve(m_points.size());
    for (int i = 0; i < GetPointsCount(); ++i) out.push_back(MyPtToPt(RotateAPoint(GetPointInZoom(i), c, angle)));
    return out;
}

void TMyShape::Rotating(TCanvas* canvas, TPoint from, TPoint to) {
    if (m_points.size() < 2) return;
    const TArrPoint outline = rotatedPointsInZoom(from, to);
    SetDragResizeRotateShapeMode(canvas);
    canvas->Polygon(outline);
}

void TMyShape::SizeChangeValue(TPoint, TPoint) {}

void TMyShape::Sizing(TCanvas*, TPoint, TPoint) {}

void TMyShape::AddPointByMouse(TPoint point) {
    const double zoom = Zoom();
    AddPoint(TMyPoint{float(point.x / zoom), float(point.y / zoom)});
}

void TMyShape::copyProperties(const TMyShape* s) {
    m_angle = s->m_angle;
    m_brush.Assign(s->m_brush);
    m_captionShow = s->m_captionShow;
    m_colorBegin = s->m_colorBegin;
    m_colorEnd = s->m_colorEnd;
    m_dragEnable = s->m_dragEnable;
    if (s->m_font) {
        Font()->Assign(*s->m_font);
    } else {
        // Both share the same snapshot; a font of our own is no longer needed.
        m_font.reset();
        m_sharedFont = s->m_sharedFont;
    }
    m_gradientStyle = s->m_gradientStyle;
    m_hotShow = s->m_hotShow;
    m_info = s->m_info;
    m_isFlipHorz = s->m_isFlipHorz;
    m_isFlipVert = s->m_isFlipVert;
    m_locked = s->m_locked;
    m_logHeight = s->m_logHeight;
    m_logUse = s->m_logUse;
    m_logWidth = s->m_logWidth;
    m_multiInfoAlignment = s->m_multiInfoAlignment;
    m_pen.Assign(s->m_pen);
    m_penStyleJoinType = s->m_penStyleJoinType;
    m_penStyleEndCapType = s->m_penStyleEndCapType;
    m_resizeEnable = s->m_resizeEnable;
    m_rotateEnable = s->m_rotateEnable;
    SetTag(s->Tag());
    m_visible = s->m_visible;
    // The relations and ids are the caller's (Assign copies them, AssignWithoutRelation does not).
    if (s->m_extras) {
        Extras& e = extras();
        e.caption = s->m_extras->caption;
        e.multiInfo.Assign(s->m_extras->multiInfo);
        e.userData.Assign(s->m_extras->userData);
        if (s->m_extras->workBitmap)
            WorkBitmap()->Assign(*s->m_extras->workBitmap);
        else
            e.workBitmap.reset();
    } else if (m_extras) {
        m_extras->caption.clear();
        m_extras->multiInfo.Clear();
        m_extras->userData.ClearAll();
        m_extras->workBitmap.reset();
    }
    m_centerPoint = s->m_centerPoint;
    m_layerId = s->m_layerId;
    m_textPoint = s->m_textPoint;
    m_points = s->m_points;
    m_linkPoints = s->m_linkPoints;
}

void TMyShape::Assign(const TMyShape* source) {
    if (!source || source == this) return;
    copyProperties(source);
    SetShapeId(source->m_shapeId);  // the canvas finds shapes by id
    m_shapeNo = source->m_shapeNo;
    m_parentShapeNo = source->m_parentShapeNo;
    SetChildShapeNos(source->ChildShapeNos());
    SetLinkShapeNos(source->LinkShapeNos());
    assignOwnFields(source, true);
    changed();
}

void TMyShape::AssignWithoutRelation(const TMyShape* source) {
    if (!source || source == this) return;
    copyProperties(source);
    assignOwnFields(source, false);
    changed();
}

void TMyShape::assignOwnFields(const TMyShape*, bool) {}

void TMyShape::Draw(TCanvas* canvas) { DrawInfo(canvas); }

void TMyShape::FlipHoriz() {
    const float cx2 = 2 * GetCenterPoint().x;
    for (TMyPoint& p : m_points) p.x = cx2 - p.x;
    for (TMyPoint& p : m_linkPoints) p.x = cx2 - p.x;
    m_textPoint.x = cx2 - m_textPoint.x;
    m_isFlipHorz = !m_isFlipHorz;
    changed();
}

void TMyShape::FlipVert() {
    const float cy2 = 2 * GetCenterPoint().y;
    for (TMyPoint& p : m_points) p.y = cy2 - p.y;
    for (TMyPoint& p : m_linkPoints) p.y = cy2 - p.y;
    m_textPoint.y = cy2 - m_textPoint.y;
    m_isFlipVert = !m_isFlipVert;
    changed();
}

TMyPoint TMyShape::GetCenterPoint() { return m_centerPoint; }

TMyPoint TMyShape::GetCenterPointInZoom() { return ZoomedValuePt(GetCenterPoint()); }

QString TMyShape::GetInfo() { return m_info; }

TMyPoint TMyShape::GetPoint(int index) const {
    if (index < 0 || index >= GetPointsCount()) return TMyPoint{};
    return m_points[size_t(index)];
}

int TMyShape::InWhichHot(TPoint) {
    m_hotIndex = -1;
    return -1;
}

bool TMyShape::IsClickedMe(TCanvas*, TPoint) { return false; }

// ---- Points -----------------------------------------------------------------------------

void TMyShape::AddPoint(TMyPoint p) {
    m_points.push_back(p);
    changed();
}

void TMyShape::SetPoint(int index, TMyPoint p) {
    if (index < 0 || index >= GetPointsCount()) return;
    m_points[size_t(index)] = p;
    changed();
}

void TMyShape::SetPointX(int index, float x) { SetPoint(index, TMyPoint{x, GetPoint(index).y}); }
void TMyShape::SetPointY(int index, float y) { SetPoint(index, TMyPoint{GetPoint(index).x, y}); }
void TMyShape::PointAddX(int index, float dx) { PointAddXY(index, dx, 0); }
void TMyShape::PointAddY(int index, float dy) { PointAddXY(index, 0, dy); }

void TMyShape::PointAddXY(int index, float dx, float dy) {
    const TMyPoint p = GetPoint(index);
    SetPoint(index, TMyPoint{p.x + dx, p.y + dy});
}

TMyPoint TMyShape::GetPointInZoom(int index) const { return ZoomedValuePt(GetPoint(index)); }

void TMyShape::SetPointInZoom(int index, TMyPoint p) {
    const double zoom = Zoom();
    SetPoint(index, TMyPoint{float(p.x / zoom), float(p.y / zoom)});
}

void TMyShape::SetPointXInZoom(int index, float x) { SetPointX(index, float(x / Zoom())); }
void TMyShape::SetPointYInZoom(int index, float y) { SetPointY(index, float(y / Zoom())); }

TMyPoint TMyShape::GetPointInZoomWithMode(int index) const {
    const TMyPoint p = GetPointInZoom(index);
    return m_canvas ? m_canvas->GetMyPointByMode(p) : p;
}

TMyPoint TMyShape::ZoomedValuePt(TMyPoint p) const {
    const double zoom = Zoom();
    return TMyPoint{float(p.x * zoom), float(p.y * zoom)};
}

TArrPoint TMyShape::pointsInZoom() const {
    TArrPoint out;
    out.reserve(m_points.size());
    for (int i = 0; i < GetPointsCount(); ++i) out.push_back(MyPtToPt(GetPointInZoom(i)));
    return out;
}

// ---- Link points ------------------------------------------------------------------------

void TMyShape::AddLinkPoint(TMyPoint p) {
    m_linkPoints.push_back(p);
    changed();
}

TMyPoint TMyShape::GetLinkPoint(int index) const {
    if (index < 0 || index >= GetLinkPointsCount()) return TMyPoint{};
    return m_linkPoints[size_t(index)];
}

TMyPoint TMyShape::GetLinkPointInZoom(int index) const { return ZoomedValuePt(GetLinkPoint(index)); }

void TMyShape::SetLinkPoint(int index, TMyPoint p) {
    if (index < 0 || index >= GetLinkPointsCount()) return;
    m_linkPoints[size_t(index)] = p;
    changed();
}

void TMyShape::SetLinkPointX(int index, float x) { SetLinkPoint(index, TMyPoint{x, GetLinkPoint(index).y}); }
void TMyShape::SetLinkPointY(int index, float y) { SetLinkPoint(index, TMyPoint{GetLinkPoint(index).x, y}); }

void TMyShape::LinkPointAddXY(int index, float dx, float dy) {
    const TMyPoint p = GetLinkPoint(index);
    SetLinkPoint(index, TMyPoint{p.x + dx, p.y + dy});
}

bool TMyShape::inHotSquare(TMyPoint zoomed, TPoint point) const {
    const TPoint c = MyPtToPt(zoomed);
    const int h = hotSize();
    return point.x >= c.x - h && point.x < c.x + h && point.y >= c.y - h && point.y < c.y + h;
}

int TMyShape::InWhichLinkHot(TPoint point) const {
    int found = -1;
    for (int i = 0; i < GetLinkPointsCount(); ++i)
        if (inHotSquare(GetLinkPointInZoom(i), point)) found = i;
    return found;
}

// ---- Bounds -----------------------------------------------------------------------------

TMyRect TMyShape::GetBounds() const { return GetPointsLTRB(m_points); }
TMyPoint TMyShape::GetLeftTop() const { const TMyRect r = GetBounds(); return {r.left, r.top}; }
TMyPoint TMyShape::GetRightTop() const { const TMyRect r = GetBounds(); return {r.right, r.top}; }
TMyPoint TMyShape::GetLeftBottom() const { const TMyRect r = GetBounds(); return {r.left, r.bottom}; }
TMyPoint TMyShape::GetRightBottom() const { const TMyRect r = GetBounds(); return {r.right, r.bottom}; }
float TMyShape::GetMyWidth() const { const TMyRect r = GetBounds(); return r.right - r.left; }
float TMyShape::GetMyHeight() const { const TMyRect r = GetBounds(); return r.bottom - r.top; }
int TMyShape::GetWidth() const { return Round(GetMyWidth() * Zoom()); }
int TMyShape::GetHeight() const { return Round(GetMyHeight() * Zoom()); }

TRect TMyShape::zoomedPointBox(int margin) const {
    const double zoom = Zoom();
    bool any = false;
    double l = 0, t = 0, r = 0, b = 0;
    auto grow = [&](TMyPoint p) {
        const double x = p.x * zoom, y = p.y * zoom;
        if (!any) {
            l = r = x;
            t = b = y;
            any = true;
        }
        l = std::min(l, x);
        r = std::max(r, x);
        t = std::min(t, y);
        b = std::max(b, y);
    };
    for (const TMyPoint& p : m_points) grow(p);
    for (const TMyPoint& p : m_linkPoints) grow(p);
    if (!any) return TRect{};
    return TRect{shape_detail::pixelFloor(l) - margin, shape_detail::pixelFloor(t) - margin,
                 shape_detail::pixelCeil(r) + margin + 1, shape_detail::pixelCeil(b) + margin + 1};
}

TRect TMyShape::GetPaintBoundsInZoom() {
    // Pen, hot marks and link crosses reach a few pixels beyond the points.
    // (A pen as wide as a file may claim must not overflow the margin.)
    TRect box = zoomedPointBox(std::clamp(m_pen.Width(), 1, 1 << 24) + hotSize() + 3);
    if (box == TRect{}) return box;
    const double zoom = Zoom();
    if (m_captionShow && (!m_info.isEmpty() || MultiInfoCount() > 0)) {
        // The caption hangs below the text point and turns with the shape:
        // take a circle around the text point that holds every line.
        const TFont& font = FontRef();
        const QFontMetrics metrics(font.ToQFont(std::max(1, Round(font.Size() * zoom))));
        int width = metrics.horizontalAdvance(m_info);
        for (const QString& line : multiInfoLines()) width = std::max(width, metrics.horizontalAdvance(line));
        if (m_logUse) width = std::max(width, Round(m_logWidth * zoom));
        const int lines = (m_info.isEmpty() ? 0 : 1) + MultiInfoCount();
        const double height = double(lines) * std::max(metrics.height(), m_logUse ? Round(m_logHeight * zoom) : 0);
        // In 64 bits and saturated: a file may hold text points and sizes at the ends of the range.
        const auto radius = int64_t(std::min(std::ceil(std::hypot(width / 2.0 + 2, height + 2)), 1e12)) + 2;
        const auto sat = [](int64_t v) { return int(std::clamp<int64_t>(v, INT32_MIN, INT32_MAX)); };
        const TPoint tp = MyPtToPt(ZoomedValuePt(m_textPoint));
        box.left = std::min(box.left, sat(tp.x - radius));
        box.top = std::min(box.top, sat(tp.y - radius));
        box.right = std::max(box.right, sat(tp.x + radius + 1));
        box.bottom = std::max(box.bottom, sat(tp.y + radius + 1));
    }
    return box;
}

TRect TMyShape::GetHitBoundsInZoom() {
    // The segment band reaches 8 pixels, plus one for rounding to pixels.
    return zoomedPointBox(9);
}

// ---- Drawing helpers --------------------------------------------------------------------

void TMyShape::MyLogTextOut(TCanvas* canvas, int x, int y, const QString& text) {
    faroven::MyLogTextOut(canvas, x, y, text, &FontRef(), m_angle, Zoom());
}

TSize TMyShape::GetTextWidthHeight(TCanvas* canvas, const QString& text) {
    if (m_logUse) return TSize{Round(m_logWidth * Zoom()), Round(m_logHeight * Zoom())};
    return faroven::GetTextWidthHeight(canvas, text, &FontRef(), m_angle, Zoom());
}

void TMyShape::DrawInfo(TCanvas* canvas) {
    if (!m_captionShow) return;
    if (m_info.isEmpty() && MultiInfoCount() == 0) return;
    QStringList lines;
    if (!m_info.isEmpty()) lines << m_info;
    lines << multiInfoLines();
    std::vector<TSize> sizes;
    int widest = 0;
    for (const QString& line : lines) {
        sizes.push_back(GetTextWidthHeight(canvas, line));
        widest = std::max(widest, sizes.back().cx);
    }
    // The block hangs below the text point, centred on it; each line is placed
    // by the alignment, then the corner is turned about the text point.
    const TMyPoint tp = ZoomedValuePt(m_textPoint);
    float y = 0;
    for (int i = 0; i < lines.size(); ++i) {
        const int w = sizes[size_t(i)].cx;
        float x = -w / 2.0f;
        if (m_multiInfoAlignment == taLeftJustify) x = -widest / 2.0f;
        if (m_multiInfoAlignment == taRightJustify) x = widest / 2.0f - w;
        const TMyPoint corner = RotateAPoint(TMyPoint{tp.x + x, tp.y + y}, tp, m_angle);
        MyLogTextOut(canvas, Round(corner.x), Round(corner.y), lines[i]);
        y += sizes[size_t(i)].cy;
    }
}

void TMyShape::DrawGradient(TCanvas* canvas, const TArrPoint& outline) {
    DrawGradientPolygon(canvas, outline, m_gradientStyle, m_colorBegin, m_colorEnd);
}

void TMyShape::DrawHotLinkSquare(TCanvas* canvas) { DrawLinkHot(this, canvas); }

namespace {
TPenJoin penJoinOf(TPenStyleJoinType t) {
    switch (t) {
    case psjtROUND: return TPenJoin::Round;
    case psjtBEVEL: return TPenJoin::Bevel;
    case psjtMITER: return TPenJoin::Miter;
    default: return TPenJoin::Default;
    }
}
TPenCap penCapOf(TPenStyleEndCapType t) {
    switch (t) {
    case psectROUND: return TPenCap::Round;
    case psectSQUARE: return TPenCap::Square;
    case psectFLAT: return TPenCap::Flat;
    default: return TPenCap::Default;
    }
}
}  // namespace

void TMyShape::SetPS(TCanvas* canvas) {
    // Join and end-cap kinds matter only for pens wider than one pixel.
    if (m_pen.Width() > 1 && IsWinNT()) canvas->SetPenGeometry(penJoinOf(m_penStyleJoinType), penCapOf(m_penStyleEndCapType));
}

void TMyShape::PowerDrawShape(TCanvas* canvas, const TArrPoint& outline, bool closed) {
    if (outline.empty()) return;
    SetDrawShapeMode(this, canvas);
    // An upright rectangle painted into the canvas's own buffer is written
    // straight into its pixels, exactly as Polygon would set them.
    if (closed) {
        TRect corners;
        shape_detail::PixelTarget target;
        if (shape_detail::axisAlignedRect(outline, corners) && corners.Width() >= 2 && corners.Height() >= 2 &&
            shape_detail::directTarget(this, canvas, target)) {
            shape_detail::writeRectangle(target, corners);
            return;
        }
    }
    SetPS(canvas);
    if (!closed) {
        canvas->Polyline(outline);
    } else if (m_gradientStyle != gsNone) {
        DrawGradient(canvas, outline);
        SetDrawShapeMode(this, canvas);
        canvas->Brush()->SetStyle(bsClear);
        canvas->Polygon(outline);
    } else {
        canvas->Polygon(outline);
    }
    canvas->SetPenGeometry(TPenJoin::Default, TPenCap::Default);
}

bool TMyShape::InTextPointHot(TPoint point) const { return inHotSquare(ZoomedValuePt(m_textPoint), point); }

double TMyShape::GetRotatedAngle(TPoint from, TPoint to) {
    const TMyPoint c = GetCenterPointInZoom();
    const double a1 = std::atan2(double(from.y) - c.y, double(from.x) - c.x);
    const double a2 = std::atan2(double(to.y) - c.y, double(to.x) - c.x);
    double a = a2 - a1;
    if (a > M_PI) a -= 2 * M_PI;
    if (a <= -M_PI) a += 2 * M_PI;
    return a;
}

void TMyShape::SizeChangeValueByScale(double scaleX, double scaleY, TMyPoint origin) {
    auto scale = [&](TMyPoint& p) {
        p.x = float(origin.x + (p.x - origin.x) * scaleX);
        p.y = float(origin.y + (p.y - origin.y) * scaleY);
    };
    for (TMyPoint& p : m_points) scale(p);
    for (TMyPoint& p : m_linkPoints) scale(p);
    scale(m_textPoint);
    scale(m_centerPoint);
    changed();
}

TMyPoint TMyShape::ComputeCenterPoint() const {
    if (m_points.empty()) return m_centerPoint;
    const TMyRect r = GetBounds();
    return TMyPoint{(r.left + r.right) / 2, (r.top + r.bottom) / 2};
}

TMyPoint TMyShape::ComputeCenterPoint(int count) const {
    if (count <= 0 || m_points.empty()) return m_centerPoint;
    const size_t n = std::min(m_points.size(), size_t(count));
    const TMyRect r = GetPointsLTRB(TArrMyPoint(m_points.begin(), m_points.begin() + long(n)));
    return TMyPoint{(r.left + r.right) / 2, (r.top + r.bottom) / 2};
}

// ---- Shape-level point helpers ------------------------------------------------------------

void OffsetAllPoints(TMyShape* shape, double dx, double dy) {
    for (TMyPoint& p : shape->Points()) {
        p.x = float(p.x + dx);
        p.y = float(p.y + dy);
    }
    for (TMyPoint& p : shape->LinkPoints()) {
        p.x = float(p.x + dx);
        p.y = float(p.y + dy);
    }
    const TMyPoint tp = shape->TextPoint();
    shape->SetTextPoint(TMyPoint{float(tp.x + dx), float(tp.y + dy)});
}

void RemoveAllPoints(TMyShape* shape) { shape->SetPoints(TArrMyPoint{}); }

void AddLinklineShape(TMyShape* shape, uint32_t no) {
    TMyShapeNo& list = shape->LinkShapeNos();
    if (std::find(list.begin(), list.end(), no) == list.end()) list.push_back(no);
}

void RemoveLinklineShape(TMyShape* shape, uint32_t no) {
    TMyShapeNo& list = shape->LinkShapeNos();
    for (size_t i = list.size(); i-- > 0;) {
        if (list[i] == no) {
            list.erase(list.begin() + long(i));
            return;
        }
    }
}

void TMyShape::remapShapeNos(const std::vector<int>& oldToNew) {
    m_parentShapeNo = MapShapeNo(oldToNew, m_parentShapeNo);
    if (!m_extras) return;
    std::vector<int32_t> children;
    for (int32_t no : m_extras->childShapeNos)
        if (const int mapped = MapShapeNo(oldToNew, no); mapped >= 0) children.push_back(mapped);
    m_extras->childShapeNos.swap(children);
    TMyShapeNo links;
    for (uint32_t no : m_extras->linkShapeNos)
        if (const int mapped = MapShapeNo(oldToNew, no); mapped >= 0) links.push_back(uint32_t(mapped));
    m_extras->linkShapeNos.swap(links);
    changed();
}

}  // namespace faroven
