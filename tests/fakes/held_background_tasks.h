#pragma once

#include "platform/background_tasks.h"

#include <deque>
#include <utility>

namespace corvane::tests {

/// Background tasks that are held until the test runs them, on the test's thread.
class HeldBackgroundTasks final : public platform::BackgroundTasks
{
public:
    void run(std::function<void()> work) override { m_held.push_back(std::move(work)); }

    [[nodiscard]] std::size_t held() const { return m_held.size(); }
    void runNext()
    {
        const auto work = std::move(m_held.front());
        m_held.pop_front();
        work();
    }

private:
    std::deque<std::function<void()>> m_held;
};

} // namespace corvane::tests
