#include "platform/linux/bus/large_message_filter.h"

#include <algorithm>

namespace corvane::platform {

namespace {

// The layout of a message, from the D-Bus specification.
constexpr std::byte littleEndian{'l'};
constexpr std::size_t bodyLengthPosition = 4;
constexpr std::size_t fieldsLengthPosition = 12;
constexpr std::size_t fieldsPosition = 16;
constexpr std::byte signatureField{8};
/// A field that no specification defines, and that receivers must therefore ignore.
constexpr std::byte unknownField{255};

constexpr std::size_t aligned(std::size_t position)
{
    return (position + 7) / 8 * 8;
}

} // namespace

std::uint32_t LargeMessageFilter::numberAt(std::size_t position) const
{
    std::uint32_t number = 0;
    for (std::size_t index = 0; index < sizeof(number); ++index) {
        const std::size_t shift =
            m_header.front() == littleEndian ? index : sizeof(number) - 1 - index;
        number |= std::to_integer<std::uint32_t>(m_header[position + index]) << 8 * shift;
    }
    return number;
}

/// The size of the header, as far as it is known from what has arrived of it.
std::size_t LargeMessageFilter::headerSize() const
{
    return m_header.size() < fieldsPosition
               ? fieldsPosition
               : aligned(fieldsPosition + numberAt(fieldsLengthPosition));
}

/// Makes the message one without arguments; false if it is malformed.
bool LargeMessageFilter::removeArguments()
{
    const std::size_t end = fieldsPosition + numberAt(fieldsLengthPosition);
    std::size_t position = fieldsPosition;
    // Each field is its code, a signature of one type, and a value of that type.
    while (position < end) {
        const std::size_t value = position + 4;
        if (value + 4 > m_header.size() || m_header[position + 1] != std::byte{1}) {
            return false;
        }
        if (m_header[position] == signatureField) {
            m_header[position] = unknownField;
        }
        switch (std::to_integer<char>(m_header[position + 2])) {
        case 'g':
            position = value + 1 + std::to_integer<std::size_t>(m_header[value]) + 1;
            break;
        case 's':
        case 'o':
            position = value + 4 + numberAt(value) + 1;
            break;
        case 'u':
            position = value + 4;
            break;
        default:
            return false;
        }
        position = aligned(position);
    }
    std::ranges::fill(std::span(m_header).subspan(bodyLengthPosition, sizeof(std::uint32_t)),
                      std::byte{});
    return position == m_header.size();
}

LargeMessageFilter::Progress LargeMessageFilter::copy(std::span<const std::byte> input,
                                                      std::span<std::byte> output)
{
    Progress progress;
    const auto write = [&](std::span<const std::byte> bytes) {
        std::ranges::copy(bytes, output.begin());
        output = output.subspan(bytes.size());
        progress.written += bytes.size();
    };
    const auto take = [&](std::size_t count) {
        const auto taken = input.first(count);
        input = input.subspan(count);
        progress.taken += count;
        return taken;
    };
    while (!input.empty()) {
        if (m_skips > 0) {
            m_skips -= take(std::min<std::uint64_t>(m_skips, input.size())).size();
            continue;
        }
        if (m_copies > 0) {
            if (output.empty()) {
                break;
            }
            const std::size_t room = std::min(input.size(), output.size());
            const auto copied = take(std::min<std::uint64_t>(m_copies, room));
            write(copied);
            m_copies -= copied.size();
            continue;
        }
        const std::size_t size = headerSize();
        const std::size_t count = std::min(size - m_header.size(), input.size());
        const bool completes = m_header.size() >= fieldsPosition && m_header.size() + count == size;
        if (completes && output.size() < size) {
            break;
        }
        const auto arrived = take(count);
        m_header.insert(m_header.end(), arrived.begin(), arrived.end());
        if (completes) {
            const std::uint32_t body = numberAt(bodyLengthPosition);
            const bool isTooLarge = body > largest;
            if (!isTooLarge || removeArguments()) {
                write(m_header);
            }
            (isTooLarge ? m_skips : m_copies) = body;
            m_header.clear();
        } else if (m_header.size() == fieldsPosition) {
            const std::uint32_t fields = numberAt(fieldsLengthPosition);
            // Every message has fields.
            if (fields == 0 || fields > largest) {
                m_skips = headerSize() - fieldsPosition + numberAt(bodyLengthPosition);
                m_header.clear();
            }
        }
    }
    return progress;
}

} // namespace corvane::platform
