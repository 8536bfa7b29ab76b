#include "inspector/editors/userdata_editor.h"

namespace faroven {

struct TUserDataEditor::Private {
    TUserData data;
};

TUserDataEditor::TUserDataEditor(QWidget* parent) : QDialog(parent), d(new Private) {}
TUserDataEditor::~TUserDataEditor() { delete d; }
void TUserDataEditor::SetUserData(const TUserData& data) { d->data.Assign(data); }
TUserData TUserDataEditor::UserData() const { TUserData copy; copy.Assign(d->data); return copy; }

bool TUserDataEditor::Edit(TUserData& data, QWidget* parent, const QString& title) {
    TUserDataEditor editor(parent);
    if (!title.isEmpty()) editor.setWindowTitle(title);
    editor.SetUserData(data);
    if (editor.exec() != QDialog::Accepted) return false;
    data.Assign(editor.UserData());
    return true;
}

}  // namespace faroven
