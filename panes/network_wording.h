#pragma once

#include "core/sol_network.h"

namespace corvane::panes {

/// A network's name as the cards show it.
[[nodiscard]] inline QString networkTitle(core::SolNetwork network)
{
    return core::rawValue(network).toUpper();
}

} // namespace corvane::panes
