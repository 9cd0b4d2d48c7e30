#pragma once

#include "look/motion/ticker.h"

#include <QColor>
#include <QQuickPaintedItem>
#include <QtQmlIntegration/qqmlintegration.h>

namespace corvane::look {

/// Opacity of square `index` (0 to 5) of the wave, `seconds` after the wave was first shown.
[[nodiscard]] double pixelWaveOpacity(int index, double seconds);

/// A row of six squares through which light runs from left to right. It starts dim each time it is
/// shown and uses no CPU while it is invisible.
class PixelWave : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor color MEMBER m_color FINAL)

public:
    /// Lengths in points.
    static constexpr int squareCount = 6;
    static constexpr double squareSize = 6;
    static constexpr double spacing = 4;

    explicit PixelWave(QQuickItem *parent = nullptr);
    [[nodiscard]] bool isRunning() const { return m_ticker.isRunning(); }
    void paint(QPainter *painter) override;

protected:
    void itemChange(ItemChange change, const ItemChangeData &data) override;

private:
    QColor m_color = Qt::white;
    Ticker m_ticker{[this](double) { update(); }};
};

} // namespace corvane::look
