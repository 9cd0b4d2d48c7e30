#pragma once

#include <QPointer>
#include <QQuickItem>
#include <QQuickPaintedItem>
#include <QtQmlIntegration/qqmlintegration.h>

namespace corvane::look {

/// The blurred shape of another item, in that item's colours, to be placed below it. It has the
/// position and size of its source and paints beyond them.
///
/// The source is painted once per size; later changes of its content have no effect.
class Glow : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(
        QQuickPaintedItem *source READ source WRITE setSource NOTIFY sourceChanged REQUIRED FINAL)
    /// Blur radius in points, twice the Gaussian's sigma.
    Q_PROPERTY(double radius MEMBER m_radius NOTIFY radiusChanged REQUIRED FINAL)

public:
    explicit Glow(QQuickItem *parent = nullptr);
    [[nodiscard]] QQuickPaintedItem *source() const { return m_source; }
    void setSource(QQuickPaintedItem *source);

Q_SIGNALS:
    void sourceChanged();
    void radiusChanged();

protected:
    QSGNode *updatePaintNode(QSGNode *old, UpdatePaintNodeData *data) override;
    void geometryChange(const QRectF &geometry, const QRectF &oldGeometry) override;

private:
    QPointer<QQuickPaintedItem> m_source;
    double m_radius = 0;
};

} // namespace corvane::look
