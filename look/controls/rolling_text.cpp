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
    m_roll.useSpring(rollResponse, rollDamping);
    connect(&m_roll, &AnimatedValue::valueChanged, this, &RollingText::onRollMoved);
    connect(&m_roll, &AnimatedValue::runningChanged, this, &RollingText::onRollMoved);
    connect(this, &RollingText::fontChanged, this, &RollingText::measure);
    connect(this, &RollingText::styleChanged, this, [this] { update(); });
}

void RollingText::setText(const QString &text)
{
    if (this->text() == text) {
        return;
    }
    // The first text appears without an animation.
    const bool rolls = isComponentComplete() && !this->text().isEmpty();
    m_texts.append(text);
    const int number = m_first + static_cast<int>(m_texts.size()) - 1;
    if (rolls) {
        measure();
        m_roll.setTarget(number);
    } else {
        m_roll.jumpTo(number);
    }
    Q_EMIT textChanged();
}

void RollingText::onRollMoved()
{
    const int last = m_first + static_cast<int>(m_texts.size()) - 1;
    forgetBefore(m_roll.isRunning() ? std::min(static_cast<int>(m_roll.value()), last) : last);
    update();
}

void RollingText::forgetBefore(int number)
{
    if (number > m_first) {
        m_texts.remove(0, number - m_first);
        m_first = number;
        measure();
    }
}

void RollingText::componentComplete()
{
    QQuickPaintedItem::componentComplete();
    measure();
}

double RollingText::advance(const QFontMetricsF &metrics, QChar character) const
{
    const bool isDigit = character >= u'0' && character <= u'9';
    return isDigit ? m_digitWidth : metrics.horizontalAdvance(character);
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

double RollingText::scaleOf(const QString &fitted) const
{
    const double natural = naturalWidth(fitted);
    return natural > width() ? width() / natural : 1;
}

void RollingText::measure()
{
    const QFontMetricsF metrics(m_font);
    m_digitWidth = 0;
    for (char16_t digit = u'0'; digit <= u'9'; ++digit) {
        m_digitWidth = std::max(m_digitWidth, metrics.horizontalAdvance(QChar(digit)));
    }
    double widest = 0;
    for (const QString &text : std::as_const(m_texts)) {
        widest = std::max(widest, naturalWidth(text));
    }
    setImplicitSize(std::ceil(widest), std::ceil(metrics.height()));
    update();
}

void RollingText::paint(QPainter *painter)
{
    const QString leaving = fitting(m_texts.constFirst());
    const QString coming = m_texts.size() > 1 ? fitting(m_texts.at(1)) : leaving;
    const double progress = m_roll.value() - m_first;
    const double passed = std::clamp(progress, 0.0, 1.0);
    const QFontMetricsF metrics(m_font);
    const double scale = scaleOf(leaving) + (scaleOf(coming) - scaleOf(leaving)) * passed;

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
    const QList<RollingSlot> places = rollingSlots(leaving, coming);
    for (const RollingSlot &place : places) {
        const double x = fromX + (toX - fromX) * passed;
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
