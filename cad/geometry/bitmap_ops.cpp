#include "cad/geometry/bitmap_ops.h"

#include "platform/color.h"

#include <QFileInfo>
#include <QImageReader>
#include <QPainter>
#include <array>
#include <cmath>
#include <cstring>
#include <vector>

#if defined(__linux__)
#include <sys/mman.h>
#endif
#include <climits>

namespace faroven {

namespace {

// Brings the bitmap to 24 bits per pixel; true when there are pixels to work on.
bool prepare24(TBitmap& bitmap) {
    if (bitmap.Empty()) return false;
    if (bitmap.PixelFormat() != pf24bit) bitmap.SetPixelFormat(pf24bit);
    return true;
}

// Tells the bitmap's listeners that its pixels changed.
void changed(TBitmap& bitmap) {
    if (bitmap.OnChange) bitmap.OnChange(&bitmap);
}

using ByteTable = std::array<uint8_t, 256>;

// Applies a byte-to-byte table to every colour byte of every row.
void applyTable(TBitmap& bitmap, const ByteTable& table) {
    const int rowBytes = bitmap.Width() * 3;
    for (int y = 0; y < bitmap.Height(); ++y) {
        uint8_t* row = bitmap.ScanLine(y);
        for (int i = 0; i < rowBytes; ++i) row[i] = table[row[i]];
    }
    changed(bitmap);
}

uint8_t clamp64(int64_t v) { return v >= 255 ? 255 : v <= 0 ? 0 : uint8_t(v); }

// Floor and ceiling of a / b for b > 0, for any sign of a.
int64_t floorDiv(int64_t a, int64_t b) { return a >= 0 ? a / b : -((-a + b - 1) / b); }
int64_t ceilDiv(int64_t a, int64_t b) { return -floorDiv(-a, b); }

// The integer steps t (as a half-open range) for which lo <= start + t * step < hi.
// Exact integer arithmetic, so that the range agrees with the walk that adds
// step to start pixel by pixel.
void stepRange(int64_t start, int64_t step, int64_t lo, int64_t hi, int64_t& first, int64_t& last) {
    if (step == 0) {
        if (start >= lo && start < hi) {
            first = INT64_MIN / 4;
            last = INT64_MAX / 4;
        } else {
            first = last = 0;
        }
    } else if (step > 0) {
        first = ceilDiv(lo - start, step);
        last = ceilDiv(hi - start, step);
    } else {
        first = floorDiv(start - hi, -step) + 1;
        last = floorDiv(start - lo, -step) + 1;
    }
}

// Sine and cosine of an angle in degrees, exact at multiples of 90 degrees so
// that quarter turns map pixels one to one.
void exactSinCos(double degrees, double& s, double& c) {
    if (!std::isfinite(degrees)) degrees = 0;
    double a = std::fmod(degrees, 360.0);
    if (a < 0) a += 360.0;
    if (a == 0) { s = 0; c = 1; return; }
    if (a == 90) { s = 1; c = 0; return; }
    if (a == 180) { s = 0; c = -1; return; }
    if (a == 270) { s = -1; c = 0; return; }
    const double r = a * M_PI / 180.0;
    s = std::sin(r);
    c = std::cos(r);
}

void reverseRowCopy(uint8_t* dst, const uint8_t* src, int width) {
    const uint8_t* s = src + size_t(width - 1) * 3;
    for (int x = 0; x < width; ++x, s -= 3, dst += 3) {
        dst[0] = s[0];
        dst[1] = s[1];
        dst[2] = s[2];
    }
}

void reverseRowInPlace(uint8_t* row, int width) {
    for (int a = 0, b = width - 1; a < b; ++a, --b)
        for (int i = 0; i < 3; ++i) std::swap(row[3 * a + i], row[3 * b + i]);
}

// Where a row of the rotated bitmap starts in the source (32.32 fixed point)
// and its run [first, last) of pixels that land inside the source.
struct RowWalk {
    int64_t fx = 0, fy = 0;
    int first = 0, last = 0;
};

// A new, uninitialised 24-bit image. On Linux the pages are mapped in one go
// (MAP_POPULATE) rather than faulted in one by one as the image is written,
// which is several times faster for pictures of tens of megabytes.
QImage newImage24(int width, int height) {
#if defined(__linux__) && defined(MAP_POPULATE)
    const qsizetype bytesPerLine = (qsizetype(width) * 3 + 3) & ~qsizetype(3);
    const size_t size = size_t(bytesPerLine) * size_t(height);
    if (size >= (size_t(1) << 20) && bytesPerLine <= INT_MAX) {
        void* p = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_POPULATE, -1, 0);
        if (p != MAP_FAILED) {
            struct Mapping {
                void* address;
                size_t size;
            };
            QImage image(static_cast<uchar*>(p), width, height, bytesPerLine, QImage::Format_BGR888,
                         [](void* info) {
                             auto* m = static_cast<Mapping*>(info);
                             munmap(m->address, m->size);
                             delete m;
                         },
                         new Mapping{p, size});
            if (!image.isNull()) return image;
            munmap(p, size);
        }
    }
#endif
    return QImage(width, height, QImage::Format_BGR888);
}

void fillPixels(uint8_t* row, int count, const uint8_t bgr[3]) {
    for (int i = 0; i < count; ++i) {
        row[3 * i] = bgr[0];
        row[3 * i + 1] = bgr[1];
        row[3 * i + 2] = bgr[2];
    }
}

}  // namespace

PRGBTripleArray ScanLineTriples(TBitmap& bitmap, int row) {
    if (bitmap.PixelFormat() != pf24bit)
        throw EInvalidGraphic(QStringLiteral("ScanLineTriples: the bitmap is not 24 bits per pixel (format %1)")
                                  .arg(int(bitmap.PixelFormat())));
    return reinterpret_cast<PRGBTripleArray>(bitmap.ScanLine(row));
}

uint8_t ClampByte(int v) { return v >= 256 ? 255 : v < 0 ? 0 : uint8_t(v); }

std::unique_ptr<TBitmap> RedCrossBitmap() {
    // Each stroke is what a 3-pixel pen with round ends covers on a grid whose
    // pixel centres are the integer points: a pixel is red when its centre lies
    // within 1.5 pixels of the segment. Both ends are drawn, so the cross is
    // symmetric.
    auto bitmap = std::make_unique<TBitmap>(32, 32, pf24bit);
    const auto within = [](double px, double py, double ax, double ay, double bx, double by) {
        const double dx = bx - ax, dy = by - ay;
        const double t = std::clamp(((px - ax) * dx + (py - ay) * dy) / (dx * dx + dy * dy), 0.0, 1.0);
        const double ex = px - (ax + t * dx), ey = py - (ay + t * dy);
        return ex * ex + ey * ey <= 1.5 * 1.5;
    };
    for (int y = 0; y < 32; ++y) {
        uint8_t* row = bitmap->ScanLine(y);
        for (int x = 0; x < 32; ++x) {
            const bool red = within(x, y, 2, 2, 29, 29) || within(x, y, 2, 29, 29, 2);
            row[3 * x] = red ? 0x00 : 0xFF;
            row[3 * x + 1] = red ? 0x00 : 0xFF;
            row[3 * x + 2] = 0xFF;
        }
    }
    return bitmap;
}

std::unique_ptr<TBitmap> LoadGraphicsFile(const QString& fileName) {
    // The type is the last three characters only, so ".jpeg" is found through "PEG".
    const QString type = fileName.right(3).toUpper();
    QByteArray format;
    if (type == QLatin1String("BMP"))
        format = "bmp";
    else if (type == QLatin1String("ICO"))
        format = "ico";
    else if (type == QLatin1String("JPG") || type == QLatin1String("PEG"))
        format = "jpeg";
    // "EMF" and "WMF": metafiles have no reader here (see docs/bitmaps.md) and,
    // like unknown types, give the red cross.
    if (format.isEmpty() || !QFileInfo(fileName).isFile()) return RedCrossBitmap();

    QImageReader reader(fileName, format);
    // The reader of the named type only: a .bmp that holds a JPEG is a failed load.
    reader.setDecideFormatFromContent(false);
    reader.setAutoDetectImageFormat(false);
    reader.setAutoTransform(false);
    QImage image = reader.read();
    if (image.isNull() || image.width() <= 0 || image.height() <= 0) return RedCrossBitmap();

    // Drawn at (0, 0) onto a new white bitmap of the picture's size.
    if (image.hasAlphaChannel()) {
        QImage opaque(image.size(), QImage::Format_RGB32);
        if (opaque.isNull()) return RedCrossBitmap();
        opaque.fill(Qt::white);
        QPainter painter(&opaque);
        painter.drawImage(0, 0, image);
        painter.end();
        image = opaque;
    }
    auto bitmap = std::make_unique<TBitmap>();
    bitmap->SetPixelFormat(pf24bit);
    bitmap->SetImage(image);
    if (bitmap->Empty()) return RedCrossBitmap();
    return bitmap;
}

void GrayScaleBitmap(TBitmap& bitmap, bool on) {
    if (!on || !prepare24(bitmap)) return;
    const int width = bitmap.Width();
    for (int y = 0; y < bitmap.Height(); ++y) {
        uint8_t* p = bitmap.ScanLine(y);
        for (int x = 0; x < width; ++x, p += 3) {
            const uint8_t g = uint8_t((unsigned(p[0]) + p[1] + p[2]) / 3);
            p[0] = p[1] = p[2] = g;
        }
    }
    changed(bitmap);
}

void AdjustBrightBitmap(TBitmap& bitmap, int delta) {
    if (delta == 0 || !prepare24(bitmap)) return;
    ByteTable table;
    for (int v = 0; v < 256; ++v) table[v] = clamp64(int64_t(v) + delta);
    applyTable(bitmap, table);
}

void AdjustContrastBitmap(TBitmap& bitmap, int amount) {
    if (amount == 0 || !prepare24(bitmap)) return;
    ByteTable table;
    for (int v = 0; v < 256; ++v) {
        // Integer division truncates toward zero for negative amounts as well.
        const int64_t d = (int64_t(std::abs(127 - v)) * amount) / 255;
        table[v] = clamp64(v > 127 ? v + d : v - d);
    }
    applyTable(bitmap, table);
}

void FlipBitmap(TBitmap& bitmap, bool horizontal, bool vertical) {
    if ((!horizontal && !vertical) || !prepare24(bitmap)) return;
    // Row y goes to row height - 1 - y when vertical, pixel x to width - 1 - x
    // when horizontal. Done in place, pairing each row with its mirror row, which
    // gives the same pixels as filling a new bitmap and spares allocating one.
    const int width = bitmap.Width(), height = bitmap.Height();
    const size_t rowBytes = size_t(width) * 3;
    std::vector<uint8_t> spare(rowBytes);
    if (!vertical) {
        for (int y = 0; y < height; ++y) reverseRowInPlace(bitmap.ScanLine(y), width);
    } else {
        for (int y = 0, z = height - 1; y < z; ++y, --z) {
            uint8_t* a = bitmap.ScanLine(y);
            uint8_t* b = bitmap.ScanLine(z);
            std::memcpy(spare.data(), a, rowBytes);
            if (horizontal) {
                reverseRowCopy(a, b, width);
                reverseRowCopy(b, spare.data(), width);
            } else {
                std::memcpy(a, b, rowBytes);
                std::memcpy(b, spare.data(), rowBytes);
            }
        }
        if (horizontal && height % 2 == 1) reverseRowInPlace(bitmap.ScanLine(height / 2), width);
    }
    changed(bitmap);
}

std::unique_ptr<TBitmap> RotateBitmap(const TBitmap& source, double angle, int width, int height, int offsetX,
                                      int offsetY) {
    QImage src = source.Image();
    if (!src.isNull() && src.format() != QImage::Format_BGR888) src = src.convertToFormat(QImage::Format_BGR888);
    const int sw = src.isNull() ? 0 : src.width(), sh = src.isNull() ? 0 : src.height();

    double s, c;
    exactSinCos(angle, s, c);
    // The bounding box of the turned image; the small allowance keeps a box that
    // is a whole number of pixels up to rounding noise from growing by one.
    const double boxW = std::abs(sw * c) + std::abs(sh * s);
    const double boxH = std::abs(sw * s) + std::abs(sh * c);
    const double maxSide = 1 << 20;
    const int tw = width > 0 ? width : int(std::ceil(std::min(boxW, maxSide) - 1e-7));
    const int th = height > 0 ? height : int(std::ceil(std::min(boxH, maxSide) - 1e-7));

    const TColor transparent = ColorToRGB(source.TransparentColor());
    const uint8_t key[3] = {uint8_t(GetBValue(transparent)), uint8_t(GetGValue(transparent)),
                            uint8_t(GetRValue(transparent))};

    auto result = std::make_unique<TBitmap>();
    result->SetPixelFormat(pf24bit);
    if (tw > 0 && th > 0) {
        QImage target = newImage24(tw, th);
        if (target.isNull())
            throw EInvalidGraphic(QStringLiteral("RotateBitmap: cannot allocate a %1 x %2 bitmap").arg(tw).arg(th));
        // Inverse mapping: the centre of target pixel (x, y), relative to the
        // target centre, turned back by the angle, gives the source point; the
        // source pixel under it is taken. Along a row the source point moves by
        // (c, -s) per pixel, walked in 32.32 fixed point. For each row the run
        // of pixels whose source point falls inside the source is found exactly;
        // the rest of the row gets the transparent colour.
        constexpr double kOne = 4294967296.0;  // 2^32
        const double cx = tw / 2.0 + offsetX, cy = th / 2.0 + offsetY;
        const int64_t stepX = std::llround(c * kOne), stepY = std::llround(-s * kOne);
        const int64_t limitX = int64_t(sw) << 32, limitY = int64_t(sh) << 32;
        std::vector<RowWalk> rows(static_cast<size_t>(th));
        for (int y = 0; y < th; ++y) {
            RowWalk& r = rows[size_t(y)];
            const double dx = 0.5 - cx, dy = y + 0.5 - cy;
            r.fx = std::llround((dx * c + dy * s + sw / 2.0) * kOne);
            r.fy = std::llround((-dx * s + dy * c + sh / 2.0) * kOne);
            if (sw > 0 && sh > 0) {
                int64_t fx0, fx1, fy0, fy1;
                stepRange(r.fx, stepX, 0, limitX, fx0, fx1);
                stepRange(r.fy, stepY, 0, limitY, fy0, fy1);
                r.first = int(std::clamp<int64_t>(std::max(fx0, fy0), 0, tw));
                r.last = int(std::clamp<int64_t>(std::min(fx1, fy1), r.first, tw));
            }
            uint8_t* row = target.scanLine(y);
            fillPixels(row, r.first, key);
            fillPixels(row + size_t(r.last) * 3, tw - r.last, key);
        }
        // The covered runs are copied in square tiles, so that the source rows a
        // tile reads stay in the cache even when the walk crosses them steeply.
        constexpr int kTile = 64;
        const qsizetype srcStride = sw > 0 ? src.bytesPerLine() : 0;
        const uint8_t* srcBits = sw > 0 ? src.constBits() : nullptr;
        for (int ty = 0; ty < th; ty += kTile) {
            const int yEnd = std::min(th, ty + kTile);
            for (int tx = 0; tx < tw; tx += kTile) {
                const int xEnd = std::min(tw, tx + kTile);
                for (int y = ty; y < yEnd; ++y) {
                    const RowWalk& r = rows[size_t(y)];
                    const int x0 = std::max(r.first, tx), x1 = std::min(r.last, xEnd);
                    if (x0 >= x1) continue;
                    int64_t fx = r.fx + x0 * stepX, fy = r.fy + x0 * stepY;
                    uint8_t* dst = target.scanLine(y) + size_t(x0) * 3;
                    for (int x = x0; x < x1; ++x, dst += 3, fx += stepX, fy += stepY) {
                        const uint8_t* p = srcBits + (fy >> 32) * srcStride + (fx >> 32) * 3;
                        dst[0] = p[0];
                        dst[1] = p[1];
                        dst[2] = p[2];
                    }
                }
            }
        }
        result->SetImage(target);
    }
    result->SetTransparentColor(source.TransparentColor());
    result->SetTransparentMode(source.TransparentMode());
    result->SetTransparent(source.Transparent());
    return result;
}

}  // namespace faroven
