#include "core/cancellation.h"

#include <utility>

namespace corvane::core {

void Cancellation::cancel()
{
    m_cancelled = true;
    if (const auto alarm = std::exchange(m_alarm, nullptr)) {
        alarm->cancel();
    }
    // The resumed task may destroy this object, so that it must not be accessed afterwards.
    if (const auto sleep = std::exchange(m_sleep, std::nullopt)) {
        sleep->resolve(SleepEnd::Cancelled);
    }
}

platform::Completion<SleepEnd> Cancellation::sleepFor(platform::MainQueue &queue,
                                                      std::chrono::nanoseconds duration)
{
    const platform::Completion<SleepEnd> sleep;
    if (m_cancelled) {
        sleep.resolve(SleepEnd::Cancelled);
        return sleep;
    }
    m_sleep = sleep;
    m_alarm = queue.after(duration, [sleep] { sleep.resolve(SleepEnd::Elapsed); });
    return sleep;
}

} // namespace corvane::core
