#pragma once

#include "platform/number_formatter.h"

#include <QByteArray>

#include <map>
#include <memory>

namespace corvane::platform {

/// Decimal numbers by ICU's locale data.
class IcuNumberFormatter final : public NumberFormatter
{
public:
    /// `locale` is a POSIX or ICU locale name; "C", "POSIX", an empty and an unknown one give the
    /// English (United States) separators.
    explicit IcuNumberFormatter(const QByteArray &locale = localeOfEnvironment());
    ~IcuNumberFormatter() override;

    /// The name that the environment sets for numbers.
    [[nodiscard]] static QByteArray localeOfEnvironment();

    [[nodiscard]] std::optional<QString> decimal(double value, int decimals) const override;

private:
    struct Format;

    QByteArray m_locale;
    /// By number of decimals; opening a format costs far more than using it.
    mutable std::map<int, std::unique_ptr<Format>> m_formats;
};

} // namespace corvane::platform
