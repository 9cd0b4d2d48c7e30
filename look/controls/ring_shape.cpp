#include "look/controls/ring_shape.h"

#include <QPainter>
#include <QPainterPath>
#include <QQuickWindow>
#include <QSGImageNode>

#include <algorithm>
#include <cmath>

namespace corvane::look {

namespace {

constexpr double linePoints = 1.5;
constexpr double gapPoints = 1.5;

int wholePixels(double points, double scale)
{
    return std::max(1, static_cast<int>(std::lround(points * scale)));
}

QImage ringImage(const RingPlace &place, double radius, const QColor &color)
{
    QImage image(place.outer.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(0);
    QPainterPath ring;
    ring.setFillRule(Qt::OddEvenFill);
    const QRectF outer(image.rect());
    const double inner = radius + place.gap;
    const double width = place.line;
    ring.addRoundedRect(outer, inner + width, inner + width);
    ring.addRoundedRect(outer.adjusted(width, width, -width, -width), inner, inner);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(ring, color);
    return image;
}

} // namespace

RingPlace ringPlace(const QRectF &control, double scale)
{
    const auto pixel = [scale](double point) {
        return static_cast<int>(std::lround(point * scale));
    };
    const QPoint first(pixel(control.left()), pixel(control.top()));
    const QSize size(pixel(control.right()) - first.x(), pixel(control.bottom()) - first.y());
    const int line = wholePixels(linePoints, scale);
    const int gap = wholePixels(gapPoints, scale);
    const int beyond = line + gap;
    return {QRect(first, size).adjusted(-beyond, -beyond, beyond, beyond), line, gap};
}

RingShape::RingShape(QQuickItem *parent)
    : QQuickItem(parent)
{
    setFlag(ItemHasContents);
    setTransformOrigin(TopLeft);
    connect(this, &RingShape::changed, this, &QQuickItem::update);
}

void RingShape::itemChange(ItemChange change, const ItemChangeData &data)
{
    QQuickItem::itemChange(change, data);
    if (change == ItemVisibleHasChanged || change == ItemSceneChange) {
        followWhileVisible();
    }
}

void RingShape::followWhileVisible()
{
    disconnect(m_frames);
    if (window() != nullptr && isVisible()) {
        m_frames = connect(window(), &QQuickWindow::afterAnimating, this, &RingShape::follow);
    }
}

void RingShape::follow()
{
    const QQuickItem *control = parentItem();
    if (control == nullptr || control->width() <= 0 || control->height() <= 0) {
        return;
    }
    const double scale = window()->effectiveDevicePixelRatio();
    const QRectF seen = control->mapRectToScene({{}, control->size()});
    const RingPlace place = ringPlace(seen, scale);
    if (place.outer.size() != m_place.outer.size() || place.line != m_place.line) {
        update();
    }
    m_place = place;
    setPosition(control->mapFromScene(QPointF(place.outer.topLeft()) / scale));
    setSize(QSizeF(place.outer.size()) / scale);
    setScale(control->width() / seen.width());
}

QSGNode *RingShape::updatePaintNode(QSGNode *old, UpdatePaintNodeData *)
{
    if (m_place.outer.isEmpty()) {
        delete old;
        return nullptr;
    }
    auto *node = static_cast<QSGImageNode *>(old);
    if (node == nullptr) {
        node = window()->createImageNode();
        node->setOwnsTexture(true);
    }
    const double scale = window()->effectiveDevicePixelRatio();
    node->setTexture(
        window()->createTextureFromImage(ringImage(m_place, m_radius * scale, m_color)));
    node->setRect(QRectF({}, QSizeF(m_place.outer.size()) / scale));
    return node;
}

} // namespace corvane::look
