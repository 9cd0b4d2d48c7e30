#pragma once

#include <tuple>
#include <vector>

namespace corvane::tests {

/// Cases of one test, a row each; the loop over them names the columns.
template <typename... Columns>
using Table = std::vector<std::tuple<Columns...>>;

} // namespace corvane::tests
