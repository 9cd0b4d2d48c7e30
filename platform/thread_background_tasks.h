#pragma once

#include "platform/background_tasks.h"

namespace corvane::platform {

/// A detached thread for each piece of work; there are few.
class ThreadBackgroundTasks final : public BackgroundTasks
{
public:
    void run(std::function<void()> work) override;
};

} // namespace corvane::platform
