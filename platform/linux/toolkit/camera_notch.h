#pragma once

#include "platform/screens.h"

#include <QByteArray>
#include <QSizeF>
#include <QString>

#include <optional>

namespace corvane::platform {

/// In points. A larger height is taken for a typing error.
inline constexpr double maximumNotchHeight = 200;

/// Parses `WIDTHxHEIGHT` in points, decimals allowed; empty if the text is malformed or out of
/// range.
[[nodiscard]] std::optional<QSizeF> parseNotch(const QString &text);

/// True for the connector of a laptop's own panel, such as "eDP-1".
[[nodiscard]] bool isInternalConnector(const QString &connector);

/// The camera housing in the panel of a known laptop, in points of the current scale.
///
/// `compatible` is the device tree's list of names for this machine, each ending with a null byte;
/// `screen` is the panel's size in points. Empty for any other machine, and for a mode that leaves
/// out the rows beside the housing.
[[nodiscard]] std::optional<QSizeF> laptopNotch(const QByteArray &compatible, QSizeF screen);

/// Adds a camera housing of size `notch` to the top centre of `screen`, unless it is wider than the
/// screen.
void addNotch(Screen &screen, QSizeF notch);

} // namespace corvane::platform
