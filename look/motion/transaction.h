#pragma once

#include "look/motion/animation.h"

#include <QObject>
#include <QtQmlIntegration/qqmlintegration.h>

#include <utility>

namespace corvane::look {

/// The animation that belongs to the change being made right now.
///
/// A controller changes its flags inside `run`; the values that depend on them (AnimatedValue) are
/// told their new targets while it lasts and take its animation along. Outside of it changes show
/// at once. Main thread.
class Transaction : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("owned by the controller whose changes it describes")

public:
    using QObject::QObject;

    /// Makes `change` with `animation`. May be nested; the innermost animation counts.
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
