// TComponent: a named object with a user tag, an owner and removal
// notifications. TComponentBase<Q> adds that interface to a Qt class, so that
// both plain components (over QObject) and controls (over QWidget) have it.
#pragma once

#include "platform/types.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <vector>

namespace faroven {

enum TOperation { opInsert, opRemove };

template <class QBase>
class TComponentBase : public QBase, public TPersistent {
public:
    using QBase::QBase;

    QString Name() const { return QBase::objectName(); }
    void SetName(const QString& name) { QBase::setObjectName(name); }
    int Tag() const { return m_tag; }
    void SetTag(int tag) { m_tag = tag; }
    // True while the component is being edited in a form designer rather than run.
    bool Designing() const { return m_designing; }
    void SetDesigning(bool designing) { m_designing = designing; }

    // Asks to be told (through Notification with opRemove) when other is destroyed.
    void FreeNotification(QObject* other) {
        if (!other) return;
        QObject::connect(other, &QObject::destroyed, this, [this](QObject* gone) { Notification(gone, opRemove); });
    }

protected:
    // Called when a component this one watches is inserted or removed. Overrides
    // clear their references to a removed component.
    virtual void Notification(QObject* component, TOperation operation) {}

private:
    int m_tag = 0;
    bool m_designing = false;
};

class TComponent : public TComponentBase<QObject> {
    Q_OBJECT
public:
    explicit TComponent(QObject* owner = nullptr) : TComponentBase<QObject>(owner) {}
};

}  // namespace faroven
