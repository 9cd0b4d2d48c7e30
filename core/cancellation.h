#pragma once

#include "platform/completion.h"
#include "platform/main_queue.h"

#include <chrono>
#include <memory>
#include <optional>

namespace corvane::core {

/// How a sleep ended: when its time elapsed, or by `cancel`.
enum class SleepEnd { Elapsed, Cancelled };

/// Lets a task sleep, and its owner cancel the task and its sleep.
///
/// Shared by the owner and at most one task. Main thread.
class Cancellation
{
public:
    Cancellation() = default;
    Cancellation(const Cancellation &) = delete;
    Cancellation &operator=(const Cancellation &) = delete;

    [[nodiscard]] bool isCancelled() const { return m_cancelled; }
    /// Sets `isCancelled`, which the task must check, and resumes the task before it returns if the
    /// task is sleeping.
    void cancel();

    /// Sleeps for `duration` when the result is awaited. Returns immediately if already cancelled.
    [[nodiscard]] platform::Completion<SleepEnd> sleepFor(platform::MainQueue &queue,
                                                          std::chrono::nanoseconds duration);

private:
    bool m_cancelled = false;
    std::optional<platform::Completion<SleepEnd>> m_sleep;
    std::shared_ptr<platform::WorkItem> m_alarm;
};

} // namespace corvane::core
