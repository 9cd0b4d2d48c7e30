#include "assets/bundled_fonts.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>

#include <benchmark/benchmark.h>

#include <array>
#include <cmath>

namespace {

constexpr QSize panel(708, 300); // points: a card of 620 x 250 with its shadow
constexpr QRectF card(44, 0, 620, 250);

/// A yardstick for frames, which none of the program's code is part of: one complete repaint of a
/// card's area by QPainter's software, at this scale. The area is cleared; a translucent picture is
/// blended over it, as large as the shadow; a rounded card is filled with antialiasing, and filled
/// again with a small translucent pattern; a chart of 288 points is stroked; and fourteen texts are
/// written in the typefaces and sizes of the cards, four of them on rounded buttons.
void cardRepaint(benchmark::State &state)
{
    const double scale = static_cast<double>(state.range(0));
    corvane::assets::registerBundledFonts();
    const auto canvas = [scale](QSize points) {
        QImage image(points * scale, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(scale);
        image.fill(Qt::transparent);
        return image;
    };
    QImage target = canvas(panel);
    QImage shadow = canvas(panel);
    shadow.fill(QColor(0, 0, 0, 90));
    QImage pattern = canvas({4, 4});
    pattern.setPixelColor(0, 0, QColor(255, 255, 255, 13));
    QPolygonF chart;
    for (int point = 0; point < 288; ++point) {
        chart << QPointF(60 + point * 2.04, 170 + 20 * std::sin(point * 0.13) + point % 7);
    }
    const std::array fonts{QFont(QStringLiteral("Silkscreen")),
                           QFont(QStringLiteral("JetBrains Mono"))};
    for (auto _ : state) {
        target.fill(Qt::transparent);
        QPainter painter(&target);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.drawImage(0, 0, shadow);
        QPainterPath outline;
        outline.addRoundedRect(card, 16, 16);
        painter.fillPath(outline, Qt::black);
        painter.fillPath(outline, QBrush(pattern));
        painter.strokePath(outline, QPen(QColor(255, 255, 255, 31), 1));
        painter.setPen(QPen(QColor(60, 208, 107), 1.5));
        painter.drawPolyline(chart);
        for (int line = 0; line < 14; ++line) {
            QFont font = fonts.at(static_cast<std::size_t>(line % 2));
            font.setPixelSize(line == 0 ? 24 : 8 + line % 3);
            const QRectF place(60 + line % 4 * 145, 10 + line / 4 * 55, 140, 32);
            if (line >= 10) {
                painter.setPen(Qt::NoPen);
                painter.setBrush(QColor(60, 208, 107));
                painter.drawRoundedRect(place, 8, 8);
            }
            painter.setPen(Qt::white);
            painter.setFont(font);
            painter.drawText(place, Qt::AlignCenter, QStringLiteral("1,234.05 QUIB %1").arg(line));
        }
        benchmark::DoNotOptimize(target.constBits());
    }
}
BENCHMARK(cardRepaint)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen"); // for the typefaces
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
