#include "keys/lamports.h"

#include <QtGlobal>

#include <cmath>

namespace corvane::keys {

Lamports Lamports::fromSol(double sol)
{
    const double lamports = std::round(sol * perSol);
    constexpr double end = 0x1p64;
    if (!(lamports > -1 && lamports < end)) {
        qFatal("an amount does not fit into lamports");
    }
    return Lamports(static_cast<std::uint64_t>(lamports));
}

} // namespace corvane::keys
