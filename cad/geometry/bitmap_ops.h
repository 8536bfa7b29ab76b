// Bitmap effects of the image shape and the loader of picture files.
//
// Every operation works on 24-bit bitmaps (pf24bit), row by row through the
// scan lines, three bytes per pixel in blue, green, red order. A bitmap in any
// other pixel format is converted to pf24bit first, except when the call has
// nothing to do (grey scale off, brightness or contrast 0, no flip), which
// leaves the bitmap untouched, format included. Empty bitmaps are left alone.
//
// Angles are degrees, clockwise positive on screen (y axis down).
#pragma once

#include "platform/bitmap.h"

#include <QString>
#include <array>
#include <cstdint>
#include <memory>

namespace faroven {

// One pixel of a 24-bit scan line.
#pragma pack(push, 1)
struct TRGBTriple {
    uint8_t rgbtBlue;
    uint8_t rgbtGreen;
    uint8_t rgbtRed;
};
#pragma pack(pop)
static_assert(sizeof(TRGBTriple) == 3, "a 24-bit pixel is three bytes");

// A scan line seen as pixels: PRGBTripleArray points at pixel 0 and is indexed
// like the row itself (row[x].rgbtRed).
using TRGBTripleArray = TRGBTriple[];
using PRGBTripleArray = TRGBTriple*;
// A scan line of at most 32768 pixels, reached through a pointer to the whole row.
using TRGBTripleArray32768 = std::array<TRGBTriple, 32768>;
using pRGBTripleArray32768 = TRGBTripleArray32768*;
static_assert(sizeof(TRGBTripleArray32768) == 3 * 32768);

// Row y of a pf24bit bitmap as pixels; raises EInvalidGraphic for another
// pixel format or a row out of range.
PRGBTripleArray ScanLineTriples(TBitmap& bitmap, int row);

// 255 when v >= 256, v when 0 <= v < 256, 0 when v < 0.
uint8_t ClampByte(int v);

// Loads a picture file into a new pf24bit bitmap of the picture's size. The type
// comes from the last three characters of the name, upper-cased: "BMP", "ICO",
// "JPG" and "PEG" (so .jpeg is a JPEG) are read with the reader of that type
// only; "EMF" and "WMF" have no reader here. For any other type, a metafile, a
// missing file or a file the reader rejects, the result is the 32 x 32 red
// cross picture. Transparent parts of icons come out white. Never returns null.
std::unique_ptr<TBitmap> LoadGraphicsFile(const QString& fileName);

// The picture that stands for a file that could not be loaded: 32 x 32, pf24bit,
// white, with a red cross drawn with a 3-pixel pen from (2, 2) to (29, 29) and
// from (2, 29) to (29, 2).
std::unique_ptr<TBitmap> RedCrossBitmap();

// When on, every pixel becomes grey: (red + green + blue) div 3 in all three bytes.
void GrayScaleBitmap(TBitmap& bitmap, bool on);
// Adds delta to every byte of every pixel, clamped to 0..255; 0 does nothing.
void AdjustBrightBitmap(TBitmap& bitmap, int delta);
// Moves every channel v away from 127 (amount > 0) or towards it (amount < 0) by
// (|127 - v| * amount) div 255, clamped to 0..255. 127 never moves; 0 does nothing.
void AdjustContrastBitmap(TBitmap& bitmap, int amount);
// Mirrors left to right (horizontal) and/or top to bottom (vertical).
void FlipBitmap(TBitmap& bitmap, bool horizontal, bool vertical);

// A new pf24bit bitmap holding source turned clockwise by angle degrees about
// its centre. Each target pixel takes the source pixel under its centre
// (inverse mapping, nearest neighbour), so the result has no holes and right
// angles are exact. Pixels that the turned image does not cover get the
// source's transparent colour; the result takes over the source's transparent
// colour, transparent mode and Transparent flag.
//   width, height: size of the result; 0 (or less) for either one means the
//     smallest size that holds the whole turned image (the image shape passes
//     0, 0). Right angles give exactly the source size, swapped at 90 and 270.
//   offsetX, offsetY: where the centre of the turned image lies relative to the
//     centre of the result, in pixels (0, 0: centred).
// A non-finite angle counts as 0. Raises EInvalidGraphic when the result
// cannot be allocated.
std::unique_ptr<TBitmap> RotateBitmap(const TBitmap& source, double angle, int width = 0, int height = 0,
                                      int offsetX = 0, int offsetY = 0);

// Pointer forms, for callers that hold bitmaps by pointer; a null bitmap does nothing.
inline void GrayScaleBitmap(TBitmap* bitmap, bool on) { if (bitmap) GrayScaleBitmap(*bitmap, on); }
inline void AdjustBrightBitmap(TBitmap* bitmap, int delta) { if (bitmap) AdjustBrightBitmap(*bitmap, delta); }
inline void AdjustContrastBitmap(TBitmap* bitmap, int amount) { if (bitmap) AdjustContrastBitmap(*bitmap, amount); }
inline void FlipBitmap(TBitmap* bitmap, bool horizontal, bool vertical) {
    if (bitmap) FlipBitmap(*bitmap, horizontal, vertical);
}

}  // namespace faroven
