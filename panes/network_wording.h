#pragma once

#include "core/sol_network.h"

namespace corvane::panes {

/// A network's name as shown on the cards.
[[nodiscard]] inline QString networkTitle(core::SolNetwork network)
{
    return core::rawValue(network).toUpper();
}

} // namespace corvane::panes
