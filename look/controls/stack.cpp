#include "look/controls/stack.h"

#include <QQuickWindow>

#include <cmath>

namespace corvane::look {

Stack::Stack(QQuickItem *parent)
    : QQuickItem(parent)
{
    connect(this, &Stack::spacingChanged, this, &Stack::place);
}

void Stack::componentComplete()
{
    QQuickItem::componentComplete();
    place();
}

void Stack::itemChange(ItemChange change, const ItemChangeData &data)
{
    QQuickItem::itemChange(change, data);
    if (change == ItemChildAddedChange) {
        connect(data.item, &QQuickItem::heightChanged, this, &Stack::place);
        place();
    } else if (change == ItemChildRemovedChange) {
        disconnect(data.item, nullptr, this, nullptr);
        m_heights.erase(data.item);
        m_positions.erase(data.item);
        place();
    } else if (change == ItemVisibleHasChanged || change == ItemSceneChange) {
        watchFrames();
    }
}

void Stack::watchFrames()
{
    m_seen = false;
    disconnect(m_frames);
    if (window() != nullptr && isVisible()) {
        m_frames = connect(window(), &QQuickWindow::frameSwapped, this, [this] {
            m_seen = true;
            disconnect(m_frames);
        });
    }
}

void Stack::place()
{
    if (!isComponentComplete()) {
        return;
    }
    double bottom = 0;
    const QList<QQuickItem *> children = childItems();
    for (QQuickItem *child : children) {
        const double top = bottom > 0 ? bottom + m_spacing : 0;
        moveTo(*child, top);
        m_heights[child] = child->height();
        if (child->height() > 0) {
            bottom = top + child->height();
        }
    }
    setImplicitHeight(bottom);
}

void Stack::moveTo(QQuickItem &child, double top)
{
    std::unique_ptr<AnimatedValue> &position = m_positions[&child];
    if (!m_seen || m_heights[&child] <= 0) {
        position.reset();
        child.setY(top);
    } else if (position || child.y() != top) {
        if (!position) {
            position = std::make_unique<AnimatedValue>();
            position->jumpTo(child.y());
            position->useSpring(0.42, 0.88);
            connect(position.get(), &AnimatedValue::valueChanged, &child,
                    [this, moving = position.get(), moved = &child] {
                        // Whole device pixels keep what moves sharp.
                        const double scale =
                            window() != nullptr ? window()->effectiveDevicePixelRatio() : 1;
                        moved->setY(std::round(moving->value() * scale) / scale);
                    });
        }
        position->setTarget(top);
    }
}

} // namespace corvane::look
