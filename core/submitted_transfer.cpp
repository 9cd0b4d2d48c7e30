#include "core/submitted_transfer.h"

#include "keys/base58.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace corvane::core {

using namespace Qt::StringLiterals;

namespace {

std::optional<platform::Signature> signatureFromText(const QString &text)
{
    const auto bytes =
        text.size() <= keys::longestSignature ? keys::Base58::decode(text) : std::nullopt;
    platform::Signature signature;
    if (!bytes || bytes->size() != signature.bytes.size()) {
        return std::nullopt;
    }
    std::ranges::copy(*bytes, signature.bytes.begin());
    return signature;
}

/// Numbers are stored as text, because those of JSON have only 53 bits.
std::optional<std::uint64_t> numberFromText(const QString &text)
{
    bool ok = false;
    const std::uint64_t number = text.toULongLong(&ok);
    return ok ? std::optional(number) : std::nullopt;
}

QJsonObject toObject(const SubmittedTransfer &submitted)
{
    const keys::Transfer &transfer = submitted.transfer;
    QJsonObject object{
        {u"sender"_s, keys::Address(transfer.sender).text()},
        {u"recipient"_s, transfer.recipient.text()},
        {u"lamports"_s, QString::number(transfer.amount.count())},
        {u"blockhash"_s, keys::Base58::encode(transfer.recentBlockhash.bytes)},
        {u"signature"_s, submitted.signatureText()},
        {u"endpoint"_s, submitted.route.endpoint.toString(QUrl::FullyEncoded)},
        {u"network"_s, rawValue(submitted.route.network)},
        {u"told"_s, submitted.isTold},
    };
    if (submitted.lastValidBlockHeight) {
        object.insert(u"lastValidBlockHeight"_s, QString::number(*submitted.lastValidBlockHeight));
    }
    return object;
}

std::optional<SubmittedTransfer> fromObject(const QJsonObject &object)
{
    const auto text = [&](const QString &member) { return object.value(member).toString(); };
    const auto sender = keys::Address::fromText(text(u"sender"_s));
    const auto recipient = keys::Address::fromText(text(u"recipient"_s));
    const auto lamports = numberFromText(text(u"lamports"_s));
    const auto blockhash = keys::Base58::decode32(text(u"blockhash"_s));
    const auto signature = signatureFromText(text(u"signature"_s));
    const QUrl endpoint(text(u"endpoint"_s), QUrl::StrictMode);
    const auto network = solNetworkFromRawValue(text(u"network"_s));
    if (!sender || !recipient || !lamports || !blockhash || !signature || !endpoint.isValid() ||
        !network) {
        return std::nullopt;
    }
    return SubmittedTransfer{
        {{sender->bytes()}, *recipient, keys::Lamports(*lamports), {*blockhash}},
        *signature,
        {endpoint, *network},
        numberFromText(text(u"lastValidBlockHeight"_s)),
        object.value(u"told"_s).toBool()};
}

} // namespace

QString SubmittedTransfer::signatureText() const
{
    return keys::Base58::encode(signature.bytes);
}

QByteArray SubmittedTransfer::transaction() const
{
    return keys::signedTransaction(signature, keys::transferMessage(transfer));
}

QString toJson(const std::vector<SubmittedTransfer> &transfers)
{
    QJsonArray entries;
    for (const SubmittedTransfer &transfer : transfers) {
        entries.append(toObject(transfer));
    }
    return QString::fromUtf8(QJsonDocument(entries).toJson(QJsonDocument::Compact));
}

std::vector<SubmittedTransfer> submittedTransfersFromJson(const QString &json)
{
    std::vector<SubmittedTransfer> transfers;
    for (const QJsonValue &entry : QJsonDocument::fromJson(json.toUtf8()).array()) {
        if (auto transfer = fromObject(entry.toObject())) {
            transfers.push_back(*std::move(transfer));
        }
    }
    return transfers;
}

} // namespace corvane::core
