#include "core/transfer_replies.h"

#include "keys/base58.h"

namespace corvane::core {

using namespace Qt::StringLiterals;

std::optional<keys::Blockhash> readBlockhash(const QJsonValue &result)
{
    return keys::Base58::decode32(result["value"_L1]["blockhash"_L1].toString());
}

std::optional<QString> readSignature(const QJsonValue &result)
{
    return result.isString() ? std::optional(result.toString()) : std::nullopt;
}

} // namespace corvane::core
