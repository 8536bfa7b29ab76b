// Internal helpers shared by the shape families. Not part of the API (the
// family headers include it for the members they keep): the names live in
// faroven::shape_detail and may change without notice.
#pragma once

#include "cad/enums.h"
#include "cad/types.h"
#include "platform/color.h"
#include "platform/types.h"

#include <QString>
#include <array>
#include <memory>

namespace faroven {

class TCanvas;
class TMyShape;

namespace shape_detail {

// Drawing units (pixels at zoom 1) to a TUnits value. This is the canvas's
// own conversion (PixelsToUnit in cad/canvas/mycad.h), so that a shape's
// lengths agree with the canvas's.
double pixelsToUnit(double pixels, TUnits unit, double ratio);

// Square pixels at zoom 1 to square units of the same conversion.
double squarePixelsToUnit(double squarePixels, TUnits unit, double ratio);

// A measure with two decimals, the process-wide decimal separator and the unit:
// "12.70 mm".
QString formatLength(double value, TUnits unit);

// An angle in degrees with one decimal and the degree sign: "30.0°".
QString formatDegrees(double degrees);

// The kind of a shape as GetInfo names it: "Rectangle", "Ellipse", "Group",
// "Combine", "Line", "Measuring line", "Polyline", "Polygon", "Freehand line";
// for the other kinds the class name without "TMy" ("Shape", "Text", ...).
QString shapeKind(const TMyShape* shape);

// The canvas's unit and ratio for a shape (millimetres and 1 without a canvas).
TUnits unitOf(const TMyShape* shape);
double ratioOf(const TMyShape* shape);

// An angle in radians (clockwise on screen) as degrees in [0, 360).
double normalisedDegrees(double radians);

// Floor and ceiling of a pixel coordinate, clamped to the integer range.
int pixelFloor(double v);
int pixelCeil(double v);

// The box grown to hold a square of margin pixels (one more on the far
// sides) around every pixel point; an empty box becomes the first square.
TRect growBoxBy(TRect box, const TArrPoint& pts, int margin);

// Whether pixel p is one that Polygon fills for the closed outline (alternate
// rule): exactly PtInRegion(CreatePolygonRgn(outline), p), without building
// the region. Axis-aligned rectangles are answered arithmetically; other
// outlines are scan-converted at that single pixel by the same rasteriser.
bool polygonHasPixel(const TArrPoint& outline, TPoint p);

// The shape's points at the canvas's zoom, unrounded.
TArrMyPoint zoomedPoints(const TMyShape* shape);

// Whether pixel p lies within 8 pixels (straight-line distance) of the open
// polyline: the hit band of curves drawn as many short pieces.
bool nearPolyline(const TArrPoint& polyline, TPoint p);

// sin(i * pi / 36) and cos(i * pi / 36) for i = 0..72: the 73 points of an
// ellipse, every 5 degrees, the last closing the figure.
struct EllipseTable {
    std::array<double, 73> sin{};
    std::array<double, 73> cos{};
};
const EllipseTable& ellipseTable();

// ---- Direct painting into the canvas's paint buffer ---------------------------------
//
// While the canvas paints, shapes draw into its off-screen buffer. The common
// figures (upright rectangles, ellipses) are then written straight into the
// buffer's pixels, exactly as the canvas's Polygon would set them, instead of
// going through the rasteriser for every figure at every paint. Anything else
// (another canvas, a printer, a clip, a path being recorded, other pen modes,
// styles or widths, gradients) takes the ordinary drawing.

// Where and how a figure may be written directly.
struct PixelTarget {
    uchar* bits = nullptr;
    qsizetype bytesPerLine = 0;
    TRect clip;          // writable area in logical (canvas) coordinates
    int dx = 0, dy = 0;  // logical to device: subtract the window origin
    uint32_t pen = 0;    // the pen's pixel
    uint32_t brush = 0;  // the brush's pixel
    bool fill = false;   // the brush is solid (false: clear)
};

// Whether the shape's figure may be written straight into canvas: canvas is
// the paint buffer of the shape's own TMyCAD (32 bits per pixel) and its pen
// and brush, as SetDrawShapeMode left them, are a solid pen of one pixel in
// copy mode and a solid or clear brush; no gradient. Fills target.
bool directTarget(TMyShape* shape, TCanvas* canvas, PixelTarget& target);

// Turns the direct path on or off for the whole process (on by default);
// tests compare both paths pixel for pixel.
void setDirectPainting(bool on);
bool directPainting();

// Sets pixels x0 .. x1 - 1 of row y (logical coordinates), clipped.
void fillRow(const PixelTarget& target, int y, int x0, int x1, uint32_t pixel);

// The pixels Polygon sets for an axis-aligned rectangle with corners (l, t)
// and (r, b), r - l >= 2 and b - t >= 2: the outline covers columns l..r and
// rows t..b, the brush the inside.
void writeRectangle(const PixelTarget& target, const TRect& corners);

// The corners of an outline that walks an axis-aligned rectangle corner to
// corner (four points, or five with the first repeated).
bool axisAlignedRect(const TArrPoint& outline, TRect& corners);

// The pixels that Polygon sets for a closed outline, captured once by drawing
// it with the canvas (pen and brush of distinct colours on a scratch bitmap)
// and kept as rows of pen, brush, pen runs (the brush run may be a gap the
// figure leaves empty). Outlines whose rows have another form, or that are
// wider than 126 pixels, are marked as not capturable and drawn the ordinary
// way (convex figures such as ellipses capture). A capture belongs to one
// revision of a shape at one zoom.
class RasterRows {
public:
    static RasterRows Capture(const TArrPoint& outline, uint64_t revision, double zoom);
    // A capture (usable or not) was made for this revision and zoom.
    bool Matches(uint64_t revision, double zoom) const;
    bool Usable() const;
    void Write(const PixelTarget& target) const;

private:
    // One block: this header, then four bytes a <= b, c <= d per row, relative
    // to left: pen a..b-1, brush b..c-1, pen c..d-1. Bit 7 of d marks a row
    // whose middle run is a gap. rows < 0: not capturable.
    struct Header {
        uint64_t revision;
        double zoom;
        int32_t left, top, rows, pad;
    };
    std::unique_ptr<uint8_t[]> m_block;
};

}  // namespace shape_detail

}  // namespace faroven
