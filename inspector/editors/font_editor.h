// Temporary interface stub.
#pragma once
#include "inspector/color_names.h"
#include "platform/bitmap.h"
#include "platform/graphics.h"
#include <QDialog>
#include <QStringList>
namespace faroven {
class TFontEditor : public QDialog {
    Q_OBJECT
public:
    explicit TFontEditor(QWidget* parent = nullptr) : QDialog(parent) {}
    static bool Edit(TFont& font, QWidget* parent = nullptr, const QString& title = QString()) { return false; }
};
}  // namespace faroven
