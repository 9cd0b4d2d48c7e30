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

    /// Ends the program the ordinary way, as soon as the running event has been handled.
    virtual void terminate() = 0;
};

} // namespace corvane::platform
