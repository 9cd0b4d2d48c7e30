#pragma once

#include "core/sol_network.h"

#include <QJsonValue>
#include <QString>

#include <optional>

namespace corvane::core {

/// The Base58 address of the USDC token's mint on a cluster.
[[nodiscard]] QString usdcMint(SolNetwork network);

/// The balance in SOL from the result of `getBalance`; empty if its structure is unexpected.
[[nodiscard]] std::optional<double> readSolBalance(const QJsonValue &result);

/// The sum in whole tokens over all accounts in the result of `getTokenAccountsByOwner`; 0 if there
/// are none. Ignores accounts without an amount. Empty if the result is not a list of accounts.
[[nodiscard]] std::optional<double> readTokenBalance(const QJsonValue &result);

} // namespace corvane::core
