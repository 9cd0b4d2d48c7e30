#include "platform/sodium_signing_keys.h"

#include <sodium.h>

namespace corvane::platform {

namespace {

class SodiumSigner final : public Signer
{
public:
    /// `seed` must have 32 bytes.
    explicit SodiumSigner(const SecretBytes &seed)
    {
        crypto_sign_seed_keypair(m_publicKey.bytes.data(), m_secretKey.bytes().data(),
                                 seed.bytes().data());
    }

    [[nodiscard]] PublicKey publicKey() const override { return m_publicKey; }
    [[nodiscard]] Signature sign(std::span<const std::uint8_t> message) const override
    {
        Signature signature;
        crypto_sign_detached(signature.bytes.data(), nullptr, message.data(), message.size(),
                             m_secretKey.bytes().data());
        return signature;
    }

private:
    PublicKey m_publicKey;
    /// The seed and the public key, as libsodium wants them.
    SecretBytes m_secretKey{crypto_sign_SECRETKEYBYTES};
};

} // namespace

SecretBytes SodiumSigningKeys::makeSeed()
{
    SecretBytes seed(seedSize);
    randombytes_buf(seed.bytes().data(), seed.size());
    return seed;
}

std::optional<PublicKey> SodiumSigningKeys::publicKey(const SecretBytes &seed) const
{
    const std::unique_ptr<const Signer> pair = signer(seed);
    return pair ? std::optional(pair->publicKey()) : std::nullopt;
}

std::unique_ptr<const Signer> SodiumSigningKeys::signer(const SecretBytes &seed) const
{
    return seed.size() == seedSize ? std::make_unique<SodiumSigner>(seed) : nullptr;
}

bool SodiumSigningKeys::isPublicKey(const PublicKey &key) const
{
    return crypto_core_ed25519_is_valid_point(key.bytes.data()) == 1;
}

} // namespace corvane::platform
