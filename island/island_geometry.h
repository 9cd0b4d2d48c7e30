#pragma once

#include "island/island_pane.h"
#include "platform/screens.h"

#include <QPointF>
#include <QRectF>
#include <QSizeF>

#include <optional>

namespace corvane::island {

/// Measures of the island in points. All rectangles are in the coordinates of `platform::Screen`;
/// every function takes the screen as it is now, so that nothing outlives a change of displays.

/// Width of the widened and the expanded island.
inline constexpr double cardWidth = 620;

/// The screen that the island lives on: the first with a camera housing, else the one the user
/// works on, else the first.
[[nodiscard]] std::optional<platform::Screen> notchScreen(const platform::Screens &screens);

/// Height of the band at the top that is level with the notch.
[[nodiscard]] double topBandHeight(const std::optional<platform::Screen> &screen);

/// Width of the camera housing; 0 when there is none.
[[nodiscard]] double notchWidth(const std::optional<platform::Screen> &screen);

/// Width of the resting island on a notch of this width.
[[nodiscard]] double collapsedWidth(double notchWidth);

/// The expanded island for `pane`.
[[nodiscard]] QSizeF paneSize(const std::optional<platform::Screen> &screen, IslandPane pane);

/// Where the pointer must rest to open the island.
[[nodiscard]] QRectF collapsedRect(const std::optional<platform::Screen> &screen);

/// Where the pointer must stay to keep the island open on `pane`: the card, grown a little to the
/// left, right and bottom.
[[nodiscard]] QRectF expandedHoverRect(const platform::Screen &screen, IslandPane pane);

/// The panel's frame: room for the tallest card and its shadow.
[[nodiscard]] QRectF stageRect(const std::optional<platform::Screen> &screen);

/// True when `point` is in `rect`; the minimum edges belong to it, the maximum edges do not.
[[nodiscard]] bool containsPoint(const QRectF &rect, const QPointF &point);

} // namespace corvane::island
