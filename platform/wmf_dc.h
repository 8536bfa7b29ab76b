// The device context a metafile player builds while it plays our records: its
// object table, the selected pen, brush and font, the text colour, raster
// operation, fill and text modes, and the clip. Keeping a copy of it lets the
// paint engine ask for what a drawing needs and write only the records that
// change what the player already has.
#pragma once

#include "platform/wmf_records.h"

#include <QRect>
#include <array>
#include <optional>
#include <vector>

namespace faroven::wmf {

enum class TObjectKind { Pen, Brush, Font };

// An object as the record that creates it and that record's parameters.
struct TGdiObject {
    uint16_t function = 0;
    QByteArray params;
    friend bool operator==(const TGdiObject&, const TGdiObject&) = default;
};

class TWmfDeviceContext {
public:
    explicit TWmfDeviceContext(TWmfRecords& out) : m_out(out) {}

    // Makes the object the selected one of its kind. It is created, in the
    // lowest free slot of the object table as players fill it, only when the
    // selected one differs; the one it replaces is deleted so the table stays
    // small.
    void Select(TObjectKind kind, const TGdiObject& object);

    void SetTextColor(uint32_t colorRef);
    void SetRop2(int rop2);
    void SetPolyFillMode(int mode);
    void SetTextAlign(int align);

    // Limits drawing to the rectangle (right and bottom exclusive), or to the
    // whole picture for nullopt. A change restores the device context saved
    // before the previous clip, saves it again and intersects it with the new
    // rectangle; the objects are then selected again and the attributes
    // written again before they are used, whatever the player restored.
    void SetClip(const std::optional<QRect>& rect);

    // The largest object table the records need.
    int ObjectTableSize() const { return int(m_maxSlots); }

private:
    void SetAttribute(std::optional<int>& known, int value, uint16_t function, bool twoWords = false);
    void RestoreClip();

    TWmfRecords& m_out;
    std::vector<bool> m_used;  // object table slots in use
    size_t m_maxSlots = 0;
    struct TSelected {
        int index = -1;
        TGdiObject object;
    };
    std::array<TSelected, 3> m_selected;
    // Per kind, the object selected when the clip was saved; the player
    // selects it again on restore, so it lives until then.
    std::array<int, 3> m_savedIndex{-1, -1, -1};
    std::optional<QRect> m_clip;
    // What the player has after the header: the defaults of a fresh device
    // context. Unknown (nullopt) after a restore.
    std::optional<int> m_textColor = 0;
    std::optional<int> m_rop2 = 13;  // R2_COPYPEN
    std::optional<int> m_polyFillMode = 1;  // ALTERNATE
    std::optional<int> m_textAlign = 0;  // TA_TOP | TA_LEFT
};

}  // namespace faroven::wmf
