#pragma once

#include "platform/completion.h"
#include "platform/main_queue.h"

#include <chrono>
#include <memory>
#include <optional>

namespace corvane::core {

/// How a sleep ended: by itself, or by `cancel`.
enum class SleepEnd { Elapsed, Cancelled };

/// Lets the owner of a running task tell it to stop, and the task sleep until then.
///
/// Shared by the two; one task at a time. Main thread.
class Cancellation
{
public:
    Cancellation() = default;
    Cancellation(const Cancellation &) = delete;
    Cancellation &operator=(const Cancellation &) = delete;

    [[nodiscard]] bool isCancelled() const { return m_cancelled; }
    /// Ends the task's sleep before it returns; a task that is not asleep finds out when it looks.
    void cancel();

    /// Await the result. Ends at once when cancelled already.
    [[nodiscard]] platform::Completion<SleepEnd> sleepFor(platform::MainQueue &queue,
                                                          std::chrono::nanoseconds duration);

private:
    bool m_cancelled = false;
    std::optional<platform::Completion<SleepEnd>> m_sleep;
    std::shared_ptr<platform::WorkItem> m_alarm;
};

} // namespace corvane::core
