#pragma once

#include "platform/secret_bytes.h"

#include <QString>
#include <QStringView>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace corvane::keys {

/// Base58 with the Bitcoin alphabet and without a checksum, as Solana writes keys and hashes.
///
/// The conversion is the quadratic schoolbook method: meant for some dozens of bytes. Callers trim
/// and bound what people or servers send before they decode it. Any thread.
struct Base58
{
    /// The digits 0 to 57 in order.
    static constexpr std::array<char, 58> alphabet = {
        '1', '2', '3', '4', '5', '6', '7', '8', '9', 'A', 'B', 'C', 'D', 'E', 'F',
        'G', 'H', 'J', 'K', 'L', 'M', 'N', 'P', 'Q', 'R', 'S', 'T', 'U', 'V', 'W',
        'X', 'Y', 'Z', 'a', 'b', 'c', 'd', 'e', 'f', 'g', 'h', 'i', 'j', 'k', 'm',
        'n', 'o', 'p', 'q', 'r', 's', 't', 'u', 'v', 'w', 'x', 'y', 'z'};

    /// Each zero byte in front gives a '1' in front; no bytes give no text.
    [[nodiscard]] static QString encode(std::span<const std::uint8_t> bytes);
    /// None when `text` holds a character outside the alphabet. Nothing is trimmed.
    [[nodiscard]] static std::optional<std::vector<std::uint8_t>> decode(QStringView text);

    /// The same for secrets: every intermediate digit lies in guarded memory. The text is ASCII.
    [[nodiscard]] static platform::SecretBytes encodeSecret(std::span<const std::uint8_t> bytes);
    [[nodiscard]] static std::optional<platform::SecretBytes> decodeSecret(QStringView text);

    /// The 32 bytes of an address or a hash; none when `text`, untrimmed, has another size or is no
    /// Base58. The work is bounded, however long the text.
    [[nodiscard]] static std::optional<std::array<std::uint8_t, 32>> decode32(QStringView text);
};

} // namespace corvane::keys
