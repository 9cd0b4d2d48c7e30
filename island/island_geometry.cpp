#include "island/island_geometry.h"

#include <algorithm>
#include <cmath>

namespace corvane::island {

namespace {

using MaybeScreen = std::optional<platform::Screen>;

/// The widths by which the collapsed island extends beyond the notch; the left side contains the
/// mark.
constexpr double leftEar = 46;
constexpr double rightEar = 6;
constexpr double smallestCollapsedWidth = 160;
constexpr double defaultBandHeight = 32;
/// The height of the tallest card and a margin.
constexpr double stageBodyHeight = 316;
/// The margin for the shadow, at both sides and below.
constexpr double stageMargin = 44;
constexpr QRectF stageWithoutScreen{0, 0, 900, 400};
constexpr double hoverMargin = 10;

double bodyHeight(IslandPane pane)
{
    switch (pane) {
    case IslandPane::Balance:
        return 238;
    case IslandPane::Settings:
        return 306;
    case IslandPane::Receive:
        return 300;
    case IslandPane::Send:
        return 296;
    }
    Q_UNREACHABLE();
}

double middle(const QRectF &frame)
{
    return frame.x() + frame.width() / 2;
}

double top(const QRectF &frame)
{
    return frame.y() + frame.height();
}

} // namespace

MaybeScreen notchScreen(const platform::Screens &screens)
{
    const QList<platform::Screen> all = screens.all();
    const auto notched = std::ranges::find_if(
        all, [](const platform::Screen &screen) { return screen.safeAreaTop > 0; });
    if (notched != all.end()) {
        return *notched;
    }
    if (MaybeScreen main = screens.main()) {
        return main;
    }
    return all.isEmpty() ? MaybeScreen() : all.first();
}

double topBandHeight(const MaybeScreen &screen)
{
    return screen && screen->safeAreaTop > 0 ? screen->safeAreaTop : defaultBandHeight;
}

double notchWidth(const MaybeScreen &screen)
{
    if (!screen || !screen->auxiliaryTopLeftArea || !screen->auxiliaryTopRightArea) {
        return 0;
    }
    return std::max(screen->frame.width() - screen->auxiliaryTopLeftArea->width() -
                        screen->auxiliaryTopRightArea->width(),
                    0.0);
}

double collapsedWidth(double notchWidth)
{
    return std::max(notchWidth + leftEar + rightEar, smallestCollapsedWidth);
}

QSizeF paneSize(const MaybeScreen &screen, IslandPane pane)
{
    return {cardWidth, topBandHeight(screen) + bodyHeight(pane)};
}

QRectF collapsedRect(const MaybeScreen &screen)
{
    const double notch = notchWidth(screen);
    const double width = collapsedWidth(notch);
    const double height = topBandHeight(screen);
    if (!screen) {
        return {0, 0, width, height};
    }
    const double centre = middle(screen->frame);
    const double left = notch > 0 ? centre - notch / 2 - leftEar : centre - width / 2;
    return {std::round(left), top(screen->frame) - height, width, height};
}

QRectF expandedHoverRect(const platform::Screen &screen, IslandPane pane)
{
    const QSizeF size = paneSize(screen, pane);
    return {middle(screen.frame) - size.width() / 2 - hoverMargin,
            top(screen.frame) - size.height() - hoverMargin, size.width() + 2 * hoverMargin,
            size.height() + hoverMargin};
}

QRectF stageRect(const MaybeScreen &screen)
{
    if (!screen) {
        return stageWithoutScreen;
    }
    const double width = cardWidth + 2 * stageMargin;
    const double height = topBandHeight(screen) + stageBodyHeight + stageMargin;
    return {std::round(middle(screen->frame) - width / 2), top(screen->frame) - height, width,
            height};
}

double stageMiddle(const MaybeScreen &screen)
{
    const QRectF stage = stageRect(screen);
    return screen ? middle(screen->frame) - stage.x() : stage.width() / 2;
}

bool containsPoint(const QRectF &rect, const QPointF &point)
{
    return point.x() >= rect.x() && point.x() < rect.x() + rect.width() && point.y() >= rect.y() &&
           point.y() < rect.y() + rect.height();
}

} // namespace corvane::island
