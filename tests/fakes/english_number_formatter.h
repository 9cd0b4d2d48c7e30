#pragma once

#include "platform/number_formatter.h"

#include <QLocale>

#include <cmath>

namespace corvane::tests {

/// Formats numbers as in the United States; ties round to even.
class EnglishNumberFormatter final : public platform::NumberFormatter
{
public:
    [[nodiscard]] std::optional<QString> decimal(double value, int decimals) const override
    {
        if (silent) {
            return std::nullopt;
        }
        const double scale = std::pow(10.0, decimals);
        const QLocale english(QLocale::English, QLocale::UnitedStates);
        return english.toString(std::nearbyint(value * scale) / scale, 'f', decimals);
    }

    /// If true, returns nothing, as if the locale services failed.
    bool silent = false;
};

} // namespace corvane::tests
