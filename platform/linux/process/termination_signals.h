#pragma once

#include <QSocketNotifier>

#include <functional>

namespace corvane::platform {

/// Turns SIGTERM, SIGINT and SIGHUP into calls on the main thread for the lifetime of this object.
/// A signal that was ignored at the start, for example by nohup, stays ignored. At most one object
/// may exist; create it after the application object.
class TerminationSignals
{
public:
    /// `handler` runs once for each signal.
    explicit TerminationSignals(std::function<void()> handler);
    ~TerminationSignals();
    TerminationSignals(const TerminationSignals &) = delete;
    TerminationSignals &operator=(const TerminationSignals &) = delete;

private:
    int m_pipe[2] = {-1, -1};
    QSocketNotifier m_notifier;
};

} // namespace corvane::platform
