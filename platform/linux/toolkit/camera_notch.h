#pragma once

#include "platform/screens.h"

#include <QSizeF>
#include <QString>

#include <optional>

namespace corvane::platform {

/// Taller cameras are a typing error.
inline constexpr double maximumNotchHeight = 200;

/// Reads `WIDTHxHEIGHT` in points, decimals allowed; none when the text is malformed or absurd.
[[nodiscard]] std::optional<QSizeF> parseNotch(const QString &text);

/// Puts a camera housing of that size at the top centre of `screen`, unless it is wider.
void addNotch(Screen &screen, QSizeF notch);

} // namespace corvane::platform
