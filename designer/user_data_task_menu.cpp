#include "designer/user_data_task_menu.h"

#include "cad/canvas/mycad.h"
#include "inspector/editors/userdata_editor.h"

#include <QAction>
#include <QtDesigner/QDesignerFormWindowCursorInterface>
#include <QtDesigner/QDesignerFormWindowInterface>

namespace faroven {

namespace {
// Key, value, key, value… as the canvas's UserDataPairs property holds them.
QStringList flatten(const TUserData& data) {
    QStringList flat;
    for (const TUserDataRecord& record : data.Records()) flat << record.Key << record.Value;
    return flat;
}
}  // namespace

TUserDataTaskMenu::TUserDataTaskMenu(TMyCAD* canvas, QObject* parent)
    : QObject(parent), m_canvas(canvas), m_editAction(new QAction(QStringLiteral("Edit User Data\u2026"), this)) {
    connect(m_editAction, &QAction::triggered, this, &TUserDataTaskMenu::editUserData);
}

void TUserDataTaskMenu::editUserData() {
    if (!m_canvas) return;
    // The editor works on a copy: the canvas changes only through the
    // property below, which Designer records as an undoable edit.
    TUserData pairs;
    pairs.Assign(*m_canvas->UserData());
    const QString title = QStringLiteral("User data of %1").arg(m_canvas->objectName());
    if (!TUserDataEditor::Edit(pairs, m_canvas->window(), title)) return;

    const QStringList flat = flatten(pairs);
    if (flat == m_canvas->userDataPairs()) return;
    // Through the form's cursor the change is an undoable command that marks
    // the form changed; setWidgetProperty aims at this canvas even when other
    // widgets are selected with it.
    if (QDesignerFormWindowInterface* form = QDesignerFormWindowInterface::findFormWindow(m_canvas))
        form->cursor()->setWidgetProperty(m_canvas, QStringLiteral("UserDataPairs"), flat);
    else
        m_canvas->setUserDataPairs(flat);
}

QObject* TUserDataTaskMenuFactory::createExtension(QObject* object, const QString& iid, QObject* parent) const {
    if (iid != Q_TYPEID(QDesignerTaskMenuExtension)) return nullptr;
    auto* canvas = qobject_cast<TMyCAD*>(object);
    return canvas ? new TUserDataTaskMenu(canvas, parent) : nullptr;
}

}  // namespace faroven
