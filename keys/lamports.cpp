#include "keys/lamports.h"

#include <QtGlobal>

#include <cmath>

namespace corvane::keys {

std::optional<Lamports> Lamports::fittingSol(double sol)
{
    const double lamports = std::round(sol * perSol);
    constexpr double end = 0x1p64;
    if (!(lamports > -1 && lamports < end)) {
        return std::nullopt;
    }
    return Lamports(static_cast<std::uint64_t>(lamports));
}

Lamports Lamports::fromSol(double sol)
{
    const std::optional<Lamports> lamports = fittingSol(sol);
    if (!lamports) {
        qFatal("an amount does not fit into lamports");
    }
    return *lamports;
}

} // namespace corvane::keys
