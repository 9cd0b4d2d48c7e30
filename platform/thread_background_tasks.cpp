#include "platform/thread_background_tasks.h"

#include <thread>
#include <utility>

namespace corvane::platform {

void ThreadBackgroundTasks::run(std::function<void()> work)
{
    ++*m_running;
    std::thread([work = std::move(work), running = m_running]() mutable {
        work();
        // Destroy the captured objects before the work counts as done.
        work = nullptr;
        --*running;
    }).detach();
}

} // namespace corvane::platform
