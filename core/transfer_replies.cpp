#include "core/transfer_replies.h"

#include "keys/base58.h"

namespace corvane::core {

using namespace Qt::StringLiterals;

std::optional<keys::Blockhash> readBlockhash(const QJsonValue &result)
{
    const auto bytes = keys::Base58::decode32(result["value"_L1]["blockhash"_L1].toString());
    return bytes ? std::optional(keys::Blockhash{*bytes}) : std::nullopt;
}

std::optional<QString> readSignature(const QJsonValue &result)
{
    return result.isString() ? std::optional(result.toString()) : std::nullopt;
}

} // namespace corvane::core
