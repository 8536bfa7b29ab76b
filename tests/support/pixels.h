// Pixel fixtures for the shape suites: a bitmap filled with a fixed pattern
// (so that exclusive-or drawing shows on every pixel), image comparison, and
// the check that a partial repaint equals the same area of a full one.
#pragma once

#include "cad/canvas/mycad.h"
#include "platform/bitmap.h"
#include "platform/canvas.h"
#include "support/test_support.h"

#include <QImage>
#include <QPainter>
#include <gtest/gtest.h>

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

// Paints only the area onto black and compares it with the same area of a
// full paint; the pixel right of the area's top-right corner stays black.
inline void ExpectPartialMatchesFull(TMyCAD& cad, const TRect& area) {
    const QImage full = cad.PaintToImage();
    QImage part(full.size(), QImage::Format_RGB32);
    part.fill(Qt::black);
    {
        QPainter painter(&part);
        cad.PaintTo(&painter, area);
    }
    for (int y = area.top; y < area.bottom; ++y)
        for (int x = area.left; x < area.right; ++x)
            ASSERT_EQ(PixelAt(part, x, y), PixelAt(full, x, y))
                << "at " << x << "," << y << " of area " << area.left << "," << area.top;
    if (area.right < part.width()) EXPECT_EQ(PixelAt(part, area.right, area.top), clBlack) << "outside the area";
}

}  // namespace faroven::test
