#pragma once

#include "look/motion/animated_value.h"

#include <QColor>
#include <QFont>
#include <QFontMetricsF>
#include <QList>
#include <QQuickPaintedItem>
#include <QtQmlIntegration/qqmlintegration.h>

#include <optional>

namespace corvane::look {

/// One position of a number during its animation: the old and the new character.
struct RollingSlot
{
    std::optional<QChar> leaving;
    std::optional<QChar> coming;

    [[nodiscard]] bool isSteady() const { return leaving == coming; }
    [[nodiscard]] bool operator==(const RollingSlot &) const = default;
};

/// Pairs the characters of two numbers by position, counted from the right, so that equal decimal
/// places correspond even if the number of digits changes. In reading order.
[[nodiscard]] QList<RollingSlot> rollingSlots(const QString &from, const QString &to);

/// A number in one line whose digits roll upwards when it changes.
///
/// All digits have the same width. The text shrinks down to `minimumScale` before it is elided.
class RollingText : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged FINAL)
    Q_PROPERTY(QFont font MEMBER m_font NOTIFY fontChanged FINAL)
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY styleChanged FINAL)
    /// From 0 to 1.
    Q_PROPERTY(double minimumScale MEMBER m_minimumScale NOTIFY styleChanged FINAL)

public:
    explicit RollingText(QQuickItem *parent = nullptr);
    [[nodiscard]] QString text() const { return m_text; }
    void setText(const QString &text);
    void paint(QPainter *painter) override;

Q_SIGNALS:
    void textChanged();
    void fontChanged();
    void styleChanged();

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
    /// Progress from the previous text (0) to the current text (1).
    AnimatedValue m_roll;
};

} // namespace corvane::look
