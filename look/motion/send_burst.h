#pragma once

#include "look/motion/ticker.h"

#include <QColor>
#include <QPointF>
#include <QQuickPaintedItem>
#include <QtQmlIntegration/qqmlintegration.h>

#include <deque>
#include <functional>
#include <vector>

namespace corvane::look {

/// One square of a burst; lengths in points.
struct Particle
{
    /// Radians, 0 to the right, clockwise on the screen.
    double angle = 0;
    /// Distance that it travels.
    double dist = 0;
    /// Edge length.
    double size = 0;
    /// Seconds until it starts to move.
    double delay = 0;

    [[nodiscard]] bool operator==(const Particle &) const = default;
};

/// State of one square of a burst.
struct BurstSquare
{
    /// From the centre of the burst to the centre of the square.
    QPointF offset;
    double opacity = 1;
};

/// The state of `particle`, `seconds` after it was shown.
[[nodiscard]] BurstSquare burstSquareAt(const Particle &particle, double seconds);

/// The squares of one burst. All times are in seconds on the caller's clock.
class Burst
{
public:
    /// Number of squares of one burst.
    static constexpr int particleCount = 18;
    /// Maximum distance between the centre and the corner of a square.
    static constexpr double reach = 64 + 7;
    /// Returns a random number in the closed interval.
    using Uniform = std::function<double(double, double)>;

    /// Replaces all squares by 18 new ones.
    void fire(double now, const Uniform &uniform);
    /// Clears all squares one second after each `fire`, including those of a later `fire`.
    void advance(double now);

    [[nodiscard]] const std::vector<Particle> &particles() const { return m_particles; }
    /// Time of the latest `fire`.
    [[nodiscard]] double firedAt() const { return m_firedAt; }
    /// True while a clearing is pending.
    [[nodiscard]] bool isPending() const { return !m_clearings.empty(); }

private:
    std::vector<Particle> m_particles;
    double m_firedAt = 0;
    std::deque<double> m_clearings;
};

/// A ring of squares that moves outwards and fades each time `trigger` changes to 1 or more.
/// Ignores the pointer; uses no CPU while there are no squares.
class SendBurst : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(int trigger READ trigger WRITE setTrigger NOTIFY triggerChanged FINAL)
    Q_PROPERTY(QColor color MEMBER m_color FINAL)

public:
    explicit SendBurst(QQuickItem *parent = nullptr);
    [[nodiscard]] int trigger() const { return m_trigger; }
    void setTrigger(int trigger);
    [[nodiscard]] const std::vector<Particle> &particles() const { return m_burst.particles(); }
    void paint(QPainter *painter) override;

Q_SIGNALS:
    void triggerChanged();

private:
    void step(double now);

    int m_trigger = 0;
    QColor m_color = Qt::white;
    Burst m_burst;
    double m_now = 0;
    /// Runs from the first burst until all squares are cleared.
    Ticker m_ticker{[this](double now) { step(now); }};
};

} // namespace corvane::look
