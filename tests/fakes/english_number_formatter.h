#pragma once

#include "platform/number_formatter.h"

#include <QLocale>

#include <cmath>

namespace corvane::tests {

/// Numbers as in the United States, with ties to even.
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

    /// As if the locale services were missing.
    bool silent = false;
};

} // namespace corvane::tests
