// The grid's value editors: drop-downs of names for enumerations, an
// editable list of colour names with swatches and a "…" button for the
// colour editor, validated line edits for numbers, a line edit with "…" for
// strings, and a "…" button alone for values edited only in a dialog.
// Committing an editor sets the value through the inspector, which checks it
// and reports refusals; the model keeps only what the objects hold.
#pragma once

#include <QStyledItemDelegate>

namespace faroven {

class TComponentInspector;

class TPropertyDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    explicit TPropertyDelegate(TComponentInspector* inspector);

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

    // The item data role holding a row's property path.
    static constexpr int PathRole = Qt::UserRole + 1;

private:
    TComponentInspector* m_inspector;
};

}  // namespace faroven
