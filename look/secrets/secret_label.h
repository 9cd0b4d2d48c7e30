#pragma once

#include "look/secrets/secret_item.h"

namespace corvane::look {

/// Shows a secret in a monospaced font, wrapped at any character, selectable with the pointer. Only
/// its picture leaves the guarded memory; nothing is reported to assistive technology.
class SecretLabel : public corvane::look::SecretItem
{
    Q_OBJECT
    QML_ELEMENT

public:
    explicit SecretLabel(QQuickItem *parent = nullptr);
    void paint(QPainter *painter) override;

Q_SIGNALS:
    /// The user requests to copy `count` selected characters, starting at `first`.
    void copyRequested(int first, int count);

protected:
    void measure() override;
    void contentChanged() override;
    [[nodiscard]] qsizetype positionAt(const QPointF &point) const override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void geometryChange(const QRectF &now, const QRectF &before) override;

private:
    [[nodiscard]] qsizetype columns() const;
    void fitHeight();

    double m_advance = 1;
    double m_lineHeight = 1;
};

} // namespace corvane::look
