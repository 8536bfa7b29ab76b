// Lengths in the user's unit: drawing units (pixels at zoom 1) through the
// screen's resolution and a drawing ratio. The canvas's own conversions use
// its TheUNIT and Ratio (mycad_units.cpp).
#pragma once

#include "cad/enums.h"

#include <QString>

namespace faroven {

// "px", "mm", "cm", "dm", "m" or "in".
QString UnitAbbreviation(TUnits unit);
// A length in pixels at zoom 1 in a unit, through the screen's resolution,
// divided by ratio (a ratio that is zero, negative or not a number counts as 1).
double PixelsToUnit(double pixels, TUnits unit, double ratio);
// The inverse of PixelsToUnit.
double UnitToPixels(double value, TUnits unit, double ratio);

}  // namespace faroven
