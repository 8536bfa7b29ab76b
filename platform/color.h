// TColor: the framework's 32-bit colour value $00BBGGRR. Values with the high
// bit set ($80000000 + index) name system colours, resolved through a fixed
// palette so that drawings look the same on every machine.
#pragma once

#include <QColor>
#include <cstdint>

namespace faroven {

using TColor = int32_t;

constexpr TColor clBlack = 0x000000;
constexpr TColor clMaroon = 0x000080;
constexpr TColor clGreen = 0x008000;
constexpr TColor clOlive = 0x008080;
constexpr TColor clNavy = 0x800000;
constexpr TColor clPurple = 0x800080;
constexpr TColor clTeal = 0x808000;
constexpr TColor clGray = 0x808080;
constexpr TColor clSilver = 0xC0C0C0;
constexpr TColor clRed = 0x0000FF;
constexpr TColor clLime = 0x00FF00;
constexpr TColor clYellow = 0x00FFFF;
constexpr TColor clBlue = 0xFF0000;
constexpr TColor clFuchsia = 0xFF00FF;
constexpr TColor clAqua = 0xFFFF00;
constexpr TColor clLtGray = 0xC0C0C0;
constexpr TColor clDkGray = 0x808080;
constexpr TColor clWhite = 0xFFFFFF;
constexpr TColor clMoneyGreen = 0xC0DCC0;
constexpr TColor clSkyBlue = 0xF0CAA6;
constexpr TColor clCream = 0xF0FBFF;
constexpr TColor clMedGray = 0xA4A0A0;
constexpr TColor clNone = 0x1FFFFFFF;
constexpr TColor clDefault = 0x20000000;

constexpr TColor clSystemColor = TColor(0x80000000u);
constexpr TColor clScrollBar = clSystemColor | 0;
constexpr TColor clBackground = clSystemColor | 1;
constexpr TColor clActiveCaption = clSystemColor | 2;
constexpr TColor clInactiveCaption = clSystemColor | 3;
constexpr TColor clMenu = clSystemColor | 4;
constexpr TColor clWindow = clSystemColor | 5;
constexpr TColor clWindowFrame = clSystemColor | 6;
constexpr TColor clMenuText = clSystemColor | 7;
constexpr TColor clWindowText = clSystemColor | 8;
constexpr TColor clCaptionText = clSystemColor | 9;
constexpr TColor clActiveBorder = clSystemColor | 10;
constexpr TColor clInactiveBorder = clSystemColor | 11;
constexpr TColor clAppWorkSpace = clSystemColor | 12;
constexpr TColor clHighlight = clSystemColor | 13;
constexpr TColor clHighlightText = clSystemColor | 14;
constexpr TColor clBtnFace = clSystemColor | 15;
constexpr TColor clBtnShadow = clSystemColor | 16;
constexpr TColor clGrayText = clSystemColor | 17;
constexpr TColor clBtnText = clSystemColor | 18;
constexpr TColor clInactiveCaptionText = clSystemColor | 19;
constexpr TColor clBtnHighlight = clSystemColor | 20;
constexpr TColor cl3DDkShadow = clSystemColor | 21;
constexpr TColor cl3DLight = clSystemColor | 22;
constexpr TColor clInfoText = clSystemColor | 23;
constexpr TColor clInfoBk = clSystemColor | 24;
constexpr TColor clHotLight = clSystemColor | 26;
constexpr TColor clGradientActiveCaption = clSystemColor | 27;
constexpr TColor clGradientInactiveCaption = clSystemColor | 28;
constexpr TColor clMenuHighlight = clSystemColor | 29;
constexpr TColor clMenuBar = clSystemColor | 30;

// Resolves system colours through the fixed palette; clNone and clDefault give
// white and black; any other value keeps its three low bytes.
TColor ColorToRGB(TColor color);

inline int GetRValue(TColor c) { return c & 0xFF; }
inline int GetGValue(TColor c) { return (c >> 8) & 0xFF; }
inline int GetBValue(TColor c) { return (c >> 16) & 0xFF; }
inline TColor RGB(int r, int g, int b) { return TColor((r & 0xFF) | ((g & 0xFF) << 8) | ((b & 0xFF) << 16)); }

QColor ToQColor(TColor color);
TColor FromQColor(const QColor& color);
// The 0xAARRGGBB value that QImage::pixel returns for this colour, opaque.
inline QRgb ToQRgb(TColor color) {
    const TColor c = ColorToRGB(color);
    return qRgb(GetRValue(c), GetGValue(c), GetBValue(c));
}

}  // namespace faroven
