#pragma once

#include "core/sol_network.h"
#include "keys/transfer.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <cstdint>
#include <optional>
#include <vector>

namespace corvane::core {

/// The cluster of a transfer, and the endpoint for all of its calls.
struct TransferRoute
{
    QUrl endpoint;
    SolNetwork network = SolNetwork::Mainnet;

    [[nodiscard]] bool operator==(const TransferRoute &) const = default;
};

/// A signed transfer that may have reached its cluster.
struct SubmittedTransfer
{
    keys::Transfer transfer;
    platform::Signature signature;
    TransferRoute route;
    /// The cluster executes the transfer at most up to this block height; empty if unknown.
    std::optional<std::uint64_t> lastValidBlockHeight;
    /// True if the cluster has accepted it and the user was shown that.
    bool isTold = false;

    [[nodiscard]] bool operator==(const SubmittedTransfer &) const = default;

    /// The signature in Base58, by which the cluster knows the transfer.
    [[nodiscard]] QString signatureText() const;
    /// The encoded transaction, always the same bytes.
    [[nodiscard]] QByteArray transaction() const;
};

/// The transfers as JSON, and back. Contains no secret. Entries that cannot be read are left out.
[[nodiscard]] QString toJson(const std::vector<SubmittedTransfer> &transfers);
[[nodiscard]] std::vector<SubmittedTransfer> submittedTransfersFromJson(const QString &json);

} // namespace corvane::core
