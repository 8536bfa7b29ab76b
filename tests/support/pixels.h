// Pixel fixtures for the shape suites: a bitmap filled with a fixed pattern
// (so that exclusive-or drawing shows on every pixel) and image comparison.
#pragma once

#include "platform/bitmap.h"
#include "platform/canvas.h"

#include <QImage>

namespace faroven::test {

// A 24-bit bitmap whose every pixel has its own colour, from a fixed seed.
inline void FillPattern(TBitmap& bmp) {
    QImage& img = bmp.Image();
    uint32_t state = 12345;
    for (int y = 0; y < img.height(); ++y)
        for (int x = 0; x < img.width(); ++x) {
            state = state * 1103515245u + 12345u;
            img.setPixel(x, y, qRgb((state >> 16) & 0xFF, (state >> 8) & 0xFF, state >> 24));
        }
}

// Number of pixels in which two images of one size differ.
inline int DiffCount(const QImage& a, const QImage& b) {
    int n = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x) n += a.pixel(x, y) != b.pixel(x, y);
    return n;
}

}  // namespace faroven::test
