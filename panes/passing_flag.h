#pragma once

#include "platform/main_queue.h"

#include <QObject>
#include <QPointer>

#include <chrono>

namespace corvane::panes {

/// How long a button shows that it has copied something.
inline constexpr std::chrono::milliseconds copiedFor{1200};

/// A flag that is raised for a limited time: "just copied", "really remove?". Main thread.
///
/// A second raise() keeps the first timer: the flag is lowered when the first time is over.
class PassingFlag : public QObject
{
    Q_OBJECT

public:
    PassingFlag(platform::MainQueue &queue, std::chrono::nanoseconds duration)
        : m_queue(queue)
        , m_duration(duration)
    {}

    [[nodiscard]] bool isRaised() const { return m_raised; }

    void raise()
    {
        setRaised(true);
        m_queue.after(m_duration, [flag = QPointer(this)] {
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

    platform::MainQueue &m_queue;
    std::chrono::nanoseconds m_duration;
    bool m_raised = false;
};

} // namespace corvane::panes
