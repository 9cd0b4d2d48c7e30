#pragma once

namespace corvane::platform {

/// The running program as a whole. Main thread.
class Application
{
public:
    Application() = default;
    Application(const Application &) = delete;
    Application &operator=(const Application &) = delete;
    virtual ~Application() = default;

    /// Exits the event loop in an orderly way, as soon as the current event has been handled.
    virtual void terminate() = 0;
};

} // namespace corvane::platform
