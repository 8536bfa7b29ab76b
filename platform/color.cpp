#include "platform/color.h"

#include <array>

namespace faroven {

namespace {
// The classic desktop palette, indexed by system colour number.
constexpr std::array<TColor, 31> kSystemPalette = {
    0xC8C8C8,  // scroll bar
    0x000000,  // background (desktop)
    0x6A240A,  // active caption
    0x808080,  // inactive caption
    0xC8D0D4,  // menu
    0xFFFFFF,  // window
    0x000000,  // window frame
    0x000000,  // menu text
    0x000000,  // window text
    0xFFFFFF,  // caption text
    0xC8D0D4,  // active border
    0xC8D0D4,  // inactive border
    0x808080,  // application workspace
    0x6A240A,  // highlight
    0xFFFFFF,  // highlight text
    0xC8D0D4,  // button face
    0x808080,  // button shadow
    0x808080,  // grey text
    0x000000,  // button text
    0xC8D0D4,  // inactive caption text
    0xFFFFFF,  // button highlight
    0x404040,  // 3D dark shadow
    0xC8D0D4,  // 3D light
    0x000000,  // info text
    0xE1FFFF,  // info background
    0xB5B5B5,  // unused slot
    0x800000,  // hot light
    0xF0CAA6,  // gradient active caption
    0xC0C0C0,  // gradient inactive caption
    0x6A240A,  // menu highlight
    0xC8D0D4,  // menu bar
};
}  // namespace

TColor ColorToRGB(TColor color) {
    if (color == clNone) return clWhite;
    if (color == clDefault) return clBlack;
    if (color < 0) {
        const uint32_t index = uint32_t(color) & 0xFF;
        return index < kSystemPalette.size() ? kSystemPalette[index] : clBlack;
    }
    return color & 0xFFFFFF;
}

QColor ToQColor(TColor color) {
    const TColor c = ColorToRGB(color);
    return QColor(GetRValue(c), GetGValue(c), GetBValue(c));
}

TColor FromQColor(const QColor& color) {
    return RGB(color.red(), color.green(), color.blue());
}

}  // namespace faroven
