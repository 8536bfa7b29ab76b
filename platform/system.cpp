#include "platform/system.h"

#include "platform/bitmap.h"
#include "platform/canvas.h"

#include <QApplication>
#include <QClipboard>
#include <QGuiApplication>
#include <QMessageBox>
#include <QMimeData>
#include <QScreen>
#include <cstdlib>

namespace faroven {

namespace {
int g_pinnedPpi = 0;
TMessageHandler g_messageHandler;
TFatalHandler g_fatalHandler;
}  // namespace

int ScreenPixelsPerInch() {
    if (g_pinnedPpi > 0) return g_pinnedPpi;
    if (auto app = qobject_cast<QGuiApplication*>(QCoreApplication::instance())) {
        if (QScreen* screen = app->primaryScreen()) {
            const int ppi = qRound(screen->logicalDotsPerInch());
            if (ppi > 0) return ppi;
        }
    }
    return 96;
}

void SetScreenPixelsPerInch(int ppi) { g_pinnedPpi = ppi > 0 ? ppi : 0; }

void ShowMessage(const QString& text) {
    if (g_messageHandler) {
        g_messageHandler(text);
        return;
    }
    if (qobject_cast<QApplication*>(QCoreApplication::instance()))
        QMessageBox::information(nullptr, QCoreApplication::applicationName(), text);
    else
        qWarning("%s", qPrintable(text));
}

TMessageHandler SetMessageHandler(TMessageHandler handler) {
    std::swap(handler, g_messageHandler);
    return handler;
}

void FatalExit(const QString& text) {
    if (g_fatalHandler) {
        g_fatalHandler(text);
        return;
    }
    ShowMessage(text);
    std::exit(1);
}

TFatalHandler SetFatalHandler(TFatalHandler handler) {
    std::swap(handler, g_fatalHandler);
    return handler;
}

namespace {
QClipboard* systemClipboard() {
    return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) ? QGuiApplication::clipboard() : nullptr;
}
}  // namespace

QString TClipboard::AsText() const {
    auto c = systemClipboard();
    return c ? c->text() : QString();
}
void TClipboard::SetAsText(const QString& text) {
    if (auto c = systemClipboard()) c->setText(text);
}
void TClipboard::SetImage(const QImage& image) {
    if (auto c = systemClipboard()) c->setImage(image);
}
QImage TClipboard::Image() const {
    auto c = systemClipboard();
    return c ? c->image() : QImage();
}
bool TClipboard::HasImage() const {
    auto c = systemClipboard();
    return c && c->mimeData() && c->mimeData()->hasImage();
}

void TClipboard::SetFormats(const std::vector<std::pair<QString, QByteArray>>& formats, const QImage& image) {
    auto c = systemClipboard();
    if (!c) return;
    auto* data = new QMimeData;
    for (const auto& [type, bytes] : formats) data->setData(type, bytes);
    if (!image.isNull()) data->setImageData(image);
    c->setMimeData(data);  // the clipboard owns it
}
bool TClipboard::HasFormat(const QString& mimeType) const {
    auto c = systemClipboard();
    return c && c->mimeData() && c->mimeData()->hasFormat(mimeType);
}
QByteArray TClipboard::Data(const QString& mimeType) const {
    auto c = systemClipboard();
    return c && c->mimeData() ? c->mimeData()->data(mimeType) : QByteArray();
}

TClipboard* Clipboard() {
    static TClipboard clipboard;
    return &clipboard;
}

}  // namespace faroven
