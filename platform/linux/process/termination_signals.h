#pragma once

#include <QSocketNotifier>

#include <functional>

namespace corvane::platform {

/// Turns SIGTERM, SIGINT and SIGHUP into a call on the main thread, for as long as it exists. A
/// signal that was ignored at the start, as by nohup, stays so. At most one at a time; made after
/// the application object.
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
