#include "platform/graphics.h"

#include "platform/system.h"

namespace faroven {

void TPen::Assign(const TPersistent* source) {
    if (auto pen = dynamic_cast<const TPen*>(source)) {
        if (pen == this) return;
        m_color = pen->m_color;
        m_width = pen->m_width;
        m_style = pen->m_style;
        m_mode = pen->m_mode;
        Changed();
        return;
    }
    TPersistent::Assign(source);
}

void TBrush::SetColor(TColor v) {
    if (v == m_color && m_style != bsClear) return;
    m_color = v;
    // Giving a clear brush a colour makes it solid, as the framework does.
    if (m_style == bsClear) m_style = bsSolid;
    Changed();
}

void TBrush::Assign(const TPersistent* source) {
    if (auto brush = dynamic_cast<const TBrush*>(source)) {
        if (brush == this) return;
        m_color = brush->m_color;
        m_style = brush->m_style;
        Changed();
        return;
    }
    TPersistent::Assign(source);
}

// Negated before rounding, so that sizes near the ends of the int range
// (a corrupt file may hold any) clamp instead of overflowing.
int TFont::Height() const {
    return Round(-double(m_size) * ScreenPixelsPerInch() / 72.0);
}

void TFont::SetHeight(int v) {
    SetSize(Round(-double(v) * 72.0 / ScreenPixelsPerInch()));
}

void TFont::Assign(const TPersistent* source) {
    if (auto font = dynamic_cast<const TFont*>(source)) {
        if (font == this) return;
        m_name = font->m_name;
        m_size = font->m_size;
        m_color = font->m_color;
        m_style = font->m_style;
        m_charset = font->m_charset;
        m_pitch = font->m_pitch;
        Changed();
        return;
    }
    TPersistent::Assign(source);
}

QFont TFont::ToQFont(int pixelHeight) const {
    QFont f(m_name);
    f.setPixelSize(std::max(1, std::abs(pixelHeight)));
    f.setBold(m_style.Contains(fsBold));
    f.setItalic(m_style.Contains(fsItalic));
    f.setUnderline(m_style.Contains(fsUnderline));
    f.setStrikeOut(m_style.Contains(fsStrikeOut));
    if (m_pitch == fpFixed) f.setFixedPitch(true);
    f.setStyleStrategy(QFont::NoAntialias);
    return f;
}

QFont TFont::ToQFont() const { return ToQFont(Height()); }

}  // namespace faroven
