// Process-wide services of the host: screen resolution, message box, fatal
// exit, the printer (platform/printer.h) and the clipboard. Each can be replaced so that tests and
// headless programs observe what would otherwise need a person.
#pragma once

#include "platform/printer.h"
#include "platform/types.h"

#include <QString>
#include <utility>
#include <vector>
#include <functional>
#include <memory>

class QImage;

namespace faroven {

class TCanvas;
class TBitmap;

// Logical pixels per inch of the primary screen (96 without a screen). A value
// pinned with SetScreenPixelsPerInch wins; 0 unpins it.
int ScreenPixelsPerInch();
void SetScreenPixelsPerInch(int ppi);

// Shows a modal message box; with a handler installed, the handler gets the text instead.
using TMessageHandler = std::function<void(const QString& text)>;
void ShowMessage(const QString& text);
TMessageHandler SetMessageHandler(TMessageHandler handler);

// Ends the application after showing the message. The default handler shows
// the message box and calls std::exit(1); a replaced handler may return, and
// then the caller goes on with its failure result.
using TFatalHandler = std::function<void(const QString& text)>;
void FatalExit(const QString& text);
TFatalHandler SetFatalHandler(TFatalHandler handler);


class TClipboard {
public:
    QString AsText() const;
    void SetAsText(const QString& text);
    void SetImage(const QImage& image);
    QImage Image() const;
    bool HasImage() const;
    // Several forms of the same content at once: data under MIME types and,
    // when not null, an image (offered in the platform's image formats).
    void SetFormats(const std::vector<std::pair<QString, QByteArray>>& formats, const QImage& image);
    bool HasFormat(const QString& mimeType) const;
    QByteArray Data(const QString& mimeType) const;
};
TClipboard* Clipboard();

}  // namespace faroven
