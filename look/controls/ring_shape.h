#pragma once

#include <QColor>
#include <QQuickItem>
#include <QtQmlIntegration/qqmlintegration.h>

namespace corvane::look {

/// Where a focus ring lies, in whole device pixels, so that it is equally wide on all sides and
/// looks the same around every control.
struct RingPlace
{
    /// The outer edge of the ring.
    QRect outer;
    /// Width of the line.
    int line = 1;
    /// Distance between the line and the control, which keeps them apart where both have one
    /// colour.
    int gap = 1;

    [[nodiscard]] bool operator==(const RingPlace &) const = default;
};

/// The ring around a control that fills `control` (points), at `scale` device pixels per point.
[[nodiscard]] RingPlace ringPlace(const QRectF &control, double scale);

/// A ring around its parent item, with a gap. Wherever the parent lies and however it is scaled,
/// the ring lies in whole device pixels and is not scaled; it has its own position and size.
class RingShape : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY changed FINAL)
    /// Corner radius of the parent, in points.
    Q_PROPERTY(double radius MEMBER m_radius NOTIFY changed FINAL)

public:
    explicit RingShape(QQuickItem *parent = nullptr);

Q_SIGNALS:
    void changed();

protected:
    void itemChange(ItemChange change, const ItemChangeData &data) override;
    QSGNode *updatePaintNode(QSGNode *old, UpdatePaintNodeData *data) override;

private:
    /// Follows the parent; called before every frame while the ring is visible.
    void follow();
    void followWhileVisible();

    QColor m_color = Qt::white;
    double m_radius = 0;
    RingPlace m_place;
    QMetaObject::Connection m_frames;
};

} // namespace corvane::look
