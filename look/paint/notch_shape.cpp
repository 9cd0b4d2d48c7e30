#include "look/paint/notch_shape.h"

#include "look/paint/shapes.h"

#include <QPainter>
#include <QQuickWindow>
#include <QSGImageNode>
#include <QSGRectangleNode>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace corvane::look {

namespace {

constexpr double grainCell = 2;
constexpr double grainWhite = 0.05;
constexpr double grainBottomDensity = 0.28;
/// In points.
constexpr double lineWidth = 1;

/// Draws the grain of the whole shape into pictures of parts of it.
class Grain
{
public:
    Grain(const QSizeF &size, double opacity, double scale)
    {
        QColor white(Qt::white);
        white.setAlphaF(static_cast<float>(grainWhite * opacity));
        m_tile = opacity > 0 ? ditherTile(ditherPattern(size.width(), size.height(), grainCell, 0,
                                                        grainBottomDensity),
                                          grainCell, white, scale)
                             : QImage();
        m_columns = static_cast<int>(size.width() / grainCell) *
                    static_cast<int>(std::lround(grainCell * scale));
    }

    /// Lays the grain over a line of opaque black pixels of the shape's row `row`.
    void cover(QRgb *line, int width, int row) const
    {
        if (m_tile.isNull() || row >= m_tile.height()) {
            return;
        }
        const auto *period = reinterpret_cast<const QRgb *>(m_tile.constScanLine(row));
        const int end = std::min(width, m_columns);
        int filled = std::min(m_tile.width(), end);
        for (int x = 0; x < filled; ++x) {
            // White, premultiplied, on black: the same colour, opaque.
            line[x] = 0xff000000 | period[x];
        }
        // Each copy doubles what there is, in whole periods.
        while (filled < end) {
            const int count = std::min(filled, end - filled);
            std::memcpy(line + filled, line, static_cast<std::size_t>(count) * sizeof(QRgb));
            filled += count;
        }
    }

private:
    QImage m_tile;
    int m_columns = 0;
};

QImage blackWithGrain(const QSize &size, int firstRow, const Grain &grain, QImage::Format format)
{
    QImage image(size, format);
    image.fill(Qt::black);
    for (int y = 0; y < size.height(); ++y) {
        grain.cover(reinterpret_cast<QRgb *>(image.scanLine(y)), size.width(), firstRow + y);
    }
    return image;
}

/// The opaque upper part, the foot with the rounded corners, and the outline of the upper part.
class NotchNode final : public QSGNode
{
public:
    explicit NotchNode(QQuickWindow &window)
        : m_window(window)
        , m_body(newPicture())
        , m_foot(newPicture())
    {
        for (QSGRectangleNode *&line : m_lines) {
            line = window.createRectangleNode();
            appendChildNode(line);
        }
    }

    void setBody(const QImage &image, const QRectF &place) { show(*m_body, image, place); }
    void setFoot(const QImage &image, const QRectF &place) { show(*m_foot, image, place); }

    void setLines(const std::array<QRectF, 3> &places, const QColor &color)
    {
        for (std::size_t index = 0; index < places.size(); ++index) {
            m_lines.at(index)->setRect(places.at(index));
            m_lines.at(index)->setColor(color);
        }
    }

private:
    QSGImageNode *newPicture()
    {
        QSGImageNode *picture = m_window.createImageNode();
        picture->setOwnsTexture(true);
        appendChildNode(picture);
        return picture;
    }

    void show(QSGImageNode &picture, const QImage &image, const QRectF &place)
    {
        picture.setTexture(m_window.createTextureFromImage(image));
        picture.setRect(place);
    }

    QQuickWindow &m_window;
    QSGImageNode *m_body;
    QSGImageNode *m_foot;
    std::array<QSGRectangleNode *, 3> m_lines{};
};

} // namespace

NotchShape::NotchShape(QQuickItem *parent)
    : QQuickItem(parent)
{
    setFlag(ItemHasContents);
    connect(this, &NotchShape::changed, this, &QQuickItem::update);
}

void NotchShape::geometryChange(const QRectF &geometry, const QRectF &oldGeometry)
{
    QQuickItem::geometryChange(geometry, oldGeometry);
    if (geometry.size() != oldGeometry.size()) {
        update();
    }
}

QSGNode *NotchShape::updatePaintNode(QSGNode *old, UpdatePaintNodeData *)
{
    const double scale = window()->effectiveDevicePixelRatio();
    const auto pixels = [scale](double length) {
        return static_cast<int>(std::lround(length * scale));
    };
    const QSize whole(pixels(width()), pixels(height()));
    if (whole.isEmpty()) {
        delete old;
        return nullptr;
    }
    auto *node = static_cast<NotchNode *>(old);
    if (node == nullptr) {
        node = new NotchNode(*window());
    }
    const Grain grain(size(), m_trimOpacity, scale);
    const QPainterPath outline = notchShapePath(boundingRect(), m_bottomRadius);
    const int footRows =
        std::clamp(static_cast<int>(std::ceil(m_bottomRadius * scale)), 1, whole.height());
    const int bodyRows = whole.height() - footRows;
    node->setBody(
        blackWithGrain({whole.width(), std::max(bodyRows, 1)}, 0, grain, QImage::Format_RGB32),
        {0, 0, width(), bodyRows / scale});

    const EdgeLine line = edgeLine(lineWidth, scale);
    QColor color = m_lineColor;
    color.setAlphaF(static_cast<float>(color.alphaF() * m_trimOpacity));
    const double out = line.outside;
    const double footTop = bodyRows / scale;
    node->setLines({QRectF(-out, -out, line.width, footTop + out),
                    QRectF(width() + out - line.width, -out, line.width, footTop + out),
                    QRectF(line.width - out, -out, width() + 2 * (out - line.width), line.width)},
                   color);

    // The foot has room for the outer half of the outline.
    const int rim = pixels(out);
    QImage foot(whole.width() + 2 * rim, footRows + rim, QImage::Format_ARGB32_Premultiplied);
    foot.fill(Qt::transparent);
    {
        QPainter painter(&foot);
        painter.setRenderHint(QPainter::Antialiasing);
        QTransform place = QTransform::fromTranslate(rim, -bodyRows);
        painter.setTransform(place.scale(scale, scale));
        QBrush fill(blackWithGrain({whole.width(), footRows}, bodyRows, grain,
                                   QImage::Format_ARGB32_Premultiplied));
        fill.setTransform(QTransform::fromTranslate(0, footTop).scale(1 / scale, 1 / scale));
        painter.fillPath(outline, fill);
        if (m_trimOpacity > 0) {
            const double inset = line.width / 2 - out;
            painter.strokePath(notchShapePath(boundingRect().adjusted(inset, inset, -inset, -inset),
                                              m_bottomRadius - inset),
                               QPen(color, line.width));
        }
    }
    node->setFoot(foot, QRectF(-rim / scale, footTop, foot.width() / scale, foot.height() / scale));
    return node;
}

} // namespace corvane::look
