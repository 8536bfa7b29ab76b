#include "inspector/editors/font_editor.h"

#include "inspector/color_names.h"
#include "inspector/editors/color_editor.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFontComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

namespace faroven {

namespace {
bool sameFont(const TFont& a, const TFont& b) {
    return a.Name() == b.Name() && a.Size() == b.Size() && a.Color() == b.Color() && a.Style() == b.Style() &&
           a.Charset() == b.Charset() && a.Pitch() == b.Pitch();
}
}  // namespace

TFontEditor::TFontEditor(QWidget* parent) : QDialog(parent) {
    setWindowTitle(tr("Font"));
    m_face = new QFontComboBox;
    m_face->setObjectName(QStringLiteral("face"));
    m_face->setEditable(true);
    // A typed face stays in the edit field instead of being matched to an installed one.
    m_face->setInsertPolicy(QComboBox::NoInsert);
    m_size = new QSpinBox;
    m_size->setObjectName(QStringLiteral("size"));
    m_size->setRange(1, kMaxSize);
    m_size->setSuffix(tr(" pt"));
    m_pitch = new QComboBox;
    m_pitch->setObjectName(QStringLiteral("pitch"));
    m_pitch->addItems({tr("Default"), tr("Variable"), tr("Fixed")});
    m_colorButton = new QPushButton;
    m_colorButton->setObjectName(QStringLiteral("colorButton"));

    auto check = [](const QString& text, const char* name) {
        auto box = new QCheckBox(text);
        box->setObjectName(QLatin1String(name));
        return box;
    };
    m_bold = check(tr("&Bold"), "bold");
    m_italic = check(tr("&Italic"), "italic");
    m_underline = check(tr("&Underline"), "underline");
    m_strikeOut = check(tr("S&trikeOut"), "strikeOut");
    auto styles = new QGroupBox(tr("Style"));
    auto styleLayout = new QHBoxLayout(styles);
    for (QCheckBox* box : {m_bold, m_italic, m_underline, m_strikeOut}) styleLayout->addWidget(box);
    styleLayout->addStretch(1);

    m_preview = new QLabel(tr("AaBbYyZz 0123"));
    m_preview->setObjectName(QStringLiteral("preview"));
    m_preview->setAlignment(Qt::AlignCenter);
    m_preview->setAutoFillBackground(true);
    m_preview->setFrameShape(QFrame::StyledPanel);
    // A big size is clipped by the preview rather than growing the dialog.
    m_preview->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    m_preview->setMinimumHeight(90);

    auto buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto form = new QFormLayout;
    form->addRow(tr("&Face:"), m_face);
    form->addRow(tr("&Size:"), m_size);
    form->addRow(tr("&Colour:"), m_colorButton);
    form->addRow(tr("&Pitch:"), m_pitch);
    auto layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(styles);
    layout->addWidget(m_preview, 1);
    layout->addWidget(buttons);
    setMinimumSize(420, 380);

    connect(m_face, &QComboBox::editTextChanged, this, &TFontEditor::updatePreview);
    connect(m_size, &QSpinBox::valueChanged, this, &TFontEditor::updatePreview);
    connect(m_pitch, &QComboBox::currentIndexChanged, this, &TFontEditor::updatePreview);
    for (QCheckBox* box : {m_bold, m_italic, m_underline, m_strikeOut})
        connect(box, &QCheckBox::toggled, this, &TFontEditor::updatePreview);
    connect(m_colorButton, &QPushButton::clicked, this, &TFontEditor::chooseColor);
    SetFont(TFont());
}

void TFontEditor::SetFont(const TFont& font) {
    m_name = font.Name();
    const int installed = m_face->findText(font.Name(), Qt::MatchFixedString);
    if (installed >= 0) m_face->setCurrentIndex(installed);
    m_face->setEditText(font.Name());
    m_size->setValue(font.Size());
    m_bold->setChecked(font.Style().Contains(fsBold));
    m_italic->setChecked(font.Style().Contains(fsItalic));
    m_underline->setChecked(font.Style().Contains(fsUnderline));
    m_strikeOut->setChecked(font.Style().Contains(fsStrikeOut));
    m_pitch->setCurrentIndex(int(font.Pitch()));
    m_charset = font.Charset();
    SetFontColor(font.Color());
}

void TFontEditor::GetFont(TFont& out) const {
    // An emptied face field keeps the face the font had.
    const QString face = m_face->currentText().trimmed();
    out.SetName(face.isEmpty() ? m_name : face);
    out.SetSize(m_size->value());
    TFontStyles styles;
    if (m_bold->isChecked()) styles.Include(fsBold);
    if (m_italic->isChecked()) styles.Include(fsItalic);
    if (m_underline->isChecked()) styles.Include(fsUnderline);
    if (m_strikeOut->isChecked()) styles.Include(fsStrikeOut);
    out.SetStyle(styles);
    out.SetColor(m_color);
    out.SetPitch(TFontPitch(std::max(0, m_pitch->currentIndex())));
    out.SetCharset(m_charset);
}

void TFontEditor::SetFontColor(TColor color) {
    m_color = color;
    m_colorButton->setIcon(QIcon(ColorSwatch(color, QSize(28, 14))));
    m_colorButton->setIconSize(QSize(28, 14));
    m_colorButton->setText(ColorToString(color));
    updatePreview();
}

void TFontEditor::chooseColor() {
    TColor color = m_color;
    if (TColorEditor::Edit(color, this, tr("Font colour"))) SetFontColor(color);
}

void TFontEditor::updatePreview() {
    TFont font;
    GetFont(font);
    m_preview->setFont(font.ToQFont());
    QPalette palette = m_preview->palette();
    const QColor ink = ToQColor(font.Color());
    palette.setColor(QPalette::WindowText, ink);
    // White paper, unless the text is too light to be seen on it.
    palette.setColor(QPalette::Window, ink.lightness() > 200 ? QColor(96, 96, 96) : QColor(Qt::white));
    m_preview->setPalette(palette);
}

bool TFontEditor::Edit(TFont& font, QWidget* parent, const QString& title) {
    TFontEditor editor(parent);
    if (!title.isEmpty()) editor.setWindowTitle(title);
    editor.SetFont(font);
    if (editor.exec() != QDialog::Accepted) return false;
    TFont edited;
    editor.GetFont(edited);
    if (sameFont(edited, font)) return false;
    font.Assign(edited);
    return true;
}

}  // namespace faroven
