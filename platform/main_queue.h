#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace corvane::platform {

/// A delayed or repeating action that has been scheduled on a MainQueue.
///
/// Destroying the handle does not cancel the action; only `cancel()` does.
class WorkItem
{
public:
    WorkItem() = default;
    WorkItem(const WorkItem &) = delete;
    WorkItem &operator=(const WorkItem &) = delete;
    virtual ~WorkItem() = default;

    /// Drops the action and everything it captured. Does nothing after it has run.
    virtual void cancel() = 0;
};

/// The main thread's queue, its clock and its timers.
///
/// All delays and polls of the program go through it, so that tests control time. All members
/// except `post` must be called on the main thread; all actions run on it, never inside the call
/// that scheduled them.
class MainQueue
{
public:
    using Action = std::function<void()>;

    MainQueue() = default;
    MainQueue(const MainQueue &) = delete;
    MainQueue &operator=(const MainQueue &) = delete;
    virtual ~MainQueue() = default;

    /// Monotonic time since an arbitrary start.
    [[nodiscard]] virtual std::chrono::nanoseconds now() const = 0;

    /// Wall-clock time, for time stamps shown to people.
    [[nodiscard]] virtual std::chrono::system_clock::time_point wallTime() const = 0;

    /// Runs `action` on the main thread as soon as the current event has been handled. Thread-safe.
    virtual void post(Action action) = 0;

    /// Runs `action` once, `delay` from now.
    virtual std::shared_ptr<WorkItem> after(std::chrono::nanoseconds delay, Action action) = 0;

    /// Runs `action` every `interval`, first one interval from now, until cancelled. Ticks may be
    /// aligned with other coarse timers to save wake-ups.
    virtual std::shared_ptr<WorkItem> every(std::chrono::nanoseconds interval, Action action) = 0;
};

} // namespace corvane::platform
