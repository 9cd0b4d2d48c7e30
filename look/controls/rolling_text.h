#pragma once

#include "look/motion/animated_value.h"

#include <QColor>
#include <QFont>
#include <QFontMetricsF>
#include <QList>
#include <QQuickPaintedItem>
#include <QStringList>
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

/// A number in one line whose digits roll upwards when it changes. A change during the roll
/// prolongs it: it goes on from where it is, through the texts that were to come, to the newest.
///
/// All digits have the same width. The text shrinks down to `minimumScale` before it is elided. The
/// implicit width is that of the widest text that is still seen.
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
    [[nodiscard]] QString text() const { return m_texts.constLast(); }
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
    /// Factor by which `fitted` is drawn smaller than its font.
    [[nodiscard]] double scaleOf(const QString &fitted) const;
    void measure();
    /// Forgets all texts before the one with this number.
    void forgetBefore(int number);
    void onRollMoved();

    QFont m_font;
    QColor m_color = Qt::white;
    double m_minimumScale = 1;
    /// Width of the widest digit, which all digits take.
    double m_digitWidth = 0;
    /// The texts of the roll, of which the last is the current one.
    QStringList m_texts{QString()};
    /// The number of the first of these texts.
    int m_first = 0;
    /// The number of the text that is seen; between two of them, the progress of the roll.
    AnimatedValue m_roll;
};

} // namespace corvane::look
