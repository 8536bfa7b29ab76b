// Temporary interface stub.
#pragma once
#include "inspector/color_names.h"
#include "platform/bitmap.h"
#include "platform/graphics.h"
#include <QDialog>
#include <QStringList>
namespace faroven {
class TColorEditor : public QDialog {
    Q_OBJECT
public:
    explicit TColorEditor(QWidget* parent = nullptr) : QDialog(parent) {}
    static bool Edit(TColor& color, QWidget* parent = nullptr, const QString& title = QString()) { return false; }
};
}  // namespace faroven
