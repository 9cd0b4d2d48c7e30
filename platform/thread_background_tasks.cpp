#include "platform/thread_background_tasks.h"

#include <thread>
#include <utility>

namespace corvane::platform {

void ThreadBackgroundTasks::run(std::function<void()> work)
{
    std::thread(std::move(work)).detach();
}

} // namespace corvane::platform
