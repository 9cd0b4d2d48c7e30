// Transfers of SOL signed with the wallet's key, and the link to the result.

#include "core/blank_trimming.h"
#include "core/key_session.h"
#include "core/transfer_replies.h"
#include "core/wallet_model.h"
#include "keys/transfer.h"
#include "platform/signing_keys.h"

#include <QJsonObject>
#include <QPointer>

namespace corvane::core {

using namespace Qt::StringLiterals;

QCoro::Task<SendResult<QString>> WalletModel::sendSOL(QString to, double amountSOL)
{
    const std::optional<keys::Address> recipient = keys::Address::fromText(trimmingBlanks(to));
    if (!recipient) {
        co_return SendResult<QString>(SendError::badRecipient());
    }
    auto sending = sendSOL(*recipient, amountSOL);
    co_return co_await sending;
}

QCoro::Task<SendResult<QString>> WalletModel::sendSOL(keys::Address to, double amountSOL)
{
    using Result = SendResult<QString>;
    const QPointer<WalletModel> self(this);

    if (!(amountSOL > 0)) {
        co_return Result(SendError::badAmount());
    }
    const auto lamports = keys::Lamports::fromSol(amountSOL);

    auto opening = m_keySession->open(
        {platform::PresenceReason::Send, u"send "_s + group(amountSOL, 4) + u" SOL"_s});
    if (const bool isOpen = co_await opening; !self || !isOpen) {
        co_return Result(SendError::locked());
    }
    // A copy, because the session may wipe its seed during the requests to the cluster.
    const platform::SecretBytes seed = m_keySession->seed()->clone();
    const auto sender = m_services.signingKeys.publicKey(seed);
    if (!sender) {
        co_return Result(SendError::locked());
    }

    auto blockhashCall =
        rpc(u"getLatestBlockhash"_s, {QJsonObject{{u"commitment"_s, u"finalized"_s}}});
    const JsonResult blockhashReply = co_await blockhashCall;
    const auto *blockhashResult = std::get_if<QJsonValue>(&blockhashReply);
    const auto blockhash =
        blockhashResult != nullptr ? readBlockhash(*blockhashResult) : std::nullopt;
    if (!self || !blockhash) {
        co_return Result(SendError::rpc(u"couldn't fetch a recent blockhash"_s));
    }

    const keys::Transfer transfer{*sender, to, lamports, *blockhash};
    const std::vector<std::uint8_t> message = keys::transferMessage(transfer);
    const auto signature = m_services.signingKeys.sign(seed, message);
    if (!signature) {
        co_return Result(SendError::badKey());
    }
    const QString transaction = QString::fromLatin1(keys::signedTransaction(*signature, message));
    const QJsonObject configuration{{u"encoding"_s, u"base64"_s},
                                    {u"preflightCommitment"_s, u"confirmed"_s}};
    auto sendCall = rpc(u"sendTransaction"_s, {transaction, configuration});
    const JsonResult sent = co_await sendCall;
    const auto *result = std::get_if<QJsonValue>(&sent);
    if (result == nullptr) {
        co_return Result(SendError::rpc(u"send failed — check balance covers amount + fee"_s));
    }
    const std::optional<QString> signatureText = readSignature(*result);
    if (!signatureText) {
        co_return Result(SendError::rpc(u"unexpected RPC reply"_s));
    }
    if (self) {
        refresh();
    }
    co_return Result(*signatureText);
}

std::optional<QUrl> WalletModel::explorerURL(const QString &signature) const
{
    QString text = m_services.endpoints.explorer + u"/tx/"_s + signature;
    if (m_network == SolNetwork::Devnet) {
        text += u"?cluster=devnet"_s;
    }
    const QUrl url(text, QUrl::StrictMode);
    return url.isValid() ? std::optional(url) : std::nullopt;
}

} // namespace corvane::core
