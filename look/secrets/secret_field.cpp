#include "look/secrets/secret_field.h"

#include "look/controls/plain_line.h"
#include "look/secrets/accessible_secret_field.h"

#include <QClipboard>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QStyleHints>

#include <algorithm>
#include <cmath>
#include <mutex>

namespace corvane::look {

namespace {

constexpr QChar bullet(u'•');
constexpr double caretWidth = 1;

/// True if the event inserts printable text.
bool isTyping(const QKeyEvent &event)
{
    return !event.text().isEmpty() && event.text().at(0).isPrint() &&
           (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier)) != Qt::ControlModifier;
}

} // namespace

SecretField::SecretField(QQuickItem *parent)
    : SecretItem(parent)
{
    static std::once_flag installed;
    std::call_once(installed, AccessibleSecretField::install);
    setActiveFocusOnTab(true);
    SecretField::measure();
}

void SecretField::measure()
{
    const QFontMetricsF metrics(font());
    setImplicitSize(metrics.averageCharWidth(), std::ceil(metrics.height()));
    update();
}

void SecretField::contentChanged()
{
    SecretItem::select(std::min(anchor(), size()), std::min(caret(), size()));
    Q_EMIT emptyChanged();
}

double SecretField::advance() const
{
    return QFontMetricsF(font()).horizontalAdvance(bullet);
}

double SecretField::scroll() const
{
    return std::max(0.0, static_cast<double>(caret()) * advance() + caretWidth - width());
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
                          selectionColor());
    }
    const auto first = static_cast<qsizetype>(-origin / step);
    const auto last = std::min(size(), static_cast<qsizetype>((width() - origin) / step) + 1);
    for (qsizetype index = first; index < last; ++index) {
        drawCharacter(*painter, {origin + static_cast<double>(index) * step, 0}, bullet);
    }
    if (m_caretShown) {
        painter->fillRect(
            QRectF(origin + static_cast<double>(caret()) * step, 0, caretWidth, lineHeight),
            color());
    }
}

void SecretField::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Paste)) {
        paste();
    } else if (event->matches(QKeySequence::Copy) || event->matches(QKeySequence::Cut) ||
               event->matches(QKeySequence::Undo) || event->matches(QKeySequence::Redo)) {
        // Copy, cut and undo are ignored: the secret must not leave the field and has no history.
    } else if (event->key() == Qt::Key_Backspace || event->key() == Qt::Key_Delete) {
        if (selectionStart() == selectionEnd()) {
            const bool backwards = event->key() == Qt::Key_Backspace;
            const bool wide = (event->modifiers() & Qt::ControlModifier) != 0;
            const qsizetype end =
                backwards ? (wide ? 0 : caret() - 1) : (wide ? size() : caret() + 1);
            select(std::clamp(end, qsizetype(0), size()), caret());
        }
        replaceSelection({});
    } else if (const auto position = destination(*event)) {
        const bool selecting = (event->modifiers() & Qt::ShiftModifier) != 0;
        select(selecting ? anchor() : *position, *position);
    } else if (isTyping(*event)) {
        replaceSelection(event->text());
    } else {
        SecretItem::keyPressEvent(event);
    }
}

std::optional<qsizetype> SecretField::destination(const QKeyEvent &event) const
{
    // Words are not visible, so that moving by a word moves to the end of the line.
    const bool wide = (event.modifiers() & Qt::ControlModifier) != 0;
    const bool collapses =
        selectionStart() != selectionEnd() && (event.modifiers() & Qt::ShiftModifier) == 0;
    switch (event.key()) {
    case Qt::Key_Left:
        if (wide) {
            return 0;
        }
        return collapses ? selectionStart() : std::max(caret() - 1, qsizetype(0));
    case Qt::Key_Right:
        if (wide) {
            return size();
        }
        return collapses ? selectionEnd() : std::min(caret() + 1, size());
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
    replaceSelection(withoutOuterBreaks(text));
    // Wiping a shared string would only detach a copy.
    if (text.isDetached()) {
        text.fill(u'\0');
    }
}

void SecretField::setText(const QString &text)
{
    select(0, size());
    replaceSelection(text);
}

void SecretField::replaceSelection(QStringView text)
{
    if (secret() == nullptr) {
        return;
    }
    const qsizetype start = selectionStart();
    const qsizetype count = selectionEnd() - start;
    SecretItem::select(start, start);
    secret()->remove(start, count);
    const qsizetype inserted = secret()->insert(start, text);
    select(start + inserted, start + inserted);
}

void SecretField::select(qsizetype anchor, qsizetype caret)
{
    SecretItem::select(anchor, caret);
    restartBlinking();
}

qsizetype SecretField::positionAt(const QPointF &point) const
{
    return std::clamp(static_cast<qsizetype>(std::round((point.x() + scroll()) / advance())),
                      qsizetype(0), size());
}

void SecretField::focusInEvent(QFocusEvent *event)
{
    SecretItem::focusInEvent(event);
    restartBlinking();
    update();
}

void SecretField::focusOutEvent(QFocusEvent *event)
{
    SecretItem::focusOutEvent(event);
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

} // namespace corvane::look
