#pragma once

#include <QQuickItem>
#include <QtQmlIntegration/qqmlintegration.h>

namespace corvane::look {

/// Places its children one below the other, and is as high as they are together.
///
/// Unlike Qt Quick's Column it does so at once and not with the next frame: the island springs to
/// the height that a new card has when the card is made. A child of height 0 takes no room and no
/// spacing; its visibility does not count, because a card is laid out before it is seen.
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

    double m_spacing = 0;
};

} // namespace corvane::look
