#include "support/test_support.h"

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

TRect InkBounds(const QImage& image, TColor color) {
    TRect r{INT32_MAX, INT32_MAX, INT32_MIN, INT32_MIN};
    bool any = false;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (PixelAt(image, x, y) == color) {
                any = true;
                r.left = std::min(r.left, x);
                r.top = std::min(r.top, y);
                r.right = std::max(r.right, x + 1);
                r.bottom = std::max(r.bottom, y + 1);
            }
    return any ? r : TRect{};
}

TRect InkBoundsExcept(const QImage& image, TColor background) {
    TRect r{INT32_MAX, INT32_MAX, INT32_MIN, INT32_MIN};
    bool any = false;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (PixelAt(image, x, y) != background) {
                any = true;
                r.left = std::min(r.left, x);
                r.top = std::min(r.top, y);
                r.right = std::max(r.right, x + 1);
                r.bottom = std::max(r.bottom, y + 1);
            }
    return any ? r : TRect{};
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
