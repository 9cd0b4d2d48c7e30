#include "look/secrets/secret_label.h"

#include <QFontMetricsF>
#include <QKeyEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace corvane::look {

SecretLabel::SecretLabel(QQuickItem *parent)
    : SecretItem(parent)
{
    SecretLabel::measure();
}

void SecretLabel::measure()
{
    const QFontMetricsF metrics(font());
    m_advance = std::max(1.0, metrics.horizontalAdvance(QChar(u'0')));
    m_lineHeight = std::ceil(metrics.height());
    fitHeight();
}

void SecretLabel::contentChanged()
{
    select(0, 0);
    fitHeight();
}

qsizetype SecretLabel::columns() const
{
    return std::max(qsizetype(1), static_cast<qsizetype>(width() / m_advance));
}

void SecretLabel::fitHeight()
{
    const qsizetype lines = std::max(qsizetype(1), (size() + columns() - 1) / columns());
    setImplicitHeight(static_cast<double>(lines) * m_lineHeight);
    update();
}

void SecretLabel::paint(QPainter *painter)
{
    const qsizetype perLine = columns();
    for (qsizetype index = 0; index < size(); ++index) {
        const qsizetype line = index / perLine;
        const QPointF corner(static_cast<double>(index % perLine) * m_advance,
                             static_cast<double>(line) * m_lineHeight);
        if (index >= selectionStart() && index < selectionEnd()) {
            painter->fillRect(QRectF(corner, QSizeF(m_advance, m_lineHeight)), selectionColor());
        }
        drawCharacter(*painter, corner, secret()->view().at(index));
    }
}

qsizetype SecretLabel::positionAt(const QPointF &point) const
{
    const auto line = std::max(qsizetype(0), static_cast<qsizetype>(point.y() / m_lineHeight));
    const auto column = std::clamp(static_cast<qsizetype>(std::round(point.x() / m_advance)),
                                   qsizetype(0), columns());
    return std::min(line * columns() + column, size());
}

void SecretLabel::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Copy) && selectionStart() != selectionEnd()) {
        Q_EMIT copyRequested(static_cast<int>(selectionStart()),
                             static_cast<int>(selectionEnd() - selectionStart()));
    } else {
        SecretItem::keyPressEvent(event);
    }
}

void SecretLabel::focusOutEvent(QFocusEvent *event)
{
    SecretItem::focusOutEvent(event);
    select(0, 0);
}

void SecretLabel::geometryChange(const QRectF &now, const QRectF &before)
{
    SecretItem::geometryChange(now, before);
    if (now.width() != before.width()) {
        fitHeight();
    }
}

} // namespace corvane::look
