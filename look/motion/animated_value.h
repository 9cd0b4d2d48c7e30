#pragma once

#include "look/motion/animation.h"
#include "look/motion/ticker.h"
#include "look/motion/transaction.h"

#include <QObject>
#include <QPointer>
#include <QQmlParserStatus>
#include <QtQmlIntegration/qqmlintegration.h>

#include <optional>

namespace corvane::look {

/// A number that follows its target, on the frame clock.
///
/// When `target` changes, the value starts from its current position and velocity, with the
/// animation of the current transaction, or with its own `animation` if one is set. Uses no CPU
/// while at rest. Main thread.
class AnimatedValue : public QObject, public QQmlParserStatus
{
    Q_OBJECT
    QML_ELEMENT
    Q_INTERFACES(QQmlParserStatus)
    Q_PROPERTY(double target READ target WRITE setTarget NOTIFY targetChanged REQUIRED FINAL)
    Q_PROPERTY(double value READ value NOTIFY valueChanged FINAL)
    /// The value as an opacity: between 0 and 1, and exactly 1 as soon as the difference is
    /// invisible. The software renderer ignores changes below 1e-5 and would otherwise keep
    /// blending.
    Q_PROPERTY(double opacity READ opacity NOTIFY valueChanged FINAL)
    Q_PROPERTY(bool running READ isRunning NOTIFY runningChanged FINAL)
    Q_PROPERTY(corvane::look::Transaction *transaction READ transaction WRITE setTransaction NOTIFY
                   transactionChanged FINAL)
    /// Distance from the target at which a spring is considered at rest.
    Q_PROPERTY(double tolerance MEMBER m_tolerance FINAL)
    /// True if the value is an opacity. With reduced motion opacities still change gradually; all
    /// other values change immediately.
    Q_PROPERTY(bool fades MEMBER m_fades FINAL)

public:
    explicit AnimatedValue(QObject *parent = nullptr);

    [[nodiscard]] double target() const { return m_target; }
    void setTarget(double target);
    [[nodiscard]] double value() const { return m_motion.value; }
    [[nodiscard]] double opacity() const;
    [[nodiscard]] bool isRunning() const;
    [[nodiscard]] Transaction *transaction() const { return m_transaction; }
    void setTransaction(Transaction *transaction);

    /// Uses this spring from now on, instead of the transaction's animation, with a delay of
    /// `delay` seconds.
    Q_INVOKABLE void useSpring(double response, double dampingFraction, double delay = 0);
    /// The same with the ease-in, ease-out and ease-in-out curves; all times in seconds.
    Q_INVOKABLE void useEaseIn(double seconds, double delay = 0);
    Q_INVOKABLE void useEaseOut(double seconds, double delay = 0);
    /// Uses this spring for changes outside of a transaction, which are immediate otherwise.
    Q_INVOKABLE void useSpringOutside(double response, double dampingFraction);
    /// Sets the value to `value` without animation.
    Q_INVOKABLE void jumpTo(double value);

    void classBegin() override;
    void componentComplete() override;

Q_SIGNALS:
    void targetChanged();
    void valueChanged();
    void runningChanged();
    void transactionChanged();

private:
    void setOut(const Animation &animation);
    void step(double seconds);
    void stop();
    void setMotion(const Motion &motion);

    double m_target = 0;
    double m_tolerance = 0.0005;
    bool m_fades = false;
    Motion m_motion;
    Motion m_start;
    Animation m_running;
    double m_duration = 0;
    std::optional<Animation> m_own;
    Animation m_outside;
    QPointer<Transaction> m_transaction;
    /// Until QML has set all properties the value equals its target.
    bool m_settingUp = false;
    /// Created for the first animation, because most values never move while their view is shown.
    std::optional<Ticker> m_ticker;
};

} // namespace corvane::look
