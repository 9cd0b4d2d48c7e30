#include "core/known_addresses.h"

#include "core/labels.h"

#include <algorithm>

namespace corvane::core {

bool looksAlike(const keys::Address &one, const keys::Address &other)
{
    return one != other && shortAddress(one.text()) == shortAddress(other.text());
}

void KnownAddresses::add(const KnownAddress &known)
{
    const auto found = std::ranges::find(m_known, known.address, &KnownAddress::address);
    if (found == m_known.end()) {
        m_known.push_back(known);
    } else {
        found->dealing = std::max(found->dealing, known.dealing);
    }
}

std::optional<KnownAddress> KnownAddresses::doubleOf(const keys::Address &recipient) const
{
    const bool wasPaid =
        std::ranges::find(m_known, KnownAddress{recipient, Dealing::Paid}) != m_known.end();
    std::optional<KnownAddress> best;
    for (const KnownAddress &known : m_known) {
        if (looksAlike(known.address, recipient) && (known.dealing == Dealing::Paid || !wasPaid) &&
            (!best || best->dealing < known.dealing)) {
            best = known;
        }
    }
    return best;
}

bool KnownAddresses::hasHistory(const keys::Address &owner, SolNetwork network) const
{
    return std::ranges::find(m_histories, std::pair(owner, network)) != m_histories.end();
}

void KnownAddresses::setHasHistory(const keys::Address &owner, SolNetwork network)
{
    m_histories.emplace_back(owner, network);
}

} // namespace corvane::core
