#include "look/secret_field.h"

#include <QClipboard>
#include <QCursor>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QStyleHints>

#include <algorithm>
#include <cmath>

namespace corvane::look {

namespace {

constexpr QChar bullet(u'•');
constexpr double caretWidth = 1;

/// What can be typed into a line: neither control characters nor nothing.
bool isTyping(const QKeyEvent &event)
{
    return !event.text().isEmpty() && event.text().at(0).isPrint() &&
           (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier)) != Qt::ControlModifier;
}

} // namespace

SecretField::SecretField(QQuickItem *parent)
    : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
    setActiveFocusOnTab(true);
    setAcceptedMouseButtons(Qt::LeftButton);
    setCursor(Qt::IBeamCursor);
    setFont(m_font);
}

void SecretField::setSecret(SecretText *secret)
{
    if (m_secret == secret) {
        return;
    }
    if (m_secret) {
        disconnect(m_secret, nullptr, this, nullptr);
    }
    m_secret = secret;
    if (secret != nullptr) {
        connect(secret, &SecretText::changed, this, &SecretField::contentChanged);
    }
    contentChanged();
    Q_EMIT secretChanged();
}

void SecretField::setFont(const QFont &font)
{
    m_font = font;
    const QFontMetricsF metrics(font);
    setImplicitSize(metrics.averageCharWidth(), std::ceil(metrics.height()));
    update();
    Q_EMIT fontChanged();
}

double SecretField::advance() const
{
    return QFontMetricsF(m_font).horizontalAdvance(bullet);
}

double SecretField::scroll() const
{
    return std::max(0.0, static_cast<double>(m_caret) * advance() + caretWidth - width());
}

void SecretField::paint(QPainter *painter)
{
    const double step = advance();
    const double origin = -scroll();
    const double lineHeight = implicitHeight();
    if (selectionStart() != selectionEnd() && hasActiveFocus()) {
        painter->fillRect(QRectF(origin + static_cast<double>(selectionStart()) * step, 0,
                                 static_cast<double>(selectionEnd() - selectionStart()) * step,
                                 lineHeight),
                          m_selectionColor);
    }
    painter->setFont(m_font);
    painter->setPen(m_color);
    const double baseline = QFontMetricsF(m_font).ascent();
    const auto first = static_cast<qsizetype>(-origin / step);
    const auto last = std::min(size(), static_cast<qsizetype>((width() - origin) / step) + 1);
    for (qsizetype index = first; index < last; ++index) {
        painter->drawText(QPointF(origin + static_cast<double>(index) * step, baseline),
                          QString(bullet));
    }
    if (m_caretShown) {
        painter->fillRect(
            QRectF(origin + static_cast<double>(m_caret) * step, 0, caretWidth, lineHeight),
            m_color);
    }
}

void SecretField::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Paste)) {
        paste();
    } else if (event->matches(QKeySequence::SelectAll)) {
        select(0, size());
    } else if (event->matches(QKeySequence::Copy) || event->matches(QKeySequence::Cut) ||
               event->matches(QKeySequence::Undo) || event->matches(QKeySequence::Redo)) {
        // The secret goes nowhere, and leaves no trace that could be brought back.
    } else if (event->key() == Qt::Key_Backspace || event->key() == Qt::Key_Delete) {
        if (selectionStart() == selectionEnd()) {
            const bool backwards = event->key() == Qt::Key_Backspace;
            const bool wide = (event->modifiers() & Qt::ControlModifier) != 0;
            const qsizetype end =
                backwards ? (wide ? 0 : m_caret - 1) : (wide ? size() : m_caret + 1);
            select(std::clamp(end, qsizetype(0), size()), m_caret);
        }
        replaceSelection({});
    } else if (const auto position = destination(*event)) {
        const bool selecting = (event->modifiers() & Qt::ShiftModifier) != 0;
        select(selecting ? m_anchor : *position, *position);
    } else if (isTyping(*event)) {
        replaceSelection(event->text());
    } else {
        event->ignore();
    }
}

std::optional<qsizetype> SecretField::destination(const QKeyEvent &event) const
{
    // There are no words to see, so a jump over a word goes to the end of the line.
    const bool wide = (event.modifiers() & Qt::ControlModifier) != 0;
    const bool collapses =
        selectionStart() != selectionEnd() && (event.modifiers() & Qt::ShiftModifier) == 0;
    switch (event.key()) {
    case Qt::Key_Left:
        if (wide) {
            return 0;
        }
        return collapses ? selectionStart() : std::max(m_caret - 1, qsizetype(0));
    case Qt::Key_Right:
        if (wide) {
            return size();
        }
        return collapses ? selectionEnd() : std::min(m_caret + 1, size());
    case Qt::Key_Home:
        return 0;
    case Qt::Key_End:
        return size();
    default:
        return std::nullopt;
    }
}

void SecretField::paste()
{
    QString text = QGuiApplication::clipboard()->text();
    replaceSelection(text);
    // A string that somebody else holds too would only be copied by wiping it.
    if (text.isDetached()) {
        text.fill(u'\0');
    }
}

void SecretField::replaceSelection(QStringView text)
{
    if (!m_secret) {
        return;
    }
    const qsizetype start = selectionStart();
    const qsizetype count = selectionEnd() - start;
    m_anchor = m_caret = start;
    m_secret->remove(start, count);
    const qsizetype inserted = m_secret->insert(start, text);
    select(start + inserted, start + inserted);
}

void SecretField::select(qsizetype anchor, qsizetype caret)
{
    m_anchor = anchor;
    m_caret = caret;
    restartBlinking();
    update();
}

qsizetype SecretField::positionAt(double x) const
{
    return std::clamp(static_cast<qsizetype>(std::round((x + scroll()) / advance())), qsizetype(0),
                      size());
}

void SecretField::mousePressEvent(QMouseEvent *event)
{
    forceActiveFocus(Qt::MouseFocusReason);
    const qsizetype position = positionAt(event->position().x());
    select((event->modifiers() & Qt::ShiftModifier) != 0 ? m_anchor : position, position);
}

void SecretField::mouseMoveEvent(QMouseEvent *event)
{
    select(m_anchor, positionAt(event->position().x()));
}

void SecretField::mouseDoubleClickEvent(QMouseEvent *)
{
    select(0, size());
}

void SecretField::focusInEvent(QFocusEvent *event)
{
    QQuickPaintedItem::focusInEvent(event);
    restartBlinking();
    update();
}

void SecretField::focusOutEvent(QFocusEvent *event)
{
    QQuickPaintedItem::focusOutEvent(event);
    m_blinking.stop();
    m_caretShown = false;
    update();
}

void SecretField::restartBlinking()
{
    if (!hasActiveFocus()) {
        return;
    }
    m_caretShown = true;
    if (const int period = QGuiApplication::styleHints()->cursorFlashTime(); period > 1) {
        m_blinking.start(period / 2, this);
    }
}

void SecretField::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == m_blinking.timerId()) {
        m_caretShown = !m_caretShown;
        update();
    }
}

void SecretField::contentChanged()
{
    m_anchor = std::min(m_anchor, size());
    m_caret = std::min(m_caret, size());
    update();
    Q_EMIT emptyChanged();
}

} // namespace corvane::look
