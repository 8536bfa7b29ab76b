#include "inspector/property_delegate.h"

#include "inspector/color_names.h"
#include "inspector/component_inspector.h"
#include "inspector/property_node.h"
#include "inspector/property_value.h"

#include <QComboBox>
#include <QDoubleValidator>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpressionValidator>
#include <QToolButton>

namespace faroven {

namespace {

// An editor widget with a "…" button beside it that asks for the property's dialog.
class ValueWithButton : public QWidget {
public:
    ValueWithButton(QWidget* field, QWidget* parent) : QWidget(parent), field(field) {
        auto* layout = new QHBoxLayout(this);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(0);
        field->setParent(this);
        layout->addWidget(field, 1);
        button = new QToolButton(this);
        button->setText(QStringLiteral("…"));
        button->setObjectName(QStringLiteral("editorButton"));
        button->setToolTip(QObject::tr("Open the editor"));
        layout->addWidget(button);
        setFocusProxy(field);
        setAutoFillBackground(true);
    }
    QWidget* field;
    QToolButton* button;
};

QComboBox* colorCombo(QWidget* parent) {
    auto* combo = new QComboBox(parent);
    combo->setEditable(true);
    combo->setInsertPolicy(QComboBox::NoInsert);
    for (const auto* list : {&StandardColorNames(), &SystemColorNames()})
        for (const TColorName& n : *list) combo->addItem(QIcon(ColorSwatch(n.Color)), QLatin1String(n.Name));
    return combo;
}

QString fieldText(QWidget* field) {
    if (auto* line = qobject_cast<QLineEdit*>(field)) return line->text();
    if (auto* combo = qobject_cast<QComboBox*>(field)) return combo->currentText();
    return QString();
}

}  // namespace

TPropertyDelegate::TPropertyDelegate(TComponentInspector* inspector) : QStyledItemDelegate(inspector), m_inspector(inspector) {}

QWidget* TPropertyDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&, const QModelIndex& index) const {
    const QString path = index.data(PathRole).toString();
    const TPropertyNode* node = m_inspector->PropertyNode(path);
    if (index.column() != 1 || !node || node->ReadOnly() || node->Kind == TPropertyKind::Bool) return nullptr;

    QWidget* field = nullptr;
    switch (node->Kind) {
    case TPropertyKind::Enum: {
        auto* combo = new QComboBox(parent);
        for (int i = 0; i < node->Enum.keyCount(); ++i) combo->addItem(QLatin1String(node->Enum.key(i)), node->Enum.value(i));
        return combo;
    }
    case TPropertyKind::Integer: {
        auto* line = new QLineEdit(parent);
        line->setValidator(new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[-+]?\\d{0,20}")), line));
        return line;
    }
    case TPropertyKind::Float: {
        auto* line = new QLineEdit(parent);
        auto* validator = new QDoubleValidator(line);
        validator->setLocale(QLocale::c());
        line->setValidator(validator);
        return line;
    }
    case TPropertyKind::Set: return new QLineEdit(parent);
    case TPropertyKind::Color: field = colorCombo(parent); break;
    case TPropertyKind::String: field = new QLineEdit(parent); break;
    case TPropertyKind::Strings: case TPropertyKind::Font: case TPropertyKind::UserData:
    case TPropertyKind::Picture: case TPropertyKind::Layers:
        field = new QLabel(parent);
        break;
    default: return nullptr;
    }
    auto* editor = new ValueWithButton(field, parent);
    connect(editor->button, &QToolButton::clicked, this, [this, editor, path] {
        auto* self = const_cast<TPropertyDelegate*>(this);
        emit self->closeEditor(editor, QAbstractItemDelegate::NoHint);
        QMetaObject::invokeMethod(m_inspector, [inspector = m_inspector, path] { inspector->OpenEditor(path); },
                                  Qt::QueuedConnection);
    });
    return editor;
}

void TPropertyDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
    const QString path = index.data(PathRole).toString();
    const QString text = m_inspector->PropertyText(path);
    if (auto* combo = qobject_cast<QComboBox*>(editor)) {
        combo->setCurrentIndex(combo->findText(text));
    } else if (auto* line = qobject_cast<QLineEdit*>(editor)) {
        line->setText(text);
    } else if (auto* composite = dynamic_cast<ValueWithButton*>(editor)) {
        if (auto* combo = qobject_cast<QComboBox*>(composite->field)) combo->setEditText(text);
        else if (auto* line = qobject_cast<QLineEdit*>(composite->field)) line->setText(text);
        else if (auto* label = qobject_cast<QLabel*>(composite->field)) label->setText(text);
    }
}

void TPropertyDelegate::setModelData(QWidget* editor, QAbstractItemModel*, const QModelIndex& index) const {
    const QString path = index.data(PathRole).toString();
    const QString before = m_inspector->PropertyText(path);
    QString text;
    if (auto* combo = qobject_cast<QComboBox*>(editor)) text = combo->currentText();
    else if (auto* line = qobject_cast<QLineEdit*>(editor)) text = line->text();
    else if (auto* composite = dynamic_cast<ValueWithButton*>(editor)) {
        if (qobject_cast<QLabel*>(composite->field)) return;  // edited only in its dialog
        text = fieldText(composite->field);
    }
    // Leaving an editor unchanged is not an edit (and records no undo step).
    if (text == before) return;
    const TPropertyNode* node = m_inspector->PropertyNode(path);
    if (node && node->Kind == TPropertyKind::String) m_inspector->SetPropertyValue(path, text);
    else m_inspector->SetPropertyText(path, text);
}

void TPropertyDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option, const QModelIndex&) const {
    editor->setGeometry(option.rect);
}

QSize TPropertyDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    size.setHeight(std::max(size.height() + 4, 22));
    return size;
}

}  // namespace faroven
