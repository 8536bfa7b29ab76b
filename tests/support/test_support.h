// Helpers shared by the suites: pixel inspection of bitmaps and images, and a
// recorder for the message box.
#pragma once

#include "platform/bitmap.h"
#include "platform/color.h"
#include "platform/system.h"

#include <QImage>
#include <QString>
#include <QStringList>
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
