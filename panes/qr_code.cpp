#include "panes/qr_code.h"

#include "panes/qr.h"

#include <QPainter>

namespace corvane::panes {

QRCode::QRCode(QQuickItem *parent)
    : QQuickPaintedItem(parent)
{
    setSmooth(false);
}

void QRCode::setText(const QString &text)
{
    if (m_text == text) {
        return;
    }
    m_text = text;
    m_valid = QR::modules(text).has_value();
    update();
    Q_EMIT textChanged();
}

void QRCode::paint(QPainter *painter)
{
    // The painter's transform contains the number of pixels per point.
    const double scale = painter->deviceTransform().m11();
    if (auto image = QR::image(m_text, width(), scale)) {
        // Draws only the dark modules: the background is white already, and light modules would be
        // visible on it while both fade.
        image->invertPixels();
        QImage dark(image->size(), QImage::Format_ARGB32_Premultiplied);
        dark.fill(Qt::black);
        dark.setAlphaChannel(*image);
        painter->setRenderHint(QPainter::SmoothPixmapTransform, false);
        painter->drawImage(boundingRect(), dark);
    }
}

} // namespace corvane::panes
