// TFontEditor: the modal editor of a TFont: face, size in points, styles,
// colour, pitch, and a preview of sample text drawn with TFont::ToQFont().
// A face that is not installed is kept as typed, so that a drawing made
// elsewhere keeps its font name. The character set is carried over as is.
//
// Child widgets, by object name: "face" (QFontComboBox, editable), "size"
// (QSpinBox, 1..1638), "bold", "italic", "underline", "strikeOut"
// (QCheckBox), "colorButton" (QPushButton opening TColorEditor), "pitch"
// (QComboBox in TFontPitch order), "preview" (QLabel).
#pragma once

#include "platform/graphics.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QFontComboBox;
class QLabel;
class QPushButton;
class QSpinBox;

namespace faroven {

class TFontEditor : public QDialog {
    Q_OBJECT
public:
    explicit TFontEditor(QWidget* parent = nullptr);

    void SetFont(const TFont& font);
    // The font as the fields stand.
    void GetFont(TFont& out) const;
    // The colour the colour button shows (set by SetFont or the colour editor).
    TColor FontColor() const { return m_color; }
    void SetFontColor(TColor color);

    QLabel* Preview() const { return m_preview; }

    // Shows the dialog on font; true when OK was pressed and the font changed
    // (then font holds the new one).
    static bool Edit(TFont& font, QWidget* parent = nullptr, const QString& title = QString());

    static constexpr int kMaxSize = 1638;

private:
    void chooseColor();
    void updatePreview();

    QFontComboBox* m_face = nullptr;
    QSpinBox* m_size = nullptr;
    QCheckBox* m_bold = nullptr;
    QCheckBox* m_italic = nullptr;
    QCheckBox* m_underline = nullptr;
    QCheckBox* m_strikeOut = nullptr;
    QPushButton* m_colorButton = nullptr;
    QComboBox* m_pitch = nullptr;
    QLabel* m_preview = nullptr;
    // The face SetFont gave, kept when the face field is emptied.
    QString m_name;
    TColor m_color = clWindowText;
    TFontCharset m_charset = DEFAULT_CHARSET;
};

}  // namespace faroven
