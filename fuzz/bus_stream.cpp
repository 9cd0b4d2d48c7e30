// What arrives on the session bus, where any program may send messages of any size. The first two
// bytes are the sizes of the pieces that the filter takes and writes.

#include "platform/linux/bus/large_message_filter.h"

#include "fuzz/property.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

using namespace corvane;
using fuzz::require;
using platform::LargeMessageFilter;

namespace {

std::vector<std::byte> filtered(std::span<const std::byte> input, std::size_t step,
                                std::size_t room)
{
    LargeMessageFilter filter;
    std::vector<std::byte> passed;
    std::vector<std::byte> output(room);
    while (!input.empty()) {
        const auto piece = input.first(std::min(step, input.size()));
        const auto progress = filter.copy(piece, output);
        require(progress.taken <= piece.size() && progress.written <= output.size());
        passed.insert(passed.end(), output.begin(),
                      output.begin() + static_cast<std::ptrdiff_t>(progress.written));
        input = input.subspan(progress.taken);
        if (progress.taken == 0) {
            require(output.size() < 2 * LargeMessageFilter::largest);
            output.resize(2 * output.size());
        }
    }
    return passed;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size < 2) {
        return 0;
    }
    const auto stream = std::as_bytes(std::span(data, size)).subspan(2);
    const auto whole = filtered(stream, stream.size() + 1, 4 * LargeMessageFilter::largest);
    require(whole.size() <= stream.size());
    require(filtered(stream, data[0] + 1U, data[1] + 1U) == whole);
    // What has passed once passes again.
    require(filtered(whole, whole.size() + 1, 4 * LargeMessageFilter::largest) == whole);
    return 0;
}
