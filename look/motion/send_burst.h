#pragma once

#include <QColor>
#include <QPointF>
#include <QQuickPaintedItem>
#include <QtQmlIntegration/qqmlintegration.h>

#include <deque>
#include <functional>
#include <memory>
#include <vector>

namespace corvane::look {

/// One square of a burst; lengths in points.
struct Particle
{
    /// Radians, 0 to the right, clockwise on the screen.
    double angle = 0;
    /// How far it flies.
    double dist = 0;
    /// Edge length.
    double size = 0;
    /// Seconds until it sets out.
    double delay = 0;

    [[nodiscard]] bool operator==(const Particle &) const = default;
};

/// Where a square of a burst is.
struct BurstSquare
{
    /// Of its centre, from the centre of the burst.
    QPointF offset;
    double opacity = 1;
};

/// The square of `particle` `seconds` after it was shown.
[[nodiscard]] BurstSquare burstSquareAt(const Particle &particle, double seconds);

/// The squares of the bursts of one place, on a clock in seconds that the caller reads.
class Burst
{
public:
    /// Squares of one burst.
    static constexpr int particleCount = 18;
    /// How far from the centre the corner of a square can get.
    static constexpr double reach = 64 + 7;
    /// Gives a random number between the two, both included.
    using Uniform = std::function<double(double, double)>;

    /// Shows 18 new squares in place of those that are there.
    void fire(double now, const Uniform &uniform);
    /// Clears the squares one second after each firing, also those of a later one.
    void advance(double now);

    [[nodiscard]] const std::vector<Particle> &particles() const { return m_particles; }
    /// When the particles were shown.
    [[nodiscard]] double firedAt() const { return m_firedAt; }
    /// Some clearing is still to come.
    [[nodiscard]] bool isPending() const { return !m_clearings.empty(); }

private:
    std::vector<Particle> m_particles;
    double m_firedAt = 0;
    std::deque<double> m_clearings;
};

/// A ring of squares that flies out and fades each time `trigger` changes to 1 or more. Never takes
/// the pointer; costs nothing while there are no squares.
class SendBurst : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(int trigger READ trigger WRITE setTrigger NOTIFY triggerChanged FINAL)
    Q_PROPERTY(QColor color MEMBER m_color FINAL)

public:
    explicit SendBurst(QQuickItem *parent = nullptr);
    ~SendBurst() override;
    [[nodiscard]] int trigger() const { return m_trigger; }
    void setTrigger(int trigger);
    [[nodiscard]] const std::vector<Particle> &particles() const { return m_burst.particles(); }
    void paint(QPainter *painter) override;

Q_SIGNALS:
    void triggerChanged();

private:
    class Ticker;

    void step(double now);

    int m_trigger = 0;
    QColor m_color = Qt::white;
    Burst m_burst;
    double m_now = 0;
    std::unique_ptr<Ticker> m_ticker;
};

} // namespace corvane::look
