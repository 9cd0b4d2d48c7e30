// Prints signed transfers of random but repeatable keys, recipients, blockhashes and amounts, one
// JSON object a line, for an independent library to read and to build again.

#include "keys/base58.h"
#include "keys/transfer.h"
#include "platform/sodium_signing_keys.h"

#include <cstdio>
#include <cstdlib>
#include <random>

int main(int argc, char *argv[])
{
    using namespace corvane;
    const int count = argc > 1 ? std::atoi(argv[1]) : 10;
    std::mt19937_64 random(1);
    const auto fill = [&](auto &bytes) {
        for (std::uint8_t &byte : bytes) {
            byte = static_cast<std::uint8_t>(random());
        }
    };
    platform::SodiumSigningKeys signingKeys;
    for (int index = 0; index < count; ++index) {
        platform::SecretBytes seed(32);
        auto seedBytes = seed.bytes();
        fill(seedBytes);
        keys::Transfer transfer;
        transfer.sender = signingKeys.publicKey(seed).value();
        fill(transfer.recipient);
        fill(transfer.recentBlockhash);
        // All magnitudes, the largest included.
        transfer.amount = keys::Lamports(index == 0 ? ~std::uint64_t{0} : random() >> (index % 64));
        const auto message = keys::transferMessage(transfer);
        const auto signature = signingKeys.sign(seed, message).value();
        const auto base58 = [](const auto &bytes) {
            return keys::Base58::encode(bytes).toLatin1();
        };
        std::printf(R"({"sender":"%s","recipient":"%s","blockhash":"%s","lamports":"%llu",)"
                    R"("transaction":"%s"})"
                    "\n",
                    base58(transfer.sender).constData(), base58(transfer.recipient).constData(),
                    base58(transfer.recentBlockhash).constData(),
                    static_cast<unsigned long long>(transfer.amount.count()),
                    keys::signedTransaction(signature, message).constData());
    }
    return 0;
}
