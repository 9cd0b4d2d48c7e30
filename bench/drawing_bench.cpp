#include "look/motion/spring.h"
#include "look/paint/blur.h"
#include "look/paint/shapes.h"

#include <QColor>
#include <QPainter>

#include <benchmark/benchmark.h>

namespace {

using namespace corvane;

void springStep(benchmark::State &state)
{
    const look::Spring spring{0.42, 0.88};
    double time = 0;
    for (auto _ : state) {
        time += 0.016;
        benchmark::DoNotOptimize(look::springMotion(spring, {160, 0}, 620, time));
    }
}
BENCHMARK(springStep);

/// Blurs a card's snapshot, at one pixel per point, as the content effect does in each frame.
void cardBlur(benchmark::State &state)
{
    QImage card(620, 210, QImage::Format_ARGB32_Premultiplied);
    card.fill(0xff102030);
    for (auto _ : state) {
        benchmark::DoNotOptimize(look::blurred(card, static_cast<double>(state.range(0)) / 2));
    }
}
BENCHMARK(cardBlur)->Arg(2)->Arg(7)->Unit(benchmark::kMillisecond);

/// Paints the island at scale 1 and 2: shape, grain and outline.
void islandPaint(benchmark::State &state)
{
    const double scale = static_cast<double>(state.range(0));
    QImage target(QSize(622, 250) * static_cast<int>(scale), QImage::Format_ARGB32_Premultiplied);
    target.setDevicePixelRatio(scale);
    for (auto _ : state) {
        target.fill(Qt::transparent);
        QPainter painter(&target);
        painter.setRenderHint(QPainter::Antialiasing);
        const QPainterPath outline = look::notchShapePath({1, 1, 620, 248}, 16);
        painter.fillPath(outline, Qt::black);
        const QImage tile = look::ditherTile(look::ditherPattern(620, 248, 2, 0, 0.28), 2,
                                             QColor(255, 255, 255, 13), scale);
        QBrush grain(tile);
        grain.setTransform(QTransform::fromScale(1 / scale, 1 / scale));
        painter.fillPath(outline, grain);
        painter.strokePath(outline, QPen(QColor(255, 255, 255, 31), 1));
    }
}
BENCHMARK(islandPaint)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

} // namespace
