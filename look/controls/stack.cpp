#include "look/controls/stack.h"

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
        place();
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
        child->setY(top);
        if (child->height() > 0) {
            bottom = top + child->height();
        }
    }
    setImplicitHeight(bottom);
}

} // namespace corvane::look
