#include "look/secrets/secret_item.h"

#include <QCursor>
#include <QFontMetricsF>
#include <QKeyEvent>
#include <QPainter>
#include <QQuickWindow>

namespace corvane::look {

SecretItem::SecretItem(QQuickItem *parent)
    : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
    setAcceptedMouseButtons(Qt::LeftButton);
    setCursor(Qt::IBeamCursor);
}

void SecretItem::setSecret(SecretText *secret)
{
    if (m_secret == secret) {
        return;
    }
    if (m_secret) {
        disconnect(m_secret, nullptr, this, nullptr);
    }
    m_secret = secret;
    if (secret != nullptr) {
        connect(secret, &SecretText::changed, this, [this] { contentChanged(); });
    }
    contentChanged();
    Q_EMIT secretChanged();
}

void SecretItem::setFont(const QFont &font)
{
    m_font = font;
    measure();
    Q_EMIT fontChanged();
}

void SecretItem::select(qsizetype anchor, qsizetype caret)
{
    m_anchor = anchor;
    m_caret = caret;
    update();
}

void SecretItem::drawCharacter(QPainter &painter, const QPointF &corner, QChar character) const
{
    painter.setFont(m_font);
    painter.setPen(m_color);
    painter.drawText(corner + QPointF(0, QFontMetricsF(m_font).ascent()), QString(character));
}

void SecretItem::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::SelectAll)) {
        select(0, size());
    } else {
        event->ignore();
    }
}

void SecretItem::mousePressEvent(QMouseEvent *event)
{
    // The window manager does not give the island keyboard focus.
    window()->requestActivate();
    forceActiveFocus(Qt::MouseFocusReason);
    const qsizetype position = positionAt(event->position());
    select((event->modifiers() & Qt::ShiftModifier) != 0 ? m_anchor : position, position);
}

void SecretItem::mouseMoveEvent(QMouseEvent *event)
{
    select(m_anchor, positionAt(event->position()));
}

void SecretItem::mouseDoubleClickEvent(QMouseEvent *)
{
    select(0, size());
}

} // namespace corvane::look
