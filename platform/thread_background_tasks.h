#pragma once

#include "platform/background_tasks.h"

#include <atomic>
#include <memory>

namespace corvane::platform {

/// Runs each piece of work on a detached thread of its own; there are few of them.
class ThreadBackgroundTasks final : public BackgroundTasks
{
public:
    void run(std::function<void()> work) override;

    /// True while any work is running. Objects that the work uses must not be destroyed until then.
    [[nodiscard]] bool isBusy() const { return *m_running > 0; }

private:
    /// Shared with running work, which may outlive this object.
    std::shared_ptr<std::atomic<int>> m_running = std::make_shared<std::atomic<int>>(0);
};

} // namespace corvane::platform
