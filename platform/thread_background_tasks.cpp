#include "platform/thread_background_tasks.h"

#include <thread>
#include <utility>

namespace corvane::platform {

void ThreadBackgroundTasks::run(std::function<void()> work)
{
    ++*m_running;
    std::thread([work = std::move(work), running = m_running]() mutable {
        work();
        // What the work has captured belongs to it.
        work = nullptr;
        --*running;
    }).detach();
}

} // namespace corvane::platform
