#include "look/paint/soft_shadow.h"

#include <QPainter>
#include <QQuickWindow>
#include <QSGImageNode>

#include <array>
#include <cmath>
#include <numbers>
#include <span>
#include <utility>
#include <vector>

namespace corvane::look {

namespace {

/// The Gaussian is invisible beyond this many sigmas.
constexpr double reach = 3.4;

/// The blurred bar at the centres of `count` pixels from pixel `first` on, relative to the bar's
/// start.
std::vector<float> profile(int first, int count, double scale, double length, double sigma)
{
    std::vector<float> values(static_cast<std::size_t>(count));
    for (int index = 0; index < count; ++index) {
        const double position = (first + index + 0.5) / scale;
        values[static_cast<std::size_t>(index)] =
            static_cast<float>(blurredBar(position, length, sigma));
    }
    return values;
}

/// Writes one line of the shadow. A plain loop over separate arrays, which the compiler vectorises.
void fillLine(QRgb *line, std::span<const float> across, float down, const QColor &color)
{
    const auto red = static_cast<float>(color.red());
    const auto green = static_cast<float>(color.green());
    const auto blue = static_cast<float>(color.blue());
    const auto channel = [](float value) { return static_cast<QRgb>(static_cast<int>(value)); };
    for (std::size_t x = 0; x < across.size(); ++x) {
        const float alpha = across[x] * down;
        line[x] = channel(255 * alpha + 0.5F) << 24 | channel(red * alpha + 0.5F) << 16 |
                  channel(green * alpha + 0.5F) << 8 | channel(blue * alpha + 0.5F);
    }
}

/// Contains the pieces of one shadow. They lie side by side on whole pixels and are never
/// stretched, so that no seam can show between them.
class ShadowNode final : public QSGNode
{
public:
    /// Replaces piece `index` by `image`, with its top left corner at `corner` (points).
    void setPiece(std::size_t index, QQuickWindow &window, const QImage &image,
                  const QPointF &corner, double scale)
    {
        QSGImageNode *&piece = m_pieces.at(index);
        if (image.isNull()) {
            if (piece != nullptr) {
                removeChildNode(piece);
                delete std::exchange(piece, nullptr);
            }
            return;
        }
        const bool isNew = piece == nullptr;
        if (isNew) {
            piece = window.createImageNode();
            piece->setOwnsTexture(true);
        }
        piece->setTexture(window.createTextureFromImage(image));
        piece->setRect(QRectF(corner, QSizeF(image.size()) / scale));
        if (isNew) {
            appendChildNode(piece); // at last: the software renderer reads its texture at once
        }
    }

private:
    std::array<QSGImageNode *, 3> m_pieces{};
};

} // namespace

double blurredBar(double position, double length, double sigma)
{
    const auto normal = [sigma](double x) {
        return 0.5 * std::erfc(-x / (sigma * std::numbers::sqrt2));
    };
    return normal(position) - normal(position - length);
}

SoftShadow::SoftShadow(QQuickItem *parent)
    : QQuickItem(parent)
{
    setFlag(ItemHasContents);
    connect(this, &SoftShadow::changed, this, &QQuickItem::update);
}

void SoftShadow::geometryChange(const QRectF &geometry, const QRectF &oldGeometry)
{
    QQuickItem::geometryChange(geometry, oldGeometry);
    update();
}

QSGNode *SoftShadow::updatePaintNode(QSGNode *old, UpdatePaintNodeData *)
{
    const double sigma = m_radius / 2;
    if (sigma <= 0 || width() <= 0 || height() <= 0) {
        delete old;
        return nullptr;
    }
    auto *node = static_cast<ShadowNode *>(old);
    if (node == nullptr) {
        node = new ShadowNode;
    }
    const double scale = window()->effectiveDevicePixelRatio();
    const int margin = static_cast<int>(std::ceil(reach * sigma * scale));
    const auto pixels = [&](double length) { return static_cast<int>(std::ceil(length * scale)); };
    const int columns = pixels(width()) + 2 * margin;
    const int rows = pixels(height()) + 2 * margin;
    const std::vector<float> across = profile(-margin, columns, scale, width(), sigma);
    const std::vector<float> down = profile(-margin, rows, scale, height(), sigma);

    const auto piece = [&](const QRect &part) {
        if (part.isEmpty()) {
            return QImage();
        }
        QImage image(part.size(), QImage::Format_ARGB32_Premultiplied);
        const std::span<const float> values = std::span(across).subspan(
            static_cast<std::size_t>(part.x()), static_cast<std::size_t>(part.width()));
        for (int y = 0; y < part.height(); ++y) {
            fillLine(reinterpret_cast<QRgb *>(image.scanLine(y)), values,
                     down[static_cast<std::size_t>(part.y() + y)], m_color);
        }
        if (m_hollowRadius >= 0) {
            QPainter painter(&image);
            painter.setRenderHint(QPainter::Antialiasing);
            painter.setCompositionMode(QPainter::CompositionMode_Clear);
            painter.setPen(Qt::NoPen);
            painter.setBrush(Qt::black);
            painter.translate(margin - part.x(), margin - part.y());
            painter.scale(scale, scale);
            painter.drawRoundedRect(boundingRect(), m_hollowRadius, m_hollowRadius);
        }
        return image;
    };
    const auto place = [&](std::size_t index, const QRect &part) {
        node->setPiece(index, *window(), piece(part),
                       QPointF(part.x() - margin, part.y() - margin) / scale, scale);
    };
    const int side = margin + pixels(m_hangingInset.width());
    const int foot = margin + pixels(m_hangingInset.height());
    if (m_hangingInset.isEmpty() || 2 * side >= columns || foot >= rows) {
        place(0, {0, 0, columns, rows});
        place(1, {});
        place(2, {});
        return node;
    }
    place(0, {0, 0, side, rows});
    place(1, {columns - side, 0, side, rows});
    place(2, {side, rows - foot, columns - 2 * side, foot});
    return node;
}

} // namespace corvane::look
