#include "inspector/editors/color_editor.h"

#include "inspector/color_names.h"

#include <QColorDialog>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace faroven {

TColorEditor::TColorEditor(QWidget* parent) : QDialog(parent) {
    setWindowTitle(tr("Colour"));
    m_list = new QListWidget;
    m_list->setObjectName(QStringLiteral("colorList"));
    m_list->setIconSize(QSize(28, 14));
    m_list->setUniformItemSizes(true);
    addHeading(tr("Standard colours"));
    for (const auto* names : {&StandardColorNames(), &SystemColorNames()}) {
        if (names == &SystemColorNames()) addHeading(tr("System colours"));
        for (const TColorName& n : *names) {
            auto item = new QListWidgetItem(QIcon(ColorSwatch(n.Color, m_list->iconSize())), QLatin1String(n.Name));
            item->setData(Qt::UserRole, n.Color);
            m_list->addItem(item);
        }
    }

    m_preview = new QLabel;
    m_preview->setObjectName(QStringLiteral("preview"));
    m_name = new QLineEdit;
    m_name->setObjectName(QStringLiteral("nameEdit"));
    m_name->setToolTip(tr("A colour name such as clRed or clBtnFace, or $00BBGGRR"));
    m_custom = new QPushButton(tr("&Custom…"));
    m_custom->setObjectName(QStringLiteral("customButton"));
    auto buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto side = new QVBoxLayout;
    side->addWidget(new QLabel(tr("Preview:")));
    side->addWidget(m_preview);
    side->addSpacing(8);
    auto nameLabel = new QLabel(tr("&Value:"));
    nameLabel->setBuddy(m_name);
    side->addWidget(nameLabel);
    side->addWidget(m_name);
    side->addSpacing(8);
    side->addWidget(m_custom);
    side->addStretch(1);

    auto layout = new QGridLayout(this);
    layout->addWidget(m_list, 0, 0);
    layout->addLayout(side, 0, 1);
    layout->addWidget(buttons, 1, 0, 1, 2);
    layout->setColumnStretch(0, 1);
    setMinimumSize(420, 360);
    resize(440, 440);

    connect(m_list, &QListWidget::currentItemChanged, this, [this](QListWidgetItem* item) {
        const QVariant value = item ? item->data(Qt::UserRole) : QVariant();
        if (value.isValid()) SetColor(value.toInt());
    });
    connect(m_custom, &QPushButton::clicked, this, &TColorEditor::chooseCustom);
    connect(m_name, &QLineEdit::editingFinished, this, &TColorEditor::takeTypedName);
    showColor();
}

void TColorEditor::addHeading(const QString& text) {
    auto item = new QListWidgetItem(text);
    item->setFlags(Qt::ItemIsEnabled);
    QFont bold = m_list->font();
    bold.setBold(true);
    item->setFont(bold);
    m_list->addItem(item);
}

void TColorEditor::SetColor(TColor color) {
    m_color = color;
    showColor();
}

void TColorEditor::showColor() {
    m_preview->setPixmap(ColorSwatch(m_color, QSize(96, 48)));
    m_name->setText(ColorToString(m_color));
    // The row of the colour, or none for a colour without a name.
    const QSignalBlocker blocker(m_list);
    m_list->setCurrentItem(nullptr);
    m_list->clearSelection();
    for (int row = 0; row < m_list->count(); ++row) {
        const QVariant value = m_list->item(row)->data(Qt::UserRole);
        if (value.isValid() && value.toInt() == m_color) {
            m_list->setCurrentRow(row);
            m_list->scrollToItem(m_list->item(row), QAbstractItemView::PositionAtCenter);
            break;
        }
    }
}

// QColorDialog knows RGB only: its choice is a plain colour.
void TColorEditor::chooseCustom() {
    QColorDialog dialog(ToQColor(m_color), this);
    dialog.setWindowTitle(tr("Custom colour"));
    if (dialog.exec() == QDialog::Accepted) SetColor(FromQColor(dialog.currentColor()));
}

// Text that is no colour gives the shown value back.
void TColorEditor::takeTypedName() {
    bool ok = false;
    const TColor typed = StringToColor(m_name->text(), &ok);
    if (ok && typed != m_color) SetColor(typed);
    else if (!ok || m_name->text() != ColorToString(m_color)) showColor();
}

bool TColorEditor::Edit(TColor& color, QWidget* parent, const QString& title) {
    TColorEditor editor(parent);
    if (!title.isEmpty()) editor.setWindowTitle(title);
    editor.SetColor(color);
    if (editor.exec() != QDialog::Accepted || editor.Color() == color) return false;
    color = editor.Color();
    return true;
}

}  // namespace faroven
