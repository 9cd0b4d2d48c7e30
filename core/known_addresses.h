#pragma once

#include "core/sol_network.h"
#include "keys/address.h"

#include <optional>
#include <utility>
#include <vector>

namespace corvane::core {

/// What the wallet had to do with an address.
enum class Dealing {
    ReceivedFrom, ///< it sent something to the wallet
    Paid,         ///< the wallet sent something to it
};

struct KnownAddress
{
    keys::Address address;
    Dealing dealing;

    [[nodiscard]] bool operator==(const KnownAddress &) const = default;
};

/// True for two addresses with the same ends, by which people tell addresses apart. Such addresses
/// are made on purpose, in the hope that one is taken for the other.
[[nodiscard]] bool looksAlike(const keys::Address &one, const keys::Address &other);

/// The addresses that the wallet paid or received from, as far as this run knows them. Kept in
/// memory only. Main thread.
class KnownAddresses
{
public:
    /// Remembers an address; one that was paid stays so.
    void add(const KnownAddress &known);

    /// The known address that `recipient` may be mistaken for; one that was paid before others.
    /// Empty if `recipient` itself was paid and its double was not: then that one is the stranger.
    [[nodiscard]] std::optional<KnownAddress> doubleOf(const keys::Address &recipient) const;

    /// True once the transactions of `owner` on a cluster have been read.
    [[nodiscard]] bool hasHistory(const keys::Address &owner, SolNetwork network) const;
    void setHasHistory(const keys::Address &owner, SolNetwork network);

private:
    std::vector<KnownAddress> m_known;
    std::vector<std::pair<keys::Address, SolNetwork>> m_histories;
};

} // namespace corvane::core
