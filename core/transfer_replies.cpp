#include "core/transfer_replies.h"

#include "keys/base58.h"

#include <QJsonArray>
#include <QJsonObject>

namespace corvane::core {

using namespace Qt::StringLiterals;

std::optional<LatestBlockhash> readBlockhash(const QJsonValue &result)
{
    const QJsonValue value = result["value"_L1];
    const auto bytes = keys::Base58::decode32(value["blockhash"_L1].toString());
    if (!bytes) {
        return std::nullopt;
    }
    return LatestBlockhash{{*bytes}, readCount(value["lastValidBlockHeight"_L1])};
}

std::optional<QString> readSignature(const QJsonValue &result)
{
    return result.isString() ? std::optional(result.toString()) : std::nullopt;
}

std::optional<TransactionStatus> readStatus(const QJsonValue &result)
{
    const QJsonArray statuses = result["value"_L1].toArray();
    if (statuses.size() != 1) {
        return std::nullopt;
    }
    const QJsonValue status = statuses.first();
    if (status.isNull()) {
        return TransactionStatus::NotFound;
    }
    const QString confirmation = status["confirmationStatus"_L1].toString();
    if (confirmation == u"processed") {
        return TransactionStatus::Pending;
    }
    if (confirmation != u"confirmed" && confirmation != u"finalized") {
        return std::nullopt;
    }
    const QJsonObject members = status.toObject();
    const auto error = members.find("err"_L1);
    if (error == members.end()) {
        return std::nullopt;
    }
    return error->isNull() ? TransactionStatus::Succeeded : TransactionStatus::Failed;
}

std::optional<std::uint64_t> readCount(const QJsonValue &result)
{
    const qint64 count = result.toInteger(-1);
    return count >= 0 ? std::optional(static_cast<std::uint64_t>(count)) : std::nullopt;
}

bool readIsValid(const QJsonValue &result)
{
    return result["value"_L1].toBool();
}

} // namespace corvane::core
