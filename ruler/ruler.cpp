#include "ruler/ruler.h"

#include "platform/convert.h"

#include "platform/system.h"

#include <QEvent>
#include <QResizeEvent>
#include <cmath>
#include <cstdio>
#include <cstring>

namespace faroven {

namespace {

struct UnitInfo {
    const char* abbreviation;
    const char* name;
    double factorPerMillimetre;  // 0: screen pixels per millimetre
};

// Indexed by TRulerUnit.
constexpr UnitInfo kUnits[] = {
    {"km", "kilometer", 0.000001},
    {"m", "meter", 0.001},
    {"cm", "centimeter", 0.1},
    {"mm", "millimeter", 1},
    {"in", "inch", 1 / 25.4},
    {"px", "pixel", 0},
    {"", "", 1},
};
static_assert(std::size(kUnits) == size_t(ruNone) + 1);

// The label multiplier for a scale, or 0 when the scale keeps the previous one.
double multiplierFor(int scale) {
    if (scale == 1) return 100;
    if (scale == 2) return 50;
    if (scale >= 3 && scale <= 5) return 25;
    if (scale >= 6 && scale <= 8) return 20;
    if (scale >= 9 && scale <= 12) return 10;
    if (scale >= 13 && scale <= 25) return 5;
    if (scale >= 26 && scale <= 35) return 4;
    if (scale >= 36 && scale <= 50) return 2;
    if (scale >= 51 && scale <= 125) return 1;
    if (scale >= 126 && scale <= 300) return 0.5;
    if (scale >= 301 && scale <= 400) return 0.25;
    if (scale >= 401 && scale <= 500) return 0.2;
    if (scale >= 501 && scale <= 1000) return 0.1;
    return 0;
}

// Labels use the process-wide decimal separator, as number formatting does everywhere.
QChar labelDecimalSeparator() { return DecimalSeparator(); }

// The value with the pattern "0.##": at least one integer digit, at most two
// decimals without trailing zeros. Rounding is half away from zero on the
// value's 15 significant decimal digits, so 0.025 shows as "0.03" although
// its binary value lies a little below. No minus sign on a value that shows as 0.
QString formatZeroHashHash(double v) {
    if (!std::isfinite(v)) return QString();
    const bool negative = v < 0;
    const double a = std::abs(v);
    if (a >= 1e15) return QString::number(v, 'f', 0);
    // 15 significant digits: d.dddddddddddddde±x
    char buf[40];
    std::snprintf(buf, sizeof buf, "%.14e", a);
    QByteArray digits;
    int exponent = 0;
    {
        const char* p = buf;
        for (; *p && *p != 'e'; ++p)
            if (*p >= '0' && *p <= '9') digits.append(*p);
        if (*p == 'e') exponent = std::atoi(p + 1);
    }
    // a = 0.D × 10^(exponent + 1); a × 100 has exponent + 3 integer digits.
    const int integerDigits = exponent + 3;
    int64_t hundredths = 0;
    if (integerDigits >= 0) {
        const int kept = std::min<int>(integerDigits, int(digits.size()));
        for (int i = 0; i < kept; ++i) hundredths = hundredths * 10 + (digits[i] - '0');
        for (int i = kept; i < integerDigits; ++i) hundredths *= 10;
        if (integerDigits < digits.size() && digits[integerDigits] >= '5') ++hundredths;
    }
    QString text = QString::number(hundredths / 100);
    const int fraction = int(hundredths % 100);
    if (fraction != 0) {
        text += labelDecimalSeparator();
        text += QChar(u'0' + fraction / 10);
        if (fraction % 10 != 0) text += QChar(u'0' + fraction % 10);
    }
    if (negative && hundredths != 0) text.prepend(QLatin1Char('-'));
    return text;
}

void frame3D(TCanvas* canvas, const TRect& r, TColor topLeft, TColor bottomRight) {
    if (r.Width() <= 0 || r.Height() <= 0) return;
    TPen* pen = canvas->Pen();
    pen->SetWidth(1);
    pen->SetStyle(psSolid);
    pen->SetMode(pmCopy);
    pen->SetColor(topLeft);
    canvas->MoveTo(r.left, r.bottom - 1);
    canvas->LineTo(r.left, r.top);
    canvas->LineTo(r.right, r.top);
    pen->SetColor(bottomRight);
    canvas->MoveTo(r.right - 1, r.top + 1);
    canvas->LineTo(r.right - 1, r.bottom - 1);
    canvas->LineTo(r.left, r.bottom - 1);
}

}  // namespace

QString RulerUnitAbbreviation(TRulerUnit unit) {
    return unit <= ruNone ? QString::fromLatin1(kUnits[unit].abbreviation) : QString();
}

QString RulerUnitName(TRulerUnit unit) {
    return unit <= ruNone ? QString::fromLatin1(kUnits[unit].name) : QString();
}

double RulerUnitFactor(TRulerUnit unit) {
    if (unit == ruPixel) return ScreenPixelsPerInch() / 25.4;
    return unit <= ruNone ? kUnits[unit].factorPerMillimetre : 1.0;
}

// ---- TRsBaseRuler ------------------------------------------------------------

TRsBaseRuler::TRsBaseRuler(QWidget* parent) : TGraphicControl(parent) {
    m_font.OnChange = [this](TObject*) { fontChanged(); };
    watchParent();
    if (m_parentFont) adoptParentFont();
}

TRsBaseRuler::~TRsBaseRuler() {
    m_font.OnChange = nullptr;
    DeleteFonts();
}

void TRsBaseRuler::SetFlat(bool v) { setAndRepaint(m_flat, v); }
void TRsBaseRuler::SetScaleColor(TColor v) { setAndRepaint(m_scaleColor, v); }
void TRsBaseRuler::SetTickColor(TColor v) { setAndRepaint(m_tickColor, v); }
void TRsBaseRuler::SetUnit(TRulerUnit v) { setAndRepaint(m_units, v); }
void TRsBaseRuler::SetVersionInfo(const QString& v) { setAndRepaint(m_versionInfo, v); }
void TRsBaseRuler::SetColor(TColor v) { setAndRepaint(m_color, v); }

void TRsBaseRuler::SetAlign(TAlign v) {
    if (v == m_align) return;
    m_align = v;
    applyAlign();
    Invalidate();
}

void TRsBaseRuler::SetParentFont(bool v) {
    if (v == m_parentFont) return;
    m_parentFont = v;
    if (v) adoptParentFont();
}

void TRsBaseRuler::fontChanged() {
    if (!m_adoptingFont) m_parentFont = false;
    m_fontsDirty = true;
    ChangeFonts();
    Invalidate();
}

void TRsBaseRuler::adoptParentFont() {
    QWidget* parent = parentWidget();
    if (!parent) return;
    const QFont f = parent->font();
    m_adoptingFont = true;
    m_font.SetName(f.family());
    if (f.pointSize() > 0)
        m_font.SetSize(f.pointSize());
    else if (f.pixelSize() > 0)
        m_font.SetHeight(-f.pixelSize());
    TFontStyles style = m_font.Style();
    f.bold() ? style.Include(fsBold) : style.Exclude(fsBold);
    f.italic() ? style.Include(fsItalic) : style.Exclude(fsItalic);
    m_font.SetStyle(style);
    m_adoptingFont = false;
}

void TRsBaseRuler::ChangeFonts() {
    DeleteFonts();
    const auto make = [this](int escapement) {
        auto lf = std::make_unique<TLogFont>();
        lf->lfHeight = -m_font.Height();
        lf->lfEscapement = escapement;
        lf->lfOrientation = escapement;
        lf->lfWeight = m_font.Style().Contains(fsBold) ? 700 : 0;
        lf->lfItalic = m_font.Style().Contains(fsItalic);
        lf->lfCharSet = m_font.Charset();
        lf->lfFaceName = m_font.Name();
        return lf;
    };
    m_font90 = make(900);
    m_font270 = make(2700);
    m_font0 = make(0);
    m_fontsDirty = false;
}

void TRsBaseRuler::DeleteFonts() {
    m_font90.reset();
    m_font270.reset();
    m_font0.reset();
}

void TRsBaseRuler::Paint() {
    TCanvas* canvas = Canvas();
    canvas->Brush()->SetStyle(bsSolid);
    canvas->Brush()->SetColor(m_color);
    canvas->FillRect(ClientRect());
    if (m_fontsDirty || !m_font0) ChangeFonts();
}

void TRsBaseRuler::paintBorder(TCanvas* canvas, const TRect& r) {
    if (m_flat) {
        canvas->Brush()->SetStyle(bsSolid);
        canvas->Brush()->SetColor(clBtnShadow);
        canvas->FrameRect(r);
    } else {
        frame3D(canvas, r, clBtnHighlight, clBtnShadow);
    }
}

void TRsBaseRuler::selectLabelFont(TCanvas* canvas, const TLogFont* font) {
    // The font colour first: changing the canvas font drops a logical font.
    canvas->Font()->SetColor(m_tickColor);
    if (font) canvas->SetLogFont(*font);
    canvas->Brush()->SetStyle(bsClear);
    canvas->SetBkModeTransparent(true);
}

bool TRsBaseRuler::event(QEvent* e) {
    const bool result = TGraphicControl::event(e);
    if (e->type() == QEvent::ParentChange) {
        watchParent();
        if (m_parentFont) adoptParentFont();
        applyAlign();
    }
    return result;
}

bool TRsBaseRuler::eventFilter(QObject* watched, QEvent* e) {
    if (watched == m_watchedParent && e->type() == QEvent::Resize) applyAlign();
    return TGraphicControl::eventFilter(watched, e);
}

void TRsBaseRuler::changeEvent(QEvent* e) {
    // The widget's own font is never set, so a font change is the parent's.
    if (e->type() == QEvent::FontChange && m_parentFont) adoptParentFont();
    TGraphicControl::changeEvent(e);
}

void TRsBaseRuler::resizeEvent(QResizeEvent* e) {
    TGraphicControl::resizeEvent(e);
    if (OnResize) OnResize(this);
}

void TRsBaseRuler::watchParent() {
    if (m_watchedParent == parentWidget()) return;
    if (m_watchedParent) m_watchedParent->removeEventFilter(this);
    m_watchedParent = parentWidget();
    if (m_watchedParent) m_watchedParent->installEventFilter(this);
}

void TRsBaseRuler::applyAlign() {
    QWidget* parent = parentWidget();
    if (!parent) return;
    const int pw = parent->width(), ph = parent->height();
    switch (m_align) {
    case alTop: setGeometry(0, 0, pw, height()); break;
    case alBottom: setGeometry(0, ph - height(), pw, height()); break;
    case alLeft: setGeometry(0, 0, width(), ph); break;
    case alRight: setGeometry(pw - width(), 0, width(), ph); break;
    case alClient: setGeometry(0, 0, pw, ph); break;
    case alNone:
    case alCustom: break;
    }
}

// ---- TRsRuler ----------------------------------------------------------------

TRsRuler::TRsRuler(QWidget* parent) : TRsBaseRuler(parent) {
    resize(200, 33);
    CalcAdvance();
}

TRsRuler::~TRsRuler() = default;

void TRsRuler::SetDirection(TRulerDir v) {
    if (v == m_direction) return;
    const bool wasHorizontal = IsHorizontal();
    m_direction = v;
    if (wasHorizontal != IsHorizontal()) resize(height(), width());
    Invalidate();
}

void TRsRuler::SetScaleDir(TRulerScaleDir v) { setAndRepaint(m_scaleDir, v); }

void TRsRuler::SetScale(int v) {
    if (v < 1)
        throw EInvalidOperation(
            QStringLiteral("TRsRuler %1: Scale must be at least 1 percent, got %2").arg(Name()).arg(v));
    const double oldAdvance = m_advance;
    const bool changed = v != m_scale;
    m_scale = v;
    CalcAdvance();
    if (changed || m_advance != oldAdvance) Invalidate();
}

void TRsRuler::SetUnit(TRulerUnit v) {
    const double oldAdvance = m_advance;
    const bool changed = v != Units();
    TRsBaseRuler::SetUnit(v);
    CalcAdvance();
    if (changed || m_advance != oldAdvance) Invalidate();
}

void TRsRuler::SetHairLine(bool v) { setAndRepaint(m_hairLine, v); }

void TRsRuler::SetHairLinePos(int v) {
    if (v == m_hairLinePos) return;
    DrawHairLine();  // erases at the old position
    m_hairLinePos = v;
    DrawHairLine();
}

void TRsRuler::SetHairLineStyle(THairLineStyle v) { setAndRepaint(m_hairLineStyle, v); }

void TRsRuler::SetOffset(double v) {
    // Compared bitwise so that a NaN offset, once set, does not repaint forever.
    if (std::memcmp(&v, &m_offset, sizeof v) == 0) return;
    m_offset = v;
    Invalidate();
}

void TRsRuler::SetShowMinus(bool v) { setAndRepaint(m_showMinus, v); }
void TRsRuler::setMyLongTick(int v) { setAndRepaint(m_myLongTick, v); }
void TRsRuler::setMyShortTick(int v) { setAndRepaint(m_myShortTick, v); }

void TRsRuler::CalcAdvance() {
    const int ppi = ScreenPixelsPerInch();
    double advance = ppi / 10.0 * m_scale / 100.0;
    if (Units() != ruInch) advance = advance / 2.54;
    if (Units() == ruPixel) advance = double(int64_t(m_scale) * 5) / 100.0;
    if (const double m = multiplierFor(m_scale); m != 0) m_multiplier = m;
    m_advance = advance * m_multiplier;
}

void TRsRuler::Loaded() {
    CalcAdvance();
    Invalidate();
}

int TRsRuler::Length() const { return IsHorizontal() ? width() : height(); }

double TRsRuler::Pos2Unit(int pos) const {
    const double q = m_scaleDir == rsdReverse ? double(Length()) - pos : double(pos);
    const double base = q / m_scale * 100 / ScreenPixelsPerInch();  // inches at 100 %
    switch (Units()) {
    case ruPixel: return std::trunc(q / m_scale * 100) + std::trunc(m_offset);
    case ruInch: return base + m_offset;
    case ruCenti: return base * 2.54 + m_offset;
    case ruMilli: return base * 25.4 + m_offset;
    case ruMeter: {
        // The metre result is taken once more with the kilometre factor on top.
        double r = base * 0.0254 + m_offset;
        r = base * 0.0000254 + r;
        return r;
    }
    case ruKilo:
    case ruNone: break;
    }
    return m_offset;
}

double TRsRuler::ConvertOffset(TRulerUnit newUnit) const {
    return m_offset / RulerUnitFactor(Units()) * RulerUnitFactor(newUnit);
}

double TRsRuler::LabelValue(int step) const {
    double v = step * m_multiplier / 10;
    switch (Units()) {
    case ruKilo: v = v / 100000; break;
    case ruMeter: v = v / 100; break;
    case ruMilli: v = v * 10; break;
    case ruPixel: v = v * 50; break;
    case ruCenti:
    case ruInch:
    case ruNone: break;
    }
    v = v + m_offset;
    if (Units() == ruPixel) v = std::nearbyint(v);
    if (Units() == ruInch) v = std::nearbyint(v * 100) / 100;
    if (!m_showMinus) v = std::abs(v);
    return v;
}

QString TRsRuler::LabelText(int step) const { return formatZeroHashHash(LabelValue(step)); }

void TRsRuler::PaintScaleTics() { PaintScaleTics(Canvas()); }

void TRsRuler::PaintScaleTics(TCanvas* canvas) {
    if (!canvas || !(m_advance > 0) || !std::isfinite(m_advance)) return;
    TPen* pen = canvas->Pen();
    pen->SetColor(TickColor());
    pen->SetWidth(1);
    pen->SetStyle(psSolid);
    pen->SetMode(pmCopy);
    const int length = Length(), w = width(), h = height();
    double d = 0;
    for (int64_t i = 0; d <= length; ++i, d += 2 * m_advance) {
        const int tick = m_myLongTick > 0 && i % m_myLongTick == 0     ? 8
                         : m_myShortTick > 0 && i % m_myShortTick == 0 ? 6
                                                                       : 0;
        if (tick == 0) continue;
        int p = Trunc(d);
        if (m_scaleDir == rsdReverse) p = length - p;
        // From the scale edge inward, the end pixel left out: tick - 1 pixels.
        // Lines into the ruler from its bottom or right edge are drawn from
        // their inner end outward, which covers the same pixels whatever the
        // direction in which the canvas leaves out a line's end.
        switch (m_direction) {
        case rdTop: canvas->MoveTo(p, h - tick + 1); canvas->LineTo(p, h); break;
        case rdBottom: canvas->MoveTo(p, 0); canvas->LineTo(p, tick - 1); break;
        case rdLeft: canvas->MoveTo(w - tick + 1, p); canvas->LineTo(w, p); break;
        case rdRight: canvas->MoveTo(0, p); canvas->LineTo(tick - 1, p); break;
        }
    }
}

void TRsRuler::PaintScaleLabels() { PaintScaleLabels(Canvas()); }

void TRsRuler::PaintScaleLabels(TCanvas* canvas) {
    if (!canvas || !(m_advance > 0) || !std::isfinite(m_advance) || m_myLongTick <= 0) return;
    if (FontsNeedRebuild() || !FontHandle0()) ChangeFonts();
    const TLogFont* font = m_direction == rdLeft    ? FontHandle90()
                           : m_direction == rdRight ? FontHandle270()
                                                    : FontHandle0();
    selectLabelFont(canvas, font);
    const int64_t every = 2 * int64_t(m_myLongTick);
    const int length = Length(), w = width(), h = height();
    double d = 0;
    for (int64_t i = 0; d <= length; ++i, d += m_advance) {
        if (i == 0 || i % every != 0 || i > INT32_MAX) continue;
        const QString text = LabelText(int(i));
        if (text.isEmpty()) continue;
        const TSize extent = canvas->TextExtent(text);
        const int half = extent.cx / 2;
        int p = Trunc(d);
        if (m_scaleDir == rsdReverse) p = length - p;
        switch (m_direction) {
        case rdTop: canvas->TextOut(p - half, h - extent.cy - 8, text); break;
        case rdBottom: canvas->TextOut(p - half, 8, text); break;
        case rdLeft: canvas->TextOut(w - extent.cy - 7, p + half, text); break;
        case rdRight: canvas->TextOut(extent.cy + 7, p - half, text); break;
        }
    }
}

TRect TRsRuler::BandRect() const {
    const int w = width(), h = height();
    switch (m_direction) {
    case rdTop: return Rect(1, 3, w - 1, h - 1);
    case rdBottom: return Rect(1, 1, w - 1, h - 3);
    case rdLeft: return Rect(3, 1, w - 1, h - 1);
    case rdRight: return Rect(1, 1, w - 3, h - 1);
    }
    return Rect(0, 0, w, h);
}

TRect TRsRuler::hairLineRectAt(int pos) const {
    const int length = Length();
    // Along the ruler: the pixel at pos (hlsLine), or everything from the origin
    // up to and including it (hlsRect). Across: the whole inside of the border.
    int from = pos, to = pos + 1;
    if (m_hairLineStyle == hlsRect) {
        if (m_scaleDir == rsdReverse)
            to = length;
        else
            from = 0;
    }
    from = std::clamp(from, 0, length);
    to = std::clamp(to, from, length);
    if (from == to) return TRect{};
    const int across = IsHorizontal() ? height() : width();
    if (across <= 2) return TRect{};
    return IsHorizontal() ? Rect(from, 1, to, across - 1) : Rect(1, from, across - 1, to);
}

TRect TRsRuler::HairLineRect() const {
    if (!m_hairLine || m_hairLinePos == -1) return TRect{};
    return hairLineRectAt(m_hairLinePos);
}

void TRsRuler::DrawHairLine() {
    const TRect r = HairLineRect();
    if (r.Width() <= 0 || r.Height() <= 0) return;
    if (m_painting)
        DrawHairLine(Canvas());
    else
        InvalidateRect(r);
}

void TRsRuler::DrawHairLine(TCanvas* canvas) {
    const TRect r = HairLineRect();
    if (!canvas || r.Width() <= 0 || r.Height() <= 0) return;
    const TPenMode oldMode = canvas->Pen()->Mode();
    canvas->Pen()->SetMode(pmNotXor);
    canvas->InvertRect(r);
    canvas->Pen()->SetMode(oldMode);
}

void TRsRuler::Paint() {
    m_painting = true;
    TRsBaseRuler::Paint();
    TCanvas* canvas = Canvas();
    canvas->Brush()->SetStyle(bsSolid);
    canvas->Brush()->SetColor(ScaleColor());
    canvas->FillRect(BandRect());
    paintBorder(canvas, ClientRect());
    PaintScaleTics(canvas);
    PaintScaleLabels(canvas);
    DrawHairLine(canvas);
    m_painting = false;
    if (OnPaint) OnPaint(this);
}

// ---- TRsRulerCorner ----------------------------------------------------------

TRsRulerCorner::TRsRulerCorner(QWidget* parent) : TRsBaseRuler(parent) {
    resize(33, 33);
    m_unitText = RulerUnitAbbreviation(Units());
    SetHint(RulerUnitName(Units()));
}

TRsRulerCorner::~TRsRulerCorner() = default;

void TRsRulerCorner::SetPosition(TCornerPos v) { setAndRepaint(m_position, v); }

void TRsRulerCorner::SetUnit(TRulerUnit v) {
    m_unitText = RulerUnitAbbreviation(v);
    if (v != ruNone) SetHint(RulerUnitName(v));
    TRsBaseRuler::SetUnit(v);
    Invalidate();
}

TRect TRsRulerCorner::BandRect() const {
    const int w = width(), h = height();
    const bool left = m_position == cpLeftTop || m_position == cpLeftBottom;
    const bool top = m_position == cpLeftTop || m_position == cpRightTop;
    return Rect(left ? 3 : 1, top ? 3 : 1, left ? w - 1 : w - 3, top ? h - 1 : h - 3);
}

void TRsRulerCorner::Paint() {
    TRsBaseRuler::Paint();
    TCanvas* canvas = Canvas();
    canvas->Brush()->SetStyle(bsSolid);
    canvas->Brush()->SetColor(ScaleColor());
    canvas->FillRect(BandRect());
    paintBorder(canvas, ClientRect());
    if (!m_unitText.isEmpty()) {
        selectLabelFont(canvas, FontHandle0());
        const TSize extent = canvas->TextExtent(m_unitText);
        const TRect band = BandRect();
        canvas->TextOut(band.left + (band.Width() - extent.cx) / 2, band.top + (band.Height() - extent.cy) / 2,
                        m_unitText);
    }
    if (OnPaint) OnPaint(this);
}

}  // namespace faroven
