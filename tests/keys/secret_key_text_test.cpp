#include "keys/secret_key_text.h"

#include "keys/base58.h"
#include "tests/fakes/secrets.h"
#include "tests/fakes/table.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <numeric>

namespace corvane::keys {
namespace {

using namespace Qt::StringLiterals;
using platform::SecretBytes;
using Bytes = std::vector<std::uint8_t>;

Bytes counting(std::size_t size, std::uint8_t first = 1)
{
    Bytes bytes(size);
    std::iota(bytes.begin(), bytes.end(), first);
    return bytes;
}

QString base58(std::size_t size)
{
    return Base58::encode(counting(size));
}

/// A JSON array of `size` numbers: those in `first`, then 1, 2, 3 and so on.
QString array(qsizetype size, const QStringList &first = {})
{
    QStringList numbers = first;
    while (numbers.size() < size) {
        numbers.append(QString::number(numbers.size() + 1));
    }
    return u'[' + numbers.join(u',') + u']';
}

TEST(SecretKeyText, ReadsEveryFormThatWalletsWrite)
{
    const Bytes plain = counting(32);
    Bytes wrapped = plain;
    wrapped[0] = 44;
    wrapped[1] = 255;
    wrapped[2] = 0;
    for (const auto &[text, seed] : tests::Table<QString, Bytes>{
             {base58(32), plain},
             {u"\n \t"_s + base58(64) + u"\u00a0\r\n"_s, plain},
             {array(32), plain},
             {u"  "_s + array(64).replace(u","_s, u" ,\n\t"_s) + u" \n"_s, plain},
             {array(64, {u"300"_s, u"-1"_s, u"256"_s}), wrapped},
             {array(32, {u"9223372036854775596"_s, u"-9223372036854775553"_s,
                         u"-9223372036854775808"_s}),
              wrapped},
         }) {
        EXPECT_EQ(seedFromText(text), SecretBytes::copyOf(seed)) << text.toStdString();
    }
}

TEST(SecretKeyText, RefusesEverythingElse)
{
    QStringList refused = {{},
                           u"   "_s,
                           base58(64) + u'0',
                           base58(32) + u' ' + base58(32),
                           QString(100'000, u'z'),
                           array(64).chopped(1),
                           array(64) + u'x',
                           array(64).replace(u",7,"_s, u",7,,"_s),
                           array(64).replace(u"64]"_s, u"64,]"_s),
                           u"["_s + QString(1'000'000, u'['),
                           u"{\"0\":1}"_s};
    for (const std::size_t size : {0U, 31U, 33U, 63U, 65U}) {
        refused << base58(size) << array(static_cast<qsizetype>(size));
    }
    for (const QString &number :
         {u"\"1\""_s, u"1.5"_s, u"1e1"_s, u"01"_s, u"-"_s, u"- 1"_s, u"null"_s, u"[1]"_s,
          u"9223372036854775808"_s, u"-9223372036854775809"_s}) {
        refused << array(64, {number});
    }
    for (const QString &text : std::as_const(refused)) {
        EXPECT_FALSE(seedFromText(text)) << text.left(60).toStdString();
    }
}

TEST(SecretKeyText, ReadsTheBackupThatItWrites)
{
    const auto seed = SecretBytes::copyOf(counting(32, 9));
    platform::PublicKey publicKey;
    std::iota(publicKey.bytes.begin(), publicKey.bytes.end(), std::uint8_t{41});
    const QString shown = tests::textOf(backupText(seed, publicKey));
    EXPECT_EQ(Base58::decode(shown), counting(64, 9));
    EXPECT_EQ(seedFromText(shown), seed);
}

} // namespace
} // namespace corvane::keys
