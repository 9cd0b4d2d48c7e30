#include "platform/sodium_signing_keys.h"

#include <sodium.h>

namespace corvane::platform {

namespace {

struct KeyPair
{
    PublicKey publicKey;
    SecretBytes secretKey{crypto_sign_SECRETKEYBYTES};
};

std::optional<KeyPair> keyPair(const SecretBytes &seed)
{
    if (seed.size() != SigningKeys::seedSize) {
        return std::nullopt;
    }
    KeyPair pair;
    crypto_sign_seed_keypair(pair.publicKey.bytes.data(), pair.secretKey.bytes().data(),
                             seed.bytes().data());
    return pair;
}

} // namespace

SecretBytes SodiumSigningKeys::makeSeed()
{
    SecretBytes seed(seedSize);
    randombytes_buf(seed.bytes().data(), seed.size());
    return seed;
}

std::optional<PublicKey> SodiumSigningKeys::publicKey(const SecretBytes &seed) const
{
    const std::optional<KeyPair> pair = keyPair(seed);
    if (!pair) {
        return std::nullopt;
    }
    return pair->publicKey;
}

std::optional<Signature> SodiumSigningKeys::sign(const SecretBytes &seed,
                                                 std::span<const std::uint8_t> message) const
{
    const std::optional<KeyPair> pair = keyPair(seed);
    if (!pair) {
        return std::nullopt;
    }
    Signature signature;
    crypto_sign_detached(signature.bytes.data(), nullptr, message.data(), message.size(),
                         pair->secretKey.bytes().data());
    return signature;
}

bool SodiumSigningKeys::isPublicKey(const PublicKey &key) const
{
    return crypto_core_ed25519_is_valid_point(key.bytes.data()) == 1;
}

} // namespace corvane::platform
