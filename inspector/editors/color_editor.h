// TColorEditor: the modal editor of a TColor. A list of the standard named
// colours and of the system colours, each with a swatch; "Custom…" picks any
// RGB colour with QColorDialog; the name field accepts what StringToColor
// reads ("clRed", "$00BBGGRR"). A system colour is kept as the system value
// ($8000000F for clBtnFace), so that it follows the palette, not as its RGB.
//
// Child widgets, by object name: "colorList" (QListWidget; colour rows carry
// the TColor in Qt::UserRole, heading rows carry nothing), "customButton",
// "preview" (QLabel with the swatch), "nameEdit" (QLineEdit).
#pragma once

#include "platform/color.h"

#include <QDialog>
#include <QPixmap>

class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;

namespace faroven {

class TColorEditor : public QDialog {
    Q_OBJECT
public:
    explicit TColorEditor(QWidget* parent = nullptr);

    void SetColor(TColor color);
    TColor Color() const { return m_color; }

    QListWidget* ColorList() const { return m_list; }
    QPushButton* CustomButton() const { return m_custom; }

    // Shows the dialog on color; true when OK was pressed and the colour
    // changed (then color holds the new one).
    static bool Edit(TColor& color, QWidget* parent = nullptr, const QString& title = QString());

private:
    void addHeading(const QString& text);
    void chooseCustom();
    void takeTypedName();
    // Shows the colour in the preview, the name field and the list.
    void showColor();

    TColor m_color = clBlack;
    QListWidget* m_list = nullptr;
    QPushButton* m_custom = nullptr;
    QLabel* m_preview = nullptr;
    QLineEdit* m_name = nullptr;
};

}  // namespace faroven
