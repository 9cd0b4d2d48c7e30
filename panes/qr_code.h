#pragma once

#include <QImage>
#include <QQuickPaintedItem>
#include <QtQmlIntegration/qqmlintegration.h>

#include <optional>

namespace corvane::panes {

/// Shows a text as a QR code, sharp at every scale.
class QRCode : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged REQUIRED FINAL)
    /// True if the text can be encoded.
    Q_PROPERTY(bool valid READ isValid NOTIFY textChanged FINAL)

public:
    explicit QRCode(QQuickItem *parent = nullptr);
    [[nodiscard]] QString text() const { return m_text; }
    void setText(const QString &text);
    [[nodiscard]] bool isValid() const { return m_valid; }
    void paint(QPainter *painter) override;

Q_SIGNALS:
    void textChanged();

private:
    QString m_text;
    bool m_valid = false;
};

} // namespace corvane::panes
