#include "look/motion/pixel_wave.h"

#include "look/motion/timing_curves.h"

#include <QPainter>

#include <cmath>

namespace corvane::look {

namespace {

constexpr double dim = 0.12;
/// Seconds from dim to bright, and back again.
constexpr double half = 0.4;
/// Seconds by which a square starts later than its left neighbour.
constexpr double lag = 0.08;

} // namespace

double pixelWaveOpacity(int index, double seconds)
{
    const double elapsed = seconds - lag * index;
    if (elapsed <= 0) {
        return dim;
    }
    const double phase = std::fmod(elapsed / half, 2);
    return dim + (1 - dim) * easeInOutCurve().valueForProgress(phase <= 1 ? phase : 2 - phase);
}

PixelWave::PixelWave(QQuickItem *parent)
    : QQuickPaintedItem(parent)
{
    setImplicitSize(squareCount * squareSize + (squareCount - 1) * spacing, squareSize);
}

void PixelWave::paint(QPainter *painter)
{
    const double seconds = m_ticker.seconds();
    for (int index = 0; index < squareCount; ++index) {
        QColor color = m_color;
        color.setAlphaF(static_cast<float>(m_color.alphaF() * pixelWaveOpacity(index, seconds)));
        painter->fillRect(QRectF(index * (squareSize + spacing), 0, squareSize, squareSize), color);
    }
}

void PixelWave::itemChange(ItemChange change, const ItemChangeData &data)
{
    QQuickPaintedItem::itemChange(change, data);
    if (change == ItemVisibleHasChanged || change == ItemSceneChange) {
        const bool shown = isVisible() && window() != nullptr;
        if (shown && !isRunning()) {
            m_ticker.start();
        } else if (!shown) {
            m_ticker.stop();
        }
    }
}

} // namespace corvane::look
