#pragma once

#include <QStringView>

#include <optional>

namespace corvane::core {

/// Parses an amount typed by the user: a finite decimal number with a point or a comma, without
/// surrounding white space. Empty for any other text.
[[nodiscard]] std::optional<double> parseAmount(QStringView text);

} // namespace corvane::core
