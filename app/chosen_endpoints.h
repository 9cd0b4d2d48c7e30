#pragma once

#include "app/options.h"
#include "core/endpoints.h"

#include <variant>

namespace corvane::app {

/// The built-in endpoints, or those in the file that `options` name.
///
/// A demo whose key could be paid real coins is refused: unless it watches another address, every
/// cluster must be on this machine, because coins paid to its key are lost when it ends.
[[nodiscard]] std::variant<core::Endpoints, EarlyExit> chosenEndpoints(const Options &options);

} // namespace corvane::app
