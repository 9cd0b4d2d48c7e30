#pragma once

#include <QLatin1StringView>

namespace corvane::core {

/// Keys of the wallet's settings. They must not change, because existing settings files use them.
inline constexpr QLatin1StringView addressSetting{"corvane.address"};
inline constexpr QLatin1StringView networkSetting{"corvane.network"};
inline constexpr QLatin1StringView customRPCSetting{"corvane.rpc"};
inline constexpr QLatin1StringView walletURLSetting{"corvane.walletURL"};
inline constexpr QLatin1StringView displayUSDSetting{"corvane.displayUSD"};
inline constexpr QLatin1StringView hidesAmountsSetting{"corvane.hideAmounts"};
/// Transfers whose fate is unknown, as JSON.
inline constexpr QLatin1StringView transfersSetting{"corvane.transfers"};
inline constexpr QLatin1StringView backupPendingSetting{"corvane.backupPending"};
inline constexpr QLatin1StringView tickerShowsBalanceSetting{"corvane.tickerShowsBalance"};

} // namespace corvane::core
