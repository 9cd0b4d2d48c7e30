#pragma once

#include "platform/main_queue.h"

#include <QObject>
#include <QPointer>

#include <chrono>

namespace corvane::panes {

/// How long a button says that it has copied something.
inline constexpr std::chrono::milliseconds copiedFor{1200};

/// A flag that is raised for a while: "just copied", "really remove?". Main thread.
///
/// Raising it again does not take the earlier fall back, which then comes early.
class PassingFlag : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    [[nodiscard]] bool isRaised() const { return m_raised; }

    void raise(platform::MainQueue &queue, std::chrono::nanoseconds duration)
    {
        setRaised(true);
        queue.after(duration, [flag = QPointer(this)] {
            if (flag) {
                flag->setRaised(false);
            }
        });
    }
    void lower() { setRaised(false); }

Q_SIGNALS:
    void changed();

private:
    void setRaised(bool raised)
    {
        if (m_raised != raised) {
            m_raised = raised;
            Q_EMIT changed();
        }
    }

    bool m_raised = false;
};

} // namespace corvane::panes
