#include "look/motion/animated_value.h"

#include "look/theme.h"

#include <algorithm>

namespace corvane::look {

namespace {

/// Duration in seconds of a fade with reduced motion.
constexpr double reducedFade = 0.15;

/// Opaque up to half a step of an 8-bit channel.
constexpr double fullOpacity = 1 - 0.5 / 255;

} // namespace

AnimatedValue::AnimatedValue(QObject *parent)
    : QObject(parent)
{}

double AnimatedValue::opacity() const
{
    return m_motion.value > fullOpacity ? 1 : std::max(m_motion.value, 0.0);
}

bool AnimatedValue::isRunning() const
{
    return m_ticker && m_ticker->isRunning();
}

void AnimatedValue::setTarget(double target)
{
    if (target == m_target) {
        return;
    }
    m_target = target;
    if (m_settingUp) {
        setMotion({target, 0});
    } else if (m_own) {
        setOut(*m_own);
    } else {
        const Animation current = m_transaction ? m_transaction->current() : Animation();
        setOut(current.isImmediate() ? m_outside : current);
    }
    Q_EMIT targetChanged();
}

void AnimatedValue::setTransaction(Transaction *transaction)
{
    if (m_transaction == transaction) {
        return;
    }
    m_transaction = transaction;
    Q_EMIT transactionChanged();
}

void AnimatedValue::useSpring(double response, double dampingFraction, double delay)
{
    m_own = Animation::spring(response, dampingFraction).delayed(delay);
}

void AnimatedValue::useEaseIn(double seconds, double delay)
{
    m_own = Animation::easeIn(seconds).delayed(delay);
}

void AnimatedValue::useEaseOut(double seconds, double delay)
{
    m_own = Animation::easeOut(seconds).delayed(delay);
}

void AnimatedValue::useSpringOutside(double response, double dampingFraction)
{
    m_outside = Animation::spring(response, dampingFraction);
}

void AnimatedValue::jumpTo(double value)
{
    stop();
    m_target = value;
    setMotion({value, 0});
    Q_EMIT targetChanged();
}

void AnimatedValue::classBegin()
{
    m_settingUp = true;
}

void AnimatedValue::componentComplete()
{
    m_settingUp = false;
}

void AnimatedValue::setOut(const Animation &wanted)
{
    Animation animation = wanted;
    if (Theme::reducesMotion()) {
        animation = m_fades ? Animation::easeOut(reducedFade) : Animation();
    }
    if (animation.isImmediate() && animation.delay() <= 0) {
        stop();
        setMotion({m_target, 0});
        return;
    }
    m_start = m_motion;
    m_running = animation;
    m_duration = animation.duration(m_start, m_target, m_tolerance);
    if (!m_ticker) {
        m_ticker.emplace([this](double seconds) { step(seconds); });
    }
    const bool wasRunning = isRunning();
    m_ticker->stop();
    m_ticker->start();
    if (!wasRunning) {
        Q_EMIT runningChanged();
    }
}

void AnimatedValue::step(double seconds)
{
    if (seconds < m_duration) {
        setMotion(m_running.motionAt(seconds, m_start, m_target));
        return;
    }
    // Stopped before the signal, because a receiver of the last step may immediately set a new
    // target and start the ticker again.
    m_ticker->stop();
    setMotion({m_target, 0});
    if (!isRunning()) {
        Q_EMIT runningChanged();
    }
}

void AnimatedValue::stop()
{
    if (isRunning()) {
        m_ticker->stop();
        Q_EMIT runningChanged();
    }
}

void AnimatedValue::setMotion(const Motion &motion)
{
    const bool moved = motion.value != m_motion.value;
    m_motion = motion;
    if (moved) {
        Q_EMIT valueChanged();
    }
}

} // namespace corvane::look
