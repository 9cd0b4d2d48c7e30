#pragma once

#include <QQuickPaintedItem>
#include <QtQmlIntegration/qqmlintegration.h>

namespace corvane::look {

/// The base of items that are painted with antialiasing and repainted whenever one of their
/// properties changes. Derived classes must use its qualified name, which qmllint needs.
class PaintedShape : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ANONYMOUS

public:
    explicit PaintedShape(QQuickItem *parent = nullptr)
        : QQuickPaintedItem(parent)
    {
        setAntialiasing(true);
        connect(this, &PaintedShape::changed, this, [this] { update(); });
    }

Q_SIGNALS:
    void changed();
};

} // namespace corvane::look
