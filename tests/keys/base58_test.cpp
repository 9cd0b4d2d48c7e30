#include "keys/base58.h"

#include <gtest/gtest.h>

#include <random>

using corvane::keys::Base58;
using corvane::platform::SecretBytes;
using namespace Qt::StringLiterals;

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes fromHex(const char *hex)
{
    const QByteArray bytes = QByteArray::fromHex(hex);
    return {bytes.begin(), bytes.end()};
}

Bytes bytesOf(const SecretBytes &secret)
{
    return {secret.bytes().begin(), secret.bytes().end()};
}

struct Vector
{
    const char *hex;
    QString text;
};

// The published vectors of the alphabet's first user, then cases of our own: zero bytes in front,
// the first carry and well-known 32-byte program ids.
const Vector vectors[] = {
    {"", u""_s},
    {"61", u"2g"_s},
    {"626262", u"a3gV"_s},
    {"636363", u"aPEr"_s},
    {"73696d706c792061206c6f6e6720737472696e67", u"2cFupjhnEsSn59qHXstmK2ffpLv2"_s},
    {"00eb15231dfceb60925886b67d065299925915aeb172c06647", u"1NS17iag9jJgTHD1VXjvLCEnZuQ3rJDE9L"_s},
    {"516b6fcd0f", u"ABnLTmg"_s},
    {"bf4f89001e670274dd", u"3SEo3LWLoPntC"_s},
    {"572e4794", u"3EFU7m"_s},
    {"ecac89cad93923c02321", u"EJDM8drfXA6uyA"_s},
    {"10c8511e", u"Rt5zm"_s},
    {"00000000000000000000", u"1111111111"_s},
    {"00", u"1"_s},
    {"01", u"2"_s},
    {"3a", u"21"_s},
    {"0000ff", u"115Q"_s},
    {"0000000000000000000000000000000000000000000000000000000000000000",
     u"11111111111111111111111111111111"_s},
    {"06ddf6e1d765a193d9cbe146ceeb79ac1cb485ed5f5b37913a8cf5857eff00a9",
     u"TokenkegQfeZyiNwAJbNbGKPFXCWuBvf9Ss623VQ5DA"_s},
    {"c6fa7af3bedbad3a3d65f36aabc97431b1bbe4c2d2f6e0e47ca60203452f5d61",
     u"EPjFWdd5AufqSSqeM2qN1xzybapC8G4wEGGkZwyTDt1v"_s},
};

TEST(Base58, MatchesPublishedVectorsBothWays)
{
    for (const auto &[hex, text] : vectors) {
        SCOPED_TRACE(hex);
        const Bytes bytes = fromHex(hex);
        EXPECT_EQ(Base58::encode(bytes), text);
        EXPECT_EQ(Base58::decode(text), bytes);

        const SecretBytes secretText = Base58::encodeSecret(bytes);
        EXPECT_EQ(QString::fromLatin1(reinterpret_cast<const char *>(secretText.bytes().data()),
                                      static_cast<qsizetype>(secretText.size())),
                  text);
        const std::optional<SecretBytes> secret = Base58::decodeSecret(text);
        ASSERT_TRUE(secret);
        EXPECT_EQ(bytesOf(*secret), bytes);
    }
}

TEST(Base58, RoundTripsEveryLengthWithLeadingZerosAndExtremes)
{
    std::mt19937 random(20240607);
    for (std::size_t size = 0; size <= 96; ++size) {
        for (std::size_t zeros = 0; zeros <= std::min<std::size_t>(size, 3); ++zeros) {
            Bytes bytes(size, 0xFF);
            EXPECT_EQ(Base58::decode(Base58::encode(bytes)), bytes) << size;
            for (std::size_t i = 0; i < size; ++i) {
                bytes[i] = i < zeros ? std::uint8_t{0} : static_cast<std::uint8_t>(random());
            }
            EXPECT_EQ(Base58::decode(Base58::encode(bytes)), bytes) << size << ' ' << zeros;
        }
    }
}

TEST(Base58, RefusesAnyCharacterOutsideTheAlphabet)
{
    const QString refused[] = {
        u" 2g"_s,    u"2g "_s,    u"2 g"_s, u"2g\n"_s,       u"0"_s,        u"O"_s,
        u"I"_s,      u"l"_s,      u"1l"_s,  u"2\u0000"_s,    u"\u0661"_s,   u"2\u0301"_s,
        u"\uFF12"_s, u"\u0132"_s, u"-"_s,   u"\U0001F600"_s, u"111\u00B2"_s};
    for (const QString &text : refused) {
        SCOPED_TRACE(text.toStdString());
        EXPECT_FALSE(Base58::decode(text));
        EXPECT_FALSE(Base58::decodeSecret(text));
    }
}

TEST(Base58, AcceptsAsAnAddressOnlyThirtyTwoBytes)
{
    const auto encoded = [](std::size_t size, std::uint8_t fill) {
        return Base58::encode(Bytes(size, fill));
    };
    const QString mint = u"EPjFWdd5AufqSSqeM2qN1xzybapC8G4wEGGkZwyTDt1v"_s;
    const struct
    {
        const char *what;
        QString text;
        bool valid;
    } cases[] = {
        {"the system program", u"1"_s.repeated(32), true},
        {"a mint", mint, true},
        {"the greatest 32-byte value", encoded(32, 0xFF), true},
        {"empty", u""_s, false},
        {"31 zero bytes", u"1"_s.repeated(31), false},
        {"33 zero bytes", u"1"_s.repeated(33), false},
        {"32 characters of fewer bytes", u"2"_s.repeated(32), false},
        {"44 characters of 33 bytes", u"z"_s.repeated(44), false},
        {"45 characters", u"1"_s + mint, false},
        {"31 bytes", encoded(31, 0xFF), false},
        {"a 64-byte secret key", encoded(64, 7), false},
        {"a line break behind", mint.chopped(1) + u"\n"_s, false},
        {"a trailing line break", mint + u"\n"_s, false},
        {"a blank in front", u" "_s + mint.chopped(1), false},
        {"a letter that is no digit", u"l"_s + mint.sliced(1), false},
    };
    for (const auto &[what, text, valid] : cases) {
        SCOPED_TRACE(what);
        EXPECT_EQ(Base58::isValidAddress(text), valid);
    }
}

} // namespace
