#pragma once

#include "platform/number_formatter.h"

#include <QByteArray>

#include <map>
#include <memory>

namespace corvane::platform {

/// Formats decimal numbers with ICU.
class IcuNumberFormatter final : public NumberFormatter
{
public:
    /// `locale` is a POSIX or ICU locale name; "C", "POSIX", an empty and an unknown name select
    /// the English (United States) separators.
    explicit IcuNumberFormatter(const QByteArray &locale = localeOfEnvironment());
    ~IcuNumberFormatter() override;

    /// The locale name for numbers from the environment variables.
    [[nodiscard]] static QByteArray localeOfEnvironment();

    [[nodiscard]] std::optional<QString> decimal(double value, int decimals) const override;

private:
    struct Format;

    QByteArray m_locale;
    /// Cached by number of decimals: opening a format costs far more than using it.
    mutable std::map<int, std::unique_ptr<Format>> m_formats;
};

} // namespace corvane::platform
