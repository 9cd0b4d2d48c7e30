#pragma once

#include <QString>

#include <optional>

namespace corvane::platform {

/// Formats decimal numbers for the user's locale. Main thread.
class NumberFormatter
{
public:
    NumberFormatter() = default;
    NumberFormatter(const NumberFormatter &) = delete;
    NumberFormatter &operator=(const NumberFormatter &) = delete;
    virtual ~NumberFormatter() = default;

    /// Formats `value` with the locale's separators, grouped digits and exactly `decimals` (0 or
    /// more) fraction digits; ties round to even. Empty if the locale services fail.
    [[nodiscard]] virtual std::optional<QString> decimal(double value, int decimals) const = 0;
};

} // namespace corvane::platform
