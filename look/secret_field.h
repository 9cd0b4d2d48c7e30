#pragma once

#include "look/secret_text.h"

#include <QBasicTimer>
#include <QColor>
#include <QFont>
#include <QPointer>
#include <QQuickPaintedItem>
#include <QtQmlIntegration/qqmlintegration.h>

#include <algorithm>
#include <optional>

namespace corvane::look {

/// The editable line of a secure field: it shows a bullet for each character and keeps the
/// characters in guarded memory.
///
/// It takes typing, the clipboard and the usual editing keys, but gives nothing back: no copy, no
/// cut, no undo. It does not take part in input methods and tells assistive technology nothing of
/// its content. Single key events and what the clipboard hands over pass through the toolkit's
/// ordinary memory.
class SecretField : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(corvane::look::SecretText *secret READ secret WRITE setSecret NOTIFY secretChanged
                   REQUIRED FINAL)
    Q_PROPERTY(QFont font READ font WRITE setFont NOTIFY fontChanged FINAL)
    Q_PROPERTY(QColor color MEMBER m_color FINAL)
    Q_PROPERTY(QColor selectionColor MEMBER m_selectionColor FINAL)
    Q_PROPERTY(bool empty READ isEmpty NOTIFY emptyChanged FINAL)

public:
    explicit SecretField(QQuickItem *parent = nullptr);
    [[nodiscard]] SecretText *secret() const { return m_secret; }
    void setSecret(SecretText *secret);
    [[nodiscard]] QFont font() const { return m_font; }
    void setFont(const QFont &font);
    [[nodiscard]] bool isEmpty() const { return m_secret == nullptr || m_secret->isEmpty(); }
    /// The selected range; empty at the caret.
    [[nodiscard]] qsizetype selectionStart() const { return std::min(m_anchor, m_caret); }
    [[nodiscard]] qsizetype selectionEnd() const { return std::max(m_anchor, m_caret); }

    void paint(QPainter *painter) override;

Q_SIGNALS:
    void secretChanged();
    void fontChanged();
    void emptyChanged();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

private:
    /// Where a key moves the caret; none for other keys.
    [[nodiscard]] std::optional<qsizetype> destination(const QKeyEvent &event) const;
    [[nodiscard]] qsizetype positionAt(double x) const;
    [[nodiscard]] double advance() const;
    /// How far the bullets are scrolled to the left so that the caret shows.
    [[nodiscard]] double scroll() const;
    [[nodiscard]] qsizetype size() const { return m_secret != nullptr ? m_secret->size() : 0; }
    void select(qsizetype anchor, qsizetype caret);
    void replaceSelection(QStringView text);
    void paste();
    void restartBlinking();
    void contentChanged();

    QPointer<SecretText> m_secret;
    QFont m_font;
    QColor m_color = Qt::white;
    QColor m_selectionColor = Qt::darkGray;
    qsizetype m_anchor = 0;
    qsizetype m_caret = 0;
    bool m_caretShown = false;
    QBasicTimer m_blinking;
};

} // namespace corvane::look
