#include "look/paint/glow.h"

#include "look/paint/blur.h"

#include <QPainter>
#include <QQuickWindow>
#include <QSGImageNode>

#include <cmath>

namespace corvane::look {

Glow::Glow(QQuickItem *parent)
    : QQuickItem(parent)
{
    setFlag(ItemHasContents);
    connect(this, &Glow::sourceChanged, this, &QQuickItem::update);
    connect(this, &Glow::radiusChanged, this, &QQuickItem::update);
}

void Glow::setSource(QQuickPaintedItem *source)
{
    if (m_source != source) {
        m_source = source;
        Q_EMIT sourceChanged();
    }
}

void Glow::geometryChange(const QRectF &geometry, const QRectF &oldGeometry)
{
    QQuickItem::geometryChange(geometry, oldGeometry);
    if (geometry.size() != oldGeometry.size()) {
        update();
    }
}

QSGNode *Glow::updatePaintNode(QSGNode *old, UpdatePaintNodeData *)
{
    if (!m_source || width() < 1 || height() < 1) {
        delete old;
        return nullptr;
    }
    // Three sigmas; one pixel per point is enough for a blurred picture.
    const int margin = static_cast<int>(std::ceil(1.5 * m_radius));
    const QSize size(static_cast<int>(std::ceil(width())), static_cast<int>(std::ceil(height())));
    QImage image(size + QSize(2 * margin, 2 * margin), QImage::Format_ARGB32_Premultiplied);
    image.fill(0);
    {
        QPainter painter(&image);
        painter.translate(margin, margin);
        m_source->paint(&painter);
    }
    auto *node = static_cast<QSGImageNode *>(old);
    if (node == nullptr) {
        node = window()->createImageNode();
        node->setOwnsTexture(true);
        node->setFiltering(QSGTexture::Linear);
    }
    const BlurredPicture picture = blurred(image, m_radius / 2);
    node->setTexture(window()->createTextureFromImage(picture.image));
    node->setRect(
        QRectF(QPointF(-margin, -margin), QSizeF(picture.image.size() * picture.pixelSize)));
    return node;
}

} // namespace corvane::look
