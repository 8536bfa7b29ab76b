// TUserDataEditor: the modal editor of a TUserData, a grid of key/value pairs
// with add, rename, delete and reorder. Keys stay unique as AddKeyandValue
// keeps them: a key that is already present is refused with a message.
#pragma once

#include "cad/persistence/userdata.h"

#include <QDialog>

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

    // Shows the dialog for data; on OK the edited pairs replace data's and
    // true is returned, on Cancel data is left alone.
    static bool Edit(TUserData& data, QWidget* parent = nullptr, const QString& title = QString());

private:
    struct Private;
    Private* d;
};

}  // namespace faroven
