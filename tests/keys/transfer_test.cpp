#include "keys/transfer.h"

#include "platform/sodium_signing_keys.h"
#include "tests/fakes/table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <string>

namespace corvane::keys {
namespace {

std::vector<std::uint8_t> fromHex(const std::string &hex)
{
    const QByteArray bytes = QByteArray::fromHex(QByteArray::fromStdString(hex));
    return {bytes.begin(), bytes.end()};
}

TEST(SigningKeys, AgreesWithRfc8032)
{
    platform::SodiumSigningKeys keys;
    // Section 7.1, TEST 1 and 3: seed, public key, message, signature.
    for (const auto &[seedHex, publicKeyHex, message, signatureHex] :
         tests::Table<const char *, const char *, const char *, const char *>{
             {"9d61b19deffd5a60ba844af492ec2cc44449c5697b326919703bac031cae7f60",
              "d75a980182b10ab7d54bfed3c964073a0ee172f3daa62325af021a68f707511a", "",
              "e5564300c360ac729086e2cc806e828a84877f1eb8e5d974d873e06522490155"
              "5fb8821590a33bacc61e39701cf9b46bd25bf5f0595bbe24655141438e7a100b"},
             {"c5aa8df43f9f837bedb7442f31dcb7b166d38535076f094b85ce3a2e0b4458f7",
              "fc51cd8e6218a1a38da47ed00230f0580816ed13ba3303ac5deb911548908025", "af82",
              "6291d657deec24024827e69c3abe01a30ce548a284743a445e3680d7db5ac3ac"
              "18ff9b538d16f290ae67f760984dc6594a7c15e9716ed28dc027beceea1ec40a"},
         }) {
        const auto seed = platform::SecretBytes::copyOf(fromHex(seedHex));
        EXPECT_TRUE(std::ranges::equal(keys.publicKey(seed).value(), fromHex(publicKeyHex)));
        EXPECT_TRUE(
            std::ranges::equal(keys.sign(seed, fromHex(message)).value(), fromHex(signatureHex)));
    }
    for (const std::size_t size : {0U, 31U, 33U, 64U}) {
        EXPECT_FALSE(keys.publicKey(platform::SecretBytes(size)));
        EXPECT_FALSE(keys.sign(platform::SecretBytes(size), {}));
    }
    EXPECT_FALSE(keys.makeSeed() == keys.makeSeed());
}

TEST(Transfer, LiesInItsMessageByteForByte)
{
    Transfer transfer;
    transfer.sender.fill(0x11);
    transfer.recipient.fill(0x22);
    transfer.recentBlockhash.fill(0x33);
    transfer.amount = Lamports(0x0102030405060708);
    const auto repeated = [](const char *byte) {
        return QByteArray(byte).repeated(32).toStdString();
    };
    const auto message = transferMessage(transfer);
    EXPECT_EQ(message,
              fromHex("01000103" + repeated("11") + repeated("22") + repeated("00") +
                      repeated("33") + "0102" + "020001" + "0c" + "02000000" + "0807060504030201"));
    EXPECT_EQ(message.size(), 150U);

    Signature signature{};
    signature.fill(0x44);
    const QByteArray transaction = signedTransaction(signature, message);
    EXPECT_EQ(transaction.size(), 288);
    const QByteArray raw =
        QByteArray::fromBase64(transaction, QByteArray::AbortOnBase64DecodingErrors);
    ASSERT_EQ(raw.size(), 215);
    EXPECT_EQ(raw.first(65), QByteArray(1, 1) + QByteArray(64, 0x44));
}

TEST(Transfer, WritesCompactLengths)
{
    for (const auto &[length, bytes] :
         {std::pair{0U, "00"}, {127U, "7f"}, {128U, "8001"}, {300U, "ac02"}, {16'384U, "808001"}}) {
        std::vector<std::uint8_t> written;
        appendCompactLength(written, length);
        EXPECT_EQ(written, fromHex(bytes)) << length;
    }
}

TEST(Lamports, RoundsToTheNearestAndStopsAtWhatDoesNotFit)
{
    for (const auto &[sol, lamports] : {std::pair{1.0, std::uint64_t{1'000'000'000}},
                                        {0.0000000005, 1},
                                        {0.0000000004, 0},
                                        {0.1 + 0.2, 300'000'000},
                                        {1.5e-9, 2},
                                        {9'007'199.254740993, 9'007'199'254'740'992},
                                        {18'446'744'073.0, 18'446'744'072'999'999'488U},
                                        {-0.0000000004, 0}}) {
        EXPECT_EQ(Lamports::fromSol(sol).count(), lamports) << sol;
    }
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (const double sol : {18'446'744'073.709552, 1e300, infinity, -infinity, -1e-9,
                             std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_DEATH(static_cast<void>(Lamports::fromSol(sol)), "does not fit") << sol;
    }
}

} // namespace
} // namespace corvane::keys
