#include "cad/shapes/text.h"

#include "cad/geometry/geometry.h"
#include "cad/shapes/shape_markers.h"
#include "cad/shapes/shape_p.h"
#include "platform/color.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QTransform>
#include <algorithm>
#include <cmath>
#include <numbers>

namespace faroven {

using namespace shape_detail;

namespace {

// The space kept free inside the frame, in drawing units.
constexpr double kMargin = 2;

// The shape's font in drawing units: its size is the character height, as
// for captions, and the character spacing is in drawing units too.
QFont unitFont(const TFont& font, int characterSpace) {
    QFont f = font.ToQFont(std::max(1, font.Size()));
    if (characterSpace != 0) f.setLetterSpacing(QFont::AbsoluteSpacing, characterSpace);
    return f;
}

}  // namespace

// The text is laid out in drawing units with the font at its own size, and
// only then mapped to pixels, so that a frame holds the same rows at every
// zoom (a font rounded to the zoom's pixel size would not keep its widths in
// proportion).
struct TMyText::Layout {
    QRectF frame;          // the upright frame, drawing units
    QTransform toPixels;   // drawing units to pixels: the zoom, then the turn about the frame's centre
    QFont font;            // at the unzoomed size
    std::vector<std::pair<QPointF, QString>> rows;  // baseline start of each row, drawing units
};

TMyText::TMyText(TMyCAD* canvas) : TMyRectangle(canvas) {}

void TMyText::assignOwnFields(const TMyShape* source, bool withRelations) {
    TMyRectangle::assignOwnFields(source, withRelations);
    if (const auto* s = shape_cast<TMyText>(source)) {
        m_isBorder = s->m_isBorder;
        m_isSolid = s->m_isSolid;
        m_lines.Assign(s->m_lines);
        m_vAlignment = s->m_vAlignment;
        m_hAlignment = s->m_hAlignment;
        m_wordWrap = s->m_wordWrap;
        m_characterSpace = s->m_characterSpace;
    }
}

QString TMyText::Text() const { return m_lines.Count() > 0 ? m_lines.Lines().join(QLatin1Char('\n')) : Info(); }

QStringList TMyText::LayoutRows(double frameWidth) const {
    const QFontMetricsF metrics(unitFont(FontRef(), m_characterSpace));
    // A little slack: a frame fitted to its text (reCaclpoints) holds it despite rounding.
    const double room = frameWidth - 2 * kMargin + 0.01;
    QStringList rows;
    for (const QString& line : Text().split(QLatin1Char('\n'))) {
        if (!m_wordWrap || metrics.horizontalAdvance(line) <= room) {
            rows << line;
            continue;
        }
        // Greedy breaking at spaces; a word wider than the frame keeps a row of its own.
        QString row;
        for (const QString& word : line.split(QLatin1Char(' '))) {
            const QString longer = row.isEmpty() ? word : row + QLatin1Char(' ') + word;
            if (!row.isEmpty() && metrics.horizontalAdvance(longer) > room) {
                rows << row;
                row = word;
            } else {
                row = longer;
            }
        }
        rows << row;
    }
    return rows;
}

TMyText::TRowLayout TMyText::RowLayout() const {
    TRowLayout l;
    if (GetPointsCount() < 4) return l;
    const TMyPoint c = ComputeCenterPoint(4);
    std::array<TMyPoint, 4> upright{};
    for (int i = 0; i < 4; ++i) upright[size_t(i)] = RotateAPoint(GetPoint(i), c, -Angle());
    const TMyRect box = GetPointsLTRB(TArrMyPoint(upright.begin(), upright.end()));
    l.frame = QRectF(box.left, box.top, box.right - box.left, box.bottom - box.top);
    l.centre = QPointF(c.x, c.y);
    l.font = unitFont(FontRef(), m_characterSpace);
    const QFontMetricsF metrics(l.font);
    const QStringList rows = LayoutRows(l.frame.width());
    const double height = metrics.height() * rows.size();
    double y = l.frame.top() + kMargin;
    if (m_vAlignment == jvBottom) y = l.frame.bottom() - kMargin - height;
    if (m_vAlignment == jvCenter) y = l.frame.top() + (l.frame.height() - height) / 2;
    for (const QString& row : rows) {
        const double w = metrics.horizontalAdvance(row);
        double x = l.frame.left() + kMargin;
        if (m_hAlignment == jhRight) x = l.frame.right() - kMargin - w;
        if (m_hAlignment == jhCenter) x = l.frame.left() + (l.frame.width() - w) / 2;
        l.rows.push_back(TRowLayout::Row{row, QPointF(x, y + metrics.ascent()), w});
        y += metrics.height();
    }
    return l;
}

TMyText::Layout TMyText::layout() const {
    Layout l;
    const TRowLayout rows = RowLayout();
    if (GetPointsCount() < 4) return l;
    const double zoom = Zoom();
    l.frame = rows.frame;
    l.toPixels.translate(rows.centre.x() * zoom, rows.centre.y() * zoom);
    l.toPixels.rotate(Angle() * 180 / std::numbers::pi);
    l.toPixels.translate(-rows.centre.x() * zoom, -rows.centre.y() * zoom);
    l.toPixels.scale(zoom, zoom);
    l.font = rows.font;
    for (const TRowLayout::Row& row : rows.rows) l.rows.emplace_back(row.baseline, row.text);
    return l;
}

void TMyText::Draw(TCanvas* canvas) {
    if (GetPointsCount() < 4) return;
    TArrPoint outline;
    for (const TMyPoint& p : cornersInZoom()) outline.push_back(MyPtToPt(p));
    outline.push_back(outline.front());
    if (m_isSolid) {
        SetDrawShapeMode(this, canvas);
        if (GradientStyle() != gsNone) {
            DrawGradient(canvas, outline);
        } else {
            canvas->Pen()->SetStyle(psClear);
            canvas->Polygon(outline);
        }
    }
    if (m_isBorder) {
        SetDrawShapeMode(this, canvas);
        canvas->Brush()->SetStyle(bsClear);
        SetPS(canvas);
        canvas->Polygon(outline);
        canvas->SetPenGeometry(TPenJoin::Default, TPenCap::Default);
    }
    const Layout l = layout();
    QPainter* painter = canvas->Painter();
    if (!painter || l.rows.empty()) return;
    painter->save();
    painter->setWorldTransform(l.toPixels, true);
    painter->setClipRect(l.frame, Qt::IntersectClip);
    painter->setRenderHint(QPainter::Antialiasing, false);
    painter->setPen(ToQColor(FontRef().Color()));
    painter->setFont(l.font);
    for (const auto& [origin, row] : l.rows) painter->drawText(origin, row);
    painter->restore();
}

void TMyText::GetPathPoints(TCanvas*, TArrPoint& points, std::vector<uint8_t>& types) {
    points.clear();
    types.clear();
    const Layout l = layout();
    QPainterPath path;
    for (const auto& [origin, row] : l.rows) path.addText(origin, l.font, row);
    path = l.toPixels.map(path);

    QPointF figureStart;
    size_t figureFirst = 0;
    // A figure that comes back to its move-to is closed: a last line back to
    // it is implied by the close flag, as the platform's paths have it.
    auto endFigure = [&](QPointF last) {
        if (points.size() <= figureFirst + 1 || last != figureStart) return;
        if (types.back() == 2) {
            points.pop_back();
            types.pop_back();
        }
        types.back() |= 1;
    };
    QPointF last;
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element e = path.elementAt(i);
        uint8_t type = 4;
        if (e.type == QPainterPath::MoveToElement) {
            if (i > 0) endFigure(last);
            figureStart = QPointF(e.x, e.y);
            figureFirst = points.size();
            type = 6;
        } else if (e.type == QPainterPath::LineToElement) {
            type = 2;
        }
        points.push_back(TPoint{Round(e.x), Round(e.y)});
        types.push_back(type);
        last = QPointF(e.x, e.y);
    }
    if (!points.empty()) endFigure(last);
}

void TMyText::reCaclpoints() {
    const QFontMetricsF metrics(unitFont(FontRef(), m_characterSpace));
    const QStringList rows = Text().split(QLatin1Char('\n'));
    double width = 0;
    for (const QString& row : rows) width = std::max(width, metrics.horizontalAdvance(row));
    const float w = float(width + 2 * kMargin), h = float(metrics.height() * rows.size() + 2 * kMargin);
    const TMyPoint a = GetPointsCount() > 0 ? std::as_const(*this).Points()[0] : TMyPoint{};
    TArrMyPoint corners{a, {a.x + w, a.y}, {a.x + w, a.y + h}, {a.x, a.y + h}};
    for (TMyPoint& p : corners) p = RotateAPoint(p, a, Angle());
    SetPoints(corners);
    SetCenterPoint(ComputeCenterPoint(4));
}

QString TMyText::GetInfo() {
    const int rows = m_lines.Count() > 0 ? m_lines.Count() : (Info().isEmpty() ? 0 : 1);
    const TUnits unit = unitOf(this);
    return QStringLiteral("%1: %2 line%3, width %4, height %5, angle %6")
        .arg(shapeKind(this))
        .arg(rows)
        .arg(rows == 1 ? QString() : QStringLiteral("s"))
        .arg(formatLength(pixelsToUnit(UprightWidth(), unit, ratioOf(this)), unit),
             formatLength(pixelsToUnit(UprightHeight(), unit, ratioOf(this)), unit),
             formatDegrees(normalisedDegrees(Angle())));
}

}  // namespace faroven
