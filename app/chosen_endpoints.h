#pragma once

#include "app/options.h"
#include "core/endpoints.h"

#include <variant>

namespace corvane::app {

/// The built-in endpoints, or those in the file that `options` specify.
///
/// Refuses a demo whose key could receive real coins: unless it watches another address, both
/// clusters must be on this machine, because the key is lost when the demo exits.
[[nodiscard]] std::variant<core::Endpoints, EarlyExit> chosenEndpoints(const Options &options);

} // namespace corvane::app
