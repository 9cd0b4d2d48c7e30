#pragma once

#include "island/island_pane.h"
#include "platform/screens.h"

#include <QPointF>
#include <QRectF>
#include <QSizeF>

#include <optional>

namespace corvane::island {

/// Sizes of the island in points. All rectangles are in the coordinates of `platform::Screen`.
/// Every function takes the current screen, so that no result is used after the displays have
/// changed.

/// Width of the widened and the expanded island.
inline constexpr double cardWidth = 620;

/// The screen of the island: the first with a camera housing, otherwise the one that the user works
/// on, otherwise the first.
[[nodiscard]] std::optional<platform::Screen> notchScreen(const platform::Screens &screens);

/// Height of the band at the top of the screen that contains the notch.
[[nodiscard]] double topBandHeight(const std::optional<platform::Screen> &screen);

/// Width of the camera housing; 0 if there is none.
[[nodiscard]] double notchWidth(const std::optional<platform::Screen> &screen);

/// Width of the collapsed island around a notch of this width.
[[nodiscard]] double collapsedWidth(double notchWidth);

/// Size of the expanded island with `pane`.
[[nodiscard]] QSizeF paneSize(const std::optional<platform::Screen> &screen, IslandPane pane);

/// The area in which the pointer opens the island.
[[nodiscard]] QRectF collapsedRect(const std::optional<platform::Screen> &screen);

/// The area in which the pointer keeps the island open with `pane`: the card with a margin to the
/// left, right and bottom.
[[nodiscard]] QRectF expandedHoverRect(const platform::Screen &screen, IslandPane pane);

/// The panel's frame, large enough for the tallest card and its shadow.
[[nodiscard]] QRectF stageRect(const std::optional<platform::Screen> &screen);

/// The middle of the screen, in points from the left edge of the panel, which is at a whole point.
[[nodiscard]] double stageMiddle(const std::optional<platform::Screen> &screen);

/// True if `point` is in `rect`, including the minimum edges but not the maximum edges.
[[nodiscard]] bool containsPoint(const QRectF &rect, const QPointF &point);

} // namespace corvane::island
