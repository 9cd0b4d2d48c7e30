#pragma once

#include <QStringView>

#include <optional>

namespace corvane::core {

/// An amount as people type it: a decimal number with a point or a comma, nothing around it.
/// Finite; none for anything else.
[[nodiscard]] std::optional<double> parseAmount(QStringView text);

} // namespace corvane::core
