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

/// The Solana cluster that all balances and transfers are about.
enum class SolNetwork { Mainnet, Devnet };
Q_ENUM_NS(SolNetwork)

/// In the order in which the settings offer them.
inline constexpr std::array allSolNetworks = {SolNetwork::Mainnet, SolNetwork::Devnet};

/// The name under which a cluster is stored and sent.
[[nodiscard]] QString rawValue(SolNetwork network);
/// The cluster of a stored name; none for any other text.
[[nodiscard]] std::optional<SolNetwork> solNetworkFromRawValue(QStringView text);

} // namespace corvane::core
