#include "look/breathing_mark.h"

#include "look/shapes.h"

#include <QPainter>
#include <QTimerEvent>

#include <chrono>

namespace corvane::look {

namespace {

/// The pace of the hover poll. One step changes the small mark by at most a few grey levels.
constexpr std::chrono::milliseconds restingStep{150};
/// Larger marks, which are only seen on an open island, show their steps sooner.
constexpr std::chrono::milliseconds largeStep{40};
constexpr double largestRestingMark = 12;

} // namespace

BreathingMark::BreathingMark(QQuickItem *parent)
    : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
}

void BreathingMark::setMarkSize(double size)
{
    if (m_size != size) {
        m_size = size;
        setImplicitSize(size, size);
        setSize({size, size});
        startOrStop();
        Q_EMIT markSizeChanged();
    }
}

void BreathingMark::setColor(const QColor &color)
{
    if (m_color != color) {
        m_color = color;
        update();
        Q_EMIT colorChanged();
    }
}

void BreathingMark::setPeriod(double seconds)
{
    if (m_period != seconds) {
        m_period = seconds;
        Q_EMIT periodChanged();
    }
}

void BreathingMark::paint(QPainter *painter)
{
    const double elapsed = m_shown.isValid() ? static_cast<double>(m_shown.elapsed()) / 1000 : 0;
    const Breath breath = breathAt(elapsed, m_period);
    const double inset = m_size * (1 - breath.scale) / 2;
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setOpacity(breath.opacity);
    painter->fillPath(quibMarkPath(boundingRect().adjusted(inset, inset, -inset, -inset)), m_color);
}

void BreathingMark::itemChange(ItemChange change, const ItemChangeData &data)
{
    QQuickPaintedItem::itemChange(change, data);
    if (change == ItemVisibleHasChanged || change == ItemSceneChange) {
        startOrStop();
    }
}

void BreathingMark::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == m_timer.timerId()) {
        update();
    }
}

void BreathingMark::startOrStop()
{
    if (!isVisible() || window() == nullptr) {
        m_timer.stop();
        m_shown.invalidate();
        return;
    }
    if (!m_shown.isValid()) {
        m_shown.start();
    }
    const std::chrono::milliseconds step = m_size > largestRestingMark ? largeStep : restingStep;
    m_timer.start(static_cast<int>(step.count()), Qt::CoarseTimer, this);
}

} // namespace corvane::look
