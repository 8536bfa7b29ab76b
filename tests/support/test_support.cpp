#include "support/test_support.h"

#include "platform/canvas.h"

#include <algorithm>

namespace faroven::test {

TColor PixelAt(const QImage& image, int x, int y) {
    const QRgb c = image.pixel(x, y);
    return RGB(qRed(c), qGreen(c), qBlue(c));
}

std::string Ascii(const QImage& image, TColor ink) {
    std::string out;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) out += PixelAt(image, x, y) == ink ? '#' : '.';
        out += '\n';
    }
    return out;
}

int CountPixels(const QImage& image, TColor color) {
    int n = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) n += PixelAt(image, x, y) == color;
    return n;
}

namespace {

template <class Inked>
TRect boundsOf(const QImage& image, Inked inked) {
    TRect r{INT32_MAX, INT32_MAX, INT32_MIN, INT32_MIN};
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (inked(PixelAt(image, x, y))) r = {std::min(r.left, x), std::min(r.top, y), std::max(r.right, x + 1),
                                                  std::max(r.bottom, y + 1)};
    return r.right == INT32_MIN ? TRect{} : r;
}

}  // namespace

TRect InkBounds(const QImage& image, TColor color) {
    return boundsOf(image, [color](TColor c) { return c == color; });
}

TRect InkBoundsExcept(const QImage& image, TColor background) {
    return boundsOf(image, [background](TColor c) { return c != background; });
}

std::unique_ptr<TBitmap> FilledBitmap(int w, int h, TColor color, TPixelFormat format) {
    auto bmp = std::make_unique<TBitmap>(w, h, format);
    bmp->Canvas()->Brush()->SetColor(color);
    bmp->Canvas()->FillRect(Rect(0, 0, w, h));
    return bmp;
}

MessageRecorder::MessageRecorder() {
    m_oldMessage = SetMessageHandler([this](const QString& s) { messages << s; });
    m_oldFatal = SetFatalHandler([this](const QString& s) { fatal << s; });
}

MessageRecorder::~MessageRecorder() {
    SetMessageHandler(m_oldMessage);
    SetFatalHandler(m_oldFatal);
}

}  // namespace faroven::test
