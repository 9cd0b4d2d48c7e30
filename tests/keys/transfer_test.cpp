#include "keys/transfer_signer.h"

#include "platform/sodium_signing_keys.h"
#include "tests/fakes/secrets.h"

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
    // RFC 8032, section 7.1, TEST 2.
    const auto seed = platform::SecretBytes::copyOf(
        fromHex("4ccd089b28ff96da9db6c346ec114e0f5b8a319f35aba624da8cf6ed4fb8a6fb"));
    EXPECT_TRUE(std::ranges::equal(
        keys.publicKey(seed).value().bytes,
        fromHex("3d4017c3e843895a92b70aa74d1b7ebc9c982ccf2ec4968cc0cd55f12af4660c")));
    EXPECT_TRUE(std::ranges::equal(
        keys.signer(seed)->sign(fromHex("72")).bytes,
        fromHex("92a009a9f0d4cab8720e820b5f642540a2b27b5416503f8fb3762223ebdb69da"
                "085ac1e43e15996e458f3613d0f11d8c387b2eaeb4302aeeb00d291612bb0c00")));
    for (const std::size_t size : {0U, 31U, 33U, 64U}) {
        EXPECT_FALSE(keys.publicKey(platform::SecretBytes(size)));
        EXPECT_FALSE(keys.signer(platform::SecretBytes(size)));
    }
    EXPECT_FALSE(keys.makeSeed() == keys.makeSeed());
}

TEST(Transfer, LiesInItsMessageByteForByte)
{
    const auto filled = [](std::uint8_t byte) {
        std::array<std::uint8_t, 32> bytes{};
        bytes.fill(byte);
        return bytes;
    };
    const Transfer transfer{.sender = {filled(0x11)},
                            .recipient = Address(platform::PublicKey{filled(0x22)}),
                            .amount = Lamports(0x0102030405060708),
                            .recentBlockhash = {filled(0x33)}};
    const auto repeated = [](const char *byte) {
        return QByteArray(byte).repeated(32).toStdString();
    };
    const auto message = transferMessage(transfer);
    EXPECT_EQ(message,
              fromHex("01000103" + repeated("11") + repeated("22") + repeated("00") +
                      repeated("33") + "0102" + "020001" + "0c" + "02000000" + "0807060504030201"));
    EXPECT_EQ(message.size(), 150U);

    platform::Signature signature;
    signature.bytes.fill(0x44);
    const QByteArray transaction = signedTransaction(signature, message);
    EXPECT_EQ(transaction.size(), 288);
    const QByteArray raw =
        QByteArray::fromBase64(transaction, QByteArray::AbortOnBase64DecodingErrors);
    ASSERT_EQ(raw.size(), 215);
    EXPECT_EQ(raw.first(65), QByteArray(1, 1) + QByteArray(64, 0x44));
}

TEST(TransferSigner, SignsItsOwnPaymentWithTheKeyOfItsSeed)
{
    const platform::SodiumSigningKeys keys;
    const platform::SecretBytes seed = tests::seedOf(7);
    const Address recipient(keys.publicKey(tests::seedOf(8)).value());
    auto signer = TransferSigner::make(keys, seed, recipient, Lamports(9));
    ASSERT_TRUE(signer);
    EXPECT_EQ(signer->sender(), keys.publicKey(seed));

    const Transfer transfer{*keys.publicKey(seed), recipient, Lamports(9), {{1, 2, 3}}};
    const SignedTransfer made = (*std::move(signer)).sign(transfer.recentBlockhash);
    EXPECT_EQ(made.transfer, transfer);
    EXPECT_EQ(made.signature, keys.signer(seed)->sign(transferMessage(transfer)));

    for (const std::size_t size : {0U, 31U, 33U, 64U}) {
        EXPECT_FALSE(
            TransferSigner::make(keys, platform::SecretBytes(size), recipient, Lamports(9)));
    }
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
