#include "platform/wmf_objects.h"

#include "platform/ansi.h"

#include <QGradient>
#include <algorithm>
#include <cmath>

namespace faroven::wmf {

namespace {

enum : int { PS_SOLID, PS_DASH, PS_DOT, PS_DASHDOT, PS_DASHDOTDOT, PS_NULL };
enum : int { PS_ENDCAP_SQUARE = 0x0100, PS_ENDCAP_FLAT = 0x0200, PS_JOIN_BEVEL = 0x1000, PS_JOIN_MITER = 0x2000 };
enum : int { BS_SOLID = 0, BS_NULL = 1, BS_HATCHED = 2, BS_DIBPATTERN = 5 };
enum : int { HS_HORIZONTAL, HS_VERTICAL, HS_FDIAGONAL, HS_BDIAGONAL, HS_CROSS, HS_DIAGCROSS };
enum : int { FF_ROMAN = 0x10, FF_SWISS = 0x20, FF_MODERN = 0x30, FF_SCRIPT = 0x40, FF_DECORATIVE = 0x50 };
enum : int { FIXED_PITCH = 1, VARIABLE_PITCH = 2 };

int PenStyle(const QPen& pen) {
    int style = PS_SOLID;
    switch (pen.style()) {
    case Qt::NoPen: return PS_NULL;
    case Qt::DashLine: case Qt::CustomDashLine: style = PS_DASH; break;
    case Qt::DotLine: style = PS_DOT; break;
    case Qt::DashDotLine: style = PS_DASHDOT; break;
    case Qt::DashDotDotLine: style = PS_DASHDOTDOT; break;
    default: break;
    }
    if (pen.capStyle() == Qt::SquareCap) style |= PS_ENDCAP_SQUARE;
    else if (pen.capStyle() == Qt::FlatCap) style |= PS_ENDCAP_FLAT;
    if (pen.joinStyle() == Qt::BevelJoin) style |= PS_JOIN_BEVEL;
    else if (pen.joinStyle() == Qt::MiterJoin || pen.joinStyle() == Qt::SvgMiterJoin) style |= PS_JOIN_MITER;
    return style;
}

int HatchOf(Qt::BrushStyle style) {
    switch (style) {
    case Qt::HorPattern: return HS_HORIZONTAL;
    case Qt::VerPattern: return HS_VERTICAL;
    case Qt::CrossPattern: return HS_CROSS;
    case Qt::BDiagPattern: return HS_BDIAGONAL;  // "/" in both
    case Qt::FDiagPattern: return HS_FDIAGONAL;  // "\" in both
    case Qt::DiagCrossPattern: return HS_DIAGCROSS;
    default: return -1;
    }
}

QColor MainColor(const QBrush& brush) {
    const QGradient* gradient = brush.gradient();
    if (gradient && !gradient->stops().isEmpty()) return gradient->stops().first().second;
    return brush.color();
}

int PitchAndFamily(const QFont& font) {
    int family = 0;
    switch (font.styleHint()) {
    case QFont::Serif: family = FF_ROMAN; break;
    case QFont::SansSerif: family = FF_SWISS; break;
    case QFont::TypeWriter: case QFont::Monospace: family = FF_MODERN; break;
    case QFont::Cursive: family = FF_SCRIPT; break;
    case QFont::Decorative: case QFont::Fantasy: family = FF_DECORATIVE; break;
    default: break;
    }
    return family | (font.fixedPitch() ? FIXED_PITCH : VARIABLE_PITCH);
}

// The 4-bit truth table of a raster operation over source 1100 and
// destination 1010; copying the source is 1100.
int TruthTable(QPainter::CompositionMode mode) {
    switch (mode) {
    case QPainter::RasterOp_SourceOrDestination: return 0b1110;
    case QPainter::RasterOp_SourceAndDestination: return 0b1000;
    case QPainter::RasterOp_SourceXorDestination: return 0b0110;
    case QPainter::RasterOp_NotSourceAndNotDestination: return 0b0001;
    case QPainter::RasterOp_NotSourceOrNotDestination: return 0b0111;
    case QPainter::RasterOp_NotSourceXorDestination: return 0b1001;
    case QPainter::RasterOp_NotSource: return 0b0011;
    case QPainter::RasterOp_NotSourceAndDestination: return 0b0010;
    case QPainter::RasterOp_SourceAndNotDestination: return 0b0100;
    case QPainter::RasterOp_NotSourceOrDestination: return 0b1011;
    case QPainter::RasterOp_SourceOrNotDestination: return 0b1101;
    case QPainter::RasterOp_ClearDestination: return 0b0000;
    case QPainter::RasterOp_SetDestination: return 0b1111;
    case QPainter::RasterOp_NotDestination: return 0b0101;
    default: return 0b1100;
    }
}

}  // namespace

uint32_t ColorRefOf(const QColor& color) {
    const QColor c = color.toRgb();
    const int a = c.alpha();
    const auto over = [a](int v) { return (v * a + 255 * (255 - a) + 127) / 255; };
    return ColorRef(over(c.red()), over(c.green()), over(c.blue()));
}

qreal PenWidthOnDevice(const QPen& pen, const QTransform& transform) {
    if (pen.isCosmetic()) return pen.widthF();
    return pen.widthF() * std::sqrt(std::abs(transform.determinant()));
}

TGdiObject PenObject(const QPen& pen, const QTransform& transform) {
    const bool none = pen.style() == Qt::NoPen;
    const qreal width = none ? 0 : PenWidthOnDevice(pen, transform);
    const int rounded = width <= 0 ? 0 : std::clamp(int(std::lround(std::min(width, 32767.0))), 1, 32767);
    TWmfParams params;
    params.Words({PenStyle(pen), rounded, 0}).DWord(none ? 0 : ColorRefOf(pen.color()));
    return {META_CREATEPENINDIRECT, params.Bytes()};
}

TGdiObject BrushObject(const QBrush& brush) {
    TWmfParams params;
    if (brush.style() == Qt::NoBrush) {
        params.Word(BS_NULL).DWord(0).Word(0);
    } else if (brush.style() == Qt::TexturePattern && !brush.textureImage().isNull()) {
        params.Words({BS_DIBPATTERN, 0}).Padded(Dib24(brush.textureImage()));
        return {META_DIBCREATEPATTERNBRUSH, params.Bytes()};
    } else if (const int hatch = HatchOf(brush.style()); hatch >= 0) {
        params.Word(BS_HATCHED).DWord(ColorRefOf(brush.color())).Word(hatch);
    } else {
        params.Word(BS_SOLID).DWord(ColorRefOf(MainColor(brush))).Word(0);
    }
    return {META_CREATEBRUSHINDIRECT, params.Bytes()};
}

TGdiObject FontObject(const QFont& font, int emHeight, int escapement) {
    TWmfParams params;
    params.Words({-emHeight, 0, escapement, escapement, font.weight()});
    // Underline and strike-out stay off: QPainter draws those lines itself
    // after the text, so the metafile gets them as lines already.
    params.Byte(font.italic()).Byte(0).Byte(0).Byte(0 /* ANSI_CHARSET */);
    params.Byte(0).Byte(0).Byte(0).Byte(PitchAndFamily(font));
    QByteArray face = ToAnsi(font.family()).left(31);
    face.append(QByteArray(32 - face.size(), '\0'));
    params.Padded(face);
    return {META_CREATEFONTINDIRECT, params.Bytes()};
}

int Rop2For(QPainter::CompositionMode mode) { return TruthTable(mode) + 1; }

uint32_t Rop3For(QPainter::CompositionMode mode) {
    // The low word of each operation, as players expect it next to the index.
    static constexpr uint16_t kLowWord[16] = {0x0042, 0x00A6, 0x0326, 0x0008, 0x0328, 0x0009, 0x0046, 0x00E6,
                                              0x00C6, 0x0066, 0x0029, 0x0226, 0x0020, 0x0228, 0x0086, 0x0062};
    const int table = TruthTable(mode);
    return uint32_t(table * 0x11) << 16 | kLowWord[table];
}

}  // namespace faroven::wmf
