#pragma once

#include "platform/main_queue.h"

#include <algorithm>
#include <deque>
#include <map>
#include <mutex>
#include <optional>

namespace corvane::tests {

/// A main queue whose clock is moved only by the test.
class HandDrivenQueue final : public platform::MainQueue
{
public:
    [[nodiscard]] std::chrono::nanoseconds now() const override { return m_now; }
    [[nodiscard]] std::chrono::system_clock::time_point wallTime() const override
    {
        return std::chrono::system_clock::time_point(
            std::chrono::duration_cast<std::chrono::system_clock::duration>(m_now));
    }

    void post(Action action) override
    {
        const std::scoped_lock lock(m_mutex);
        m_posted.push_back(std::move(action));
    }

    std::shared_ptr<platform::WorkItem> after(std::chrono::nanoseconds delay,
                                              Action action) override
    {
        return schedule(delay, std::chrono::nanoseconds::zero(), std::move(action));
    }

    std::shared_ptr<platform::WorkItem> every(std::chrono::nanoseconds interval,
                                              Action action) override
    {
        return schedule(interval, interval, std::move(action));
    }

    /// Runs everything posted, including what those actions post, without moving the clock.
    void drain()
    {
        while (const auto action = takePosted()) {
            (*action)();
        }
    }

    /// Moves the clock by `step` and runs each due action at its time, in order.
    void advance(std::chrono::nanoseconds step)
    {
        const std::chrono::nanoseconds end = m_now + step;
        drain();
        while (!m_timers.empty() && m_timers.begin()->first <= end) {
            const auto [due, item] = *m_timers.begin();
            m_timers.erase(m_timers.begin());
            m_now = due;
            if (const Action action = item->action) {
                if (item->interval > std::chrono::nanoseconds::zero()) {
                    m_timers.emplace(m_now + item->interval, item);
                } else {
                    item->action = nullptr;
                }
                action();
            }
            drain();
        }
        m_now = end;
    }

    /// The number of delayed and repeating actions that are still pending.
    [[nodiscard]] std::size_t pendingTimers() const
    {
        return static_cast<std::size_t>(std::ranges::count_if(
            m_timers, [](const auto &timer) { return static_cast<bool>(timer.second->action); }));
    }

private:
    struct Item final : platform::WorkItem
    {
        void cancel() override { action = nullptr; }

        std::chrono::nanoseconds interval{0};
        Action action;
    };

    std::shared_ptr<platform::WorkItem> schedule(std::chrono::nanoseconds delay,
                                                 std::chrono::nanoseconds interval, Action action)
    {
        auto item = std::make_shared<Item>();
        item->interval = interval;
        item->action = std::move(action);
        m_timers.emplace(m_now + delay, item);
        return item;
    }

    std::optional<Action> takePosted()
    {
        const std::scoped_lock lock(m_mutex);
        if (m_posted.empty()) {
            return std::nullopt;
        }
        Action action = std::move(m_posted.front());
        m_posted.pop_front();
        return action;
    }

    std::chrono::nanoseconds m_now{0};
    std::mutex m_mutex;
    std::deque<Action> m_posted;
    std::multimap<std::chrono::nanoseconds, std::shared_ptr<Item>> m_timers;
};

} // namespace corvane::tests
