#pragma once

#include <QObject>
#include <QString>
#include <QStringView>
#include <QtQmlIntegration/qqmlintegration.h>

#include <array>
#include <optional>

namespace corvane::core {

Q_NAMESPACE
QML_NAMED_ELEMENT(SolNetwork)

/// The Solana cluster for all balances and transfers.
enum class SolNetwork { Mainnet, Devnet };
Q_ENUM_NS(SolNetwork)

/// In the order of the settings card.
inline constexpr std::array allSolNetworks = {SolNetwork::Mainnet, SolNetwork::Devnet};

/// The name of a cluster in the settings file and in requests.
[[nodiscard]] QString rawValue(SolNetwork network);
/// The cluster with a stored name; empty for any other text.
[[nodiscard]] std::optional<SolNetwork> solNetworkFromRawValue(QStringView text);

} // namespace corvane::core
