#pragma once

#include "look/paint/painted_shape.h"

#include <QColor>
#include <QList>

namespace corvane::look {

/// The product mark, filled.
class QuibMark : public corvane::look::PaintedShape
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY changed FINAL)

public:
    using PaintedShape::PaintedShape;
    void paint(QPainter *painter) override;

private:
    QColor m_color = Qt::white;
};

/// A rounded rectangle that may be scaled. The software scene graph composes Qt Quick's Rectangle
/// of pieces, which show seams when scaled. The item is one point larger than the box on every
/// side, for the outer half of the border, and so that scaling does not clip the edges.
class RoundedBox : public corvane::look::PaintedShape
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY changed FINAL)
    Q_PROPERTY(QColor borderColor MEMBER m_borderColor NOTIFY changed FINAL)
    /// In points. The border is centred on the edge as far as whole device pixels allow.
    Q_PROPERTY(double borderWidth MEMBER m_borderWidth NOTIFY changed FINAL)
    Q_PROPERTY(double radius MEMBER m_radius NOTIFY changed FINAL)
    /// The corners are continuous curves instead of circles.
    Q_PROPERTY(bool continuous MEMBER m_continuous NOTIFY changed FINAL)

public:
    /// Margin around the box inside the item, in points.
    static constexpr double margin = 1;

    using PaintedShape::PaintedShape;
    void paint(QPainter *painter) override;

private:
    QColor m_color = Qt::transparent;
    QColor m_borderColor = Qt::transparent;
    double m_borderWidth = 0;
    double m_radius = 0;
    bool m_continuous = false;
};

/// A price chart: its line, and the dithered area under it.
class SparklineShape : public corvane::look::PaintedShape
{
    Q_OBJECT
    QML_ELEMENT
    /// Prices, oldest first, at equal distances.
    Q_PROPERTY(QList<double> points MEMBER m_points NOTIFY changed FINAL)
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY changed FINAL)

public:
    using PaintedShape::PaintedShape;
    void paint(QPainter *painter) override;

private:
    QList<double> m_points;
    QColor m_color = Qt::white;
};

} // namespace corvane::look
