// Ruler controls to place beside a drawing canvas: TRsRuler, a horizontal or
// vertical scale with ticks, labels in a chosen unit and a hairline that marks
// the mouse position; TRsRulerCorner, the square where two rulers meet, showing
// the unit's abbreviation; and their common base TRsBaseRuler.
//
// The rulers do not talk to the canvas. The host sets Scale (zoom in percent),
// Offset (the unit value at the ruler's origin, from the scroll position),
// Units and HairLinePos (from mouse moves), and converts ruler positions back
// with Pos2Unit. Positions are pixels along the ruler, counted from its left
// (horizontal) or top (vertical) edge.
#pragma once

#include "platform/canvas.h"
#include "platform/control.h"
#include "platform/graphics.h"

#include <QObject>
#include <QPointer>
#include <memory>

namespace faroven {
// Enumerations registered with Qt's meta-object system live in inline
// namespaces, one per header, because Qt allows one Q_NAMESPACE per namespace.
inline namespace ruler_enums {
Q_NAMESPACE

enum TRulerDir : uint8_t { rdTop, rdLeft, rdRight, rdBottom };
Q_ENUM_NS(TRulerDir)
enum TRulerScaleDir : uint8_t { rsdNormal, rsdReverse };
Q_ENUM_NS(TRulerScaleDir)
enum TRulerUnit : uint8_t { ruKilo, ruMeter, ruCenti, ruMilli, ruInch, ruPixel, ruNone };
Q_ENUM_NS(TRulerUnit)
enum TCornerPos : uint8_t { cpLeftTop, cpRightTop, cpLeftBottom, cpRightBottom };
Q_ENUM_NS(TCornerPos)
enum THairLineStyle : uint8_t { hlsLine, hlsRect };
Q_ENUM_NS(THairLineStyle)
// How a control sticks to its parent: alNone keeps its bounds; the others place
// it along that edge of the parent at the parent's full width or height, or
// fill the parent (alClient), and follow the parent's resizing.
enum TAlign : uint8_t { alNone, alTop, alBottom, alLeft, alRight, alClient, alCustom };
Q_ENUM_NS(TAlign)
}  // namespace ruler_enums

static_assert(rdTop == 0 && rdLeft == 1 && rdRight == 2 && rdBottom == 3);
static_assert(rsdNormal == 0 && rsdReverse == 1);
static_assert(ruKilo == 0 && ruMeter == 1 && ruCenti == 2 && ruMilli == 3 && ruInch == 4 && ruPixel == 5 &&
              ruNone == 6);
static_assert(cpLeftTop == 0 && cpRightTop == 1 && cpLeftBottom == 2 && cpRightBottom == 3);
static_assert(hlsLine == 0 && hlsRect == 1);
static_assert(alNone == 0 && alClient == 5 && alCustom == 6);

// ---- TRsBaseRuler ------------------------------------------------------------

// Colours, unit, border style and the three label fonts shared by the ruler and
// its corner. Paint fills the control with Color and builds the fonts when they
// need it; descendants paint the rest on top.
class TRsBaseRuler : public TGraphicControl {
    Q_OBJECT
    Q_PROPERTY(faroven::TRulerUnit Units READ Units WRITE SetUnit)
    Q_PROPERTY(bool Flat READ Flat WRITE SetFlat)
    Q_PROPERTY(int ScaleColor READ ScaleColor WRITE SetScaleColor)
    Q_PROPERTY(int TickColor READ TickColor WRITE SetTickColor)
    Q_PROPERTY(QString VersionInfo READ VersionInfo WRITE SetVersionInfo)
    Q_PROPERTY(faroven::TAlign Align READ Align WRITE SetAlign)
    Q_PROPERTY(int Color READ Color WRITE SetColor)
    Q_PROPERTY(bool ParentFont READ ParentFont WRITE SetParentFont)
    Q_PROPERTY(int Width READ Width WRITE SetWidth)
    Q_PROPERTY(int Height READ Height WRITE SetHeight)
    Q_PROPERTY(bool Visible READ Visible WRITE SetVisible)
    Q_PROPERTY(QString Hint READ Hint WRITE SetHint)
    Q_PROPERTY(bool ShowHint READ ShowHint WRITE SetShowHint)

public:
    explicit TRsBaseRuler(QWidget* parent = nullptr);
    ~TRsBaseRuler() override;
    // uic sets a property a form gives a value as set<Property>(value): these
    // forward to the setters, so forms made in Qt Designer compile.
    void setFlat(bool v) { SetFlat(v); }
    void setScaleColor(int v) { SetScaleColor(v); }
    void setTickColor(int v) { SetTickColor(v); }
    void setVersionInfo(const QString& v) { SetVersionInfo(v); }
    void setColor(int v) { SetColor(v); }
    void setParentFont(bool v) { SetParentFont(v); }
    void setWidth(int v) { SetWidth(v); }
    void setHeight(int v) { SetHeight(v); }
    void setHint(const QString& v) { SetHint(v); }
    void setShowHint(bool v) { SetShowHint(v); }

    // ---- Published properties. Setters store and repaint only on a change. ----
    bool Flat() const { return m_flat; }
    void SetFlat(bool v);
    TColor ScaleColor() const { return m_scaleColor; }
    void SetScaleColor(TColor v);
    TColor TickColor() const { return m_tickColor; }
    void SetTickColor(TColor v);
    TRulerUnit Units() const { return m_units; }
    virtual void SetUnit(TRulerUnit v);
    QString VersionInfo() const { return m_versionInfo; }
    void SetVersionInfo(const QString& v);
    TAlign Align() const { return m_align; }
    void SetAlign(TAlign v);
    // Background of the control, seen around the scale band.
    TColor Color() const { return m_color; }
    void SetColor(TColor v);
    // The labels' font. Setting it (or changing it through Font()) clears ParentFont.
    TFont* Font() { return &m_font; }
    void SetFont(const TFont& v) { m_font.Assign(v); }
    // While true, the font follows the parent widget's font.
    bool ParentFont() const { return m_parentFont; }
    void SetParentFont(bool v);

    TNotifyEvent OnResize;

    // ---- Label fonts ---------------------------------------------------------
    // Builds the three logical fonts from Font: upright (escapement 0), turned
    // 90 degrees (900) and turned 270 degrees (2700); each has Font's face, a
    // height of -Font.Height, weight 700 when bold else 0, italic when italic.
    void ChangeFonts();
    // Frees the three fonts; they are rebuilt at the next paint.
    void DeleteFonts();
    // The fonts; null before the first build and after DeleteFonts.
    const TLogFont* FontHandle0() const { return m_font0.get(); }
    const TLogFont* FontHandle90() const { return m_font90.get(); }
    const TLogFont* FontHandle270() const { return m_font270.get(); }
    // True at creation and after a font change until the fonts are rebuilt.
    bool FontsNeedRebuild() const { return m_fontsDirty; }

    // Recomputes what depends on several properties once they are all set, as
    // after loading the control from a form description. The base does nothing.
    virtual void Loaded() {}

protected:
    // Fills the client rectangle with Color; rebuilds the fonts when needed.
    void Paint() override;
    // Draws the border: a raised frame, or a flat one-pixel frame when Flat.
    void paintBorder(TCanvas* canvas, const TRect& r);
    // Puts a label font on the canvas, in TickColor, with a clear background.
    void selectLabelFont(TCanvas* canvas, const TLogFont* font);
    // Stores a value and repaints when it differs.
    template <class T>
    void setAndRepaint(T& field, const T& value) {
        if (field == value) return;
        field = value;
        Invalidate();
    }

    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void fontChanged();
    void adoptParentFont();
    void watchParent();
    void applyAlign();

    bool m_flat = false;
    TColor m_scaleColor = clWindow;
    TColor m_tickColor = clWindowText;
    TRulerUnit m_units = ruCenti;
    QString m_versionInfo = QStringLiteral("rule component ");
    std::unique_ptr<TLogFont> m_font90;
    std::unique_ptr<TLogFont> m_font270;
    std::unique_ptr<TLogFont> m_font0;
    bool m_fontsDirty = true;

    TColor m_color = clBtnFace;
    TFont m_font;
    bool m_parentFont = true;
    bool m_adoptingFont = false;
    TAlign m_align = alNone;
    QPointer<QWidget> m_watchedParent;
};

// ---- TRsRuler ----------------------------------------------------------------

// A scale along the control. Ticks are two label steps apart (a long one every
// MyLongTick ticks, a short one every MyShortTick), and every long tick except
// the origin's carries a label. Horizontal rulers (rdTop, rdBottom) measure
// along their width with the scale edge at the bottom or top; vertical ones
// (rdLeft, rdRight) along their height with the scale edge at the right or
// left, and write their labels turned by 90 or 270 degrees.
class TRsRuler : public TRsBaseRuler {
    Q_OBJECT
    Q_PROPERTY(int MyShortTick READ MyShortTick WRITE setMyShortTick)
    Q_PROPERTY(int MyLongTick READ MyLongTick WRITE setMyLongTick)
    Q_PROPERTY(faroven::TRulerDir Direction READ Direction WRITE SetDirection)
    Q_PROPERTY(faroven::TRulerScaleDir ScaleDir READ ScaleDir WRITE SetScaleDir)
    Q_PROPERTY(int Scale READ Scale WRITE SetScale)
    Q_PROPERTY(bool HairLine READ HairLine WRITE SetHairLine)
    Q_PROPERTY(int HairLinePos READ HairLinePos WRITE SetHairLinePos)
    Q_PROPERTY(faroven::THairLineStyle HairLineStyle READ HairLineStyle WRITE SetHairLineStyle)
    Q_PROPERTY(double Offset READ Offset WRITE SetOffset)
    Q_PROPERTY(bool ShowMinus READ ShowMinus WRITE SetShowMinus)

public:
    // uic sets a property a form gives a value as set<Property>(value): these
    // forward to the setters, so forms made in Qt Designer compile.
    void setScale(int v) { SetScale(v); }
    void setHairLine(bool v) { SetHairLine(v); }
    void setHairLinePos(int v) { SetHairLinePos(v); }
    void setOffset(double v) { SetOffset(v); }
    void setShowMinus(bool v) { SetShowMinus(v); }
    // 200 x 33 pixels, rdTop, 100 %, centimetres, advance computed for the screen.
    explicit TRsRuler(QWidget* parent = nullptr);
    ~TRsRuler() override;

    // ---- Published properties. Setters store and repaint only on a change. ----
    TRulerDir Direction() const { return m_direction; }
    // Swaps width and height when the ruler turns between horizontal and vertical.
    void SetDirection(TRulerDir v);
    TRulerScaleDir ScaleDir() const { return m_scaleDir; }
    void SetScaleDir(TRulerScaleDir v);
    // Zoom in percent; recomputes the advance. Raises EInvalidOperation below 1.
    int Scale() const { return m_scale; }
    void SetScale(int v);
    // Recomputes the advance as well.
    void SetUnit(TRulerUnit v) override;
    bool HairLine() const { return m_hairLine; }
    void SetHairLine(bool v);
    // The hairline's pixel position along the ruler; -1 for none. A change erases
    // the hairline at the old position and draws it at the new one.
    int HairLinePos() const { return m_hairLinePos; }
    void SetHairLinePos(int v);
    THairLineStyle HairLineStyle() const { return m_hairLineStyle; }
    void SetHairLineStyle(THairLineStyle v);
    // The unit value at the scale's origin.
    double Offset() const { return m_offset; }
    void SetOffset(double v);
    // When false, labels show absolute values.
    bool ShowMinus() const { return m_showMinus; }
    void SetShowMinus(bool v);
    // Every this many ticks a long tick and a label; 0 or less: none.
    int MyLongTick() const { return m_myLongTick; }
    void setMyLongTick(int v);
    // Every this many ticks a short tick; 0 or less: none.
    int MyShortTick() const { return m_myShortTick; }
    void setMyShortTick(int v);
    void SetMyLongTick(int v) { setMyLongTick(v); }
    void SetMyShortTick(int v) { setMyShortTick(v); }

    // ---- Scale ---------------------------------------------------------------
    // Recomputes the advance (pixels per label step) and the multiplier (unit
    // tenths per label step) from Scale, Units and the screen's pixels per inch.
    void CalcAdvance();
    double Multiplier() const { return m_multiplier; }
    double Advance() const { return m_advance; }
    void Loaded() override;
    // The ruler's length in pixels: width when horizontal, height when vertical.
    int Length() const;
    bool IsHorizontal() const { return m_direction == rdTop || m_direction == rdBottom; }
    // The unit value at a pixel position along the ruler.
    double Pos2Unit(int pos) const;
    // Offset expressed in another unit.
    double ConvertOffset(TRulerUnit newUnit) const;
    // The value and text of the label of label step i (i × advance pixels from
    // the origin), as PaintScaleLabels writes it; empty text for a value that
    // is not a finite number.
    double LabelValue(int step) const;
    QString LabelText(int step) const;

    // ---- Painting ------------------------------------------------------------
    // The parts of Paint, each on the control's canvas (during Paint) or on a
    // given canvas of the control's size.
    void PaintScaleTics();
    void PaintScaleTics(TCanvas* canvas);
    void PaintScaleLabels();
    void PaintScaleLabels(TCanvas* canvas);
    // Inverts the hairline's area, so drawing twice restores the pixels. Does
    // nothing unless HairLine is set and HairLinePos is not -1. Without a canvas:
    // during Paint it draws on the control; otherwise it asks for a repaint of
    // the area, where Paint draws the hairline at its current position.
    void DrawHairLine();
    void DrawHairLine(TCanvas* canvas);
    // The area the hairline covers at its current position and style; empty
    // when there is none.
    TRect HairLineRect() const;
    // The scale band inside the border, filled with ScaleColor.
    TRect BandRect() const;

protected:
    // Background, scale band and border, ticks, labels, then the hairline; then OnPaint.
    void Paint() override;

private:
    TRect hairLineRectAt(int pos) const;

    TRulerDir m_direction = rdTop;
    TRulerScaleDir m_scaleDir = rsdNormal;
    int m_scale = 100;
    double m_multiplier = 1.0;
    double m_advance = 1.0;
    bool m_hairLine = false;
    int m_hairLinePos = -1;
    THairLineStyle m_hairLineStyle = hlsLine;
    double m_offset = 0;
    bool m_showMinus = true;
    int m_myLongTick = 5;
    int m_myShortTick = 1;
    bool m_painting = false;
};

// ---- TRsRulerCorner ----------------------------------------------------------

// The square where a horizontal and a vertical ruler meet. Shows the unit's
// abbreviation ("cm") with the unit's name ("centimeter") as its hint. Position
// says which corner of the canvas it sits at, so that its scale band joins the
// bands of the two rulers beside it.
class TRsRulerCorner : public TRsBaseRuler {
    Q_OBJECT
    Q_PROPERTY(faroven::TCornerPos Position READ Position WRITE SetPosition)

public:
    // 33 x 33 pixels, cpLeftTop, centimetres ("cm", hint "centimeter").
    explicit TRsRulerCorner(QWidget* parent = nullptr);
    ~TRsRulerCorner() override;

    TCornerPos Position() const { return m_position; }
    void SetPosition(TCornerPos v);
    // Sets the abbreviation and the hint per unit (ruNone: no text, hint kept), then repaints.
    void SetUnit(TRulerUnit v) override;
    // The abbreviation shown.
    QString UnitText() const { return m_unitText; }
    // The scale band: inset 3 pixels on the two outer sides, 1 on the sides
    // that face the rulers.
    TRect BandRect() const;

protected:
    void Paint() override;

private:
    TCornerPos m_position = cpLeftTop;
    QString m_unitText;
};

// The abbreviation, the name and the offset factor (units per millimetre) of a
// unit. ruNone has no abbreviation or name and a factor of 1.
QString RulerUnitAbbreviation(TRulerUnit unit);
QString RulerUnitName(TRulerUnit unit);
double RulerUnitFactor(TRulerUnit unit);

}  // namespace faroven
