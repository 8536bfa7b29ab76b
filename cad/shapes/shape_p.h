// Internal helpers shared by the shape families. Not part of the API: the
// names live in faroven::shape_detail and may change without notice.
#pragma once

#include "cad/enums.h"
#include "cad/types.h"
#include "platform/types.h"

#include <QObject>
#include <QString>
#include <array>

namespace faroven {

class TMyShape;

// Converts pixel lengths at zoom 1 (= drawing units) into the canvas's unit.
// Kept private to the shapes: the canvas has its own unit functions.
namespace shape_detail {

// Pixels at zoom 1 to a TUnits value, through the screen's resolution:
// mm = px * 25.4 / ppi, cm = mm / 10, dm = mm / 100, m = mm / 1000,
// inch = px / ppi, pixel = px; the result is divided by ratio (drawing units
// per unit of the drawing's scale). A ratio that is zero, negative or not a
// number counts as 1, so that a bad setting never yields infinities.
double pixelsToUnit(double pixels, TUnits unit, double ratio);

// Square pixels at zoom 1 to square units of the same conversion.
double squarePixelsToUnit(double squarePixels, TUnits unit, double ratio);

// The short name of a unit as shown after a number: "px", "mm", "cm", "dm", "m", "in".
QString unitSuffix(TUnits unit);

// A measure with two decimals, the process-wide decimal separator and the unit:
// "12.70 mm".
QString formatLength(double value, TUnits unit);

// An angle in degrees with one decimal and the degree sign: "30.0°".
QString formatDegrees(double degrees);

// The kind of a shape as GetInfo names it: "Rectangle", "Ellipse", "Group",
// "Combine", "Line", "Measuring line", "Polyline", "Polygon", "Freehand line";
// for other classes the class name without "TMy".
QString shapeKind(const QObject* shape);

// The canvas's unit and ratio for a shape (millimetres and 1 without a canvas).
TUnits unitOf(const TMyShape* shape);
double ratioOf(const TMyShape* shape);

// An angle in radians (clockwise on screen) as degrees in [0, 360).
double normalisedDegrees(double radians);

// Floor and ceiling of a pixel coordinate, clamped to the integer range.
int pixelFloor(double v);
int pixelCeil(double v);

// Whether pixel p is one that Polygon fills for the closed outline (alternate
// rule): exactly PtInRegion(CreatePolygonRgn(outline), p), without building
// the region. Axis-aligned rectangles are answered arithmetically; other
// outlines are scan-converted at that single pixel by the same rasteriser.
bool polygonHasPixel(const TArrPoint& outline, TPoint p);

// sin(i * pi / 36) and cos(i * pi / 36) for i = 0..72: the 73 points of an
// ellipse, every 5 degrees, the last closing the figure.
struct EllipseTable {
    std::array<double, 73> sin{};
    std::array<double, 73> cos{};
};
const EllipseTable& ellipseTable();

}  // namespace shape_detail

}  // namespace faroven
