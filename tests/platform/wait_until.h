#pragma once

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

#include <chrono>

namespace corvane::tests {

/// Runs the event loop until `condition` holds, looked at after every event and now and then; false
/// when it does not within `bound`.
template <typename Condition>
[[nodiscard]] bool waitUntil(Condition condition,
                             std::chrono::milliseconds bound = std::chrono::seconds(10))
{
    const QDeadlineTimer deadline(bound);
    QTimer ticks;
    ticks.start(std::chrono::milliseconds(10));
    QEventLoop loop;
    while (!condition()) {
        if (deadline.hasExpired()) {
            return false;
        }
        loop.processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

} // namespace corvane::tests
