#include "tests/transfers/intentions.h"

#include <algorithm>

namespace corvane::tests {

using namespace Qt::StringLiterals;
using core::SolNetwork;

namespace {

// The card's words, as a user reads them.
const QString warning =
    u"the earlier transfer may still go through — press again to send this one too"_s;
const QString checking = u"checking whether it went through…"_s;
const QString wentThrough = u"it went through"_s;
const QString didNotGoThrough = u"it did not go through"_s;
const QString anEarlier = u"an earlier "_s;

QString solText(std::uint64_t lamports)
{
    constexpr std::uint64_t perSol = 1'000'000'000;
    QString text = QString::number(lamports / perSol) + u'.' +
                   QString::number(lamports % perSol).rightJustified(9, u'0');
    while (text.endsWith(u'0')) {
        text.chop(1);
    }
    return text.endsWith(u'.') ? text.chopped(1) : text;
}

/// What the card calls a payment when it tells its fate, on a card for `network`.
QString subjectOf(const Shown &shown, SolNetwork network)
{
    QString text = solText(shown.lamports) + u" SOL to "_s + shown.recipient.left(4) + u'…' +
                   shown.recipient.right(4);
    if (shown.network != network) {
        text += u" on "_s + core::rawValue(shown.network).toUpper();
    }
    return text;
}

QString describe(const Shown &shown)
{
    return subjectOf(shown, SolNetwork::Mainnet);
}

} // namespace

bool Intentions::isOpen(const Intention &intention)
{
    return intention.word == Word::None || intention.word == Word::Checking ||
           intention.word == Word::Forgotten;
}

void Intentions::press(const Shown &shown)
{
    const auto same = std::ranges::find_if(m_all, [&](const Intention &intention) {
        return isOpen(intention) && intention.shown == shown;
    });
    if (same != m_all.end()) {
        m_pressed = &*same;
        m_pressed->word = Word::None;
    } else {
        const bool isDoubtful = std::ranges::any_of(
            m_all, [](const Intention &intention) { return intention.word == Word::Checking; });
        m_pressed = &m_all.emplace_back(
            Intention{.shown = shown, .needsWarning = isDoubtful && m_warned != shown});
    }
    m_warned.reset();
}

void Intentions::submit(const WireTransfer &transfer, bool asPressed)
{
    if (m_pressed == nullptr || m_pressed->word != Word::None) {
        complain(u"submitted without a press: "_s + transfer.signature);
        return;
    }
    const Shown sent{transfer.recipient, transfer.lamports, m_pressed->shown.network};
    if (m_pressed->shown != sent) {
        complain(u"submitted "_s + describe(sent) + u", but the card showed "_s +
                 describe(m_pressed->shown));
    }
    if (!asPressed) {
        complain(u"submitted to another endpoint than at the press: "_s + describe(sent));
    }
    if (m_pressed->needsWarning) {
        complain(u"submitted without a warning: "_s + describe(sent));
    }
    for (Intention &intention : m_all) {
        // Once refused, the same bytes may serve for the same payment once more.
        if (&intention != m_pressed && intention.signatures.erase(transfer.signature) > 0 &&
            intention.word != Word::NotPaid) {
            complain(u"submitted the bytes of another payment: "_s + describe(sent));
        }
    }
    m_pressed->signatures.insert(transfer.signature);
}

Intentions::Intention *Intentions::subjectOfFate(const CardLines &card, SolNetwork network)
{
    const bool isEarlier = card.subject.startsWith(anEarlier);
    const QString named = isEarlier ? card.subject.sliced(anEarlier.size()) : card.subject;
    const auto find = [&](const auto &condition) -> Intention * {
        const auto found = std::ranges::find_if(m_all, [&](const Intention &intention) {
            return !intention.signatures.empty() && named == subjectOf(intention.shown, network) &&
                   !(isEarlier && &intention == m_pressed && intention.word != Word::Withdrawn) &&
                   condition(intention);
        });
        return found != m_all.end() ? &*found : nullptr;
    };
    if (Intention *sent = find([&](const Intention &intention) {
            return std::ranges::any_of(intention.signatures, [&](const QString &signature) {
                return card.signature == signature.left(8) + u'…' + signature.right(8);
            });
        })) {
        return sent;
    }
    if (Intention *open = find(isOpen)) {
        return open;
    }
    // The loss of what was told as sent.
    return card.fate != didNotGoThrough ? nullptr : find([](const Intention &intention) {
        return intention.word == Word::Paid && !intention.hasFate;
    });
}

void Intentions::read(const CardLines &card, SolNetwork network)
{
    const QString place = u" on "_s + core::rawValue(network).toUpper();
    const std::pair fate(card.fate,
                         card.subject.contains(u" on "_s) ? card.subject : card.subject + place);
    // The same line is one statement, however long it stands there.
    Intention *subject =
        card.fate.isEmpty() || fate == m_lastFate ? nullptr : subjectOfFate(card, network);
    if (subject != nullptr && !(card.sending && subject == m_pressed)) {
        if (card.fate == checking) {
            subject->word = Word::Checking;
        } else {
            subject->word = card.fate == wentThrough ? Word::Paid : Word::NotPaid;
            subject->hasFate = true;
        }
    }
    m_lastFate = card.sending ? std::pair<QString, QString>() : fate;
    if (m_pressed == nullptr || m_pressed->word != Word::None || card.sending) {
        return;
    }
    if (card.error == warning) {
        m_pressed->word = Word::Withdrawn;
        m_warned = m_pressed->shown;
    } else if (!card.error.isEmpty()) {
        m_pressed->word = Word::NotPaid;
    } else {
        m_pressed->word = card.sent ? Word::Paid : Word::Forgotten;
    }
}

QStringList Intentions::judge(const std::vector<LedgerEntry> &executed) const
{
    QStringList complaints = m_complaints;
    std::vector<Shown> paidInVain;
    std::vector<Shown> lostAndPaid;
    for (const Intention &intention : m_all) {
        const auto times = std::ranges::count_if(executed, [&](const LedgerEntry &entry) {
            return intention.signatures.contains(entry.signature);
        });
        const auto complain = [&](const QString &what) {
            complaints.append(what + u": "_s + describe(intention.shown));
        };
        if (times > 1) {
            complain(u"paid %1 times"_s.arg(times));
        }
        switch (intention.word) {
        case Word::Paid:
            if (times == 0) {
                paidInVain.push_back(intention.shown);
            }
            break;
        case Word::NotPaid:
        case Word::Withdrawn:
            if (times > 0 && intention.hasFate) {
                lostAndPaid.push_back(intention.shown);
            } else if (times > 0) {
                complain(u"told as not paid, but was"_s);
            }
            break;
        case Word::Checking:
            complain(u"never told what became of it"_s);
            break;
        case Word::None:
        case Word::Forgotten:
            if (times > 0) {
                complain(u"paid, and never mentioned"_s);
            }
        }
    }
    // A loss does not tell which of several equal payments it is about.
    std::erase_if(lostAndPaid, [&](const Shown &shown) {
        const auto twin = std::ranges::find(paidInVain, shown);
        const bool hasTwin = twin != paidInVain.end();
        if (hasTwin) {
            paidInVain.erase(twin);
        }
        return hasTwin;
    });
    for (const Shown &shown : paidInVain) {
        complaints.append(u"told as paid, but was not: "_s + describe(shown));
    }
    for (const Shown &shown : lostAndPaid) {
        complaints.append(u"told as lost, but was paid: "_s + describe(shown));
    }
    const auto isOurs = [this](const LedgerEntry &entry) {
        return std::ranges::any_of(m_all, [&](const Intention &intention) {
            return intention.signatures.contains(entry.signature);
        });
    };
    if (!std::ranges::all_of(executed, isOurs)) {
        complaints.append(u"paid without a press"_s);
    }
    return complaints;
}

void Intentions::complain(const QString &text)
{
    m_complaints.append(text);
}

} // namespace corvane::tests
