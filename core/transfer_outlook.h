#pragma once

#include "keys/lamports.h"

#include <QList>
#include <QString>

#include <optional>

namespace corvane::core {

/// The fee of a transfer, which has one signature; defined by the cluster.
inline constexpr keys::Lamports transferFee{5'000};
/// What an account without data must keep unless it keeps nothing, as on both public clusters.
inline constexpr keys::Lamports usualRentMinimum{890'880};

/// What is known before a transfer.
struct TransferFacts
{
    /// What the payer has.
    keys::Lamports balance;
    /// Empty if no amount is typed.
    std::optional<keys::Lamports> amount;
    /// What the recipient has, 0 if it does not exist; empty if unknown or if there is none.
    std::optional<keys::Lamports> recipientHas;
    /// True if the payer is the recipient.
    bool isToSelf = false;
    /// What an account must keep unless it keeps nothing.
    keys::Lamports rentMinimum = usualRentMinimum;
    /// True if what the payer has is not to be read.
    bool hidesAmounts = false;
};

/// An amount that the cluster would accept.
struct AmountOffer
{
    QString label;
    keys::Lamports amount;

    [[nodiscard]] bool operator==(const AmountOffer &) const = default;
};

/// What the cluster will say to a transfer.
struct TransferOutlook
{
    /// One line: what is available or what would be left, or why the cluster would refuse.
    QString text;
    /// True if the cluster would refuse the transfer.
    bool isRefused = false;
    /// Amounts that would work; empty unless it would be refused.
    QList<AmountOffer> offers;
};

[[nodiscard]] TransferOutlook transferOutlook(const TransferFacts &facts);

/// The amount in SOL, exactly and without superfluous zeros, with a decimal point, as it can be
/// typed.
[[nodiscard]] QString solText(keys::Lamports amount);

} // namespace corvane::core
