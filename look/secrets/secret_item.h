#pragma once

#include "look/secrets/secret_text.h"

#include <QColor>
#include <QFont>
#include <QPointer>
#include <QQuickPaintedItem>
#include <QtQmlIntegration/qqmlintegration.h>

#include <algorithm>

namespace corvane::look {

/// The base of items that draw a `SecretText`: the text, its font and colours, and a range selected
/// with pointer or keyboard. It draws single characters, so that the text is never copied into a
/// string, and reports none of them to assistive technology. Derived classes must use its qualified
/// name, which qmllint needs.
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
    /// The selected range; empty if it starts and ends at the caret.
    [[nodiscard]] qsizetype selectionStart() const { return std::min(m_anchor, m_caret); }
    [[nodiscard]] qsizetype selectionEnd() const { return std::max(m_anchor, m_caret); }

Q_SIGNALS:
    void secretChanged();
    void fontChanged();

protected:
    explicit SecretItem(QQuickItem *parent);

    /// Called when the font has changed.
    virtual void measure() = 0;
    /// Called when the text object or its content has changed.
    virtual void contentChanged() = 0;
    /// The index of the gap between two characters that is nearest to `point`.
    [[nodiscard]] virtual qsizetype positionAt(const QPointF &point) const = 0;
    /// Selects the characters between two gaps; `caret` is the moving end.
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
