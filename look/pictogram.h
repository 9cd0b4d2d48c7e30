#pragma once

#include <QColor>
#include <QQuickPaintedItem>
#include <QtQmlIntegration/qqmlintegration.h>

namespace corvane::look {

/// A pictogram by its name, in one colour. An unknown name draws nothing.
class Pictogram : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged FINAL)
    /// Size in points of the font that the pictogram stands beside; it sets the item's size.
    Q_PROPERTY(double fontSize READ fontSize WRITE setFontSize NOTIFY fontSizeChanged FINAL)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged FINAL)

public:
    explicit Pictogram(QQuickItem *parent = nullptr);
    [[nodiscard]] QString name() const { return m_name; }
    void setName(const QString &name);
    [[nodiscard]] double fontSize() const { return m_fontSize; }
    void setFontSize(double size);
    [[nodiscard]] QColor color() const { return m_color; }
    void setColor(const QColor &color);
    void paint(QPainter *painter) override;

Q_SIGNALS:
    void nameChanged();
    void fontSizeChanged();
    void colorChanged();

private:
    QString m_name;
    double m_fontSize = 0;
    QColor m_color = Qt::white;
};

} // namespace corvane::look
