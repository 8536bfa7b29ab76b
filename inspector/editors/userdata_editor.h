// TUserDataEditor: the modal editor of a TUserData, a grid of key/value pairs
// with add, rename, delete and reorder. Keys stay unique as AddKeyandValue
// keeps them (exact, case-sensitive comparison): a key that another pair
// already has, or an empty key, is refused with a message and the old key
// comes back.
//
// Child widgets, by object name: "grid" (QTableWidget, columns Key and
// Value, edited in place), "addButton", "deleteButton", "upButton",
// "downButton".
#pragma once

#include "cad/persistence/userdata.h"

#include <QDialog>
#include <functional>

class QTableWidget;

namespace faroven {

class TUserDataEditor : public QDialog {
    Q_OBJECT
public:
    explicit TUserDataEditor(QWidget* parent = nullptr);
    ~TUserDataEditor() override;

    // The pairs shown (a copy; the dialog edits its own list).
    void SetUserData(const TUserData& data);
    // The pairs as they stand in the dialog, in its order.
    TUserData UserData() const;

    // The grid's actions, row by row. Each refusal is reported through
    // OnError and leaves the pairs as they were.
    // Appends a pair; refused for an empty key or one already present.
    bool AddPair(const QString& key, const QString& value);
    // Appends a pair under the first free key of "Key1", "Key2", …; returns its row.
    int AddNewPair();
    // Renames the key of a row; refused for an empty key or one another row has.
    bool RenameKey(int row, const QString& newKey);
    bool SetValue(int row, const QString& value);
    void DeleteRow(int row);
    // Moves a row by delta places (-1 up, +1 down); nothing when it would leave the grid.
    void MoveRow(int row, int delta);

    QTableWidget* Grid() const;

    // Reports a refused edit; a message box when not set.
    std::function<void(const QString& message)> OnError;

    // Shows the dialog for data; on OK the edited pairs replace data's and
    // true is returned when they differ, on Cancel data is left alone.
    static bool Edit(TUserData& data, QWidget* parent = nullptr, const QString& title = QString());

private:
    struct Private;
    Private* d;
};

}  // namespace faroven
