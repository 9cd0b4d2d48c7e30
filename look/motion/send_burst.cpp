#include "look/motion/send_burst.h"

#include "look/motion/timing_curves.h"
#include "look/theme.h"

#include <QPainter>
#include <QRandomGenerator>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace corvane::look {

namespace {

/// Seconds of a square's movement.
constexpr double flight = 0.75;
/// Seconds from `fire` until the squares are cleared.
constexpr double clearing = 1;

double randomBetween(double low, double high)
{
    return low + (high - low) * QRandomGenerator::system()->generateDouble();
}

} // namespace

BurstSquare burstSquareAt(const Particle &particle, double seconds)
{
    const double time = std::clamp((seconds - particle.delay) / flight, 0.0, 1.0);
    const double out = easeOutCurve().valueForProgress(time);
    return {QPointF(std::cos(particle.angle), std::sin(particle.angle)) * particle.dist * out,
            1 - out};
}

void Burst::fire(double now, const Uniform &uniform)
{
    m_particles.clear();
    for (int i = 0; i < particleCount; ++i) {
        Particle particle;
        particle.angle = uniform(-0.18, 0.18) + 2 * std::numbers::pi * i / particleCount;
        particle.dist = uniform(30, 64);
        particle.size = uniform(3, 7);
        particle.delay = uniform(0, 0.06);
        m_particles.push_back(particle);
    }
    m_firedAt = now;
    m_clearings.push_back(now + clearing);
}

void Burst::advance(double now)
{
    while (!m_clearings.empty() && m_clearings.front() <= now) {
        m_particles.clear();
        m_clearings.pop_front();
    }
}

SendBurst::SendBurst(QQuickItem *parent)
    : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
    setImplicitSize(2 * Burst::reach, 2 * Burst::reach);
    setVisible(false);
}

void SendBurst::setTrigger(int trigger)
{
    if (m_trigger == trigger) {
        return;
    }
    m_trigger = trigger;
    if (trigger >= 1 && !Theme::reducesMotion()) {
        if (!m_burst.isPending()) {
            m_now = 0;
        }
        m_burst.fire(m_now, &randomBetween);
        setVisible(true);
        m_ticker.start();
        update();
    }
    Q_EMIT triggerChanged();
}

void SendBurst::step(double now)
{
    m_now = now;
    m_burst.advance(now);
    if (!m_burst.isPending()) {
        m_ticker.stop();
        setVisible(false);
    }
    update();
}

void SendBurst::paint(QPainter *painter)
{
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(boundingRect().center());
    for (const Particle &particle : m_burst.particles()) {
        const BurstSquare square = burstSquareAt(particle, m_now - m_burst.firedAt());
        QColor color = m_color;
        color.setAlphaF(static_cast<float>(m_color.alphaF() * square.opacity));
        const QPointF half(particle.size / 2, particle.size / 2);
        painter->fillRect(QRectF(square.offset - half, square.offset + half), color);
    }
}

} // namespace corvane::look
