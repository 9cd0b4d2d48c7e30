#include "keys/address.h"
#include "keys/base58.h"
#include "tests/fakes/secrets.h"
#include "tests/fakes/table.h"

#include <gtest/gtest.h>

#include <random>

using corvane::keys::Address;
using corvane::keys::Base58;
using namespace corvane::tests;
using namespace Qt::StringLiterals;

namespace {

using Bytes = std::vector<std::uint8_t>;

TEST(Base58, MatchesPublishedVectorsBothWays)
{
    // Bitcoin's test vectors, then further cases: the first carry, leading zero bytes and a
    // well-known 32-byte program id.
    for (const auto &[hex, text] : Table<const char *, QString>{
             {"", u""_s},
             {"61", u"2g"_s},
             {"73696d706c792061206c6f6e6720737472696e67", u"2cFupjhnEsSn59qHXstmK2ffpLv2"_s},
             {"00eb15231dfceb60925886b67d065299925915aeb172c06647",
              u"1NS17iag9jJgTHD1VXjvLCEnZuQ3rJDE9L"_s},
             {"bf4f89001e670274dd", u"3SEo3LWLoPntC"_s},
             {"00000000000000000000", u"1111111111"_s},
             {"3a", u"21"_s},
             {"0000ff", u"115Q"_s},
             {"06ddf6e1d765a193d9cbe146ceeb79ac1cb485ed5f5b37913a8cf5857eff00a9",
              u"TokenkegQfeZyiNwAJbNbGKPFXCWuBvf9Ss623VQ5DA"_s},
         }) {
        SCOPED_TRACE(hex);
        const QByteArray raw = QByteArray::fromHex(hex);
        const Bytes bytes(raw.begin(), raw.end());
        EXPECT_EQ(Base58::encode(bytes), text);
        EXPECT_EQ(Base58::decode(text), bytes);
        EXPECT_EQ(textOf(Base58::encodeSecret(bytes)), text);
        EXPECT_EQ(Base58::decodeSecret(text), corvane::platform::SecretBytes::copyOf(bytes));
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
    for (const QString &text :
         {u" 2g"_s, u"2g "_s, u"2 g"_s, u"2g\n"_s, u"0"_s, u"O"_s, u"I"_s, u"1l"_s, u"2\u0000"_s,
          u"\u0661"_s, u"2\u0301"_s, u"\uFF12"_s, u"\u0132"_s, u"\U0001F600"_s}) {
        EXPECT_FALSE(Base58::decode(text)) << text.toStdString();
        EXPECT_FALSE(Base58::decodeSecret(text)) << text.toStdString();
    }
}

TEST(Address, IsExactlyThirtyTwoBytes)
{
    const auto filled = [](std::size_t size, std::uint8_t fill) {
        return Base58::encode(Bytes(size, fill));
    };
    const QString mint = u"EPjFWdd5AufqSSqeM2qN1xzybapC8G4wEGGkZwyTDt1v"_s;
    for (const auto &[text, valid] : Table<QString, bool>{
             {u"1"_s.repeated(32), true},
             {mint, true},
             {filled(32, 0xFF), true},
             {u"1"_s.repeated(31), false},
             {u"1"_s.repeated(33), false},
             {u"2"_s.repeated(32), false},
             {u"z"_s.repeated(44), false},
             {u"1"_s + mint, false},
             {mint.chopped(1) + u"\n"_s, false},
             {u" "_s + mint.chopped(1), false},
             {u"l"_s + mint.sliced(1), false},
         }) {
        EXPECT_EQ(Address::fromText(text).has_value(), valid) << text.toStdString();
    }
}

} // namespace
