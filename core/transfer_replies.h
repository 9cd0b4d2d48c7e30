#pragma once

#include "keys/transfer.h"

#include <QJsonValue>
#include <QString>

#include <cstdint>
#include <optional>

namespace corvane::core {

/// A recent blockhash, and the last block height at which a transaction with it is executed.
struct LatestBlockhash
{
    keys::Blockhash blockhash;
    /// Empty if the endpoint does not report it.
    std::optional<std::uint64_t> lastValidBlockHeight;
};

/// The result of `getLatestBlockhash`; empty if its structure is unexpected.
[[nodiscard]] std::optional<LatestBlockhash> readBlockhash(const QJsonValue &result);

/// The signature in the result of `sendTransaction`; empty if it is not a text. It is not decoded:
/// an accepted transfer counts as sent, and the cluster's text is shown to the user.
[[nodiscard]] std::optional<QString> readSignature(const QJsonValue &result);

/// What a cluster knows of a transaction.
enum class TransactionStatus {
    NotFound,  ///< not executed, or forgotten
    Pending,   ///< executed, but not yet confirmed
    Succeeded, ///< confirmed
    Failed,    ///< confirmed as failed: nothing was transferred
};

/// The only status in the result of `getSignatureStatuses`; empty if its structure is unexpected.
[[nodiscard]] std::optional<TransactionStatus> readStatus(const QJsonValue &result);

/// The result of `getBlockHeight` or of `getMinimumBalanceForRentExemption`; empty if it is not a
/// whole number of at least 0.
[[nodiscard]] std::optional<std::uint64_t> readCount(const QJsonValue &result);

/// The result of `isBlockhashValid`; false if its structure is unexpected.
[[nodiscard]] bool readIsValid(const QJsonValue &result);

} // namespace corvane::core
