// TPen, TBrush and TFont: the drawing attributes of a canvas and of every shape.
// Their enumeration ordinals are the framework's because they are stored in files.
#pragma once

#include "platform/color.h"
#include "platform/types.h"

#include <QFont>
#include <QObject>
#include <QString>

namespace faroven {
// Enumerations registered with Qt's meta-object system live in inline
// namespaces, one per header, because Qt allows one Q_NAMESPACE per namespace.
inline namespace graphics_enums {
Q_NAMESPACE

enum TPenStyle : uint8_t { psSolid, psDash, psDot, psDashDot, psDashDotDot, psClear, psInsideFrame };
Q_ENUM_NS(TPenStyle)
enum TPenMode : uint8_t {
    pmBlack, pmWhite, pmNop, pmNot, pmCopy, pmNotCopy, pmMergePenNot, pmMaskPenNot,
    pmMergeNotPen, pmMaskNotPen, pmMerge, pmNotMerge, pmMask, pmNotMask, pmXor, pmNotXor
};
Q_ENUM_NS(TPenMode)
enum TBrushStyle : uint8_t { bsSolid, bsClear, bsHorizontal, bsVertical, bsFDiagonal, bsBDiagonal, bsCross, bsDiagCross };
Q_ENUM_NS(TBrushStyle)
enum TFontPitch : uint8_t { fpDefault, fpVariable, fpFixed };
Q_ENUM_NS(TFontPitch)
enum TFontStyle : uint8_t { fsBold, fsItalic, fsUnderline, fsStrikeOut };
Q_ENUM_NS(TFontStyle)
}  // namespace graphics_enums

static_assert(pmCopy == 4 && pmXor == 14 && pmNotXor == 15);
static_assert(psClear == 5 && psInsideFrame == 6 && bsClear == 1 && bsDiagCross == 7);

// A set of font styles as the framework stores it: bit n is set for style n.
class TFontStyles {
public:
    TFontStyles() = default;
    TFontStyles(std::initializer_list<TFontStyle> styles) { for (auto s : styles) Include(s); }
    static TFontStyles FromBits(uint8_t bits) { TFontStyles s; s.m_bits = bits & 0x0F; return s; }
    bool Contains(TFontStyle s) const { return m_bits & (1u << s); }
    void Include(TFontStyle s) { m_bits |= uint8_t(1u << s); }
    void Exclude(TFontStyle s) { m_bits &= uint8_t(~(1u << s)); }
    uint8_t Bits() const { return m_bits; }
    friend bool operator==(const TFontStyles&, const TFontStyles&) = default;
private:
    uint8_t m_bits = 0;
};

using TFontCharset = uint8_t;
constexpr TFontCharset ANSI_CHARSET = 0;
constexpr TFontCharset DEFAULT_CHARSET = 1;

// Common base: a persistent attribute object that raises OnChange when it changes.
class TGraphicsObject : public TPersistent {
public:
    TNotifyEvent OnChange;
protected:
    void Changed() { if (OnChange) OnChange(this); }
};

class TPen : public TGraphicsObject {
public:
    TColor Color() const { return m_color; }
    void SetColor(TColor v) { if (v != m_color) { m_color = v; Changed(); } }
    int Width() const { return m_width; }
    void SetWidth(int v) { if (v >= 0 && v != m_width) { m_width = v; Changed(); } }
    TPenStyle Style() const { return m_style; }
    void SetStyle(TPenStyle v) { if (v != m_style) { m_style = v; Changed(); } }
    TPenMode Mode() const { return m_mode; }
    void SetMode(TPenMode v) { if (v != m_mode) { m_mode = v; Changed(); } }
    void Assign(const TPersistent* source) override;
    void Assign(const TPen& source) { Assign(&source); }
private:
    TColor m_color = clBlack;
    int m_width = 1;
    TPenStyle m_style = psSolid;
    TPenMode m_mode = pmCopy;
};

class TBrush : public TGraphicsObject {
public:
    TColor Color() const { return m_color; }
    void SetColor(TColor v);
    TBrushStyle Style() const { return m_style; }
    void SetStyle(TBrushStyle v) { if (v != m_style) { m_style = v; Changed(); } }
    void Assign(const TPersistent* source) override;
    void Assign(const TBrush& source) { Assign(&source); }
private:
    TColor m_color = clWhite;
    TBrushStyle m_style = bsSolid;
};

// Font: Size is in points; Height is the framework's negative character height in
// pixels at the screen's resolution (-Size * ppi / 72).
class TFont : public TGraphicsObject {
public:
    QString Name() const { return m_name; }
    void SetName(const QString& v) { if (v != m_name) { m_name = v; Changed(); } }
    int Size() const { return m_size; }
    void SetSize(int v) { if (v != m_size) { m_size = v; Changed(); } }
    int Height() const;
    void SetHeight(int v);
    TColor Color() const { return m_color; }
    void SetColor(TColor v) { if (v != m_color) { m_color = v; Changed(); } }
    TFontStyles Style() const { return m_style; }
    void SetStyle(TFontStyles v) { if (!(v == m_style)) { m_style = v; Changed(); } }
    TFontCharset Charset() const { return m_charset; }
    void SetCharset(TFontCharset v) { if (v != m_charset) { m_charset = v; Changed(); } }
    TFontPitch Pitch() const { return m_pitch; }
    void SetPitch(TFontPitch v) { if (v != m_pitch) { m_pitch = v; Changed(); } }
    void Assign(const TPersistent* source) override;
    void Assign(const TFont& source) { Assign(&source); }
    // A QFont with this face, style and pitch at the given pixel height.
    QFont ToQFont(int pixelHeight) const;
    // A QFont at the font's own size on the screen.
    QFont ToQFont() const;
private:
    QString m_name = QStringLiteral("MS Sans Serif");
    int m_size = 8;
    TColor m_color = clWindowText;
    TFontStyles m_style;
    TFontCharset m_charset = DEFAULT_CHARSET;
    TFontPitch m_pitch = fpDefault;
};

}  // namespace faroven
