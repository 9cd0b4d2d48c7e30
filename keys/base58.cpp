#include "keys/base58.h"

#include <algorithm>

namespace corvane::keys {

namespace {

/// A 32-byte value has 32 (all zero) to 44 digits.
constexpr qsizetype shortestAddress = 32;
constexpr qsizetype longestAddress = 44;

/// The maximum number of digits for `byteCount` bytes: log(256) / log(58) is slightly less than
/// 1.38.
constexpr std::size_t digitBound(std::size_t byteCount)
{
    return byteCount * 138 / 100 + 1;
}

/// The most for which a digit and a carry of as many bytes fit 64 bits.
constexpr std::size_t bytesPerPass = 7;

constexpr std::uint8_t notADigit = 255;

constexpr std::array<std::uint8_t, 128> digitValues = [] {
    std::array<std::uint8_t, 128> values{};
    values.fill(notADigit);
    for (std::size_t digit = 0; digit < Base58::alphabet.size(); ++digit) {
        values[static_cast<unsigned char>(Base58::alphabet[digit])] =
            static_cast<std::uint8_t>(digit);
    }
    return values;
}();

/// Writes the digits to the start of `out`, whose size must be at least `digitBound` of the byte
/// count. Returns the number of digits.
std::size_t encodeInto(std::span<std::uint8_t> out, std::span<const std::uint8_t> bytes)
{
    const auto firstNonZero = std::ranges::find_if(bytes, [](std::uint8_t b) { return b != 0; });
    const auto zeros = static_cast<std::size_t>(firstNonZero - bytes.begin());

    // Least significant digit first; reversed below.
    const std::span<std::uint8_t> digits = out.subspan(zeros);
    std::size_t count = 0;
    for (std::span rest = bytes.subspan(zeros); !rest.empty();) {
        // Several bytes in each pass over the digits, because that is what takes the time.
        const auto group = rest.first(std::min(rest.size(), bytesPerPass));
        rest = rest.subspan(group.size());
        std::uint64_t carry = 0;
        for (const std::uint8_t byte : group) {
            carry = carry << 8 | byte;
        }
        for (std::uint8_t &digit : digits.first(count)) {
            carry += std::uint64_t{digit} << (8 * group.size());
            digit = static_cast<std::uint8_t>(carry % 58);
            carry /= 58;
        }
        for (; carry > 0; carry /= 58) {
            digits[count++] = static_cast<std::uint8_t>(carry % 58);
        }
    }
    std::ranges::fill(out.first(zeros), std::uint8_t{0});
    std::ranges::reverse(digits.first(count));
    for (std::uint8_t &digit : out.first(zeros + count)) {
        digit = static_cast<std::uint8_t>(Base58::alphabet[digit]);
    }
    return zeros + count;
}

/// Writes the bytes to the start of `out`, whose size must be at least the text's. Returns the
/// number of bytes; empty if a character is not a digit.
std::optional<std::size_t> decodeInto(std::span<std::uint8_t> out, QStringView text)
{
    const auto firstOther =
        std::ranges::find_if(text, [](QChar c) { return c != QLatin1Char(Base58::alphabet[0]); });
    const auto zeros = static_cast<std::size_t>(firstOther - text.begin());

    // Least significant byte first; reversed below.
    const std::span<std::uint8_t> bytes = out.subspan(zeros);
    std::size_t count = 0;
    for (const QChar character : text.sliced(static_cast<qsizetype>(zeros))) {
        const char16_t unit = character.unicode();
        if (unit >= digitValues.size() || digitValues[unit] == notADigit) {
            return std::nullopt;
        }
        std::uint32_t carry = digitValues[unit];
        for (std::uint8_t &byte : bytes.first(count)) {
            carry += std::uint32_t{byte} * 58;
            byte = static_cast<std::uint8_t>(carry & 0xFF);
            carry >>= 8;
        }
        for (; carry > 0; carry >>= 8) {
            bytes[count++] = static_cast<std::uint8_t>(carry & 0xFF);
        }
    }
    std::ranges::fill(out.first(zeros), std::uint8_t{0});
    std::ranges::reverse(bytes.first(count));
    return zeros + count;
}

} // namespace

QString Base58::encode(std::span<const std::uint8_t> bytes)
{
    std::vector<std::uint8_t> text(digitBound(bytes.size()));
    const std::size_t count = encodeInto(text, bytes);
    return QString::fromLatin1(reinterpret_cast<const char *>(text.data()),
                               static_cast<qsizetype>(count));
}

std::optional<std::vector<std::uint8_t>> Base58::decode(QStringView text)
{
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(text.size()));
    const std::optional<std::size_t> count = decodeInto(bytes, text);
    if (!count) {
        return std::nullopt;
    }
    bytes.resize(*count);
    return bytes;
}

platform::SecretBytes Base58::encodeSecret(std::span<const std::uint8_t> bytes)
{
    platform::SecretBytes text(digitBound(bytes.size()));
    const std::size_t count = encodeInto(text.bytes(), bytes);
    return platform::SecretBytes::copyOf(text.bytes().first(count));
}

std::optional<platform::SecretBytes> Base58::decodeSecret(QStringView text)
{
    platform::SecretBytes bytes(static_cast<std::size_t>(text.size()));
    const std::optional<std::size_t> count = decodeInto(bytes.bytes(), text);
    if (!count) {
        return std::nullopt;
    }
    return platform::SecretBytes::copyOf(bytes.bytes().first(*count));
}

std::optional<std::array<std::uint8_t, 32>> Base58::decode32(QStringView text)
{
    if (text.size() < shortestAddress || text.size() > longestAddress) {
        return std::nullopt;
    }
    std::array<std::uint8_t, static_cast<std::size_t>(longestAddress)> bytes{};
    std::array<std::uint8_t, 32> decoded{};
    if (decodeInto(bytes, text) != decoded.size()) {
        return std::nullopt;
    }
    std::ranges::copy(std::span(bytes).first<decoded.size()>(), decoded.begin());
    return decoded;
}

} // namespace corvane::keys
