#include "platform/wmf_dc.h"

#include <algorithm>

namespace faroven::wmf {

void TWmfDeviceContext::Select(TObjectKind kind, const TGdiObject& object) {
    TSelected& selected = m_selected[size_t(kind)];
    if (selected.index >= 0 && selected.object == object) return;

    const auto free = std::find(m_used.begin(), m_used.end(), false);
    const int index = int(free - m_used.begin());
    if (free == m_used.end()) m_used.push_back(true);
    else *free = true;
    m_maxSlots = std::max(m_maxSlots, m_used.size());
    m_out.Add(object.function, object.params);
    m_out.Add(META_SELECTOBJECT, {index});

    const int old = selected.index;
    selected = {index, object};
    if (old >= 0 && old != m_savedIndex[size_t(kind)]) {
        m_out.Add(META_DELETEOBJECT, {old});
        m_used[size_t(old)] = false;
    }
}

void TWmfDeviceContext::SetAttribute(std::optional<int>& known, int value, uint16_t function, bool twoWords) {
    if (known == value) return;
    known = value;
    if (twoWords) m_out.Add(function, TWmfParams().DWord(uint32_t(value)).Bytes());
    else m_out.Add(function, {value});
}

void TWmfDeviceContext::SetTextColor(uint32_t colorRef) {
    SetAttribute(m_textColor, int(colorRef), META_SETTEXTCOLOR, true);
}
void TWmfDeviceContext::SetRop2(int rop2) { SetAttribute(m_rop2, rop2, META_SETROP2); }
void TWmfDeviceContext::SetPolyFillMode(int mode) { SetAttribute(m_polyFillMode, mode, META_SETPOLYFILLMODE); }
void TWmfDeviceContext::SetTextAlign(int align) { SetAttribute(m_textAlign, align, META_SETTEXTALIGN); }

void TWmfDeviceContext::SetClip(const std::optional<QRect>& rect) {
    if (rect == m_clip) return;
    if (m_clip) RestoreClip();
    m_clip = rect;
    if (!rect) return;
    m_out.Add(META_SAVEDC, {});
    for (size_t k = 0; k < m_selected.size(); ++k) m_savedIndex[k] = m_selected[k].index;
    m_out.Add(META_INTERSECTCLIPRECT, {rect->bottom() + 1, rect->right() + 1, rect->top(), rect->left()});
}

void TWmfDeviceContext::RestoreClip() {
    m_out.Add(META_RESTOREDC, {-1});
    for (size_t k = 0; k < m_selected.size(); ++k) {
        const int current = m_selected[k].index;
        const int saved = m_savedIndex[k];
        m_savedIndex[k] = -1;
        if (current < 0) continue;
        // The player went back to the saved object, to its default one or
        // kept ours, depending on the player: select ours again, after which
        // the saved one can go.
        m_out.Add(META_SELECTOBJECT, {current});
        if (saved >= 0 && saved != current) {
            m_out.Add(META_DELETEOBJECT, {saved});
            m_used[size_t(saved)] = false;
        }
    }
    // Players differ in what they restore, so every attribute is written
    // again before its next use.
    m_textColor.reset();
    m_rop2.reset();
    m_polyFillMode.reset();
    m_textAlign.reset();
}

}  // namespace faroven::wmf
