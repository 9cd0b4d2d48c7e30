#pragma once

#include "platform/background_tasks.h"

#include <atomic>
#include <memory>

namespace corvane::platform {

/// A detached thread for each piece of work; there are few.
class ThreadBackgroundTasks final : public BackgroundTasks
{
public:
    void run(std::function<void()> work) override;

    /// True while any work runs. Until it is done, what it uses must not be destroyed.
    [[nodiscard]] bool isBusy() const { return *m_running > 0; }

private:
    /// Outlives this object where work does.
    std::shared_ptr<std::atomic<int>> m_running = std::make_shared<std::atomic<int>>(0);
};

} // namespace corvane::platform
