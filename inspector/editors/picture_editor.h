// Temporary interface stub.
#pragma once
#include "inspector/color_names.h"
#include "platform/bitmap.h"
#include "platform/graphics.h"
#include <QDialog>
#include <QStringList>
namespace faroven {
class TPictureEditor : public QDialog {
    Q_OBJECT
public:
    explicit TPictureEditor(QWidget* parent = nullptr) : QDialog(parent) {}
    static bool Edit(TBitmap& picture, QWidget* parent = nullptr, const QString& title = QString()) { return false; }
};
}  // namespace faroven
