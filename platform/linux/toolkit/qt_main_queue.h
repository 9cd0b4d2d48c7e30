#pragma once

#include "platform/main_queue.h"

#include <memory>

namespace corvane::platform {

/// The main queue on Qt's event loop. Must be created on the main thread, after the application
/// object.
class QtMainQueue final : public MainQueue
{
public:
    QtMainQueue();
    /// Drops all pending actions.
    ~QtMainQueue() override;

    [[nodiscard]] std::chrono::nanoseconds now() const override;
    [[nodiscard]] std::chrono::system_clock::time_point wallTime() const override;
    void post(Action action) override;
    std::shared_ptr<WorkItem> after(std::chrono::nanoseconds delay, Action action) override;
    std::shared_ptr<WorkItem> every(std::chrono::nanoseconds interval, Action action) override;

private:
    class Timers;
    class Item;

    std::shared_ptr<Timers> m_timers;
};

} // namespace corvane::platform
