#pragma once

#include <QQuickItem>
#include <QtQmlIntegration/qqmlintegration.h>

namespace corvane::look {

/// Places its children one below the other; its implicit height is their total height.
///
/// Unlike Qt Quick's Column it does so immediately and not with the next frame, because the island
/// animates to the height that a new card has at its creation. A child of height 0 takes no space
/// and no spacing. Visibility is ignored, because a card is laid out before it is visible.
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
