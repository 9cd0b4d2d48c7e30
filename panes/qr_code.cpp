#include "panes/qr_code.h"

#include "panes/qr.h"

#include <QPainter>

namespace corvane::panes {

QRCode::QRCode(QQuickItem *parent)
    : QQuickPaintedItem(parent)
{
    setSmooth(false);
    setOpaquePainting(true);
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
    // The painter's own transform says how many pixels a point has here.
    const double scale = painter->deviceTransform().m11();
    if (const auto image = QR::image(m_text, width(), scale)) {
        painter->setRenderHint(QPainter::SmoothPixmapTransform, false);
        painter->drawImage(boundingRect(), *image);
    }
}

} // namespace corvane::panes
