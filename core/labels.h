#pragma once

#include "core/endpoint_choice.h"

#include <QString>
#include <QStringView>

#include <optional>

namespace corvane::platform {
class NumberFormatter;
}

namespace corvane::core {

/// Formats `value` with exactly `decimals` (0 or more) fraction digits, as printf does in the POSIX
/// locale: decimal point, no grouping, ties to even.
[[nodiscard]] QString fixedPoint(double value, int decimals);

/// Formats `value` for the user's locale, with exactly `decimals` (0 or more) fraction digits;
/// without grouping and with a decimal point if the formatter fails.
[[nodiscard]] QString group(const platform::NumberFormatter &formatter, double value, int decimals);

/// What an amount of the user's money reads: itself, or dots while amounts are hidden from
/// bystanders. The sign for an unknown amount stays.
[[nodiscard]] QString ownAmount(const QString &amount, bool isHidden);

/// The balance in SOL, with fewer fraction digits from 1000 SOL on; "—" if unknown.
[[nodiscard]] QString solLabel(const platform::NumberFormatter &formatter,
                               std::optional<double> sol);

/// One QUIB is the wallet's name for a thousandth of a SOL.
inline constexpr double quibPerSol = 1000;

/// The balance in whole QUIB; "—" if unknown.
[[nodiscard]] QString quibLabel(const platform::NumberFormatter &formatter,
                                std::optional<double> sol);

/// The trimmed address; if it has at least 11 user-perceived characters, only the first and last
/// four.
[[nodiscard]] QString shortAddress(QStringView address);

/// The value of both balances in US dollars; empty without a SOL balance or a price. One USDC
/// counts as one dollar; an unknown USDC balance counts as 0.
[[nodiscard]] std::optional<double> totalUSD(std::optional<double> sol, std::optional<double> usdc,
                                             std::optional<double> price);

/// The label for the endpoint in use.
[[nodiscard]] QString rpcSourceLabel(RpcSource source);

} // namespace corvane::core
