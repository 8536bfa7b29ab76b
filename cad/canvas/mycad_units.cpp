// TMyCAD: lengths in the user's unit. Drawing units are pixels at zoom 1; the
// screen's pixels per inch turn them into paper lengths, and Ratio (paper
// units per real unit) turns paper into real lengths. docs/canvas_units.md
// gives the factors.
#include "cad/canvas/mycad.h"

#include "platform/system.h"

#include <cmath>

namespace faroven {

namespace {

// How many of the unit make one inch; pixels are the screen's own.
double unitsPerInch(TUnits unit) {
    switch (unit) {
    case pixel: return ScreenPixelsPerInch();
    case mm: return 25.4;
    case cm: return 2.54;
    case dm: return 0.254;
    case m: return 0.0254;
    case inch: return 1.0;
    }
    return 25.4;
}

// A Ratio that is zero, negative or not a number cannot scale lengths; it
// counts as 1 (a file may carry one).
double usableRatio(double ratio) { return ratio > 0 && std::isfinite(ratio) ? ratio : 1.0; }

}  // namespace

double PixelsToUnit(double pixels, TUnits unit, double ratio) {
    const double paper = unit == pixel ? pixels : pixels / ScreenPixelsPerInch() * unitsPerInch(unit);
    return paper / usableRatio(ratio);
}

double UnitToPixels(double value, TUnits unit, double ratio) {
    const double paper = value * usableRatio(ratio);
    return unit == pixel ? paper : paper / unitsPerInch(unit) * ScreenPixelsPerInch();
}

double TMyCAD::PixelsToUnit(double pixels) const { return faroven::PixelsToUnit(pixels, m_theUnit, m_ratio); }

double TMyCAD::UnitToPixels(double value) const { return faroven::UnitToPixels(value, m_theUnit, m_ratio); }

QString UnitAbbreviation(TUnits unit) {
    switch (unit) {
    case pixel: return QStringLiteral("px");
    case mm: return QStringLiteral("mm");
    case cm: return QStringLiteral("cm");
    case dm: return QStringLiteral("dm");
    case m: return QStringLiteral("m");
    case inch: return QStringLiteral("in");
    }
    return QString();
}

QString TMyCAD::UnitAbbreviation() const { return faroven::UnitAbbreviation(m_theUnit); }

}  // namespace faroven
