// Helpers shared by the suites: pixel inspection of bitmaps and images, and a
// recorder for the message box.
#pragma once

#include "platform/bitmap.h"
#include "platform/color.h"
#include "platform/system.h"

#include <QImage>
#include <QString>
#include <QStringList>
#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace faroven::test {

// The colour of pixel (x, y) as a TColor.
TColor PixelAt(const QImage& image, int x, int y);
inline TColor PixelAt(const TBitmap& bitmap, int x, int y) { return PixelAt(bitmap.Image(), x, y); }

// A picture of the image with one character per pixel: '#' for pixels of the
// given colour, '.' for all others. Handy in failure messages.
std::string Ascii(const QImage& image, TColor ink);

// Number of pixels of the given colour.
int CountPixels(const QImage& image, TColor color);

// The bounding box of the pixels of a colour, right and bottom exclusive;
// an empty rectangle when there are none.
TRect InkBounds(const QImage& image, TColor color);

// The bounding box of every pixel that differs from the background colour
// (antialiased text has no pixel of exactly its own colour).
TRect InkBoundsExcept(const QImage& image, TColor background);

// A bitmap of the size and pixel format filled with one colour.
std::unique_ptr<TBitmap> FilledBitmap(int w, int h, TColor color, TPixelFormat format = pfDevice);

// The message of the E that f raises; "<no exception>" when it raises none.
template <class E, class F>
QString MessageOf(F&& f) {
    try {
        f();
    } catch (const E& e) {
        return e.Message();
    }
    return QStringLiteral("<no exception>");
}

// Whether f raises an E whose message holds the fragment; else the message seen.
template <class E, class F>
::testing::AssertionResult RaisesWith(F&& f, const QString& fragment) {
    const QString message = MessageOf<E>(f);
    if (message.contains(fragment)) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "message: " << message.toStdString();
}

// While alive, message boxes and the fatal exit are recorded instead of shown.
class MessageRecorder {
public:
    MessageRecorder();
    ~MessageRecorder();
    QStringList messages;
    QStringList fatal;
private:
    TMessageHandler m_oldMessage;
    TFatalHandler m_oldFatal;
};

}  // namespace faroven::test
