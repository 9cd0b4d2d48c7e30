#pragma once

#include "platform/screens.h"

#include <QSizeF>
#include <QString>

#include <optional>

namespace corvane::platform {

/// In points. A larger height is taken for a typing error.
inline constexpr double maximumNotchHeight = 200;

/// Parses `WIDTHxHEIGHT` in points, decimals allowed; empty if the text is malformed or out of
/// range.
[[nodiscard]] std::optional<QSizeF> parseNotch(const QString &text);

/// Adds a camera housing of size `notch` to the top centre of `screen`, unless it is wider than the
/// screen.
void addNotch(Screen &screen, QSizeF notch);

} // namespace corvane::platform
