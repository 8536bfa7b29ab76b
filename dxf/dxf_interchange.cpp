#include "dxf/dxf_interchange.h"

#include "cad/canvas/mycad.h"
#include "cad/shapes/arc.h"
#include "cad/shapes/curve.h"
#include "cad/shapes/link.h"
#include "cad/shapes/link_point.h"
#include "cad/shapes/text.h"
#include "dxf/dxf_primitives.h"
#include "platform/ansi.h"

#include <QFontMetricsF>
#include <QHash>
#include <QSet>
#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <cmath>
#include <limits>
#include <map>
#include <numbers>
#include <vector>

namespace faroven {

namespace {

constexpr double kPixelsPerMm = 96.0 / 25.4;
constexpr double kTwoPi = 2 * std::numbers::pi;

// ---------------------------------------------------------------- values

// A real in the shortest form that reads back to the same double, always
// with a point; integral values keep a ".0" so that every reader takes them
// as reals. Values that are not finite become 0 (and -0 is 0).
QString real(double v) {
    if (!std::isfinite(v) || v == 0) return QStringLiteral("0.0");
    char buffer[32];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, v).ptr;
    QString s = QString::fromLatin1(buffer, int(end - buffer));
    if (!s.contains(u'.') && !s.contains(u'e')) s += QStringLiteral(".0");
    return s;
}

QString hex(int handle) { return QString::number(handle, 16).toUpper(); }

// Text as the file's code page (Windows-1252) holds it: characters beyond
// it as \U+XXXX escapes, which CAD programs decode in every text of an R2000
// file; control characters as blanks.
QString codePageText(const QString& text) {
    QString out;
    for (const char32_t c : text.toUcs4()) {
        if (c < 0x20) {
            out += u' ';
        } else if (c < 0x7F) {
            out += QChar(char16_t(c));
        } else if (c <= 0xFFFF) {
            const QString one{QChar(char16_t(c))};
            if (FromAnsi(ToAnsi(one)) == one) out += one;
            else out += QStringLiteral("\\U+") + QString::number(uint(c), 16).toUpper().rightJustified(4, u'0');
        } else {
            out += u'?';
        }
    }
    return out;
}

// A symbol table name CAD programs accept: the characters they forbid, and
// those the code page lacks (an escape's backslash is forbidden in names),
// become '_'; at most 255 characters, never empty.
QString tableName(const QString& name) {
    static const QString forbidden = QStringLiteral("<>/\\\":;?*|=`");
    QString clean;
    for (const char32_t c : name.trimmed().toUcs4()) {
        const QString one = QString::fromUcs4(&c, 1);
        const bool keep = c >= 0x20 && !forbidden.contains(one) && FromAnsi(ToAnsi(one)) == one;
        clean += keep ? one : QStringLiteral("_");
    }
    clean.truncate(255);
    return clean.isEmpty() ? QStringLiteral("_") : clean;
}

// DXF line weights in hundredths of a millimetre.
constexpr std::array<int, 24> kLineWeights{0,  5,  9,  13, 15, 18, 20,  25,  30,  35,  40,  50,
                                           53, 60, 70, 80, 90, 100, 106, 120, 140, 158, 200, 211};

int lineWeight(int penWidthPixels) {
    const double hundredths = std::max(0, penWidthPixels) / kPixelsPerMm * 100;
    int best = kLineWeights[0];
    for (int w : kLineWeights)
        if (std::abs(w - hundredths) < std::abs(best - hundredths)) best = w;
    return best;
}

// The line types of the pen styles: their dash patterns are the screen's
// (dash 18 on 6 off, dot 3 on 3 off, ... pixels at 96 per inch) in mm.
struct LineTypeDef {
    TPenStyle style;
    const char* name;
    const char* description;
    std::vector<double> pixels;  // dash lengths positive, gaps negative
};
const std::vector<LineTypeDef>& lineTypes() {
    static const std::vector<LineTypeDef> types{
        {psDash, "DASH", "Dash __ __ __", {18, -6}},
        {psDot, "DOT", "Dot . . . .", {3, -3}},
        {psDashDot, "DASHDOT", "Dash dot __ . __ .", {9, -6, 3, -6}},
        {psDashDotDot, "DASHDOTDOT", "Dash dot dot __ . . __", {9, -3, 3, -3, 3, -3}},
    };
    return types;
}

QString lineTypeOf(TPenStyle style) {
    for (const LineTypeDef& t : lineTypes())
        if (t.style == style) return QString::fromLatin1(t.name);
    return QStringLiteral("Continuous");
}

// ---------------------------------------------------------------- geometry in mm

struct Vec {
    double x = 0, y = 0;
    Vec operator+(Vec o) const { return {x + o.x, y + o.y}; }
    Vec operator-(Vec o) const { return {x - o.x, y - o.y}; }
    Vec operator*(double s) const { return {x * s, y * s}; }
    double dot(Vec o) const { return x * o.x + y * o.y; }
    double cross(Vec o) const { return x * o.y - y * o.x; }
    double length() const { return std::hypot(x, y); }
};

// Drawing units (pixels, y down) to millimetres with y up.
struct Transform {
    double height = 0;
    Vec point(double x, double y) const { return {x / kPixelsPerMm, (height - y) / kPixelsPerMm}; }
    Vec point(TMyPoint p) const { return point(p.x, p.y); }
    // A difference of two points (no origin).
    Vec vector(double dx, double dy) const { return {dx / kPixelsPerMm, -dy / kPixelsPerMm}; }
    Vec vector(TMyPoint a, TMyPoint b) const { return vector(double(b.x) - a.x, double(b.y) - a.y); }
};

// The look of an entity: layer, pen colour, line type and weight.
struct Look {
    QString layer = QStringLiteral("0");
    QString lineType = QStringLiteral("Continuous");
    TColor color = clBlack;
    int lineWeight = 25;
    bool invisible = false;
};

// ---------------------------------------------------------------- writer

class Writer {
public:
    QStringList lines;

    void group(int code, const QString& value) {
        lines << QString::number(code) << value;
    }
    void group(int code, const char* value) { group(code, QString::fromLatin1(value)); }
    void integer(int code, long long value) { group(code, QString::number(value)); }
    void number(int code, double value) { group(code, real(value)); }
    void handle(int code, int h) { group(code, hex(h)); }
    void point(int code, Vec p) {
        number(code, p.x);
        number(code + 10, p.y);
        number(code + 20, 0);
    }
};

class Exporter {
public:
    Exporter(TMyCAD& canvas, bool glyphOutlines) : m_canvas(canvas), m_glyphs(glyphOutlines) {
        m_tf.height = canvas.Height();
    }

    QStringList run();

private:
    // ---- handles
    int take() { return m_next++; }

    // ---- bounds of what is written, for $EXTMIN/$EXTMAX and the view
    void grow(Vec p) {
        m_min = {std::min(m_min.x, p.x), std::min(m_min.y, p.y)};
        m_max = {std::max(m_max.x, p.x), std::max(m_max.y, p.y)};
    }
    void grow(Vec c, double r) {
        grow(c - Vec{r, r});
        grow(c + Vec{r, r});
    }
    bool hasBounds() const { return m_min.x <= m_max.x; }

    // ---- tables
    void collectLayers();
    void collectTextStyles();
    void writeTables(Writer& w);
    void writeBlocks(Writer& w);
    void writeObjects(Writer& w);
    void writeHeader(Writer& w);
    void tableHead(Writer& w, const char* name, int handle, int count);
    void recordHead(Writer& w, const char* type, int handle, int owner, const char* subclass);

    // ---- entities
    void writeShape(TMyShape* shape);
    Look lookOf(const TMyShape* shape, TColor color) const;
    Look textLook(const TMyText* shape) const;
    void entityHead(const char* type, const Look& look, const char* subclass);
    void line(const Look& look, Vec a, Vec b);
    void polyline(const Look& look, const std::vector<Vec>& pts, bool closed);
    void circle(const Look& look, Vec c, double r);
    void arc(const Look& look, Vec c, double r, double startDeg, double endDeg);
    // The elliptic curve c + u cos t + v sin t for t from t0 to t1 (radians;
    // t1 - t0 = 2 pi for the whole curve), u and v any conjugate half
    // diameters: an ELLIPSE, or a CIRCLE or ARC when it is round.
    void ellipse(const Look& look, Vec c, Vec u, Vec v, double t0, double t1);
    void spline(const Look& look, int degree, const std::vector<double>& knots, const std::vector<Vec>& controls);
    void bezierChain(const Look& look, const TArrMyPoint& chain);
    void bline(const Look& look, const TArrMyPoint& controls);
    void elliArc(TMyElliArc* arcShape, const Look& look);
    void text(TMyText* shape);
    void glyphs(TMyText* shape);

    TMyCAD& m_canvas;
    bool m_glyphs;
    Transform m_tf;
    int m_next = 1;
    Vec m_min{std::numeric_limits<double>::max(), std::numeric_limits<double>::max()};
    Vec m_max{-std::numeric_limits<double>::max(), -std::numeric_limits<double>::max()};

    // Handles fixed before anything is written, so that owners can be named
    // before the records they own.
    struct Handles {
        int vportTable, ltypeTable, layerTable, styleTable, viewTable, ucsTable, appidTable, dimstyleTable,
            blockRecordTable;
        int modelRecord, paperRecord, modelBlock, modelEnd, paperBlock, paperEnd;
        int rootDict, groupDict, layoutDict, mlineDict, plotSettingsDict, plotStyleDict, placeholder, modelLayout,
            paperLayout, mlineStandard;
    } m_h{};

    struct LayerOut {
        QString name;
        bool visible = true;
    };
    std::vector<LayerOut> m_layers;   // layer "0" first
    QHash<int, QString> m_layerOfId;  // canvas layer id -> DXF name
    std::map<QString, QString> m_styleOfFace;  // font face -> text style name
    Writer m_entities;
};

// ---------------------------------------------------------------- tables

void Exporter::collectLayers() {
    QSet<QString> taken;
    auto unique = [&](QString name) {
        const QString base = name;
        for (int n = 2; taken.contains(name.toUpper()); ++n) name = base + QStringLiteral("_%1").arg(n);
        taken.insert(name.toUpper());
        return name;
    };
    m_layers.push_back({unique(QStringLiteral("0")), true});
    for (const TLayerRecord& rec : m_canvas.Layers().Records()) {
        const QString name = tableName(rec.LayerName);
        if (name == QLatin1String("0")) {
            // The canvas's own layer "0" is the drawing's layer "0".
            m_layers.front().visible = rec.Visible;
            m_layerOfId.insert(rec.LayerId, m_layers.front().name);
            continue;
        }
        m_layers.push_back({unique(name), rec.Visible});
        m_layerOfId.insert(rec.LayerId, m_layers.back().name);
    }
}

void Exporter::collectTextStyles() {
    QSet<QString> taken{QStringLiteral("STANDARD")};
    for (TMyShape* shape : m_canvas.MyShapes()) {
        if (!shape || shape->kind() != TShapeKind::Text) continue;
        const QString face = shape->FontRef().Name();
        if (m_styleOfFace.count(face)) continue;
        QString name = tableName(face);
        const QString base = name;
        for (int n = 2; taken.contains(name.toUpper()); ++n) name = base + QStringLiteral("_%1").arg(n);
        taken.insert(name.toUpper());
        m_styleOfFace[face] = name;
    }
}

void Exporter::tableHead(Writer& w, const char* name, int handle, int count) {
    w.group(0, "TABLE");
    w.group(2, name);
    w.handle(5, handle);
    w.group(330, "0");
    w.group(100, "AcDbSymbolTable");
    w.integer(70, count);
}

void Exporter::recordHead(Writer& w, const char* type, int handle, int owner, const char* subclass) {
    w.group(0, type);
    w.handle(5, handle);
    w.handle(330, owner);
    w.group(100, "AcDbSymbolTableRecord");
    w.group(100, subclass);
}

void Exporter::writeTables(Writer& w) {
    w.group(0, "SECTION");
    w.group(2, "TABLES");

    // The view that shows the whole drawing.
    tableHead(w, "VPORT", m_h.vportTable, 1);
    recordHead(w, "VPORT", take(), m_h.vportTable, "AcDbViewportTableRecord");
    w.group(2, "*Active");
    w.integer(70, 0);
    w.number(10, 0);
    w.number(20, 0);
    w.number(11, 1);
    w.number(21, 1);
    const Vec lo = hasBounds() ? m_min : Vec{0, 0};
    const Vec hi = hasBounds() ? m_max : Vec{m_canvas.Width() / kPixelsPerMm, m_tf.height / kPixelsPerMm};
    w.number(12, (lo.x + hi.x) / 2);
    w.number(22, (lo.y + hi.y) / 2);
    w.number(13, 0);
    w.number(23, 0);
    w.number(14, 10);
    w.number(24, 10);
    w.number(15, 10);
    w.number(25, 10);
    w.number(16, 0);
    w.number(26, 0);
    w.number(36, 1);
    w.number(17, 0);
    w.number(27, 0);
    w.number(37, 0);
    w.number(40, std::max(1.0, std::max(hi.y - lo.y, (hi.x - lo.x) / 1.5) * 1.1));
    w.number(41, 1.5);
    w.number(42, 50);
    w.number(43, 0);
    w.number(44, 0);
    w.number(50, 0);
    w.number(51, 0);
    w.integer(71, 0);
    w.integer(72, 1000);
    w.integer(73, 1);
    w.integer(74, 3);
    w.integer(75, 0);
    w.integer(76, 0);
    w.integer(77, 0);
    w.integer(78, 0);
    w.group(0, "ENDTAB");

    tableHead(w, "LTYPE", m_h.ltypeTable, 3 + int(lineTypes().size()));
    for (const char* name : {"ByBlock", "ByLayer", "Continuous"}) {
        recordHead(w, "LTYPE", take(), m_h.ltypeTable, "AcDbLinetypeTableRecord");
        w.group(2, name);
        w.integer(70, 0);
        w.group(3, std::strcmp(name, "Continuous") == 0 ? "Solid line" : "");
        w.integer(72, 65);
        w.integer(73, 0);
        w.number(40, 0);
    }
    for (const LineTypeDef& t : lineTypes()) {
        recordHead(w, "LTYPE", take(), m_h.ltypeTable, "AcDbLinetypeTableRecord");
        w.group(2, t.name);
        w.integer(70, 0);
        w.group(3, t.description);
        w.integer(72, 65);
        w.integer(73, int(t.pixels.size()));
        double total = 0;
        for (double d : t.pixels) total += std::abs(d);
        w.number(40, total / kPixelsPerMm);
        for (double d : t.pixels) {
            w.number(49, d / kPixelsPerMm);
            w.integer(74, 0);
        }
    }
    w.group(0, "ENDTAB");

    // A hidden layer is off: its colour is negative.
    tableHead(w, "LAYER", m_h.layerTable, int(m_layers.size()));
    for (const LayerOut& layer : m_layers) {
        recordHead(w, "LAYER", take(), m_h.layerTable, "AcDbLayerTableRecord");
        w.group(2, layer.name);
        w.integer(70, 0);
        w.integer(62, layer.visible ? 7 : -7);
        w.group(6, "Continuous");
        w.integer(370, -3);
        w.handle(390, m_h.placeholder);
    }
    w.group(0, "ENDTAB");

    // Standard, and a TrueType style per font face of the texts; the face
    // goes in the style's extended data, where CAD programs look for it.
    tableHead(w, "STYLE", m_h.styleTable, 1 + int(m_styleOfFace.size()));
    auto style = [&](const QString& name, const QString& fontFile) {
        recordHead(w, "STYLE", take(), m_h.styleTable, "AcDbTextStyleTableRecord");
        w.group(2, name);
        w.integer(70, 0);
        w.number(40, 0);
        w.number(41, 1);
        w.number(50, 0);
        w.integer(71, 0);
        w.number(42, 2.5);
        w.group(3, fontFile);
        w.group(4, "");
    };
    style(QStringLiteral("Standard"), QStringLiteral("txt"));
    for (const auto& [face, name] : m_styleOfFace) {
        style(name, codePageText(face).remove(u' ') + QStringLiteral(".ttf"));
        w.group(1001, "ACAD");
        w.group(1000, codePageText(face));
        w.integer(1071, 0);
    }
    w.group(0, "ENDTAB");

    tableHead(w, "VIEW", m_h.viewTable, 0);
    w.group(0, "ENDTAB");
    tableHead(w, "UCS", m_h.ucsTable, 0);
    w.group(0, "ENDTAB");

    tableHead(w, "APPID", m_h.appidTable, 1);
    recordHead(w, "APPID", take(), m_h.appidTable, "AcDbRegAppTableRecord");
    w.group(2, "ACAD");
    w.integer(70, 0);
    w.group(0, "ENDTAB");

    tableHead(w, "DIMSTYLE", m_h.dimstyleTable, 1);
    w.group(100, "AcDbDimStyleTable");
    w.group(0, "DIMSTYLE");
    w.handle(105, take());
    w.handle(330, m_h.dimstyleTable);
    w.group(100, "AcDbSymbolTableRecord");
    w.group(100, "AcDbDimStyleTableRecord");
    w.group(2, "Standard");
    w.integer(70, 0);
    w.number(41, 2.5);
    w.number(42, 0.625);
    w.number(43, 3.75);
    w.number(44, 1.25);
    w.number(140, 2.5);
    w.number(141, 2.5);
    w.integer(77, 1);
    w.integer(78, 8);
    w.integer(271, 2);
    w.integer(272, 2);
    w.group(0, "ENDTAB");

    tableHead(w, "BLOCK_RECORD", m_h.blockRecordTable, 2);
    recordHead(w, "BLOCK_RECORD", m_h.modelRecord, m_h.blockRecordTable, "AcDbBlockTableRecord");
    w.group(2, "*Model_Space");
    w.handle(340, m_h.modelLayout);
    recordHead(w, "BLOCK_RECORD", m_h.paperRecord, m_h.blockRecordTable, "AcDbBlockTableRecord");
    w.group(2, "*Paper_Space");
    w.handle(340, m_h.paperLayout);
    w.group(0, "ENDTAB");

    w.group(0, "ENDSEC");
}

void Exporter::writeBlocks(Writer& w) {
    w.group(0, "SECTION");
    w.group(2, "BLOCKS");
    const struct {
        const char* name;
        int record, begin, end;
    } blocks[] = {{"*Model_Space", m_h.modelRecord, m_h.modelBlock, m_h.modelEnd},
                  {"*Paper_Space", m_h.paperRecord, m_h.paperBlock, m_h.paperEnd}};
    for (const auto& b : blocks) {
        w.group(0, "BLOCK");
        w.handle(5, b.begin);
        w.handle(330, b.record);
        w.group(100, "AcDbEntity");
        w.group(8, "0");
        w.group(100, "AcDbBlockBegin");
        w.group(2, b.name);
        w.integer(70, 0);
        w.point(10, {0, 0});
        w.group(3, b.name);
        w.group(1, "");
        w.group(0, "ENDBLK");
        w.handle(5, b.end);
        w.handle(330, b.record);
        w.group(100, "AcDbEntity");
        w.group(8, "0");
        w.group(100, "AcDbBlockEnd");
    }
    w.group(0, "ENDSEC");
}

void Exporter::writeObjects(Writer& w) {
    w.group(0, "SECTION");
    w.group(2, "OBJECTS");
    auto dictionary = [&](int handle, int owner, std::initializer_list<std::pair<const char*, int>> entries) {
        w.group(0, "DICTIONARY");
        w.handle(5, handle);
        w.handle(330, owner);
        w.group(100, "AcDbDictionary");
        w.integer(281, 1);
        for (const auto& [key, value] : entries) {
            w.group(3, key);
            w.handle(350, value);
        }
    };
    // The root dictionary has no owner (handle 0).
    dictionary(m_h.rootDict, 0,
               {{"ACAD_GROUP", m_h.groupDict}, {"ACAD_LAYOUT", m_h.layoutDict}, {"ACAD_MLINESTYLE", m_h.mlineDict},
                {"ACAD_PLOTSETTINGS", m_h.plotSettingsDict}, {"ACAD_PLOTSTYLENAME", m_h.plotStyleDict}});
    dictionary(m_h.groupDict, m_h.rootDict, {});
    dictionary(m_h.layoutDict, m_h.rootDict, {{"Model", m_h.modelLayout}, {"Layout1", m_h.paperLayout}});
    dictionary(m_h.mlineDict, m_h.rootDict, {{"Standard", m_h.mlineStandard}});
    dictionary(m_h.plotSettingsDict, m_h.rootDict, {});

    // Plot style names: "Normal" is the default every layer refers to.
    w.group(0, "ACDBDICTIONARYWDFLT");
    w.handle(5, m_h.plotStyleDict);
    w.handle(330, m_h.rootDict);
    w.group(100, "AcDbDictionary");
    w.integer(281, 1);
    w.group(3, "Normal");
    w.handle(350, m_h.placeholder);
    w.group(100, "AcDbDictionaryWithDefault");
    w.handle(340, m_h.placeholder);
    w.group(0, "ACDBPLACEHOLDER");
    w.handle(5, m_h.placeholder);
    w.handle(330, m_h.plotStyleDict);

    // The two layouts: an A3 sheet each, model space and one paper space.
    const struct {
        const char* name;
        int handle, record, flags, order;
    } layouts[] = {{"Model", m_h.modelLayout, m_h.modelRecord, 1024, 0},
                   {"Layout1", m_h.paperLayout, m_h.paperRecord, 0, 1}};
    for (const auto& l : layouts) {
        w.group(0, "LAYOUT");
        w.handle(5, l.handle);
        w.handle(330, m_h.layoutDict);
        w.group(100, "AcDbPlotSettings");
        w.group(1, "");
        w.group(2, "none_device");
        w.group(4, "ISO_A3_(420.00_x_297.00_MM)");
        w.group(6, "");
        for (int code : {40, 41, 42, 43}) w.number(code, 7.5);
        w.number(44, 420);
        w.number(45, 297);
        for (int code : {46, 47, 48, 49, 140, 141}) w.number(code, 0);
        w.number(142, 1);
        w.number(143, 1);
        w.integer(70, l.flags);
        w.integer(72, 1);
        w.integer(73, 1);
        w.integer(74, 5);
        w.group(7, "");
        w.integer(75, 16);
        w.number(147, 1);
        w.number(148, 0);
        w.number(149, 0);
        w.group(100, "AcDbLayout");
        w.group(1, l.name);
        w.integer(70, 1);
        w.integer(71, l.order);
        w.number(10, 0);
        w.number(20, 0);
        w.number(11, 420);
        w.number(21, 297);
        w.point(12, {0, 0});
        const Vec lo = hasBounds() ? m_min : Vec{0, 0};
        const Vec hi = hasBounds() ? m_max : Vec{0, 0};
        w.point(14, lo);
        w.point(15, hi);
        w.number(146, 0);
        w.point(13, {0, 0});
        w.number(16, 1);
        w.number(26, 0);
        w.number(36, 0);
        w.number(17, 0);
        w.number(27, 1);
        w.number(37, 0);
        w.integer(76, 0);
        w.handle(330, l.record);
    }

    w.group(0, "MLINESTYLE");
    w.handle(5, m_h.mlineStandard);
    w.handle(330, m_h.mlineDict);
    w.group(100, "AcDbMlineStyle");
    w.group(2, "Standard");
    w.integer(70, 0);
    w.group(3, "");
    w.integer(62, 256);
    w.number(51, 90);
    w.number(52, 90);
    w.integer(71, 2);
    w.number(49, 0.5);
    w.integer(62, 256);
    w.group(6, "BYLAYER");
    w.number(49, -0.5);
    w.integer(62, 256);
    w.group(6, "BYLAYER");
    w.group(0, "ENDSEC");
}

void Exporter::writeHeader(Writer& w) {
    w.group(0, "SECTION");
    w.group(2, "HEADER");
    auto var = [&](const char* name) { w.group(9, name); };
    var("$ACADVER");
    w.group(1, "AC1015");
    var("$DWGCODEPAGE");
    w.group(3, "ANSI_1252");
    var("$INSBASE");
    w.point(10, {0, 0});
    var("$EXTMIN");
    w.point(10, hasBounds() ? m_min : Vec{1e20, 1e20});
    var("$EXTMAX");
    w.point(10, hasBounds() ? m_max : Vec{-1e20, -1e20});
    var("$LIMMIN");
    w.number(10, 0);
    w.number(20, 0);
    var("$LIMMAX");
    w.number(10, 420);
    w.number(20, 297);
    var("$LTSCALE");
    w.number(40, 1);
    var("$TEXTSTYLE");
    w.group(7, "Standard");
    var("$CLAYER");
    w.group(8, "0");
    var("$CELTYPE");
    w.group(6, "ByLayer");
    var("$CECOLOR");
    w.integer(62, 256);
    var("$CELWEIGHT");
    w.integer(370, -1);
    var("$LWDISPLAY");
    w.integer(290, 1);
    var("$LUNITS");
    w.integer(70, 2);
    var("$MEASUREMENT");
    w.integer(70, 1);
    var("$INSUNITS");
    w.integer(70, 4);
    var("$HANDSEED");
    w.handle(5, m_next);
    w.group(0, "ENDSEC");
}

// ---------------------------------------------------------------- entities

Look Exporter::lookOf(const TMyShape* shape, TColor color) const {
    Look look;
    if (const TLayerRecord* rec = m_canvas.Layers().ForShape(shape->LayerId()))
        look.layer = m_layerOfId.value(rec->LayerId, QStringLiteral("0"));
    const TPen* pen = shape->Pen();
    look.lineType = lineTypeOf(pen->Style());
    look.color = color;
    look.lineWeight = lineWeight(pen->Width());
    // A clear pen draws nothing: the outline is kept, but hidden.
    look.invisible = !shape->Visible() || pen->Style() == psClear;
    return look;
}

// The letters take the font's colour and are drawn whole, whatever the pen.
Look Exporter::textLook(const TMyText* shape) const {
    Look look = lookOf(shape, shape->FontRef().Color());
    look.lineType = QStringLiteral("Continuous");
    look.invisible = !shape->Visible();
    return look;
}

void Exporter::entityHead(const char* type, const Look& look, const char* subclass) {
    Writer& w = m_entities;
    w.group(0, type);
    w.handle(5, take());
    w.handle(330, m_h.modelRecord);
    w.group(100, "AcDbEntity");
    w.group(8, look.layer);
    w.group(6, look.lineType);
    w.integer(62, ColorToDxfColorNumber(look.color));
    w.integer(370, look.lineWeight);
    const TColor rgb = ColorToRGB(look.color);
    w.integer(420, (GetRValue(rgb) << 16) | (GetGValue(rgb) << 8) | GetBValue(rgb));
    if (look.invisible) w.integer(60, 1);
    w.group(100, subclass);
}

void Exporter::line(const Look& look, Vec a, Vec b) {
    entityHead("LINE", look, "AcDbLine");
    m_entities.point(10, a);
    m_entities.point(11, b);
    grow(a);
    grow(b);
}

void Exporter::polyline(const Look& look, const std::vector<Vec>& pts, bool closed) {
    if (pts.size() < 2) return;
    entityHead("LWPOLYLINE", look, "AcDbPolyline");
    m_entities.integer(90, int(pts.size()));
    m_entities.integer(70, closed ? 1 : 0);
    for (Vec p : pts) {
        m_entities.number(10, p.x);
        m_entities.number(20, p.y);
        grow(p);
    }
}

void Exporter::circle(const Look& look, Vec c, double r) {
    entityHead("CIRCLE", look, "AcDbCircle");
    m_entities.point(10, c);
    m_entities.number(40, r);
    grow(c, r);
}

void Exporter::arc(const Look& look, Vec c, double r, double startDeg, double endDeg) {
    entityHead("ARC", look, "AcDbCircle");
    m_entities.point(10, c);
    m_entities.number(40, r);
    m_entities.group(100, "AcDbArc");
    m_entities.number(50, startDeg);
    m_entities.number(51, endDeg);
    grow(c, r);
}

void Exporter::ellipse(const Look& look, Vec c, Vec u, Vec v, double t0, double t1) {
    const bool whole = t1 - t0 >= kTwoPi - 1e-12;
    // Principal axes from the conjugate ones: with s = t - shift the curve
    // is c + a cos s + b sin s and a, b are perpendicular.
    const double shift = 0.5 * std::atan2(2 * u.dot(v), u.dot(u) - v.dot(v));
    Vec major = u * std::cos(shift) + v * std::sin(shift);
    Vec minor = u * -std::sin(shift) + v * std::cos(shift);
    double lo = t0 - shift, hi = t1 - shift;
    if (minor.length() > major.length()) {
        // a cos s + b sin s = b cos(s - pi/2) - a sin(s - pi/2)
        const Vec a = major;
        major = minor;
        minor = a * -1;
        lo -= std::numbers::pi / 2;
        hi -= std::numbers::pi / 2;
    }
    if (major.cross(minor) < 0) {
        // Clockwise in DXF's frame: run the same points the other way.
        minor = minor * -1;
        std::swap(lo, hi);
        lo = -lo;
        hi = -hi;
    }
    const double rMajor = major.length(), rMinor = minor.length();
    if (rMajor <= 0) return;
    auto norm = [](double a) {
        a = std::fmod(a, kTwoPi);
        return a < 0 ? a + kTwoPi : a;
    };
    // Round within half a pixel: a circle, as the default export decides.
    if (rMajor - rMinor < 0.5 / kPixelsPerMm) {
        const double r = (rMajor + rMinor) / 2;
        if (whole) {
            circle(look, c, r);
            return;
        }
        const double base = std::atan2(major.y, major.x);
        arc(look, c, r, norm(base + lo) * 180 / std::numbers::pi, norm(base + hi) * 180 / std::numbers::pi);
        return;
    }
    entityHead("ELLIPSE", look, "AcDbEllipse");
    m_entities.point(10, c);
    m_entities.point(11, major);
    m_entities.number(210, 0);
    m_entities.number(220, 0);
    m_entities.number(230, 1);
    // A flat ellipse keeps the smallest ratio readers accept.
    m_entities.number(40, std::max(rMinor / rMajor, 1e-6));
    m_entities.number(41, whole ? 0 : norm(lo));
    m_entities.number(42, whole ? kTwoPi : norm(hi));
    grow(c, rMajor);
}

void Exporter::spline(const Look& look, int degree, const std::vector<double>& knots,
                      const std::vector<Vec>& controls) {
    entityHead("SPLINE", look, "AcDbSpline");
    Writer& w = m_entities;
    w.number(210, 0);
    w.number(220, 0);
    w.number(230, 1);
    w.integer(70, 8);  // planar
    w.integer(71, degree);
    w.integer(72, int(knots.size()));
    w.integer(73, int(controls.size()));
    w.integer(74, 0);
    w.number(42, 1e-10);
    w.number(43, 1e-10);
    for (double k : knots) w.number(40, k);
    for (Vec p : controls) {
        w.point(10, p);
        grow(p);
    }
}

// A chain of cubic Bézier segments is a clamped cubic B-spline whose inner
// knots have multiplicity 3 (one per joint).
void Exporter::bezierChain(const Look& look, const TArrMyPoint& chain) {
    const int segments = (int(chain.size()) - 1) / 3;
    if (segments < 1) return;
    std::vector<Vec> controls;
    for (int i = 0; i <= 3 * segments; ++i) controls.push_back(m_tf.point(chain[size_t(i)]));
    std::vector<double> knots{0, 0, 0, 0};
    for (int j = 1; j < segments; ++j) knots.insert(knots.end(), 3, double(j));
    knots.insert(knots.end(), 4, double(segments));
    spline(look, 3, knots, controls);
}

// The B-line's curve is the clamped uniform spline of its points: cubic
// from four points on, quadratic for three, straight for two.
void Exporter::bline(const Look& look, const TArrMyPoint& controls) {
    const int n = int(controls.size());
    if (n < 2) return;
    if (n == 2) {
        line(look, m_tf.point(controls[0]), m_tf.point(controls[1]));
        return;
    }
    std::vector<Vec> pts;
    for (const TMyPoint& p : controls) pts.push_back(m_tf.point(p));
    const int degree = n == 3 ? 2 : 3;
    std::vector<double> knots(size_t(degree + 1), 0.0);
    const int spans = n - degree;
    for (int j = 1; j < spans; ++j) knots.push_back(j);
    knots.insert(knots.end(), size_t(degree + 1), double(spans));
    spline(look, degree, knots, pts);
}

void Exporter::elliArc(TMyElliArc* shape, const Look& look) {
    const TArrMyPoint& pts = std::as_const(*shape).Points();
    if (pts.size() < 3) {
        std::vector<Vec> v;
        for (const TMyPoint& p : pts) v.push_back(m_tf.point(p));
        polyline(look, v, false);
        return;
    }
    const TMyPoint p0 = pts[0], p1 = pts[1], p2 = pts[2];
    Vec centre;
    if (shape->ArcMode() == amEllipse) {
        const TMyPoint c{p0.x + p2.x - p1.x, p0.y + p2.y - p1.y};
        centre = m_tf.point(c);
        // c + (p1 - p2) cos t + (p1 - p0) sin t for t from 0 to 90 degrees
        ellipse(look, centre, m_tf.vector(p2, p1), m_tf.vector(p0, p1), 0, std::numbers::pi / 2);
    } else {
        double r = 0, a1 = 0, a2 = 0;
        if (!ArcRadiusAndAngles(p0, p1, p2, r, a1, a2)) {
            // Three points on one line: the shape draws them as they are.
            polyline(look, {m_tf.point(p0), m_tf.point(p1), m_tf.point(p2)}, false);
            return;
        }
        TMyPoint c{};
        ArcCurve({p0, p1, p2}, amCircle, 1e9, c);
        centre = m_tf.point(c);
        arc(look, centre, r / kPixelsPerMm, a1, a2);
    }
    if (shape->ArcStyle() == asChord) {
        line(look, m_tf.point(p2), m_tf.point(p0));
    } else if (shape->ArcStyle() == asSector) {
        line(look, m_tf.point(p2), centre);
        line(look, centre, m_tf.point(p0));
    }
}

// ---- texts

namespace {

// Where TMyText puts its rows (its RowLayout), with the font's measures and
// the turn by Angle about the frame's centre.
struct TextPlacement {
    QStringList rows;
    std::vector<QPointF> baselineStarts;  // upright, drawing units
    std::vector<double> widths;
    QRectF frame;
    QPointF centre;
    double angle = 0;  // radians, clockwise on the screen
    double ascent = 0, rowHeight = 0, capHeight = 0;

    // An upright point turned into place (drawing units).
    TMyPoint place(QPointF p) const {
        const double dx = p.x() - centre.x(), dy = p.y() - centre.y();
        const double c = std::cos(angle), s = std::sin(angle);
        return {float(centre.x() + dx * c - dy * s), float(centre.y() + dx * s + dy * c)};
    }
};

TextPlacement placeText(const TMyText* shape) {
    const TMyText::TRowLayout layout = shape->RowLayout();
    TextPlacement t;
    t.angle = shape->Angle();
    t.centre = layout.centre;
    t.frame = layout.frame;
    const QFontMetricsF metrics(layout.font);
    t.ascent = metrics.ascent();
    t.rowHeight = metrics.height();
    t.capHeight = metrics.capHeight() > 0 ? metrics.capHeight() : 0.7 * shape->FontRef().Size();
    for (const TMyText::TRowLayout::Row& row : layout.rows) {
        t.rows << row.text;
        t.baselineStarts.push_back(row.baseline);
        t.widths.push_back(row.width);
    }
    return t;
}

// MTEXT's own characters escaped, then the code page's.
QString mtextEscaped(const QString& row) {
    QString s = row;
    s.replace(u'\\', QLatin1String("\\\\")).replace(u'{', QLatin1String("\\{")).replace(u'}', QLatin1String("\\}"));
    return codePageText(s);
}

}  // namespace

void Exporter::text(TMyText* shape) {
    if (shape->GetPointsCount() < 4) return;
    const TextPlacement t = placeText(shape);
    if (t.rows.isEmpty() || (t.rows.size() == 1 && t.rows.front().isEmpty())) return;
    const Look look = textLook(shape);
    const QString style = m_styleOfFace.at(shape->FontRef().Name());
    const double height = t.capHeight / kPixelsPerMm;
    const double rotation = -t.angle * 180 / std::numbers::pi;
    Writer& w = m_entities;
    const int align = shape->HAlignment() == jhCenter ? 1 : shape->HAlignment() == jhRight ? 2 : 0;
    const QString single = t.rows.size() == 1 ? codePageText(t.rows.front()) : QString();
    if (t.rows.size() == 1 && single.size() <= 250) {
        const QPointF start = t.baselineStarts.front();
        const Vec insert = m_tf.point(t.place(start));
        const Vec alignAt = m_tf.point(t.place(start + QPointF(t.widths.front() * align / 2.0, 0)));
        entityHead("TEXT", look, "AcDbText");
        w.point(10, insert);
        w.number(40, height);
        w.group(1, single);
        w.number(50, rotation);
        w.group(7, style);
        if (align != 0) {
            w.integer(72, align);
            w.point(11, alignAt);
        }
        w.group(100, "AcDbText");
        w.integer(73, 0);
        grow(insert);
        grow(m_tf.point(t.place(start + QPointF(t.widths.front(), -t.capHeight))));
        return;
    }
    // Several rows: one MTEXT whose top row is where the first row is drawn.
    const QPointF first = t.baselineStarts.front();
    // Left-aligned rows start, and right-aligned rows end, at one x.
    double x = first.x();
    if (align == 1) x = t.frame.center().x();
    if (align == 2) x = first.x() + t.widths.front();
    const Vec insert = m_tf.point(t.place({x, first.y() - t.capHeight}));
    entityHead("MTEXT", look, "AcDbMText");
    w.point(10, insert);
    w.number(40, height);
    w.number(41, 0);
    w.integer(71, 1 + align);
    w.integer(72, 1);
    QStringList pieces;
    for (const QString& row : t.rows) pieces << mtextEscaped(row);
    const QString all = pieces.join(QLatin1String("\\P"));
    // Pieces of 250 characters in group 3, the rest in group 1; an escape
    // is never cut.
    int from = 0;
    while (all.size() - from > 250) {
        int cut = from + 250;
        const int esc = all.lastIndexOf(u'\\', cut - 1);
        if (esc >= from && cut - esc < 7) cut = esc;
        if (cut == from) cut = from + 250;
        w.group(3, all.mid(from, cut - from));
        from = cut;
    }
    w.group(1, all.mid(from));
    w.group(7, style);
    const double c = std::cos(t.angle), s = std::sin(t.angle);
    w.point(11, m_tf.vector(float(c), float(s)) * kPixelsPerMm);
    w.integer(73, 2);  // exact line spacing
    w.number(44, std::clamp(t.rowHeight / (t.capHeight * 5 / 3), 0.25, 4.0));
    for (int i = 0; i < t.rows.size(); ++i) {
        const QPointF b = t.baselineStarts[size_t(i)];
        grow(m_tf.point(t.place(b)));
        grow(m_tf.point(t.place(b + QPointF(t.widths[size_t(i)], -t.capHeight))));
    }
}

void Exporter::glyphs(TMyText* shape) {
    TArrPoint points;
    std::vector<uint8_t> types;
    shape->GetPathPoints(nullptr, points, types);
    const Look look = textLook(shape);
    // The path is in pixels at the canvas's zoom.
    const double zoom = m_canvas.Zoom() > 0 ? m_canvas.Zoom() : 1;
    auto at = [&](size_t i) { return m_tf.point(points[i].x / zoom, points[i].y / zoom); };
    std::vector<Vec> figure;
    auto flush = [&] {
        if (figure.size() >= 3) polyline(look, figure, true);
        figure.clear();
    };
    for (size_t i = 0; i < points.size(); ++i) {
        const uint8_t type = types[i] & ~1u;
        if (type == 6) {
            flush();
            figure.push_back(at(i));
        } else if (type == 4 && i + 2 < points.size() && !figure.empty()) {
            // A cubic Bézier from the last point through two handles: eight chords.
            const Vec p0 = figure.back(), c1 = at(i), c2 = at(i + 1), p3 = at(i + 2);
            for (int k = 1; k <= 8; ++k) {
                const double u = k / 8.0, m = 1 - u;
                figure.push_back(p0 * (m * m * m) + c1 * (3 * m * m * u) + c2 * (3 * m * u * u) + p3 * (u * u * u));
            }
            i += 2;
        } else {
            figure.push_back(at(i));
        }
    }
    flush();
}

void Exporter::writeShape(TMyShape* shape) {
    const TArrMyPoint& pts = std::as_const(*shape).Points();
    const Look look = lookOf(shape, shape->Pen()->Color());
    auto mm = [&](size_t i) { return m_tf.point(pts[i]); };
    switch (shape->kind()) {
    case TShapeKind::Line:
    case TShapeKind::RuleLine:
    case TShapeKind::LinkLine:
        for (size_t i = 0; i + 1 < pts.size(); ++i) line(look, mm(i), mm(i + 1));
        break;
    case TShapeKind::PolyLine:
    case TShapeKind::FreeLine:
    case TShapeKind::Rectangle:
    case TShapeKind::Polygon: {
        const bool closed = shape->kind() == TShapeKind::Rectangle || shape->kind() == TShapeKind::Polygon;
        std::vector<Vec> v;
        for (size_t i = 0; i < pts.size(); ++i) v.push_back(mm(i));
        // A finished polygon repeats its first point at the end.
        if (closed && v.size() > 2 && pts.front().x == pts.back().x && pts.front().y == pts.back().y) v.pop_back();
        polyline(look, v, closed);
        break;
    }
    case TShapeKind::Ellipse:
        if (pts.size() >= 4) {
            // The frame's centre and its two half sides, conjugate half diameters.
            const TMyPoint c{(pts[0].x + pts[2].x) / 2, (pts[0].y + pts[2].y) / 2};
            ellipse(look, m_tf.point(c), m_tf.vector(pts[0], pts[1]) * 0.5, m_tf.vector(pts[0], pts[3]) * 0.5, 0,
                    kTwoPi);
        }
        break;
    case TShapeKind::ElliArc:
        elliArc(static_cast<TMyElliArc*>(shape), look);
        break;
    case TShapeKind::PolyBezier:
        bezierChain(look, static_cast<TMyPolyBezier*>(shape)->BezierChain());
        break;
    case TShapeKind::BLine:
        bline(look, pts);
        break;
    case TShapeKind::Text: {
        auto* textShape = static_cast<TMyText*>(shape);
        // The frame when the text box shows its border.
        if (textShape->IsBorder() && pts.size() >= 4) polyline(look, {mm(0), mm(1), mm(2), mm(3)}, true);
        if (m_glyphs) glyphs(textShape);
        else text(textShape);
        break;
    }
    case TShapeKind::LineLinkLine:
        if (pts.size() >= 4) {
            const auto* junction = static_cast<TMyLineLinkLine*>(shape);
            const TMyPoint c{(pts[0].x + pts[2].x) / 2, (pts[0].y + pts[2].y) / 2};
            const double r = junction->Radius() / kPixelsPerMm;
            circle(look, m_tf.point(c), r);
            circle(look, m_tf.point(c), r / 2);
        }
        break;
    default:  // groups and combines (their members stand on their own), images, link points
        break;
    }
}

QStringList Exporter::run() {
    // Fixed handles first, in one order, so that every reference is known.
    for (int* h : {&m_h.vportTable, &m_h.ltypeTable, &m_h.layerTable, &m_h.styleTable, &m_h.viewTable, &m_h.ucsTable,
                   &m_h.appidTable, &m_h.dimstyleTable, &m_h.blockRecordTable, &m_h.modelRecord, &m_h.paperRecord,
                   &m_h.modelBlock, &m_h.modelEnd, &m_h.paperBlock, &m_h.paperEnd, &m_h.rootDict, &m_h.groupDict,
                   &m_h.layoutDict, &m_h.mlineDict, &m_h.plotSettingsDict, &m_h.plotStyleDict, &m_h.placeholder,
                   &m_h.modelLayout, &m_h.paperLayout, &m_h.mlineStandard})
        *h = take();
    collectLayers();
    collectTextStyles();

    for (TMyShape* shape : m_canvas.MyShapes())
        if (shape) writeShape(shape);

    Writer tables, blocks, objects, header;
    writeTables(tables);
    writeBlocks(blocks);
    writeObjects(objects);
    writeHeader(header);  // last: $HANDSEED is the next free handle

    QStringList out = header.lines;
    out << QStringLiteral("0") << QStringLiteral("SECTION") << QStringLiteral("2") << QStringLiteral("CLASSES")
        << QStringLiteral("0") << QStringLiteral("ENDSEC");
    out << tables.lines << blocks.lines;
    out << QStringLiteral("0") << QStringLiteral("SECTION") << QStringLiteral("2") << QStringLiteral("ENTITIES");
    out << m_entities.lines;
    out << QStringLiteral("0") << QStringLiteral("ENDSEC");
    out << objects.lines;
    out << QStringLiteral("0") << QStringLiteral("EOF");
    return out;
}

}  // namespace

QStringList InterchangeDxfLines(TMyCAD& canvas, bool glyphOutlines) {
    return Exporter(canvas, glyphOutlines).run();
}

}  // namespace faroven
