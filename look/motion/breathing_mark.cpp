#include "look/motion/breathing_mark.h"

#include "look/paint/shapes.h"
#include "look/theme.h"

#include <QQuickWindow>
#include <QTimerEvent>

#include <chrono>

namespace corvane::look {

namespace {

/// Interval between the steps of a mark without a pace. The animation is too slow to need a step
/// with every frame.
constexpr std::chrono::milliseconds ownStep{40};

} // namespace

BreathingMark::BreathingMark(QQuickItem *parent)
    : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
    connect(this, &BreathingMark::markSizeChanged, this, [this] {
        setImplicitSize(m_size, m_size);
        setSize({m_size, m_size});
        startOrStop();
    });
    connect(this, &BreathingMark::colorChanged, this, [this] { update(); });
    connect(this, &BreathingMark::paceChanged, this, &BreathingMark::startOrStop);
}

void BreathingMark::tick()
{
    if (m_shown.isValid() && m_pace > 0) {
        step();
        m_timer.start(qRound(m_pace * 1000 / 2), Qt::PreciseTimer, this);
    }
}

void BreathingMark::paint(QPainter *painter)
{
    const Breath now = breath();
    const double scale = Theme::reducesMotion() ? 1 : now.scale;
    const double inset = m_size * (1 - scale) / 2;
    QColor color = m_color;
    color.setAlphaF(static_cast<float>(now.opacity));
    paintQuibMark(*painter, boundingRect().adjusted(inset, inset, -inset, -inset), color);
}

void BreathingMark::itemChange(ItemChange change, const ItemChangeData &data)
{
    QQuickPaintedItem::itemChange(change, data);
    if (change == ItemSceneChange) {
        // Qt Quick reports an item in a hidden window as visible.
        disconnect(m_windowVisibility);
        if (data.window != nullptr) {
            m_windowVisibility =
                connect(data.window, &QWindow::visibleChanged, this, &BreathingMark::startOrStop);
        }
    }
    if (change == ItemVisibleHasChanged || change == ItemSceneChange) {
        startOrStop();
    }
}

void BreathingMark::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == m_timer.timerId()) {
        step();
        if (m_pace > 0) {
            m_timer.stop();
        }
    }
}

void BreathingMark::step()
{
    update();
    Q_EMIT breathed();
}

Breath BreathingMark::breath() const
{
    const double elapsed = m_shown.isValid() ? static_cast<double>(m_shown.elapsed()) / 1000 : 0;
    return breathAt(elapsed, m_period);
}

void BreathingMark::startOrStop()
{
    if (!isVisible() || window() == nullptr || !window()->isVisible()) {
        m_timer.stop();
        m_shown.invalidate();
        return;
    }
    if (!m_shown.isValid()) {
        m_shown.start();
    }
    if (m_pace <= 0) {
        m_timer.start(static_cast<int>(ownStep.count()), Qt::CoarseTimer, this);
    }
}

} // namespace corvane::look
