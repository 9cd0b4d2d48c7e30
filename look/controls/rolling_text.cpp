#include "look/controls/rolling_text.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace corvane::look {

namespace {

constexpr double rollResponse = 0.5;
constexpr double rollDamping = 0.9;
constexpr QChar ellipsis(u'…');

std::optional<QChar> fromRight(const QString &text, qsizetype place)
{
    return place < text.size() ? std::optional(text.at(text.size() - 1 - place)) : std::nullopt;
}

} // namespace

QList<RollingSlot> rollingSlots(const QString &from, const QString &to)
{
    QList<RollingSlot> slots;
    const qsizetype places = std::max(from.size(), to.size());
    slots.reserve(places);
    for (qsizetype place = places - 1; place >= 0; --place) {
        slots.append({fromRight(from, place), fromRight(to, place)});
    }
    return slots;
}

RollingText::RollingText(QQuickItem *parent)
    : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
    m_roll.jumpTo(1);
    m_roll.useSpring(rollResponse, rollDamping);
    connect(&m_roll, &AnimatedValue::valueChanged, this, [this] { update(); });
    connect(this, &RollingText::fontChanged, this, &RollingText::measure);
    connect(this, &RollingText::styleChanged, this, [this] { update(); });
}

void RollingText::setText(const QString &text)
{
    if (m_text == text) {
        return;
    }
    m_previous = std::exchange(m_text, text);
    measure();
    // The first text appears without an animation.
    if (isComponentComplete() && !m_previous.isEmpty()) {
        m_roll.jumpTo(0);
        m_roll.setTarget(1);
    }
    Q_EMIT textChanged();
}

void RollingText::componentComplete()
{
    QQuickPaintedItem::componentComplete();
    measure();
}

double RollingText::advance(const QFontMetricsF &metrics, QChar character) const
{
    if (!character.isDigit()) {
        return metrics.horizontalAdvance(character);
    }
    double widest = 0;
    const ushort zero = static_cast<ushort>(character.unicode() - character.digitValue());
    for (ushort digit = 0; digit < 10; ++digit) {
        widest =
            std::max(widest, metrics.horizontalAdvance(QChar(static_cast<ushort>(zero + digit))));
    }
    return widest;
}

double RollingText::naturalWidth(const QString &text) const
{
    const QFontMetricsF metrics(m_font);
    double width = 0;
    for (const QChar character : text) {
        width += advance(metrics, character);
    }
    return width;
}

QString RollingText::fitting(const QString &text) const
{
    if (naturalWidth(text) * m_minimumScale <= width()) {
        return text;
    }
    QString cut = text;
    while (!cut.isEmpty() && naturalWidth(cut + ellipsis) * m_minimumScale > width()) {
        cut.chop(1);
    }
    return cut + ellipsis;
}

void RollingText::measure()
{
    setImplicitSize(std::ceil(naturalWidth(m_text)), std::ceil(QFontMetricsF(m_font).height()));
    update();
}

void RollingText::paint(QPainter *painter)
{
    const QString shown = fitting(m_text);
    const double progress = m_roll.value();
    const QFontMetricsF metrics(m_font);
    const double natural = naturalWidth(shown);
    const double scale = natural > width() ? width() / natural : 1;

    painter->setRenderHint(QPainter::TextAntialiasing);
    painter->setFont(m_font);
    painter->setPen(m_color);
    painter->translate(0, (height() - metrics.height() * scale) / 2);
    painter->scale(scale, scale);

    const auto draw = [&](QChar character, double x, double rise, double opacity) {
        const double slack =
            (advance(metrics, character) - metrics.horizontalAdvance(character)) / 2;
        painter->setOpacity(std::clamp(opacity, 0.0, 1.0));
        painter->drawText(QPointF(x + slack, metrics.ascent() + rise * metrics.height()),
                          QString(character));
    };
    double fromX = 0;
    double toX = 0;
    const QList<RollingSlot> places = rollingSlots(m_roll.isRunning() ? m_previous : shown, shown);
    for (const RollingSlot &place : places) {
        const double x = fromX + (toX - fromX) * std::clamp(progress, 0.0, 1.0);
        if (place.isSteady()) {
            draw(*place.coming, x, 0, 1);
        } else {
            if (place.leaving) {
                draw(*place.leaving, x, -progress, 1 - progress);
            }
            if (place.coming) {
                draw(*place.coming, x, 1 - progress, progress);
            }
        }
        fromX += place.leaving ? advance(metrics, *place.leaving) : 0;
        toX += place.coming ? advance(metrics, *place.coming) : 0;
    }
}

} // namespace corvane::look
