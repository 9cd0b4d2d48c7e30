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

/// Base58 with the Bitcoin alphabet and without a checksum, as Solana uses it for keys and hashes.
///
/// The running time is quadratic, so that it is meant for at most some dozens of bytes. Callers
/// must trim untrusted input and limit its size before decoding. Thread-safe.
struct Base58
{
    /// The digits 0 to 57 in order.
    static constexpr std::array<char, 58> alphabet = {
        '1', '2', '3', '4', '5', '6', '7', '8', '9', 'A', 'B', 'C', 'D', 'E', 'F',
        'G', 'H', 'J', 'K', 'L', 'M', 'N', 'P', 'Q', 'R', 'S', 'T', 'U', 'V', 'W',
        'X', 'Y', 'Z', 'a', 'b', 'c', 'd', 'e', 'f', 'g', 'h', 'i', 'j', 'k', 'm',
        'n', 'o', 'p', 'q', 'r', 's', 't', 'u', 'v', 'w', 'x', 'y', 'z'};

    /// Each leading zero byte becomes a leading '1'; no bytes become an empty text.
    [[nodiscard]] static QString encode(std::span<const std::uint8_t> bytes);
    /// Empty if `text` contains a character outside the alphabet. Does not trim.
    [[nodiscard]] static std::optional<std::vector<std::uint8_t>> decode(QStringView text);

    /// The same for secrets: all intermediate results are in guarded memory. The text is ASCII.
    [[nodiscard]] static platform::SecretBytes encodeSecret(std::span<const std::uint8_t> bytes);
    [[nodiscard]] static std::optional<platform::SecretBytes> decodeSecret(QStringView text);

    /// The 32 bytes of an address or a hash; empty if `text` is not Base58 or has another size.
    /// Does not trim. The running time is bounded, however long the text is.
    [[nodiscard]] static std::optional<std::array<std::uint8_t, 32>> decode32(QStringView text);
};

} // namespace corvane::keys
