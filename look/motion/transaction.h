#pragma once

#include "look/motion/animation.h"

#include <QObject>
#include <QtQmlIntegration/qqmlintegration.h>

#include <utility>

namespace corvane::look {

/// The animation of the change that is currently being made.
///
/// A controller changes its flags inside `run`. Values that depend on them (AnimatedValue) get
/// their new targets during this call and use its animation. Outside of `run`, changes are not
/// animated. Main thread.
class Transaction : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("owned by the controller whose changes it describes")

public:
    using QObject::QObject;

    /// Calls `change`; the resulting changes use `animation`. Calls may be nested; the innermost
    /// animation applies.
    template <typename Change>
    void run(const Animation &animation, Change &&change)
    {
        const Animation outer = std::exchange(m_current, animation);
        std::forward<Change>(change)();
        m_current = outer;
    }

    [[nodiscard]] const Animation &current() const { return m_current; }

private:
    Animation m_current;
};

} // namespace corvane::look
