#include "look/motion/breathing_mark.h"

#include "look/paint/shapes.h"
#include "look/theme.h"

#include <QQuickWindow>
#include <QSGImageNode>
#include <QTimerEvent>

#include <chrono>
#include <cmath>

namespace corvane::look {

namespace {

/// Interval between the steps of a mark without an owner's ticks. The animation is too slow to need
/// a step with every frame.
constexpr std::chrono::milliseconds ownStep{40};

/// The smallest change in opacity that is worth a frame at an owner's tick: three steps of an 8-bit
/// channel. Around its turning points the mark stays as it is for a few ticks.
constexpr double smallestStep = 3.0 / 255;

} // namespace

BreathingMark::BreathingMark(QQuickItem *parent)
    : QQuickItem(parent)
{
    setFlag(ItemHasContents);
    connect(this, &BreathingMark::markSizeChanged, this, [this] {
        setImplicitSize(m_size, m_size);
        setSize({m_size, m_size});
        startOrStop();
    });
    connect(this, &BreathingMark::colorChanged, this, [this] { update(); });
    connect(this, &BreathingMark::tickedChanged, this, &BreathingMark::startOrStop);
}

void BreathingMark::tick()
{
    if (m_shown.isValid() && std::abs(brightness() - m_stepped) >= smallestStep) {
        step();
    }
}

QSGNode *BreathingMark::updatePaintNode(QSGNode *old, UpdatePaintNodeData *)
{
    const double deviceScale = window()->effectiveDevicePixelRatio();
    const int side = static_cast<int>(std::ceil(m_size * deviceScale));
    if (side <= 0) {
        delete old;
        return nullptr;
    }
    const Breath now = breath();
    const double scale = Theme::reducesMotion() ? 1 : now.scale;
    const double inset = m_size * (1 - scale) / 2;
    QColor color = m_color;
    color.setAlphaF(static_cast<float>(m_color.alphaF() * now.opacity));
    const QRectF place(inset * deviceScale, inset * deviceScale, m_size * scale * deviceScale,
                       m_size * scale * deviceScale);
    // A picture of its own: a painted item would cost three times as much, for as long as the
    // program runs.
    auto *node = static_cast<QSGImageNode *>(old);
    if (node == nullptr) {
        node = window()->createImageNode();
        node->setOwnsTexture(true);
    }
    node->setTexture(window()->createTextureFromImage(quibMarkImage({side, side}, place, color)));
    node->setRect(0, 0, side / deviceScale, side / deviceScale);
    return node;
}

void BreathingMark::itemChange(ItemChange change, const ItemChangeData &data)
{
    QQuickItem::itemChange(change, data);
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
    }
}

void BreathingMark::step()
{
    m_stepped = brightness();
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
        m_stepped = brightness();
    }
    if (m_ticked) {
        m_timer.stop();
    } else {
        m_timer.start(static_cast<int>(ownStep.count()), Qt::CoarseTimer, this);
    }
}

} // namespace corvane::look
