#pragma once

#include <QColor>
#include <QQuickItem>
#include <QSizeF>
#include <QtQmlIntegration/qqmlintegration.h>

namespace corvane::look {

/// Coverage (0 to 1) at `position` of a bar from 0 to `length` blurred by a Gaussian of `sigma`.
[[nodiscard]] double blurredBar(double position, double length, double sigma);

/// The soft shadow, or glow, of a rectangle that fills the item.
///
/// A rectangle blurred by a Gaussian is the product of two blurred bars, so the shadow is computed
/// exactly for any size, without blurring a picture. Rounded corners with a radius of up to one
/// sigma make no visible difference.
class SoftShadow : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY changed FINAL)
    /// Blur radius in points, twice the Gaussian's sigma.
    Q_PROPERTY(double radius MEMBER m_radius NOTIFY changed FINAL)
    /// For the shadow of a body that hangs from an edge and covers it: how far the shadow is drawn
    /// inside the item, in points, at the sides and at the foot. Empty: the whole shadow is drawn.
    Q_PROPERTY(QSizeF hangingInset MEMBER m_hangingInset NOTIFY changed FINAL)
    /// For the shadow of a rounded rectangle that is not opaque: its corner radius in points. What
    /// it covers is left out. Negative: the whole shadow is drawn.
    Q_PROPERTY(double hollowRadius MEMBER m_hollowRadius NOTIFY changed FINAL)

public:
    explicit SoftShadow(QQuickItem *parent = nullptr);

Q_SIGNALS:
    void changed();

protected:
    QSGNode *updatePaintNode(QSGNode *old, UpdatePaintNodeData *data) override;
    void geometryChange(const QRectF &geometry, const QRectF &oldGeometry) override;

private:
    QColor m_color = Qt::black;
    double m_radius = 0;
    QSizeF m_hangingInset;
    double m_hollowRadius = -1;
};

} // namespace corvane::look
