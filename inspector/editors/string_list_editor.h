// Temporary interface stub.
#pragma once
#include "inspector/color_names.h"
#include "platform/bitmap.h"
#include "platform/graphics.h"
#include <QDialog>
#include <QStringList>
namespace faroven {
class TStringListEditor : public QDialog {
    Q_OBJECT
public:
    explicit TStringListEditor(QWidget* parent = nullptr) : QDialog(parent) {}
    static bool Edit(QStringList& lines, QWidget* parent = nullptr, const QString& title = QString()) { return false; }
};
}  // namespace faroven
