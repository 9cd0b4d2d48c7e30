#pragma once

#include "look/secrets/secret_item.h"

#include <QBasicTimer>

#include <optional>

namespace corvane::look {

/// The editable line of a secure field: it shows a bullet for each character and keeps the
/// characters in guarded memory.
///
/// It accepts typing, pasting and the usual editing keys, but has no copy, cut or undo. It does not
/// support input methods. Assistive technology may set its content and learns nothing of it. Single
/// key events and text that is pasted or set pass through the toolkit's unprotected memory.
class SecretField : public corvane::look::SecretItem
{
    Q_OBJECT
    QML_ELEMENT
    /// The field's name for assistive technology.
    Q_PROPERTY(QString label MEMBER m_label FINAL)
    Q_PROPERTY(bool empty READ isEmpty NOTIFY emptyChanged FINAL)
    /// For assistive technology, which writes the property of this name. Always reads as empty.
    Q_PROPERTY(QString text READ unreadable WRITE setText FINAL)

public:
    explicit SecretField(QQuickItem *parent = nullptr);
    [[nodiscard]] QString label() const { return m_label; }
    [[nodiscard]] bool isEmpty() const { return size() == 0; }
    [[nodiscard]] QString unreadable() const { return {}; }
    /// Replaces the content.
    void setText(const QString &text);
    void paint(QPainter *painter) override;

Q_SIGNALS:
    void emptyChanged();

protected:
    void measure() override;
    void contentChanged() override;
    [[nodiscard]] qsizetype positionAt(const QPointF &point) const override;
    void select(qsizetype anchor, qsizetype caret) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

private:
    /// The position to which a key moves the caret; empty for other keys.
    [[nodiscard]] std::optional<qsizetype> destination(const QKeyEvent &event) const;
    [[nodiscard]] double advance() const;
    /// The distance in points by which the bullets are scrolled to the left to keep the caret
    /// visible.
    [[nodiscard]] double scroll() const;
    void replaceSelection(QStringView text);
    void paste();
    void restartBlinking();

    QString m_label;
    bool m_caretShown = false;
    QBasicTimer m_blinking;
};

} // namespace corvane::look
