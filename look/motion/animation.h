#pragma once

#include "look/motion/spring.h"

#include <QEasingCurve>
#include <QMetaType>
#include <QtQmlIntegration/qqmlintegration.h>

#include <variant>

namespace corvane::look {

/// How a change is animated: not at all, along a timing curve, or by a spring.
class Animation
{
    Q_GADGET
    QML_VALUE_TYPE(islandAnimation)

public:
    /// No animation: the change is visible immediately.
    Animation() = default;

    /// A spring; see `Spring` for the parameters.
    [[nodiscard]] static Animation spring(double response, double dampingFraction);
    /// One of the standard curves, with a duration of `seconds`.
    [[nodiscard]] static Animation easeIn(double seconds);
    [[nodiscard]] static Animation easeOut(double seconds);
    [[nodiscard]] static Animation easeInOut(double seconds);
    /// The same animation, started `seconds` later.
    [[nodiscard]] Animation delayed(double seconds) const;

    [[nodiscard]] bool isImmediate() const { return std::holds_alternative<Immediate>(m_kind); }
    /// Seconds from the change until the motion starts.
    [[nodiscard]] double delay() const { return m_delay; }

    /// The motion `seconds` after the change (the delay included), from `start` to `target`.
    [[nodiscard]] Motion motionAt(double seconds, const Motion &start, double target) const;
    /// Seconds from the change until the value is at rest within `tolerance` of the target.
    [[nodiscard]] double duration(const Motion &start, double target, double tolerance) const;

    [[nodiscard]] bool operator==(const Animation &) const = default;

private:
    struct Immediate
    {
        [[nodiscard]] bool operator==(const Immediate &) const = default;
    };
    struct Timed
    {
        QEasingCurve curve;
        double seconds = 0;
        [[nodiscard]] bool operator==(const Timed &) const = default;
    };
    using Kind = std::variant<Immediate, Timed, Spring>;

    explicit Animation(Kind kind)
        : m_kind(kind)
    {}

    Kind m_kind;
    double m_delay = 0;
};

} // namespace corvane::look
