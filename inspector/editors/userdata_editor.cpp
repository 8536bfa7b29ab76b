#include "inspector/editors/userdata_editor.h"

#include "inspector/editors/grid_dialog_layout.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTableWidget>

namespace faroven {

namespace {
constexpr int kKeyColumn = 0;
constexpr int kValueColumn = 1;
}  // namespace

struct TUserDataEditor::Private {
    explicit Private(TUserDataEditor* owner) : self(owner) {}
    TUserDataEditor* self;
    // The pairs as edited; the grid shows them row for row.
    std::vector<TUserDataRecord> records;
    QTableWidget* grid = nullptr;
    QPushButton* remove = nullptr;
    QPushButton* up = nullptr;
    QPushButton* down = nullptr;

    bool validRow(int row) const { return row >= 0 && row < int(records.size()); }

    // The row holding the key, other than the row skipped; -1 when none.
    int rowOfKey(const QString& key, int skipped = -1) const {
        for (int row = 0; row < int(records.size()); ++row)
            if (row != skipped && records[size_t(row)].Key == key) return row;
        return -1;
    }

    void report(const QString& message) {
        if (self->OnError) self->OnError(message);
        else QMessageBox::warning(self, self->windowTitle(), message);
    }

    // Refills the grid from the pairs and makes row current.
    void showRecords(int row) {
        {
            const QSignalBlocker blocker(grid);
            grid->setRowCount(int(records.size()));
            for (int r = 0; r < int(records.size()); ++r) {
                grid->setItem(r, kKeyColumn, new QTableWidgetItem(records[size_t(r)].Key));
                grid->setItem(r, kValueColumn, new QTableWidgetItem(records[size_t(r)].Value));
            }
        }
        if (validRow(row)) grid->setCurrentCell(row, std::max(0, grid->currentColumn()));
        updateButtons();
    }

    // Puts the pair's text back into a cell whose edit was refused.
    void restoreCell(int row, int column) {
        const QSignalBlocker blocker(grid);
        const TUserDataRecord& record = records[size_t(row)];
        grid->item(row, column)->setText(column == kKeyColumn ? record.Key : record.Value);
    }

    void updateButtons() {
        const int row = grid->currentRow();
        remove->setEnabled(validRow(row));
        up->setEnabled(validRow(row) && row > 0);
        down->setEnabled(validRow(row) && row + 1 < int(records.size()));
    }

    void cellEdited(QTableWidgetItem* item) {
        if (!validRow(item->row())) return;
        if (item->column() == kKeyColumn) self->RenameKey(item->row(), item->text());
        else self->SetValue(item->row(), item->text());
    }
};

TUserDataEditor::TUserDataEditor(QWidget* parent) : QDialog(parent), d(new Private(this)) {
    setWindowTitle(tr("User data"));
    d->grid = new QTableWidget(0, 2);
    d->grid->setObjectName(QStringLiteral("grid"));
    d->grid->setHorizontalHeaderLabels({tr("Key"), tr("Value")});
    d->grid->horizontalHeader()->setSectionResizeMode(kKeyColumn, QHeaderView::Interactive);
    d->grid->horizontalHeader()->setStretchLastSection(true);
    d->grid->setColumnWidth(kKeyColumn, 160);
    d->grid->verticalHeader()->setDefaultSectionSize(d->grid->fontMetrics().height() + 10);
    d->grid->setSelectionBehavior(QAbstractItemView::SelectRows);
    d->grid->setSelectionMode(QAbstractItemView::SingleSelection);
    d->grid->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                             QAbstractItemView::AnyKeyPressed);

    auto add = new QPushButton(tr("&Add"));
    add->setObjectName(QStringLiteral("addButton"));
    d->remove = new QPushButton(tr("&Delete"));
    d->remove->setObjectName(QStringLiteral("deleteButton"));
    d->up = new QPushButton(tr("Move &up"));
    d->up->setObjectName(QStringLiteral("upButton"));
    d->down = new QPushButton(tr("Move d&own"));
    d->down->setObjectName(QStringLiteral("downButton"));
    auto buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    LayOutGridDialog(this, d->grid, {add, d->remove, d->up, d->down}, buttons);

    connect(add, &QPushButton::clicked, this, [this] {
        const int row = AddNewPair();
        d->grid->setFocus();
        d->grid->editItem(d->grid->item(row, kKeyColumn));
    });
    connect(d->remove, &QPushButton::clicked, this, [this] { DeleteRow(d->grid->currentRow()); });
    connect(d->up, &QPushButton::clicked, this, [this] { MoveRow(d->grid->currentRow(), -1); });
    connect(d->down, &QPushButton::clicked, this, [this] { MoveRow(d->grid->currentRow(), +1); });
    connect(d->grid, &QTableWidget::itemChanged, this, [this](QTableWidgetItem* item) { d->cellEdited(item); });
    connect(d->grid, &QTableWidget::currentCellChanged, this, [this] { d->updateButtons(); });
    d->showRecords(-1);
}

TUserDataEditor::~TUserDataEditor() { delete d; }

QTableWidget* TUserDataEditor::Grid() const { return d->grid; }

void TUserDataEditor::SetUserData(const TUserData& data) {
    d->records = data.Records();
    d->showRecords(d->records.empty() ? -1 : 0);
}

TUserData TUserDataEditor::UserData() const {
    TUserData data;
    data.SetUserDataRecord(d->records);
    return data;
}

bool TUserDataEditor::AddPair(const QString& key, const QString& value) {
    if (key.isEmpty()) {
        d->report(tr("A pair needs a key."));
        return false;
    }
    if (d->rowOfKey(key) >= 0) {
        d->report(tr("The key \"%1\" is already used; every key must be unique.").arg(key));
        return false;
    }
    d->records.push_back({key, value});
    d->showRecords(int(d->records.size()) - 1);
    return true;
}

int TUserDataEditor::AddNewPair() {
    QString key;
    for (int n = 1; key.isEmpty() || d->rowOfKey(key) >= 0; ++n) key = QStringLiteral("Key%1").arg(n);
    AddPair(key, QString());
    return int(d->records.size()) - 1;
}

bool TUserDataEditor::RenameKey(int row, const QString& newKey) {
    if (!d->validRow(row)) return false;
    const QString oldKey = d->records[size_t(row)].Key;
    QString refusal;
    if (newKey.isEmpty()) refusal = tr("A key cannot be empty; the key stays \"%1\".").arg(oldKey);
    else if (d->rowOfKey(newKey, row) >= 0)
        refusal = tr("The key \"%1\" is already used; the key stays \"%2\".").arg(newKey, oldKey);
    if (!refusal.isEmpty()) {
        d->restoreCell(row, kKeyColumn);
        d->report(refusal);
        return false;
    }
    d->records[size_t(row)].Key = newKey;
    d->restoreCell(row, kKeyColumn);
    return true;
}

bool TUserDataEditor::SetValue(int row, const QString& value) {
    if (!d->validRow(row)) return false;
    d->records[size_t(row)].Value = value;
    d->restoreCell(row, kValueColumn);
    return true;
}

void TUserDataEditor::DeleteRow(int row) {
    if (!d->validRow(row)) return;
    d->records.erase(d->records.begin() + row);
    d->showRecords(std::min(row, int(d->records.size()) - 1));
}

void TUserDataEditor::MoveRow(int row, int delta) {
    const int target = row + delta;
    if (!d->validRow(row) || !d->validRow(target) || delta == 0) return;
    const TUserDataRecord moved = d->records[size_t(row)];
    d->records.erase(d->records.begin() + row);
    d->records.insert(d->records.begin() + target, moved);
    d->showRecords(target);
}

bool TUserDataEditor::Edit(TUserData& data, QWidget* parent, const QString& title) {
    TUserDataEditor editor(parent);
    if (!title.isEmpty()) editor.setWindowTitle(title);
    editor.SetUserData(data);
    if (editor.exec() != QDialog::Accepted) return false;
    const TUserData edited = editor.UserData();
    if (edited == data) return false;
    data.Assign(edited);
    return true;
}

}  // namespace faroven
