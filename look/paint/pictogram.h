#pragma once

#include "look/paint/painted_shape.h"

#include <QColor>

namespace corvane::look {

/// A pictogram selected by name, in one colour. Paints nothing if the name is unknown.
class Pictogram : public corvane::look::PaintedShape
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString name MEMBER m_name NOTIFY changed FINAL)
    /// Size in points of the adjacent font; determines the item's size.
    Q_PROPERTY(double fontSize MEMBER m_fontSize NOTIFY fontSizeChanged FINAL)
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY changed FINAL)

public:
    explicit Pictogram(QQuickItem *parent = nullptr);
    void paint(QPainter *painter) override;

Q_SIGNALS:
    void fontSizeChanged();

private:
    QString m_name;
    double m_fontSize = 0;
    QColor m_color = Qt::white;
};

} // namespace corvane::look
