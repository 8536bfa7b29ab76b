// A call made once when control returns to the event loop, however often it
// was asked for before: views that follow the canvas's selection rebuild
// once for a whole run of changes.
#pragma once

#include <QObject>
#include <QTimer>
#include <functional>

namespace faroven {

class TDeferredCall {
public:
    TDeferredCall(QObject* context, std::function<void()> call) : m_context(context), m_call(std::move(call)) {}
    void Request() {
        if (m_pending) return;
        m_pending = true;
        QTimer::singleShot(0, m_context, [this] {
            m_pending = false;
            m_call();
        });
    }

private:
    QObject* m_context;
    std::function<void()> m_call;
    bool m_pending = false;
};

}  // namespace faroven
