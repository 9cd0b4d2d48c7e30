#include "look/secret_label.h"

#include <QCursor>
#include <QFontMetricsF>
#include <QKeyEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace corvane::look {

SecretLabel::SecretLabel(QQuickItem *parent)
    : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
    setAcceptedMouseButtons(Qt::LeftButton);
    setCursor(Qt::IBeamCursor);
    setFont(m_font);
}

void SecretLabel::setSecret(SecretText *secret)
{
    if (m_secret == secret) {
        return;
    }
    if (m_secret) {
        disconnect(m_secret, nullptr, this, nullptr);
    }
    m_secret = secret;
    if (secret != nullptr) {
        connect(secret, &SecretText::changed, this, [this] {
            select(0, 0);
            fitHeight();
        });
    }
    fitHeight();
    Q_EMIT secretChanged();
}

void SecretLabel::setFont(const QFont &font)
{
    m_font = font;
    const QFontMetricsF metrics(font);
    m_advance = std::max(1.0, metrics.horizontalAdvance(QChar(u'0')));
    m_lineHeight = std::ceil(metrics.height());
    fitHeight();
    Q_EMIT fontChanged();
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
    const double baseline = QFontMetricsF(m_font).ascent();
    painter->setFont(m_font);
    painter->setPen(m_color);
    for (qsizetype index = 0; index < size(); ++index) {
        const qsizetype line = index / perLine;
        const QPointF corner(static_cast<double>(index % perLine) * m_advance,
                             static_cast<double>(line) * m_lineHeight);
        if (index >= std::min(m_anchor, m_end) && index < std::max(m_anchor, m_end)) {
            painter->fillRect(QRectF(corner, QSizeF(m_advance, m_lineHeight)), m_selectionColor);
        }
        // One by one, so that no string of them all is made.
        painter->drawText(corner + QPointF(0, baseline), QString(m_secret->view().at(index)));
    }
}

qsizetype SecretLabel::positionAt(const QPointF &point) const
{
    const auto line = std::max(qsizetype(0), static_cast<qsizetype>(point.y() / m_lineHeight));
    const auto column = std::clamp(static_cast<qsizetype>(std::round(point.x() / m_advance)),
                                   qsizetype(0), columns());
    return std::min(line * columns() + column, size());
}

void SecretLabel::select(qsizetype anchor, qsizetype end)
{
    m_anchor = anchor;
    m_end = end;
    update();
}

void SecretLabel::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::SelectAll)) {
        select(0, size());
    } else if (event->matches(QKeySequence::Copy) && m_anchor != m_end) {
        Q_EMIT copyRequested(static_cast<int>(std::min(m_anchor, m_end)),
                             static_cast<int>(std::abs(m_end - m_anchor)));
    } else {
        event->ignore();
    }
}

void SecretLabel::mousePressEvent(QMouseEvent *event)
{
    forceActiveFocus(Qt::MouseFocusReason);
    const qsizetype position = positionAt(event->position());
    select(position, position);
}

void SecretLabel::mouseMoveEvent(QMouseEvent *event)
{
    select(m_anchor, positionAt(event->position()));
}

void SecretLabel::mouseDoubleClickEvent(QMouseEvent *)
{
    select(0, size());
}

void SecretLabel::focusOutEvent(QFocusEvent *event)
{
    QQuickPaintedItem::focusOutEvent(event);
    select(0, 0);
}

void SecretLabel::geometryChange(const QRectF &now, const QRectF &before)
{
    QQuickPaintedItem::geometryChange(now, before);
    if (now.width() != before.width()) {
        fitHeight();
    }
}

} // namespace corvane::look
