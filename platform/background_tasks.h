#pragma once

#include <functional>

namespace corvane::platform {

/// Runs work that may block for as long as a person takes to answer a prompt.
class BackgroundTasks
{
public:
    BackgroundTasks() = default;
    BackgroundTasks(const BackgroundTasks &) = delete;
    BackgroundTasks &operator=(const BackgroundTasks &) = delete;
    virtual ~BackgroundTasks() = default;

    /// Runs `work` on a thread that is not the main thread, at once and at the user's priority.
    /// Nobody waits for it: work that still blocks when the program ends is abandoned.
    virtual void run(std::function<void()> work) = 0;
};

} // namespace corvane::platform
