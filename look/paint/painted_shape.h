#pragma once

#include <QQuickPaintedItem>
#include <QtQmlIntegration/qqmlintegration.h>

namespace corvane::look {

/// What is painted with smooth edges, and anew whenever one of its properties changes. A derived
/// class names it in full, which is how qmllint knows it.
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
