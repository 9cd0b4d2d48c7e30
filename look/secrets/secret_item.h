#pragma once

#include "look/secrets/secret_text.h"

#include <QColor>
#include <QFont>
#include <QPointer>
#include <QQuickPaintedItem>
#include <QtQmlIntegration/qqmlintegration.h>

#include <algorithm>

namespace corvane::look {

/// What the items share that draw a `SecretText`: the text, its font and colours, and a range that
/// the pointer and the keyboard select. It draws characters one by one, so that no string of them
/// all is made, and tells assistive technology nothing of them. A derived class names it in full,
/// which is how qmllint knows it.
class SecretItem : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ANONYMOUS
    /// Not owned.
    Q_PROPERTY(corvane::look::SecretText *secret READ secret WRITE setSecret NOTIFY secretChanged
                   REQUIRED FINAL)
    Q_PROPERTY(QFont font READ font WRITE setFont NOTIFY fontChanged FINAL)
    Q_PROPERTY(QColor color MEMBER m_color FINAL)
    Q_PROPERTY(QColor selectionColor MEMBER m_selectionColor FINAL)

public:
    [[nodiscard]] SecretText *secret() const { return m_secret; }
    void setSecret(SecretText *secret);
    [[nodiscard]] QFont font() const { return m_font; }
    void setFont(const QFont &font);
    /// The selected range; empty at the caret.
    [[nodiscard]] qsizetype selectionStart() const { return std::min(m_anchor, m_caret); }
    [[nodiscard]] qsizetype selectionEnd() const { return std::max(m_anchor, m_caret); }

Q_SIGNALS:
    void secretChanged();
    void fontChanged();

protected:
    explicit SecretItem(QQuickItem *parent);

    /// The font is another one.
    virtual void measure() = 0;
    /// The text is another one, or has been changed.
    virtual void contentChanged() = 0;
    /// The gap between two characters that lies nearest to `point`.
    [[nodiscard]] virtual qsizetype positionAt(const QPointF &point) const = 0;
    /// Selects between two gaps; `caret` is the end that moves.
    virtual void select(qsizetype anchor, qsizetype caret);

    [[nodiscard]] qsizetype size() const { return m_secret != nullptr ? m_secret->size() : 0; }
    [[nodiscard]] qsizetype anchor() const { return m_anchor; }
    [[nodiscard]] qsizetype caret() const { return m_caret; }
    [[nodiscard]] QColor color() const { return m_color; }
    [[nodiscard]] QColor selectionColor() const { return m_selectionColor; }
    /// Draws one character with its line's upper left corner at `corner`.
    void drawCharacter(QPainter &painter, const QPointF &corner, QChar character) const;

    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;

private:
    QPointer<SecretText> m_secret;
    QFont m_font;
    QColor m_color = Qt::white;
    QColor m_selectionColor = Qt::darkGray;
    qsizetype m_anchor = 0;
    qsizetype m_caret = 0;
};

} // namespace corvane::look
