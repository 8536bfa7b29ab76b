// The canvas's task menu in Qt Designer: "Edit User Data…" opens the user
// data editor on the canvas and stores the edited pairs in the form through
// the UserDataPairs property, so that they are saved in the .ui file, the
// form is marked changed and Designer can undo the edit.
#pragma once

#include <QPointer>
#include <QtDesigner/QDesignerTaskMenuExtension>
#include <QtDesigner/QExtensionFactory>

class QAction;

namespace faroven {

class TMyCAD;

class TUserDataTaskMenu : public QObject, public QDesignerTaskMenuExtension {
    Q_OBJECT
    Q_INTERFACES(QDesignerTaskMenuExtension)
public:
    TUserDataTaskMenu(TMyCAD* canvas, QObject* parent);

    QAction* preferredEditAction() const override { return m_editAction; }
    QList<QAction*> taskActions() const override { return {m_editAction}; }

private:
    void editUserData();

    QPointer<TMyCAD> m_canvas;
    QAction* m_editAction;
};

// Makes the task menu for canvases, and nothing for other widgets.
class TUserDataTaskMenuFactory : public QExtensionFactory {
    Q_OBJECT
public:
    explicit TUserDataTaskMenuFactory(QExtensionManager* parent = nullptr) : QExtensionFactory(parent) {}

protected:
    QObject* createExtension(QObject* object, const QString& iid, QObject* parent) const override;
};

}  // namespace faroven
