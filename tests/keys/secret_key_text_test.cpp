#include "keys/secret_key_text.h"

#include "keys/base58.h"

#include <QByteArray>
#include <QStringList>

#include <gtest/gtest.h>

#include <numeric>

namespace corvane::keys {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes counting(std::size_t size, std::uint8_t first)
{
    Bytes bytes(size);
    std::iota(bytes.begin(), bytes.end(), first);
    return bytes;
}

QString base58(std::size_t size)
{
    return Base58::encode(counting(size, 1));
}

QString array(std::size_t size, const QStringList &first = {})
{
    QStringList numbers = first;
    for (std::size_t index = static_cast<std::size_t>(first.size()); index < size; ++index) {
        numbers.append(QString::number(index + 1));
    }
    return u'[' + numbers.join(u',') + u']';
}

Bytes bytesOf(const std::optional<platform::SecretBytes> &secret)
{
    return secret ? Bytes(secret->bytes().begin(), secret->bytes().end()) : Bytes();
}

TEST(SecretKeyText, ReadsEveryFormThatWalletsWrite)
{
    Bytes wrapped = counting(32, 1);
    wrapped[0] = 44;
    wrapped[1] = 255;
    wrapped[2] = 0;
    struct Case
    {
        const char *name;
        QString text;
        Bytes seed;
    };
    const Case cases[] = {
        {"Base58 of 64 bytes", base58(64), counting(32, 1)},
        {"Base58 of 32 bytes", base58(32), counting(32, 1)},
        {"blanks and line breaks around it",
         QStringLiteral("\n \t") + base58(64) + QStringLiteral("\u00a0\r\n"), counting(32, 1)},
        {"array of 64", array(64), counting(32, 1)},
        {"array of 32", array(32), counting(32, 1)},
        {"array with blanks in and around it",
         QStringLiteral("  ") + array(64).replace(QStringLiteral(","), QStringLiteral(" ,\n\t")) +
             QStringLiteral(" \n"),
         counting(32, 1)},
        {"array with numbers beyond a byte",
         array(64, {QStringLiteral("300"), QStringLiteral("-1"), QStringLiteral("256")}), wrapped},
        {"array with the largest numbers",
         array(32, {QStringLiteral("9223372036854775596"), QStringLiteral("-9223372036854775553"),
                    QStringLiteral("-9223372036854775808")}),
         wrapped},
    };
    for (const Case &expected : cases) {
        SCOPED_TRACE(expected.name);
        EXPECT_EQ(bytesOf(seedFromText(expected.text)), expected.seed);
    }
}

TEST(SecretKeyText, RefusesEverythingElse)
{
    const QString refused[] = {
        {},
        QStringLiteral("   "),
        base58(31),
        base58(33),
        base58(63),
        base58(65),
        base58(64) + u'0',
        base58(32) + u' ' + base58(32),
        QString(100'000, u'z'),
        array(0),
        array(31),
        array(63),
        array(65),
        array(64).chopped(1),
        array(64) + u'x',
        array(64).replace(QStringLiteral(",7,"), QStringLiteral(",7,,")),
        array(64).replace(QStringLiteral("64]"), QStringLiteral("64,]")),
        array(64, {QStringLiteral("\"1\"")}),
        array(64, {QStringLiteral("1.5")}),
        array(64, {QStringLiteral("1e1")}),
        array(64, {QStringLiteral("01")}),
        array(64, {QStringLiteral("-")}),
        array(64, {QStringLiteral("- 1")}),
        array(64, {QStringLiteral("null")}),
        array(64, {QStringLiteral("[1]")}),
        array(64, {QStringLiteral("9223372036854775808")}),
        array(64, {QStringLiteral("-9223372036854775809")}),
        QStringLiteral("[") + QString(1'000'000, u'['),
        QStringLiteral("{\"0\":1}"),
    };
    for (const QString &text : refused) {
        EXPECT_FALSE(seedFromText(text)) << text.left(60).toStdString();
    }
}

TEST(SecretKeyText, ReadsTheBackupThatItWrites)
{
    const auto seed = platform::SecretBytes::copyOf(counting(32, 9));
    platform::SigningKeys::PublicKey publicKey{};
    std::iota(publicKey.begin(), publicKey.end(), std::uint8_t{100});
    const platform::SecretBytes text = backupText(seed, publicKey);
    const QString shown = QString::fromLatin1(reinterpret_cast<const char *>(text.bytes().data()),
                                              static_cast<qsizetype>(text.size()));
    Bytes both = counting(32, 9);
    both.insert(both.end(), publicKey.begin(), publicKey.end());
    EXPECT_EQ(Base58::decode(shown), both);
    EXPECT_EQ(seedFromText(shown), seed);
}

} // namespace
} // namespace corvane::keys
