#pragma once

#include <QAbstractAnimation>

#include <functional>
#include <utility>

namespace corvane::look {

/// Calls a function with every frame, from `start` until `stop`; each `start` begins at 0 seconds.
class Ticker final : public QAbstractAnimation
{
public:
    /// `step` is called with the seconds since the start.
    explicit Ticker(std::function<void(double)> step)
        : m_step(std::move(step))
    {}

    [[nodiscard]] int duration() const override { return -1; }
    [[nodiscard]] bool isRunning() const { return state() == Running; }
    [[nodiscard]] double seconds() const { return currentTime() / 1000.0; }

protected:
    void updateCurrentTime(int /*milliseconds*/) override { m_step(seconds()); }

private:
    std::function<void(double)> m_step;
};

} // namespace corvane::look
