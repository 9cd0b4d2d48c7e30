#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace corvane::platform {

/// Copies what a message bus sends, but messages that are too large without their arguments.
///
/// The sender of such a message gets the refusal of a call with wrong arguments, and the message
/// takes no memory. A message with a header that is too large is left out.
class LargeMessageFilter
{
public:
    /// In bytes, for the arguments and for the header of a message.
    static constexpr std::size_t largest = 64UL * 1024;

    /// Bytes taken from the input and written to the output.
    struct Progress
    {
        std::size_t taken = 0;
        std::size_t written = 0;
    };

    /// Copies as much as possible of `input`, which continues that of the last call. Neither takes
    /// nor writes anything if the output is too small for the next part; a header is written at
    /// once.
    [[nodiscard]] Progress copy(std::span<const std::byte> input, std::span<std::byte> output);

private:
    [[nodiscard]] std::uint32_t numberAt(std::size_t position) const;
    [[nodiscard]] std::size_t headerSize() const;
    bool removeArguments();

    /// The header of the current message, as far as it has arrived.
    std::vector<std::byte> m_header;
    /// Bytes of the current message that remain to be copied or left out.
    std::uint64_t m_copies = 0;
    std::uint64_t m_skips = 0;
};

} // namespace corvane::platform
