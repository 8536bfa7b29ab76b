#include "dxf/dxf_import_extended.h"

#include "cad/canvas/mycad.h"
#include "cad/geometry/geometry.h"
#include "cad/shapes/curve.h"
#include "cad/shapes/polyline.h"
#include "cad/shapes/rectangle.h"
#include "cad/shapes/text.h"
#include "platform/convert.h"

#include <cmath>
#include <numbers>

namespace faroven {

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kDegree = kPi / 180;
// Block references nest at most this deep, and an array reference makes at
// most this many copies, so that a small file cannot ask for unbounded work
// (the importer's MaxExpandedEntities bounds the total).
constexpr int kMaxInsertDepth = 16;
constexpr int kMaxArrayCopies = 100'000;

double real(const TGroupTable& entry, int code, double fallback = 0) {
    return entry.Value(code).IsEmpty() ? fallback : entry.Value(code).AsDouble();
}
int integer(const TGroupTable& entry, int code, int fallback = 0) {
    return entry.Value(code).IsEmpty() ? fallback : int(entry.Value(code).AsInteger());
}
QString text(const TGroupTable& entry, int code) { return entry.Value(code).IsEmpty() ? QString() : entry.Value(code).AsString(); }

struct Vec {
    double x = 0, y = 0;
};
Vec operator+(Vec a, Vec b) { return {a.x + b.x, a.y + b.y}; }
Vec operator-(Vec a, Vec b) { return {a.x - b.x, a.y - b.y}; }
Vec operator*(double k, Vec a) { return {k * a.x, k * a.y}; }

TPenStyle penStyleOfLineType(const QString& name) {
    const QString n = name.toUpper();
    if (n.contains(u"DOTDOT") || n.contains(u"DIVIDE") || n.contains(u"PHANTOM")) return psDashDotDot;
    if (n.contains(u"DASHDOT") || n.contains(u"CENTER")) return psDashDot;
    if (n.contains(u"DOT")) return psDot;
    if (n.contains(u"DASH") || n.contains(u"HIDDEN")) return psDash;
    return psSolid;
}

// Codes beyond 255 (true colour 420, line weight 370) have no slot in the
// entry table; they are looked up in the entity's groups.
const TVariant* find(const std::vector<TDxfGroup>& groups, int code) {
    for (const TDxfGroup& g : groups)
        if (g.code == code) return &g.value;
    return nullptr;
}

TColor trueColor(int value) { return RGB((value >> 16) & 0xFF, (value >> 8) & 0xFF, value & 0xFF); }

// The point of a B-spline of degree p at parameter t (de Boor), with weights.
Vec deBoor(const std::vector<Vec>& controls, const std::vector<double>& weights, const std::vector<double>& knots, int p,
           int span, double t) {
    std::vector<double> wx(size_t(p) + 1), wy(size_t(p) + 1), w(size_t(p) + 1);
    for (int j = 0; j <= p; ++j) {
        const size_t i = size_t(span - p + j);
        w[size_t(j)] = weights[i];
        wx[size_t(j)] = controls[i].x * weights[i];
        wy[size_t(j)] = controls[i].y * weights[i];
    }
    for (int r = 1; r <= p; ++r) {
        for (int j = p; j >= r; --j) {
            const size_t k = size_t(span - p + j);
            const double denominator = knots[k + size_t(p) + 1 - size_t(r)] - knots[k];
            const double a = denominator == 0 ? 0 : (t - knots[k]) / denominator;
            const size_t J = size_t(j);
            wx[J] = (1 - a) * wx[J - 1] + a * wx[J];
            wy[J] = (1 - a) * wy[J - 1] + a * wy[J];
            w[J] = (1 - a) * w[J - 1] + a * w[J];
        }
    }
    const double weight = w[size_t(p)] == 0 ? 1 : w[size_t(p)];
    return {wx[size_t(p)] / weight, wy[size_t(p)] / weight};
}

// The cubic Bézier segment through four samples of a curve at 0, 1/3, 2/3
// and 1: exact for a polynomial piece of degree three or less.
void appendCubicThrough(std::vector<Vec>& chain, Vec p0, Vec p1, Vec p2, Vec p3) {
    const Vec r1 = 27.0 * p1 - 8.0 * p0 - p3, r2 = 27.0 * p2 - p0 - 8.0 * p3;
    if (chain.empty()) chain.push_back(p0);
    chain.push_back((1.0 / 18) * (2.0 * r1 - r2));
    chain.push_back((1.0 / 18) * (2.0 * r2 - r1));
    chain.push_back(p3);
}

}  // namespace

QString PlainMText(const QString& source) {
    QString out;
    out.reserve(source.size());
    for (qsizetype i = 0; i < source.size(); ++i) {
        const QChar c = source[i];
        if (c == u'{' || c == u'}') continue;
        if (c != u'\\' || i + 1 >= source.size()) {
            out += c;
            continue;
        }
        const QChar code = source[++i];
        switch (code.unicode()) {
        case 'P': out += u'\n'; break;
        case '~': out += u' '; break;
        case '\\': case '{': case '}': out += code; break;
        case 'L': case 'l': case 'O': case 'o': case 'K': case 'k': break;
        case 'S': {
            // Stacked text "a^b;" or "a/b;" or "a#b;" shows as a/b.
            const qsizetype end = source.indexOf(u';', i + 1);
            QString stacked = source.mid(i + 1, (end < 0 ? source.size() : end) - i - 1);
            stacked.replace(u'^', u'/').replace(u'#', u'/');
            out += stacked;
            i = end < 0 ? source.size() : end;
            break;
        }
        default: {
            // Codes with an argument up to ';' (font, height, width, colour...).
            const qsizetype end = source.indexOf(u';', i + 1);
            i = end < 0 ? source.size() : end;
        }
        }
    }
    return out;
}

// ---- Styles and layers ------------------------------------------------------------------------

void TDXF2DImport::Extension::LayerRead(const TGroupTable& entry, const std::vector<TDxfGroup>& groups, int layerId,
                                        bool created) {
    Style style;
    const int color = integer(entry, 62, 7);
    const TVariant* rgb = find(groups, 420);
    style.color = rgb ? trueColor(int(rgb->AsInteger())) : DxfColorNumberToColor(std::abs(color));
    const TVariant* weight = find(groups, 370);
    style.widthHundredthsMm = weight ? std::max(0, int(weight->AsInteger())) : 0;
    style.penStyle = penStyleOfLineType(text(entry, 6));
    m_layerStyles.insert(Trim(text(entry, 2)), style);
    if (created && (color < 0 || (integer(entry, 70) & 1))) m_import.m_canvas->InVisibleLayerByID(layerId);
}

TDXF2DImport::Extension::Style TDXF2DImport::Extension::styleOf(const TGroupTable& entry,
                                                                  const std::vector<TDxfGroup>& groups) const {
    const Style layer = m_layerStyles.value(Trim(text(entry, 8)), Style{});
    Style style;
    const int color = integer(entry, 62, 256);
    if (const TVariant* rgb = find(groups, 420)) style.color = trueColor(int(rgb->AsInteger()));
    else if (color == 256) style.color = layer.color;
    else if (color == 0) style.color = m_blockStyle.color;
    else style.color = DxfColorNumberToColor(color);
    const TVariant* weightValue = find(groups, 370);
    const int weight = weightValue ? int(weightValue->AsInteger()) : -1;
    style.widthHundredthsMm = weight >= 0 ? weight : weight == -1 ? layer.widthHundredthsMm : weight == -2 ? m_blockStyle.widthHundredthsMm : 0;
    const QString lineType = text(entry, 6).toUpper();
    style.penStyle = lineType.isEmpty() || lineType == u"BYLAYER" ? layer.penStyle
                     : lineType == u"BYBLOCK"                     ? m_blockStyle.penStyle
                                                                  : penStyleOfLineType(lineType);
    return style;
}

void TDXF2DImport::Extension::applyStyle(TMyShape* shape, const Style& style) const {
    shape->Pen()->SetColor(style.color);
    shape->Pen()->SetStyle(style.penStyle);
    if (style.widthHundredthsMm > 0)
        shape->Pen()->SetWidth(std::clamp(Round(style.widthHundredthsMm / 100.0 * std::abs(double(m_import.m_scalex))), 1, 1000));
    if (shape->kind() == TShapeKind::Text) shape->Font()->SetColor(style.color);
}

bool TDXF2DImport::Extension::TakesInsertLayer(const QString& layerName, int& layerId) const {
    if (m_depth == 0 || layerName != u"0") return false;
    layerId = m_insertLayer;
    return true;
}

// ---- Entities ---------------------------------------------------------------------------------

TMyShape* TDXF2DImport::Extension::ReadEntity(const QString& name, const TGroupTable& entry,
                                              const std::vector<TDxfGroup>& groups, bool inBlock, int line) {
    if (name == u"INSERT") {
        expandInsert(entry, line);
        return nullptr;
    }
    const Style style = styleOf(entry, groups);
    TMyShape* shape = nullptr;
    if (name == u"TEXT") shape = readText(entry);
    else if (name == u"MTEXT") shape = readMText(entry, groups);
    else if (name == u"CIRCLE") shape = readCircle(entry);
    else if (name == u"ELLIPSE") shape = readEllipse(entry);
    else if (name == u"LWPOLYLINE") shape = readLWPolyline(entry, groups);
    else if (name == u"SPLINE") shape = readSpline(entry, groups);
    else shape = m_import.readBasicEntity(name, entry, inBlock);
    if (shape) applyStyle(shape, style);
    return shape;
}

// A text box in the default font at the mapped height and angle, placed so
// that the point of its frame given by (fx, fy) (0 left/top .. 1 right/bottom)
// lies on the mapped point.
TMyShape* TDXF2DImport::Extension::placeText(TMyShape* shape, double x, double y, double heightMm, double angleDegrees,
                                             double fx, double fy) const {
    auto* text = static_cast<TMyText*>(shape);
    text->SetFont(m_import.m_defaultFont);
    const auto& t = m_import.m_transform;
    const double scale = std::sqrt(std::abs(t[0] * t[3] - t[1] * t[2]));
    const double height = heightMm * scale * std::abs(double(m_import.m_scaley));
    if (height >= 1 && height < 32768) text->Font()->SetHeight(-Round(height));
    const double a = angleDegrees * kDegree;
    const double dx = t[0] * std::cos(a) + t[2] * std::sin(a), dy = t[1] * std::cos(a) + t[3] * std::sin(a);
    text->SetAngle(float(std::atan2(m_import.m_scaley * dy, m_import.m_scalex * dx)));
    const TMyPoint anchor = m_import.mm2Pixel(x, y);
    text->AddPoint(anchor);
    text->reCaclpoints();
    const TArrMyPoint& p = std::as_const(*text).Points();
    const double ax = p[0].x + fx * (p[1].x - p[0].x) + fy * (p[3].x - p[0].x);
    const double ay = p[0].y + fx * (p[1].y - p[0].y) + fy * (p[3].y - p[0].y);
    text->DragChangeValuedxdy(anchor.x - ax, anchor.y - ay);
    return text;
}

// TEXT with its alignment: the second point places aligned texts.
TMyShape* TDXF2DImport::Extension::readText(const TGroupTable& entry) {
    const int h = integer(entry, 72), v = integer(entry, 73);
    double fx = 0, fy = 1;
    double x = real(entry, 10), y = real(entry, 20);
    if ((h != 0 || v != 0) && entry.Has(11)) {
        x = real(entry, 11);
        y = real(entry, 21);
        fx = h == 1 || h == 4 ? 0.5 : h == 2 ? 1 : 0;
        fy = h == 4 || v == 2 ? 0.5 : v == 3 ? 0 : 1;
    }
    auto* shape = new TMyText(m_import.m_canvas);
    shape->SetInfo(text(entry, 1));
    return placeText(shape, x, y, real(entry, 40), real(entry, 50), fx, fy);
}

// MTEXT: the chunks (3) and the last part (1) joined, formatting removed,
// one line per paragraph, placed by its attachment point.
TMyShape* TDXF2DImport::Extension::readMText(const TGroupTable& entry, const std::vector<TDxfGroup>& groups) {
    QString source;
    for (const TDxfGroup& g : groups)
        if (g.code == 1 || g.code == 3) source += g.value.AsString();
    auto* shape = new TMyText(m_import.m_canvas);
    TStrings lines;
    lines.SetLines(PlainMText(source).split(u'\n'));
    shape->SetLines(lines);
    const int attachment = std::clamp(integer(entry, 71, 1), 1, 9) - 1;
    double angle = real(entry, 50);
    if (!entry.Has(50) && (entry.Has(11) || entry.Has(21))) angle = std::atan2(real(entry, 21), real(entry, 11)) / kDegree;
    return placeText(shape, real(entry, 10), real(entry, 20), real(entry, 40), angle, (attachment % 3) / 2.0,
                     (attachment / 3) / 2.0);
}

TMyShape* TDXF2DImport::Extension::readCircle(const TGroupTable& entry) {
    return ellipseShape(real(entry, 10), real(entry, 20), real(entry, 40), 0, 1);
}

// An ellipse shape for the centre, the major axis vector and the ratio, turned
// as the mapping turns the axis.
TMyShape* TDXF2DImport::Extension::ellipseShape(double cx, double cy, double ux, double uy, double ratio) const {
    const TMyPoint c = m_import.mm2Pixel(cx, cy);
    const TMyPoint u = m_import.mm2Pixel(cx + ux, cy + uy);
    const TMyPoint v = m_import.mm2Pixel(cx - uy * ratio, cy + ux * ratio);
    const double rx = std::hypot(u.x - c.x, u.y - c.y), ry = std::hypot(v.x - c.x, v.y - c.y);
    const float angle = float(std::atan2(u.y - c.y, u.x - c.x));
    auto* ellipse = new TMyEllipse(m_import.m_canvas);
    for (const auto& [sx, sy] : {std::pair{-1, -1}, {1, -1}, {1, 1}, {-1, 1}})
        ellipse->AddPoint(RotateAPoint(TMyPoint{float(c.x + sx * rx), float(c.y + sy * ry)}, c, angle));
    ellipse->SetAngle(angle);
    return ellipse;
}

// Whole ellipses as ellipse shapes, turned by their axis; elliptic arcs as
// polylines with a vertex at least every 2 degrees of the parameter.
TMyShape* TDXF2DImport::Extension::readEllipse(const TGroupTable& entry) {
    const double cx = real(entry, 10), cy = real(entry, 20), ux = real(entry, 11), uy = real(entry, 21);
    const double ratio = real(entry, 40, 1);
    const double start = real(entry, 41, 0);
    double span = real(entry, 42, 2 * kPi) - start;
    // Parameters run counter-clockwise; a span of a turn or more is whole.
    if (span <= 0) span = std::fmod(span, 2 * kPi) + 2 * kPi;
    if (!std::isfinite(span) || span >= 2 * kPi - 1e-9) return ellipseShape(cx, cy, ux, uy, ratio);
    const double end = start + span;
    const int steps = std::max(4, int(std::ceil((end - start) / (2 * kDegree))));
    auto* arc = new TMyPolyLine(m_import.m_canvas);
    for (int i = 0; i <= steps; ++i) {
        const double t = start + (end - start) * i / steps;
        arc->AddPoint(m_import.mm2Pixel(cx + ux * std::cos(t) - uy * ratio * std::sin(t),
                                        cy + uy * std::cos(t) + ux * ratio * std::sin(t)));
    }
    return arc;
}

// LWPOLYLINE with bulges: each bulged segment becomes a run of vertices along
// its arc (at least one every 5 degrees).
TMyShape* TDXF2DImport::Extension::readLWPolyline(const TGroupTable& entry, const std::vector<TDxfGroup>& groups) {
    struct Vertex {
        Vec p;
        double bulge = 0;
    };
    std::vector<Vertex> vertices;
    for (const TDxfGroup& g : groups) {
        if (g.code == 10) vertices.push_back(Vertex{{g.value.AsDouble(), 0}});
        else if (g.code == 20 && !vertices.empty()) vertices.back().p.y = g.value.AsDouble();
        else if (g.code == 42 && !vertices.empty()) vertices.back().bulge = g.value.AsDouble();
    }
    if (vertices.empty()) {
        m_import.skip(QStringLiteral("LWPOLYLINE"), QStringLiteral("no vertices"));
        return nullptr;
    }
    const bool closed = integer(entry, 70) & 1;
    auto* polyline = new TMyPolyLine(m_import.m_canvas);
    auto add = [&](Vec p) { polyline->AddPoint(m_import.mm2Pixel(p.x, p.y)); };
    add(vertices[0].p);
    const size_t segments = closed ? vertices.size() : vertices.size() - 1;
    for (size_t i = 0; i < segments; ++i) {
        const Vec a = vertices[i].p, b = vertices[(i + 1) % vertices.size()].p;
        const double bulge = vertices[i].bulge, chord = std::hypot(b.x - a.x, b.y - a.y);
        if (bulge != 0 && std::isfinite(bulge) && chord > 0) {
            const double sweep = 4 * std::atan(bulge);
            const Vec normal{-(b.y - a.y) / chord, (b.x - a.x) / chord};
            const Vec centre = 0.5 * (a + b) + (chord * (1 - bulge * bulge) / (4 * bulge)) * normal;
            const double radius = std::hypot(a.x - centre.x, a.y - centre.y);
            const double start = std::atan2(a.y - centre.y, a.x - centre.x);
            const int steps = std::max(2, int(std::ceil(std::abs(sweep) / (5 * kDegree))));
            for (int k = 1; k < steps; ++k) {
                const double t = start + sweep * k / steps;
                add(Vec{centre.x + radius * std::cos(t), centre.y + radius * std::sin(t)});
            }
        }
        add(b);
    }
    return polyline;
}

// SPLINE: control points and knots become the same curve as a chain of cubic
// Bézier segments (exact for degrees up to three without weights; other
// splines are followed closely with four cubic pieces per knot span). A
// spline given only by fit points becomes the smooth cubic chain through
// them (Catmull-Rom tangents).
TMyShape* TDXF2DImport::Extension::readSpline(const TGroupTable& entry, const std::vector<TDxfGroup>& groups) {
    std::vector<Vec> controls, fits;
    std::vector<double> knots, weights;
    for (const TDxfGroup& g : groups) {
        switch (g.code) {
        case 10: controls.push_back({g.value.AsDouble(), 0}); break;
        case 20: if (!controls.empty()) controls.back().y = g.value.AsDouble(); break;
        case 11: fits.push_back({g.value.AsDouble(), 0}); break;
        case 21: if (!fits.empty()) fits.back().y = g.value.AsDouble(); break;
        case 40: knots.push_back(g.value.AsDouble()); break;
        case 41: weights.push_back(g.value.AsDouble()); break;
        default: break;
        }
    }
    const int degree = integer(entry, 71, 3);
    std::vector<Vec> chain;
    if (controls.size() >= 2) {
        const size_t n = controls.size();
        if (degree < 1 || degree > 11 || knots.size() != n + size_t(degree) + 1 ||
            !std::is_sorted(knots.begin(), knots.end())) {
            m_import.skip(QStringLiteral("SPLINE"), QStringLiteral("the knots do not match the control points"));
            return nullptr;
        }
        const bool rational = !weights.empty() && std::any_of(weights.begin(), weights.end(), [](double w) { return w != 1; });
        if (weights.size() != n) weights.assign(n, 1.0);
        const int pieces = rational || degree > 3 ? 4 : 1;
        for (int span = degree; span < int(n); ++span) {
            const double u0 = knots[size_t(span)], u1 = knots[size_t(span) + 1];
            if (!(u1 > u0)) continue;
            for (int k = 0; k < pieces; ++k) {
                Vec s[4];
                for (int j = 0; j < 4; ++j) {
                    const double t = u0 + (u1 - u0) * (k + j / 3.0) / pieces;
                    s[j] = deBoor(controls, weights, knots, degree, span, t);
                }
                appendCubicThrough(chain, s[0], s[1], s[2], s[3]);
            }
        }
    } else if (fits.size() >= 2) {
        if (integer(entry, 70) & 1) fits.push_back(fits.front());
        const size_t n = fits.size();
        chain.push_back(fits[0]);
        for (size_t i = 0; i + 1 < n; ++i) {
            const Vec before = fits[i == 0 ? 0 : i - 1], after = fits[std::min(i + 2, n - 1)];
            chain.push_back(fits[i] + (1.0 / 6) * (fits[i + 1] - before));
            chain.push_back(fits[i + 1] - (1.0 / 6) * (after - fits[i]));
            chain.push_back(fits[i + 1]);
        }
    }
    if (chain.size() < 4) {
        m_import.skip(QStringLiteral("SPLINE"), QStringLiteral("no curve: too few control or fit points"));
        return nullptr;
    }
    auto* curve = new TMyPolyBezier(m_import.m_canvas);
    for (const Vec& p : chain) curve->AddPoint(m_import.mm2Pixel(p.x, p.y));
    return curve;
}

// ---- Blocks -----------------------------------------------------------------------------------

void TDXF2DImport::Extension::ReadBlockDefinition(const TGroupTable& header) {
    TDXFRead& reader = *m_import.m_reader;
    Block block;
    block.baseX = real(header, 10);
    block.baseY = real(header, 20);
    const DecimalSeparatorGuard point(u'.');
    while (!reader.Eof() && !(reader.CurrentGroupCode() == 0 &&
                              (reader.CurrentValue() == TVariant("ENDBLK") || reader.CurrentValue() == TVariant("ENDSEC")))) {
        const TVariant& value = reader.CurrentValue();
        block.entities += QByteArray::number(reader.CurrentGroupCode()) + '\n';
        block.entities += (value.IsDouble() ? QByteArray::number(value.AsDouble(), 'g', 17) : value.AsString().toUtf8()) + '\n';
        if (!reader.ConsumeGroup()) break;
    }
    m_blocks.insert(Trim(text(header, 2)), std::move(block));
}

// Reads the block's entities again for each copy of the reference, through
// the reference's placement, scale, turn and array spacing.
void TDXF2DImport::Extension::expandInsert(const TGroupTable& entry, int line) {
    const QString name = Trim(text(entry, 2));
    const auto found = m_blocks.constFind(name);
    if (found == m_blocks.constEnd()) {
        m_import.skip(QStringLiteral("INSERT"), QStringLiteral("block \"%1\" is not defined").arg(name));
        return;
    }
    if (m_depth >= kMaxInsertDepth) {
        m_import.skip(QStringLiteral("INSERT"), QStringLiteral("block references nested more than %1 deep").arg(kMaxInsertDepth));
        return;
    }
    const int columns = std::max(1, integer(entry, 70, 1)), rows = std::max(1, integer(entry, 71, 1));
    if (int64_t(columns) * rows > kMaxArrayCopies) {
        m_import.skip(QStringLiteral("INSERT"), QStringLiteral("an array of %1 copies is too large").arg(int64_t(columns) * rows));
        return;
    }
    const Block block = found.value();
    const double sx = real(entry, 41, 1), sy = real(entry, 42, 1), turn = real(entry, 50) * kDegree;
    const double cosT = std::cos(turn), sinT = std::sin(turn);
    const QByteArray bytes = "0\nSECTION\n2\nENTITIES\n" + block.entities + "0\nENDSEC\n0\nEOF\n";

    const Style savedStyle = m_blockStyle;
    const int savedLayer = m_insertLayer;
    const std::array<double, 6> outer = m_import.m_transform;
    std::unique_ptr<TDXFRead> reader = TDXFRead::FromBytes(bytes, m_import.m_reader->Name());
    m_blockStyle = styleOf(entry, m_import.m_groups);
    m_insertLayer = m_import.m_currentLayerId;
    ++m_depth;
    auto restore = [&] {
        --m_depth;
        m_blockStyle = savedStyle;
        m_insertLayer = savedLayer;
        m_import.m_transform = outer;
        std::swap(m_import.m_reader, reader);
    };
    std::swap(m_import.m_reader, reader);
    try {
        for (int row = 0; row < rows; ++row) {
            for (int column = 0; column < columns; ++column) {
                if (m_import.m_entityCount > m_import.m_maxExpanded) {
                    restore();
                    m_import.skip(QStringLiteral("INSERT"),
                                  QStringLiteral("more than %1 entities after expanding blocks").arg(m_import.m_maxExpanded));
                    return;
                }
                // Local map: p -> R (S (p - base) + spacing) + insertion.
                const double ox = column * real(entry, 44) - sx * block.baseX, oy = row * real(entry, 45) - sy * block.baseY;
                const std::array<double, 6> local{cosT * sx, sinT * sx, -sinT * sy, cosT * sy,
                                                  cosT * ox - sinT * oy + real(entry, 10), sinT * ox + cosT * oy + real(entry, 20)};
                const auto& o = outer;
                m_import.m_transform = {o[0] * local[0] + o[2] * local[1], o[1] * local[0] + o[3] * local[1],
                                        o[0] * local[2] + o[2] * local[3], o[1] * local[2] + o[3] * local[3],
                                        o[0] * local[4] + o[2] * local[5] + o[4], o[1] * local[4] + o[3] * local[5] + o[5]};
                m_import.m_reader->Rewind();
                m_import.ReadEntities();
            }
        }
    } catch (const EDXFImportError& e) {
        restore();
        throw EDXFImportError(e.Message(), m_import.m_reader->Name(), line);
    } catch (...) {
        restore();
        throw;
    }
    restore();
}

}  // namespace faroven
