#pragma once

#include <compare>
#include <cstdint>
#include <optional>

namespace corvane::keys {

/// An amount of lamports, as encoded in transactions: 1 SOL is 1,000,000,000 lamports.
class Lamports
{
public:
    /// Number of lamports per SOL, defined by the cluster.
    static constexpr double perSol = 1e9;

    constexpr explicit Lamports(std::uint64_t count)
        : m_count(count)
    {}

    /// Rounds `sol` to the nearest lamport, halves away from zero. Empty if the amount is infinite
    /// or not a number, at most -1 lamport, or at least 2^64 lamports.
    [[nodiscard]] static std::optional<Lamports> fittingSol(double sol);
    /// The same; aborts the process if the amount does not fit: the caller must exclude that.
    [[nodiscard]] static Lamports fromSol(double sol);

    [[nodiscard]] constexpr std::uint64_t count() const { return m_count; }
    [[nodiscard]] constexpr auto operator<=>(const Lamports &) const = default;

private:
    std::uint64_t m_count;
};

} // namespace corvane::keys
