#pragma once

#include <tuple>
#include <vector>

namespace corvane::tests {

/// The cases of a test, one row each; a structured binding in the loop names the columns.
template <typename... Columns>
using Table = std::vector<std::tuple<Columns...>>;

} // namespace corvane::tests
