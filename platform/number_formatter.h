#pragma once

#include <QString>

#include <optional>

namespace corvane::platform {

/// Writes decimal numbers as people read them in the user's locale.
class NumberFormatter
{
public:
    NumberFormatter() = default;
    NumberFormatter(const NumberFormatter &) = delete;
    NumberFormatter &operator=(const NumberFormatter &) = delete;
    virtual ~NumberFormatter() = default;

    /// `value` with the locale's separators, digits grouped, exactly `decimals` (0 or more)
    /// fraction digits, ties rounded to even. None when the locale services give no text.
    [[nodiscard]] virtual std::optional<QString> decimal(double value, int decimals) const = 0;
};

} // namespace corvane::platform
