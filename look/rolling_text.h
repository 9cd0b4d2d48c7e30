#pragma once

#include "look/animated_value.h"

#include <QColor>
#include <QFont>
#include <QFontMetricsF>
#include <QList>
#include <QQuickPaintedItem>
#include <QtQmlIntegration/qqmlintegration.h>

#include <optional>

namespace corvane::look {

/// One place of a figure that is rolling over: the character that leaves and the one that comes.
struct RollingSlot
{
    std::optional<QChar> leaving;
    std::optional<QChar> coming;

    [[nodiscard]] bool isSteady() const { return leaving == coming; }
    [[nodiscard]] bool operator==(const RollingSlot &) const = default;
};

/// Pairs the characters of two figures place by place, counted from the right, so that ones roll
/// over ones also when the figure grows longer. In reading order.
[[nodiscard]] QList<RollingSlot> rollingSlots(const QString &from, const QString &to);

/// A figure in one line whose digits roll upwards when it changes.
///
/// All digits are equally wide. The text shrinks to `minimumScale` before it is cut with an
/// ellipsis.
class RollingText : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged FINAL)
    Q_PROPERTY(QFont font READ font WRITE setFont NOTIFY fontChanged FINAL)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged FINAL)
    Q_PROPERTY(double minimumScale READ minimumScale WRITE setMinimumScale NOTIFY
                   minimumScaleChanged FINAL)

public:
    explicit RollingText(QQuickItem *parent = nullptr);
    [[nodiscard]] QString text() const { return m_text; }
    void setText(const QString &text);
    [[nodiscard]] QFont font() const { return m_font; }
    void setFont(const QFont &font);
    [[nodiscard]] QColor color() const { return m_color; }
    void setColor(const QColor &color);
    [[nodiscard]] double minimumScale() const { return m_minimumScale; }
    void setMinimumScale(double scale);
    void paint(QPainter *painter) override;

Q_SIGNALS:
    void textChanged();
    void fontChanged();
    void colorChanged();
    void minimumScaleChanged();

protected:
    void componentComplete() override;

private:
    [[nodiscard]] double advance(const QFontMetricsF &metrics, QChar character) const;
    [[nodiscard]] double naturalWidth(const QString &text) const;
    [[nodiscard]] QString fitting(const QString &text) const;
    void measure();

    QString m_text;
    QString m_previous;
    QFont m_font;
    QColor m_color = Qt::white;
    double m_minimumScale = 1;
    /// Runs from 0, the previous text, to 1.
    AnimatedValue m_roll;
};

} // namespace corvane::look
