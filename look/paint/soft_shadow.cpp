#include "look/paint/soft_shadow.h"

#include <QQuickWindow>
#include <QSGImageNode>

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <numbers>
#include <vector>

namespace corvane::look {

namespace {

/// The Gaussian is invisible beyond this many sigmas.
constexpr double reach = 3.4;
/// A shadow of at most this many columns is stored completely: this is cheap, and pieces would show
/// seams on buttons, which are scaled.
constexpr int smallTotal = 512;

/// The columns of the shadow that are stored as pixels: all of them, or, for wide shadows, both
/// ends and one column that is repeated for the uniform middle.
struct Columns
{
    int end = 0;
    int middle = 0;
    [[nodiscard]] int kept() const { return 2 * end + (middle > 0 ? 1 : 0); }
};

Columns columnsFor(int total, double sigmaPixels)
{
    const int end = static_cast<int>(std::ceil(2 * reach * sigmaPixels));
    if (total <= std::max(2 * end + 1, smallTotal)) {
        return {(total + 1) / 2, 0};
    }
    return {end, total - 2 * end};
}

QImage shadowImage(const QSizeF &size, const QColor &color, double sigma, double margin,
                   double scale, const Columns &columns, int rows)
{
    QImage image(columns.kept(), rows, QImage::Format_ARGB32_Premultiplied);
    const auto position = [&](double pixel) { return (pixel + 0.5) / scale - margin; };
    std::vector<double> across(static_cast<std::size_t>(image.width()));
    for (int x = 0; x < image.width(); ++x) {
        const int pixel = x < columns.end ? x : x + std::max(columns.middle - 1, 0);
        across[static_cast<std::size_t>(x)] = blurredBar(position(pixel), size.width(), sigma);
    }
    const auto channel = [](int value, double alpha) {
        return static_cast<unsigned>(std::lround(value * alpha));
    };
    for (int y = 0; y < rows; ++y) {
        const double down = blurredBar(position(y), size.height(), sigma);
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const double alpha = across[static_cast<std::size_t>(x)] * down;
            line[x] = channel(255, alpha) << 24 | channel(color.red(), alpha) << 16 |
                      channel(color.green(), alpha) << 8 | channel(color.blue(), alpha);
        }
    }
    return image;
}

/// Contains the pieces of one shadow and their common picture.
class ShadowNode final : public QSGNode
{
public:
    void setImage(QQuickWindow &window, const QImage &image)
    {
        // The old picture must outlive its last use by any of the pieces.
        std::unique_ptr<QSGTexture> texture(window.createTextureFromImage(image));
        for (QSGImageNode *&piece : m_pieces) {
            const bool isNew = piece == nullptr;
            if (isNew) {
                piece = window.createImageNode();
            }
            piece->setTexture(texture.get());
            piece->setRect({});
            if (isNew) {
                appendChildNode(piece);
            }
        }
        m_texture = std::move(texture);
    }

    void place(std::size_t piece, const QRectF &target, const QRectF &source)
    {
        m_pieces.at(piece)->setRect(target);
        m_pieces.at(piece)->setSourceRect(source);
    }

private:
    std::array<QSGImageNode *, 4> m_pieces{};
    std::unique_ptr<QSGTexture> m_texture;
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
    const double scale = window()->effectiveDevicePixelRatio();
    const double margin = std::ceil(reach * sigma * scale) / scale;
    const int total = static_cast<int>(std::ceil((width() + 2 * margin) * scale));
    const int rows = static_cast<int>(std::ceil((height() + 2 * margin) * scale));
    const Columns columns = columnsFor(total, sigma * scale);

    auto *node = static_cast<ShadowNode *>(old);
    if (node == nullptr) {
        node = new ShadowNode;
    }
    node->setImage(*window(), shadowImage(size(), m_color, sigma, margin, scale, columns, rows));
    const double top = -margin;
    const double end = columns.end / scale;
    if (columns.middle == 0) {
        node->place(0, {-margin, top, columns.kept() / scale, rows / scale},
                    {0, 0, static_cast<double>(columns.kept()), static_cast<double>(rows)});
        return node;
    }
    node->place(0, {-margin, top, end, rows / scale},
                {0, 0, static_cast<double>(columns.end), static_cast<double>(rows)});
    node->place(1, {-margin + end + columns.middle / scale, top, end, rows / scale},
                {static_cast<double>(columns.end) + 1, 0, static_cast<double>(columns.end),
                 static_cast<double>(rows)});
    // The middle is omitted, because the rectangle covers it.
    const int edge = std::min(static_cast<int>(2 * margin * scale), rows);
    const auto placeMiddle = [&](std::size_t piece, int row) {
        node->place(piece, {-margin + end, top + row / scale, columns.middle / scale, edge / scale},
                    {static_cast<double>(columns.end), static_cast<double>(row), 1,
                     static_cast<double>(edge)});
    };
    placeMiddle(2, 0);
    placeMiddle(3, std::max(rows - edge, edge));
    return node;
}

} // namespace corvane::look
