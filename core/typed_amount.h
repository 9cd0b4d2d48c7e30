#pragma once

#include "keys/lamports.h"

#include <QStringView>

#include <optional>

namespace corvane::core {

/// Parses an amount typed by the user: a finite decimal number with a point or a comma, without
/// surrounding white space. Empty for any other text.
[[nodiscard]] std::optional<double> parseAmount(QStringView text);

/// True if `text`, an amount that `parseAmount` accepts, is exactly `amount`, and not only after
/// rounding.
[[nodiscard]] bool isExactly(QStringView text, keys::Lamports amount);

} // namespace corvane::core
