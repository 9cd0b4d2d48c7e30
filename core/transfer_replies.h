#pragma once

#include "keys/transfer.h"

#include <QJsonValue>
#include <QString>

#include <optional>

namespace corvane::core {

/// The blockhash in the result of `getLatestBlockhash`; empty if its structure is unexpected.
[[nodiscard]] std::optional<keys::Blockhash> readBlockhash(const QJsonValue &result);

/// The signature in the result of `sendTransaction`; empty if it is not a text. It is not decoded:
/// an accepted transfer counts as sent, and the cluster's text is shown to the user unchanged.
[[nodiscard]] std::optional<QString> readSignature(const QJsonValue &result);

} // namespace corvane::core
