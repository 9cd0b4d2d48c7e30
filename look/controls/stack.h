#pragma once

#include "look/motion/animated_value.h"

#include <QQuickItem>
#include <QtQmlIntegration/qqmlintegration.h>

#include <memory>
#include <unordered_map>

namespace corvane::look {

/// Places its children one below the other; its implicit height is their total height.
///
/// Unlike Qt Quick's Column it does so immediately and not with the next frame, because the island
/// animates to the height that a new card has at its creation. Once the stack has been seen,
/// children that have to make room move on the standard spring, as the island's height does. A
/// child of height 0 takes no space and no spacing. Visibility is ignored, because a card is laid
/// out before it is visible.
class Stack : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    /// Points between two children.
    Q_PROPERTY(double spacing MEMBER m_spacing NOTIFY spacingChanged FINAL)

public:
    explicit Stack(QQuickItem *parent = nullptr);

Q_SIGNALS:
    void spacingChanged();

protected:
    void componentComplete() override;
    void itemChange(ItemChange change, const ItemChangeData &data) override;

private:
    void place();
    void moveTo(QQuickItem &child, double top);
    /// Notes whether the stack is seen, from the next frame on.
    void watchFrames();

    double m_spacing = 0;
    bool m_seen = false;
    /// The heights at the last placing: a child that had none does not move, but appears.
    std::unordered_map<const QQuickItem *, double> m_heights;
    /// Positions of the children that have moved.
    std::unordered_map<const QQuickItem *, std::unique_ptr<AnimatedValue>> m_positions;
    QMetaObject::Connection m_frames;
};

} // namespace corvane::look
