#include "app/frame_log.h"

#include <QLoggingCategory>
#include <QQuickWindow>

#include <chrono>
#include <ctime>
#include <memory>

namespace corvane::app {

namespace {

Q_LOGGING_CATEGORY(frames, "corvane.frames", QtWarningMsg)

double milliseconds(clockid_t clock)
{
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

} // namespace

void logFrames(QQuickWindow &window)
{
    if (!frames().isDebugEnabled()) {
        return;
    }
    const auto previous = std::make_shared<double>(milliseconds(CLOCK_THREAD_CPUTIME_ID));
    QObject::connect(&window, &QQuickWindow::frameSwapped, &window, [previous] {
        const double cpu = milliseconds(CLOCK_THREAD_CPUTIME_ID);
        qCDebug(frames, "frame at %.3f ms, %.3f ms of CPU", milliseconds(CLOCK_MONOTONIC),
                cpu - *previous);
        *previous = cpu;
    });
}

} // namespace corvane::app
