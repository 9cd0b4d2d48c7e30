#include "look/paint/blur_veil.h"

#include "look/paint/blur.h"

#include <QQuickItemGrabResult>
#include <QQuickWindow>
#include <QSGImageNode>

namespace corvane::look {

namespace {

/// Below this radius (points) the blur is at most half a pixel wide and disappears within two
/// frames, so that the live item, with its animations, is shown instead.
constexpr double smallestRadius = 1;

} // namespace

BlurVeil::BlurVeil(QQuickItem *parent)
    : QQuickItem(parent)
{
    setFlag(ItemHasContents);
}

BlurVeil::~BlurVeil() = default;

void BlurVeil::setSource(QQuickItem *source)
{
    if (m_source == source) {
        return;
    }
    m_source = source;
    drop();
    Q_EMIT sourceChanged();
}

void BlurVeil::setRadius(double radius)
{
    if (m_radius == radius) {
        return;
    }
    m_radius = radius;
    if (radius < smallestRadius) {
        drop();
    } else if (isShowing()) {
        update();
    } else {
        grabInNextFrame();
    }
    Q_EMIT radiusChanged();
}

void BlurVeil::grabInNextFrame()
{
    if (m_pending || m_nextFrame || !m_source || m_source->window() == nullptr) {
        return;
    }
    setCapturing(true);
    m_nextFrame = connect(
        m_source->window(), &QQuickWindow::frameSwapped, this,
        [this] {
            disconnect(std::exchange(m_nextFrame, {}));
            grab();
        },
        Qt::QueuedConnection);
    // The connection waits for a frame that nothing else may need.
    m_source->window()->update();
}

void BlurVeil::grab()
{
    if (!m_source || m_source->window() == nullptr || m_source->width() < 1 ||
        m_source->height() < 1) {
        setCapturing(false);
        return;
    }
    // One pixel per point is enough for a picture that will be blurred.
    m_pending = m_source->grabToImage(m_source->size().toSize());
    if (!m_pending) {
        setCapturing(false);
        return;
    }
    connect(m_pending.get(), &QQuickItemGrabResult::ready, this, [this] {
        const auto grabbed = std::exchange(m_pending, {});
        if (!grabbed || m_radius < smallestRadius) {
            setCapturing(false);
            return;
        }
        const QImage image = grabbed->image();
        if (m_source && !image.isNull() && image.size() != m_source->size().toSize()) {
            grab(); // laid out in the meantime, and squeezed into the size that it had before
            return;
        }
        setCapturing(false);
        m_snapshot = image;
        update();
        Q_EMIT showingChanged();
    });
}

void BlurVeil::setCapturing(bool capturing)
{
    if (m_capturing != capturing) {
        m_capturing = capturing;
        Q_EMIT capturingChanged();
    }
}

void BlurVeil::drop()
{
    disconnect(std::exchange(m_nextFrame, {}));
    m_pending.reset();
    setCapturing(false);
    if (isShowing()) {
        m_snapshot = {};
        update();
        Q_EMIT showingChanged();
    }
}

QSGNode *BlurVeil::updatePaintNode(QSGNode *old, UpdatePaintNodeData *)
{
    if (m_snapshot.isNull()) {
        delete old;
        return nullptr;
    }
    auto *node = static_cast<QSGImageNode *>(old);
    if (node == nullptr) {
        node = window()->createImageNode();
        node->setOwnsTexture(true);
        node->setFiltering(QSGTexture::Linear);
    }
    const BlurredPicture picture = blurred(m_snapshot, m_radius / 2);
    node->setTexture(window()->createTextureFromImage(picture.image));
    // One pixel of the snapshot is one point.
    node->setRect(QRectF(QPointF(), QSizeF(picture.image.size() * picture.pixelSize)));
    return node;
}

} // namespace corvane::look
