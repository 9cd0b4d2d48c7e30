#pragma once

#include "look/secret_text.h"

#include <QColor>
#include <QFont>
#include <QPointer>
#include <QQuickPaintedItem>
#include <QtQmlIntegration/qqmlintegration.h>

namespace corvane::look {

/// Shows a secret in a monospaced font, wrapped wherever the line is full, selectable with the
/// pointer. Only its picture leaves the guarded memory; assistive technology gets nothing.
class SecretLabel : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(corvane::look::SecretText *secret READ secret WRITE setSecret NOTIFY secretChanged
                   REQUIRED FINAL)
    Q_PROPERTY(QFont font READ font WRITE setFont NOTIFY fontChanged FINAL)
    Q_PROPERTY(QColor color MEMBER m_color FINAL)
    Q_PROPERTY(QColor selectionColor MEMBER m_selectionColor FINAL)

public:
    explicit SecretLabel(QQuickItem *parent = nullptr);
    [[nodiscard]] SecretText *secret() const { return m_secret; }
    void setSecret(SecretText *secret);
    [[nodiscard]] QFont font() const { return m_font; }
    void setFont(const QFont &font);
    void paint(QPainter *painter) override;

Q_SIGNALS:
    void secretChanged();
    void fontChanged();
    /// The user asks for `count` selected characters from `first` on.
    void copyRequested(int first, int count);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void geometryChange(const QRectF &now, const QRectF &before) override;

private:
    [[nodiscard]] qsizetype size() const { return m_secret != nullptr ? m_secret->size() : 0; }
    [[nodiscard]] qsizetype columns() const;
    /// The gap between two characters that lies nearest to `point`.
    [[nodiscard]] qsizetype positionAt(const QPointF &point) const;
    void select(qsizetype anchor, qsizetype end);
    void fitHeight();

    QPointer<SecretText> m_secret;
    QFont m_font;
    QColor m_color = Qt::white;
    QColor m_selectionColor = Qt::darkGray;
    double m_advance = 1;
    double m_lineHeight = 1;
    qsizetype m_anchor = 0;
    qsizetype m_end = 0;
};

} // namespace corvane::look
