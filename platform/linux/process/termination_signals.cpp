#include "platform/linux/process/termination_signals.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace corvane::platform {

namespace {

constexpr std::array terminating{SIGTERM, SIGINT, SIGHUP};

std::atomic<int> writingEnd{-1};
static_assert(std::atomic<int>::is_always_lock_free, "a signal handler may not wait");

extern "C" void noteSignal(int)
{
    const int saved = errno;
    const char byte = 0;
    // If the pipe is full, a notification is pending already.
    [[maybe_unused]] const auto written = write(writingEnd.load(), &byte, 1);
    errno = saved;
}

void listenTo(int signal)
{
    struct sigaction before = {};
    if (sigaction(signal, nullptr, &before) == 0 && before.sa_handler == SIG_IGN) {
        return;
    }
    struct sigaction action = {};
    action.sa_handler = noteSignal;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    sigaction(signal, &action, nullptr);
}

} // namespace

TerminationSignals::TerminationSignals(std::function<void()> handler)
    : m_notifier(QSocketNotifier::Read)
{
    if (pipe2(m_pipe, O_CLOEXEC | O_NONBLOCK) != 0) {
        return; // the signals keep their default action
    }
    m_notifier.setSocket(m_pipe[0]);
    QObject::connect(&m_notifier, &QSocketNotifier::activated, &m_notifier,
                     [this, handler = std::move(handler)] {
                         std::array<char, 16> bytes{};
                         while (read(m_pipe[0], bytes.data(), bytes.size()) > 0) {
                         }
                         handler();
                     });
    m_notifier.setEnabled(true);
    writingEnd = m_pipe[1];
    for (const int signal : terminating) {
        listenTo(signal);
    }
}

TerminationSignals::~TerminationSignals()
{
    if (m_pipe[0] < 0) {
        return;
    }
    // The handler stays installed, so that a further signal is ignored while the program shuts
    // down.
    writingEnd = -1;
    m_notifier.setEnabled(false);
    close(m_pipe[0]);
    close(m_pipe[1]);
}

} // namespace corvane::platform
