#include "dxf/dxf_primitives.h"

#include <array>
#include <cstdlib>

namespace faroven {

namespace {
constexpr TColor rgb(int r, int g, int b) { return TColor(r | (g << 8) | (b << 16)); }
}  // namespace

int ColorToDxfColorNumber(TColor color) {
    switch (ColorToRGB(color)) {
    case rgb(255, 0, 0): return 1;
    case rgb(255, 255, 0): return 2;
    case rgb(0, 255, 0): return 3;
    case rgb(0, 255, 255): return 4;
    case rgb(0, 0, 255): return 5;
    case rgb(255, 0, 255): return 6;
    case rgb(128, 128, 128): return 8;
    case rgb(192, 192, 192): return 9;
    default: return 7;  // black, white and everything else
    }
}

namespace {

using Palette = std::array<TColor, 256>;

// The DXF colour numbers: seven named colours, two grays, five rows of ten
// hues (full and pale) and a ramp of grays at the end. Entries left out stay
// black.
constexpr Palette makePalette() {
    Palette p{};
    p[0] = rgb(255, 255, 255);
    p[1] = rgb(255, 0, 0);
    p[2] = rgb(255, 255, 0);
    p[3] = rgb(0, 255, 0);
    p[4] = rgb(0, 255, 255);
    p[5] = rgb(0, 0, 255);
    p[6] = rgb(255, 0, 255);
    p[7] = rgb(0, 0, 0);
    p[8] = rgb(134, 134, 134);
    p[9] = rgb(187, 187, 187);
    p[250] = rgb(0, 0, 0);
    p[251] = rgb(45, 45, 45);
    p[252] = rgb(91, 91, 91);
    p[253] = rgb(137, 137, 137);
    p[254] = rgb(183, 183, 183);
    p[255] = rgb(179, 179, 179);  // darker than 254, kept so
    constexpr int g[5] = {0, 0, 63, 127, 191};      // 1-based
    constexpr int h[5] = {0, 127, 159, 191, 223};   // 1-based
    for (int i = 1; i <= 4; ++i) {
        p[10 * i] = rgb(255, g[i], 0);
        p[40 + 10 * i] = rgb(g[5 - i], 255, 0);
        p[80 + 10 * i] = rgb(0, 255, g[i]);
        p[120 + 10 * i] = rgb(0, g[5 - i], 255);
        p[160 + 10 * i] = rgb(g[i], 0, 255);
        p[10 * i + 1] = rgb(255, h[i], 127);
        p[41 + 10 * i] = rgb(h[5 - i], 255, 127);
        p[81 + 10 * i] = rgb(127, 255, h[i]);
        p[121 + 10 * i] = rgb(127, h[5 - i], 255);
        p[161 + 10 * i] = rgb(h[i], 127, 255);
    }
    p[210] = rgb(255, 0, 255);
    p[220] = rgb(255, 0, 191);
    p[230] = rgb(255, 0, 127);
    p[240] = rgb(255, 0, 63);
    p[211] = rgb(255, 127, 255);
    p[221] = rgb(255, 127, 223);
    p[231] = rgb(255, 127, 191);
    p[241] = rgb(255, 127, 159);
    return p;
}

constexpr Palette kPalette = makePalette();

}  // namespace

TColor DxfColorNumberToColor(int number) {
    if (number < -255 || number > 255) return rgb(0, 0, 0);
    return kPalette[size_t(std::abs(number))];
}

}  // namespace faroven
