#pragma once

#include <compare>
#include <cstdint>

namespace corvane::keys {

/// An amount as it goes on the wire: 1 SOL is 1,000,000,000 lamports.
class Lamports
{
public:
    /// Lamports of one SOL, as the cluster defines it.
    static constexpr double perSol = 1e9;

    constexpr explicit Lamports(std::uint64_t count)
        : m_count(count)
    {}

    /// `sol` rounded to the nearest lamport, halves away from zero. An amount that is infinite, not
    /// a number, not above -1 lamport or not below 2^64 lamports is a caller's mistake with money
    /// and stops the process.
    [[nodiscard]] static Lamports fromSol(double sol);

    [[nodiscard]] constexpr std::uint64_t count() const { return m_count; }
    [[nodiscard]] constexpr auto operator<=>(const Lamports &) const = default;

private:
    std::uint64_t m_count;
};

} // namespace corvane::keys
