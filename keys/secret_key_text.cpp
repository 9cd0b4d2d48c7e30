#include "keys/secret_key_text.h"

#include "keys/base58.h"

#include <algorithm>
#include <cstdint>

namespace corvane::keys {

namespace {

using platform::SecretBytes;

constexpr std::size_t seedSize = platform::SigningKeys::seedSize;
constexpr std::size_t secretKeySize = 64;
/// Maximum number of digits for 64 bytes.
constexpr qsizetype longestBase58 = 88;

/// Parses a JSON array of integers. A general parser would leave copies of the key in unprotected
/// memory.
class ByteArrayReader
{
public:
    explicit ByteArrayReader(QStringView text)
        : m_rest(text)
    {}

    std::optional<SecretBytes> read()
    {
        // A longer array is not a key; the limit keeps large pasted texts out of guarded memory.
        SecretBytes bytes(secretKeySize + 1);
        std::size_t count = 0;
        if (!take(u'[')) {
            return std::nullopt;
        }
        if (!take(u']')) {
            do {
                const std::optional<std::uint64_t> number = integer();
                if (!number || count == bytes.size()) {
                    return std::nullopt;
                }
                bytes.bytes()[count++] = static_cast<std::uint8_t>(*number);
            } while (take(u','));
            if (!take(u']')) {
                return std::nullopt;
            }
        }
        skipBlanks();
        if (!m_rest.empty()) {
            return std::nullopt;
        }
        return SecretBytes::copyOf(bytes.bytes().first(count));
    }

private:
    void skipBlanks()
    {
        constexpr QStringView blanks = u" \t\r\n";
        while (!m_rest.empty() && blanks.contains(m_rest.front())) {
            m_rest = m_rest.sliced(1);
        }
    }

    bool take(char16_t wanted)
    {
        skipBlanks();
        if (m_rest.empty() || m_rest.front() != QChar(wanted)) {
            return false;
        }
        m_rest = m_rest.sliced(1);
        return true;
    }

    /// A signed 64-bit integer as its two's complement.
    std::optional<std::uint64_t> integer()
    {
        const bool negative = take(u'-');
        if (!negative) {
            skipBlanks();
        }
        const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
        const std::uint64_t limit = (std::uint64_t{1} << 63) - (negative ? 0 : 1);
        std::uint64_t value = 0;
        qsizetype digits = 0;
        for (; digits < m_rest.size() && isDigit(m_rest[digits]); ++digits) {
            const auto digit = static_cast<std::uint64_t>(m_rest[digits].unicode() - u'0');
            if (value > (limit - digit) / 10) {
                return std::nullopt;
            }
            value = value * 10 + digit;
        }
        const bool leadingZero = digits > 1 && m_rest.front() == u'0';
        m_rest = m_rest.sliced(digits);
        if (digits == 0 || leadingZero) {
            return std::nullopt;
        }
        return negative ? ~value + 1 : value;
    }

    QStringView m_rest;
};

} // namespace

std::optional<SecretBytes> seedFromText(QStringView text)
{
    const QStringView key = text.trimmed();
    const bool isArray = key.startsWith(u'[');
    if (!isArray && key.size() > longestBase58) {
        return std::nullopt;
    }
    std::optional<SecretBytes> bytes =
        isArray ? ByteArrayReader(key).read() : Base58::decodeSecret(key);
    if (!bytes || (bytes->size() != seedSize && bytes->size() != secretKeySize)) {
        return std::nullopt;
    }
    return SecretBytes::copyOf(bytes->bytes().first(seedSize));
}

SecretBytes backupText(const SecretBytes &seed, const platform::PublicKey &publicKey)
{
    SecretBytes secretKey(secretKeySize);
    std::ranges::copy(seed.bytes(), secretKey.bytes().begin());
    std::ranges::copy(publicKey.bytes, secretKey.bytes().begin() + seedSize);
    return Base58::encodeSecret(secretKey.bytes());
}

} // namespace corvane::keys
