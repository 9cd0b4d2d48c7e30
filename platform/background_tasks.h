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

    /// Starts `work` immediately on a thread other than the main thread, at normal priority. Work
    /// that still blocks when the program exits is abandoned.
    virtual void run(std::function<void()> work) = 0;
};

} // namespace corvane::platform
