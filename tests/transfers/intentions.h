#pragma once

#include "core/sol_network.h"
#include "tests/transfers/local_cluster.h"
#include "tests/transfers/unreliable_http.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <deque>
#include <optional>
#include <set>
#include <vector>

namespace corvane::tests {

/// A payment as the card shows it.
struct Shown
{
    QString recipient;
    std::uint64_t lamports = 0;
    core::SolNetwork network = core::SolNetwork::Mainnet;

    [[nodiscard]] bool operator==(const Shown &) const = default;
};

/// The lines of the card about transfers.
struct CardLines
{
    bool sending = false;
    bool sent = false;
    /// The shortened signature beside it.
    QString signature;
    QString error;
    QString fate;
    /// What `fate` is about.
    QString subject;
};

/// Keeps account of what the user wants, what the card says about it, and what is done: the judge
/// of a schedule, who knows nothing of how the wallet works.
///
/// A press while an earlier payment of the same amount to the same recipient is unresolved is the
/// same intention; after the card has given its last word on it, or has warned, it is a new one.
class Intentions
{
public:
    /// The user presses SEND, with these fields on the card.
    void press(const Shown &shown);
    /// The wallet submits a transfer; `asPressed` tells whether to the endpoint of the last press.
    void submit(const WireTransfer &transfer, bool asPressed);
    /// The card shows this now, for the network that it names.
    void read(const CardLines &card, core::SolNetwork network);

    /// Compares everything with the transfers that were executed. Returns what must not happen.
    [[nodiscard]] QStringList judge(const std::vector<LedgerEntry> &executed) const;

private:
    enum class Word {
        None,      ///< pressed, and nothing has been said yet
        Checking,  ///< it is open
        Forgotten, ///< the card does not mention it
        Paid,      ///< sent, or it went through
        NotPaid,   ///< refused, or it did not go through
        Withdrawn, ///< answered by a warning: never begun
    };

    struct Intention
    {
        Shown shown;
        Word word = Word::None;
        /// True if the card has to warn before anything is submitted for it.
        bool needsWarning = false;
        /// True once the card has told its fate.
        bool hasFate = false;
        std::set<QString> signatures{};
    };

    [[nodiscard]] static bool isOpen(const Intention &intention);
    /// The one that a fate is about; null if that cannot be told.
    [[nodiscard]] Intention *subjectOfFate(const CardLines &card, core::SolNetwork network);
    void complain(const QString &text);

    std::deque<Intention> m_all;
    /// The one of the last press.
    Intention *m_pressed = nullptr;
    std::optional<Shown> m_warned;
    std::pair<QString, QString> m_lastFate;
    QStringList m_complaints;
};

} // namespace corvane::tests
