#pragma once

#include <QColor>
#include <QImage>
#include <QList>
#include <QQuickPaintedItem>
#include <QtQmlIntegration/qqmlintegration.h>

namespace corvane::look {

/// An ordered dither of one colour between two densities. Never takes the pointer.
class DitherRect : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor color MEMBER m_color WRITE setColor NOTIFY patternChanged FINAL)
    Q_PROPERTY(double cell MEMBER m_cell WRITE setCell NOTIFY patternChanged FINAL)
    Q_PROPERTY(
        double topDensity MEMBER m_topDensity WRITE setTopDensity NOTIFY patternChanged FINAL)
    Q_PROPERTY(double bottomDensity MEMBER m_bottomDensity WRITE setBottomDensity NOTIFY
                   patternChanged FINAL)

public:
    explicit DitherRect(QQuickItem *parent = nullptr);
    void setColor(const QColor &color);
    void setCell(double cell);
    void setTopDensity(double density);
    void setBottomDensity(double density);
    void paint(QPainter *painter) override;

Q_SIGNALS:
    void patternChanged();

private:
    template <typename Value>
    void assign(Value &member, const Value &value);

    QColor m_color = Qt::white;
    double m_cell = 2;
    double m_topDensity = 0;
    double m_bottomDensity = 0;
};

/// The product mark, filled.
class QuibMark : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged FINAL)

public:
    explicit QuibMark(QQuickItem *parent = nullptr);
    [[nodiscard]] QColor color() const { return m_color; }
    void setColor(const QColor &color);
    void paint(QPainter *painter) override;

Q_SIGNALS:
    void colorChanged();

private:
    QColor m_color = Qt::white;
};

/// The island itself: a black notch shape, a faint grain that thickens towards the bottom, and a
/// hairline outline.
///
/// The item is one point larger than the shape on every side, so that the outline's outer half
/// fits.
class NotchShape : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double bottomRadius READ bottomRadius WRITE setBottomRadius NOTIFY changed FINAL)
    /// Opacity of the whole grain; the grain itself is white at 0.05.
    Q_PROPERTY(double grainOpacity READ grainOpacity WRITE setGrainOpacity NOTIFY changed FINAL)
    Q_PROPERTY(QColor lineColor READ lineColor WRITE setLineColor NOTIFY changed FINAL)
    Q_PROPERTY(double lineWidth READ lineWidth WRITE setLineWidth NOTIFY changed FINAL)

public:
    /// Room around the shape inside the item, in points.
    static constexpr double margin = 1;

    explicit NotchShape(QQuickItem *parent = nullptr);
    [[nodiscard]] double bottomRadius() const { return m_bottomRadius; }
    void setBottomRadius(double radius);
    [[nodiscard]] double grainOpacity() const { return m_grainOpacity; }
    void setGrainOpacity(double opacity);
    [[nodiscard]] QColor lineColor() const { return m_lineColor; }
    void setLineColor(const QColor &color);
    [[nodiscard]] double lineWidth() const { return m_lineWidth; }
    void setLineWidth(double width);
    void paint(QPainter *painter) override;

Q_SIGNALS:
    void changed();

private:
    void assign(double &member, double value);

    double m_bottomRadius = 0;
    double m_grainOpacity = 0;
    QColor m_lineColor = Qt::transparent;
    double m_lineWidth = 0;
};

/// A rounded rectangle that may be scaled. Qt Quick's own is put together of pieces by the software
/// scene graph, and between these a scale opens seams. The item is one point larger than the box on
/// every side, so that a scale does not cut the box's edges off.
class RoundedBox : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY changed FINAL)
    Q_PROPERTY(QColor borderColor READ borderColor WRITE setBorderColor NOTIFY changed FINAL)
    /// In points; the border lies inside the box.
    Q_PROPERTY(double borderWidth READ borderWidth WRITE setBorderWidth NOTIFY changed FINAL)
    Q_PROPERTY(double radius READ radius WRITE setRadius NOTIFY changed FINAL)

public:
    /// Room around the box inside the item, in points.
    static constexpr double margin = 1;

    explicit RoundedBox(QQuickItem *parent = nullptr);
    [[nodiscard]] QColor color() const { return m_color; }
    void setColor(const QColor &color);
    [[nodiscard]] QColor borderColor() const { return m_borderColor; }
    void setBorderColor(const QColor &color);
    [[nodiscard]] double borderWidth() const { return m_borderWidth; }
    void setBorderWidth(double width);
    [[nodiscard]] double radius() const { return m_radius; }
    void setRadius(double radius);
    void paint(QPainter *painter) override;

Q_SIGNALS:
    void changed();

private:
    template <typename Value>
    void assign(Value &member, const Value &value);

    QColor m_color = Qt::transparent;
    QColor m_borderColor = Qt::transparent;
    double m_borderWidth = 0;
    double m_radius = 0;
};

/// A price chart: its line, and the dithered area under it.
class SparklineShape : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QList<double> points READ points WRITE setPoints NOTIFY pointsChanged FINAL)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged FINAL)

public:
    explicit SparklineShape(QQuickItem *parent = nullptr);
    [[nodiscard]] QList<double> points() const { return m_points; }
    void setPoints(const QList<double> &points);
    [[nodiscard]] QColor color() const { return m_color; }
    void setColor(const QColor &color);
    void paint(QPainter *painter) override;

Q_SIGNALS:
    void pointsChanged();
    void colorChanged();

private:
    QList<double> m_points;
    QColor m_color = Qt::white;
};

} // namespace corvane::look
