#pragma once

#include <QColor>
#include <QQuickItem>
#include <QtQmlIntegration/qqmlintegration.h>

namespace corvane::look {

/// The island itself: a black notch shape, a faint grain that thickens towards the bottom, and a
/// hairline outline.
///
/// All but the foot with the rounded corners is drawn as an opaque picture and plain lines, so that
/// nothing beneath it is painted. The width and the height should be whole device pixels.
class NotchShape : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    /// In points.
    Q_PROPERTY(double bottomRadius MEMBER m_bottomRadius NOTIFY changed FINAL)
    /// Opacity of the grain, which is white at 0.05, and of the outline.
    Q_PROPERTY(double trimOpacity MEMBER m_trimOpacity NOTIFY changed FINAL)
    Q_PROPERTY(QColor lineColor MEMBER m_lineColor NOTIFY changed FINAL)

public:
    explicit NotchShape(QQuickItem *parent = nullptr);

Q_SIGNALS:
    void changed();

protected:
    QSGNode *updatePaintNode(QSGNode *old, UpdatePaintNodeData *data) override;
    void geometryChange(const QRectF &geometry, const QRectF &oldGeometry) override;

private:
    double m_bottomRadius = 0;
    double m_trimOpacity = 0;
    QColor m_lineColor = Qt::transparent;
};

} // namespace corvane::look
