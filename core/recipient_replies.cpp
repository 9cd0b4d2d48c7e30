#include "core/recipient_replies.h"

#include "core/json.h"
#include "keys/transfer.h"

#include <QByteArray>
#include <QJsonArray>

#include <algorithm>
#include <map>

namespace corvane::core {

using namespace Qt::StringLiterals;

namespace {

// Accounts with a fixed address on every cluster.
constexpr auto systemProgram = "11111111111111111111111111111111"_L1;
constexpr auto sysvarOwner = "Sysvar1111111111111111111111111111111111111"_L1;
constexpr auto tokenProgram = "TokenkegQfeZyiNwAJbNbGKPFXCWuBvf9Ss623VQ5DA"_L1;
constexpr auto token2022Program = "TokenzQdBNbLqP5VEhdkAS6EPFLC1PHnBqCXEpPxuEb"_L1;

// Sizes and marks of the token programs' accounts.
constexpr qint64 mintSize = 82;
constexpr qint64 tokenAccountSize = 165;
constexpr char mintMark = 1;
constexpr char tokenAccountMark = 2;

/// A transaction of a live cluster has at most this many accounts.
constexpr qsizetype maxAccounts = 128;

AccountKind tokenKind(qint64 space, const QByteArray &mark)
{
    if (space == mintSize || (space > tokenAccountSize && mark.startsWith(mintMark))) {
        return AccountKind::Mint;
    }
    if (space == tokenAccountSize ||
        (space > tokenAccountSize && mark.startsWith(tokenAccountMark))) {
        return AccountKind::TokenAccount;
    }
    return AccountKind::ProgramData;
}

AccountKind accountKind(const QJsonValue &account)
{
    if (account["executable"_L1].toBool()) {
        return AccountKind::Program;
    }
    const QString owner = account["owner"_L1].toString();
    const qint64 space = account["space"_L1].toInteger();
    if (owner == systemProgram) {
        // What has data there is a nonce account, whose coins only a special instruction moves.
        return space == 0 ? AccountKind::Wallet : AccountKind::System;
    }
    if (owner == sysvarOwner) {
        return AccountKind::System;
    }
    if (owner == tokenProgram || owner == token2022Program) {
        return tokenKind(space,
                         QByteArray::fromBase64(account["data"_L1][0].toString().toLatin1()));
    }
    return AccountKind::ProgramData;
}

/// The sum of changes of all token accounts by their owner's address.
std::map<QString, double> tokenGains(const QJsonValue &meta)
{
    std::map<QString, double> gains;
    const auto add = [&gains](const QJsonArray &balances, double sign) {
        for (qsizetype i = 0; i < std::min(balances.size(), maxAccounts); ++i) {
            const QJsonValue balance = balances[i];
            const auto amount = parseNumber(balance["uiTokenAmount"_L1]["amount"_L1].toString());
            gains[balance["owner"_L1].toString()] += sign * amount.value_or(0);
        }
    };
    add(meta["preTokenBalances"_L1].toArray(), -1);
    add(meta["postTokenBalances"_L1].toArray(), 1);
    return gains;
}

} // namespace

std::optional<AccountFacts> readAccount(const QJsonValue &result)
{
    const QJsonValue account = result["value"_L1];
    if (account.isNull()) {
        return AccountFacts{};
    }
    const qint64 lamports = account["lamports"_L1].toInteger(-1);
    if (lamports < 0 || !account["owner"_L1].isString()) {
        return std::nullopt;
    }
    return AccountFacts{accountKind(account), keys::Lamports(static_cast<quint64>(lamports))};
}

std::optional<QStringList> readSignatures(const QJsonValue &result, qsizetype limit)
{
    if (!result.isArray()) {
        return std::nullopt;
    }
    QStringList signatures;
    const QJsonArray entries = result.toArray();
    for (const auto &entry : entries) {
        const QString signature = entry["signature"_L1].toString();
        const QJsonValue error = entry["err"_L1];
        const bool succeeded = error.isNull() || error.isUndefined();
        if (succeeded && !signature.isEmpty() && signature.size() <= keys::longestSignature &&
            signatures.size() < limit) {
            signatures.append(signature);
        }
    }
    return signatures;
}

std::vector<KnownAddress> readDealings(const QJsonValue &result, const keys::Address &own)
{
    const QJsonValue meta = result["meta"_L1];
    const QJsonArray accounts = result["transaction"_L1]["message"_L1]["accountKeys"_L1].toArray();
    QStringList signers;
    QStringList gainers;
    for (qsizetype i = 0; i < std::min(accounts.size(), maxAccounts); ++i) {
        const QString address = accounts[i]["pubkey"_L1].toString();
        if (accounts[i]["signer"_L1].toBool()) {
            signers.append(address);
        }
        if (numberIn(meta["postBalances"_L1][i]).value_or(0) >
            numberIn(meta["preBalances"_L1][i]).value_or(0)) {
            gainers.append(address);
        }
    }
    for (const auto &[owner, gain] : tokenGains(meta)) {
        if (gain > 0) {
            gainers.append(owner);
        }
    }

    const bool isOurs = signers.contains(own.text());
    std::vector<KnownAddress> dealings;
    for (const QString &text : isOurs ? gainers : signers) {
        const std::optional<keys::Address> address = keys::Address::fromText(text);
        if (address && *address != own) {
            dealings.push_back({*address, isOurs ? Dealing::Paid : Dealing::ReceivedFrom});
        }
    }
    return dealings;
}

} // namespace corvane::core
