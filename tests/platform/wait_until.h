#pragma once

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

#include <chrono>

namespace corvane::tests {

/// Time limit for everything that must happen: long enough to distinguish a program that hangs from
/// a busy machine. Only a failing test waits this long.
constexpr std::chrono::milliseconds patience = std::chrono::minutes(1);

/// Runs the event loop until `condition` is true, which is checked after every event and at
/// intervals; false if it does not become true within `bound`.
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
