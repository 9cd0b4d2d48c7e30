// The bodies of a cluster's replies.

#include "core/balances.h"
#include "core/json.h"
#include "core/json_calls.h"
#include "core/recipient_replies.h"
#include "core/transfer_replies.h"
#include "fuzz/property.h"
#include "keys/base58.h"
#include "keys/lamports.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>

using namespace corvane;
using namespace corvane::core;
using namespace Qt::StringLiterals;
using fuzz::require;

namespace {

constexpr QByteArrayView byteOrderMark("\xEF\xBB\xBF");

void checkDocument(const QByteArray &body, const std::optional<QJsonValue> &document)
{
    const JsonResult reply = readJsonReply(platform::HttpReply{200, body});
    require(document ? reply == JsonResult(*document) : reply == JsonResult(CallError::NotJson));
    require(isHealthy(platform::HttpReply{200, body}) == document.has_value());
    require(!isHealthy(platform::HttpReply{500, body}));
    if (document) {
        require(!parseJson(body + ',') && !parseJson(body + ",0"));
        // A value inside an array is parsed differently from a single value.
        const QByteArray written = QJsonDocument(QJsonArray{*document}).toJson();
        require(fuzz::hasByteOrderMark(body) ||
                parseJson(written) == QJsonValue(QJsonArray{*document}));
        require(
            parseJson(" \t\r\n" + QByteArray(body).replace(byteOrderMark, QByteArrayView()) + "\n")
                .has_value());
    }
}

void checkBalances(const QJsonValue &result)
{
    if (const auto sol = readSolBalance(result)) {
        require(std::isfinite(*sol) &&
                *sol * keys::Lamports::perSol >= result["value"_L1].toDouble() - 1);
    }
    const std::optional<double> tokens = readTokenBalance(result);
    if (!tokens) {
        return;
    }
    require(!std::isnan(*tokens));
    // An additional account adds its amount; one without an amount adds nothing.
    for (const auto &[amount, added] :
         {std::pair(QJsonValue(2.5), 2.5), std::pair(QJsonValue(u"2.5"_s), 0.0)}) {
        const QJsonObject info{{u"tokenAmount"_s, QJsonObject{{u"uiAmount"_s, amount}}}};
        QJsonArray accounts = result["value"_L1].toArray();
        accounts.append(QJsonObject{
            {u"account"_s,
             QJsonObject{
                 {u"data"_s, QJsonObject{{u"parsed"_s, QJsonObject{{u"info"_s, info}}}}}}}});
        require(readTokenBalance(QJsonObject{{u"value"_s, accounts}}) == *tokens + added);
    }
}

void checkRecipientReplies(const QJsonValue &result)
{
    if (const auto account = readAccount(result)) {
        const QJsonValue value = result["value"_L1];
        require((account->kind == AccountKind::None) == value.isNull());
        require(account->lamports ==
                keys::Lamports(static_cast<quint64>(value["lamports"_L1].toInteger())));
    }
    constexpr qsizetype limit = 3;
    const auto signatures = readSignatures(result, limit);
    require(signatures.has_value() == result.isArray());
    require(!signatures || signatures->size() <= limit);

    // A signer of the transaction has dealt with everybody but itself, however much it contains.
    const auto own = keys::Address::fromText(
        result["transaction"_L1]["message"_L1]["accountKeys"_L1][0]["pubkey"_L1].toString());
    if (own) {
        const auto dealings = readDealings(result, *own);
        require(dealings.size() <= 384);
        for (const KnownAddress &known : dealings) {
            require(known.address != *own);
        }
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray body = fuzz::Input(data, size).rest();
    const std::optional<QJsonValue> document = parseJson(body);
    checkDocument(body, document);

    const JsonResult reply = readRpcReply(platform::HttpReply{200, body});
    const auto *result = std::get_if<QJsonValue>(&reply);
    // An error of a gateway is not a refusal by the cluster.
    const JsonResult failed = readRpcReply(platform::HttpReply{503, body});
    require(result != nullptr ? reply == failed : failed != JsonResult(CallError::Refused));
    require((result != nullptr) == (document && document->toObject().contains("result"_L1)));
    if (result == nullptr) {
        return 0;
    }
    checkBalances(*result);
    checkRecipientReplies(*result);
    if (const auto hash = readBlockhash(*result)) {
        require(keys::Base58::encode(hash->blockhash.bytes) ==
                (*result)["value"_L1]["blockhash"_L1].toString());
    }
    if (readStatus(*result)) {
        require((*result)["value"_L1].toArray().size() == 1);
    }
    require(!readCount(*result) || result->isDouble());
    require(!readIsValid(*result) || result->isObject());
    require(readSignature(*result).has_value() == result->isString());
    return 0;
}
