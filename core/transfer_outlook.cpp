#include "core/transfer_outlook.h"

#include "core/labels.h"

#include <algorithm>
#include <cstdint>

namespace corvane::core {

using namespace Qt::StringLiterals;
using keys::Lamports;

namespace {

constexpr int solDecimals = 9;

/// An amount of the payer's as it may be read. What the cluster asks of everybody is no secret.
QString ownSol(Lamports amount, const TransferFacts &facts)
{
    return ownAmount(solText(amount) + u" SOL"_s, facts.hidesAmounts);
}

/// `from` minus `amount`; 0 if it would be less.
Lamports less(Lamports from, Lamports amount)
{
    return Lamports(from.count() - std::min(from.count(), amount.count()));
}

/// What the payer has afterwards.
Lamports restOf(Lamports amount, const TransferFacts &facts)
{
    const Lamports available = less(facts.balance, transferFee);
    return facts.isToSelf ? available : less(available, amount);
}

/// An account keeps nothing or at least the minimum.
bool mayKeep(Lamports rest, const TransferFacts &facts)
{
    return rest.count() == 0 || rest >= facts.rentMinimum;
}

bool isTooLittleForRecipient(Lamports amount, const TransferFacts &facts)
{
    return facts.recipientHas == Lamports(0) && amount < facts.rentMinimum && amount.count() > 0;
}

bool works(Lamports amount, const TransferFacts &facts)
{
    return amount.count() > 0 && amount <= less(facts.balance, transferFee) &&
           mayKeep(restOf(amount, facts), facts) && !isTooLittleForRecipient(amount, facts);
}

QList<AmountOffer> offersFor(const TransferFacts &facts)
{
    const Lamports all = less(facts.balance, transferFee);
    QList<AmountOffer> offers;
    const auto offer = [&](const QString &label, Lamports amount) {
        if (works(amount, facts)) {
            offers.append({label, amount});
        }
    };
    const auto own = [&](Lamports amount) {
        return ownAmount(solText(amount), facts.hidesAmounts);
    };
    if (facts.amount && isTooLittleForRecipient(*facts.amount, facts)) {
        offer(u"SEND "_s + solText(facts.rentMinimum), facts.rentMinimum);
        return offers;
    }
    offer(u"SEND ALL "_s + own(all), all);
    const Lamports rest = less(all, facts.rentMinimum);
    offer(u"KEEP ACCOUNT "_s + own(rest), rest);
    return offers;
}

/// Why the cluster would refuse `amount`; empty if it would not.
QString refusal(Lamports amount, const TransferFacts &facts)
{
    const Lamports available = less(facts.balance, transferFee);
    if (amount > available) {
        return u"amount + fee is more than the balance of "_s + ownSol(facts.balance, facts);
    }
    if (isTooLittleForRecipient(amount, facts)) {
        return u"a new address needs at least "_s + solText(facts.rentMinimum) + u" SOL"_s;
    }
    const Lamports rest = restOf(amount, facts);
    if (!mayKeep(rest, facts)) {
        return u"leaves "_s + ownSol(rest, facts) +
               u" — your account keeps nothing or at least "_s + solText(facts.rentMinimum);
    }
    return {};
}

} // namespace

TransferOutlook transferOutlook(const TransferFacts &facts)
{
    const QString text = facts.amount ? refusal(*facts.amount, facts) : QString();
    if (!text.isEmpty()) {
        return {text, true, offersFor(facts)};
    }
    const Lamports available = less(facts.balance, transferFee);
    const QString fee = u" · fee "_s + solText(transferFee);
    if (!facts.amount) {
        return {ownSol(available, facts) + u" available"_s + fee, false, {}};
    }
    return {u"leaves "_s + ownSol(restOf(*facts.amount, facts), facts) + fee, false, {}};
}

QString solText(Lamports amount)
{
    constexpr auto perSol = static_cast<std::uint64_t>(Lamports::perSol);
    QString text = QString::number(amount.count() / perSol);
    QString fraction = QString::number(amount.count() % perSol).rightJustified(solDecimals, u'0');
    while (fraction.endsWith(u'0')) {
        fraction.chop(1);
    }
    return fraction.isEmpty() ? text : text + u'.' + fraction;
}

} // namespace corvane::core
