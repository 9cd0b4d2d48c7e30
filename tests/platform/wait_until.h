#pragma once

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

#include <chrono>

namespace corvane::tests {

/// How long anything may take that has to happen: enough to tell a program that hangs from a
/// machine that is busy with other things. Only a failure ever waits this long.
constexpr std::chrono::milliseconds patience = std::chrono::minutes(1);

/// Runs the event loop until `condition` holds, looked at after every event and now and then; false
/// when it does not within `bound`.
template <typename Condition>
[[nodiscard]] bool waitUntil(Condition condition, std::chrono::milliseconds bound = patience)
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
