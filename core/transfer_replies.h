#pragma once

#include "keys/transfer.h"

#include <QJsonValue>
#include <QString>

#include <optional>

namespace corvane::core {

/// The blockhash in the result of `getLatestBlockhash`; none when it has another shape.
[[nodiscard]] std::optional<keys::Blockhash> readBlockhash(const QJsonValue &result);

/// The signature that is the result of `sendTransaction`; none when it is no text. It stays the
/// text that the cluster wrote and is not decoded: what was accepted is sent, whatever its name,
/// and the user is shown that name.
[[nodiscard]] std::optional<QString> readSignature(const QJsonValue &result);

} // namespace corvane::core
