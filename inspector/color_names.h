// Colour names as the framework writes them: "clRed", "clBtnFace", or a
// "$00BBGGRR" hex value for any other colour. The inspector shows colours
// this way and its colour editor lists the named ones.
#pragma once

#include "platform/color.h"

#include <QPixmap>
#include <QString>
#include <vector>

namespace faroven {

struct TColorName {
    TColor Color;
    const char* Name;
};

// The standard colours (clBlack … clWhite, clMoneyGreen … clMedGray), then
// clNone and clDefault.
const std::vector<TColorName>& StandardColorNames();
// The system colours clScrollBar … clMenuBar, resolved through the fixed palette.
const std::vector<TColorName>& SystemColorNames();

// "clRed" for a named colour, else "$00BBGGRR" (eight hex digits).
QString ColorToString(TColor color);
// Reads a colour name, a "$" hex value, "0x" hex or a decimal number; ok is
// set to false (and 0 returned) for anything else.
TColor StringToColor(const QString& text, bool* ok = nullptr);

// A swatch of the colour (system colours resolved) with a dark frame.
QPixmap ColorSwatch(TColor color, const QSize& size = QSize(12, 12));

}  // namespace faroven
