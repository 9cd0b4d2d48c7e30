#pragma once

#include "core/endpoint_choice.h"

#include <QString>
#include <QStringView>

#include <optional>

namespace corvane::platform {
class NumberFormatter;
}

namespace corvane::core {

/// `value` with exactly `decimals` (0 or more) fraction digits as printf writes it in the POSIX
/// locale: a point, no grouping, ties to even.
[[nodiscard]] QString fixedPoint(double value, int decimals);

/// `value` as people read it in the user's locale, with exactly `decimals` (0 or more) fraction
/// digits; ungrouped and with a point where the formatter gives no text.
[[nodiscard]] QString group(const platform::NumberFormatter &formatter, double value, int decimals);

/// The balance in SOL, with fewer digits from 1000 SOL on; "—" when unknown.
[[nodiscard]] QString solLabel(const platform::NumberFormatter &formatter,
                               std::optional<double> sol);

/// What the wallet calls a thousandth of a SOL.
inline constexpr double quibPerSol = 1000;

/// The balance in whole QUIB; "—" when unknown.
[[nodiscard]] QString quibLabel(const platform::NumberFormatter &formatter,
                                std::optional<double> sol);

/// The trimmed address, from 11 user-perceived characters on shortened to four at either end.
[[nodiscard]] QString shortAddress(QStringView address);

/// US dollars of both balances; none without a SOL balance or a price. USDC counts a dollar, and
/// nothing while unknown.
[[nodiscard]] std::optional<double> totalUSD(std::optional<double> sol, std::optional<double> usdc,
                                             std::optional<double> price);

/// Tells the user which endpoint is in use.
[[nodiscard]] QString rpcSourceLabel(RpcSource source);

} // namespace corvane::core
