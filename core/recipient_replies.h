#pragma once

#include "core/known_addresses.h"
#include "keys/address.h"
#include "keys/lamports.h"

#include <QJsonValue>
#include <QStringList>

#include <optional>
#include <vector>

namespace corvane::core {

/// What an address holds on a cluster.
enum class AccountKind {
    None,         ///< nothing: it was never used, or is empty again
    Wallet,       ///< coins, for the owner of its key
    Program,      ///< code
    Mint,         ///< the description of a token
    TokenAccount, ///< tokens of one mint
    System,       ///< data of the cluster itself
    ProgramData,  ///< data of any other program
};

struct AccountFacts
{
    AccountKind kind = AccountKind::None;
    /// 0 if there is no account.
    keys::Lamports lamports{0};

    [[nodiscard]] bool operator==(const AccountFacts &) const = default;
};

/// The byte of an account's data that `readAccount` needs, so that the data of a large account is
/// not transferred. It tells mints and token accounts with extensions apart.
inline constexpr int accountTypeOffset = 165;

/// The account in the result of `getAccountInfo` in Base64; empty if its structure is unexpected.
[[nodiscard]] std::optional<AccountFacts> readAccount(const QJsonValue &result);

/// The signatures of the successful transactions in the result of `getSignaturesForAddress`, at
/// most `limit`; empty if its structure is unexpected.
[[nodiscard]] std::optional<QStringList> readSignatures(const QJsonValue &result, qsizetype limit);

/// The others in the result of `getTransaction` (jsonParsed): those who gained by a transaction
/// that `own` signed, otherwise those who signed it. Ignores what it does not understand.
[[nodiscard]] std::vector<KnownAddress> readDealings(const QJsonValue &result,
                                                     const keys::Address &own);

} // namespace corvane::core
