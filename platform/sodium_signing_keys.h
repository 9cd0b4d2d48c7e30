#pragma once

#include "platform/signing_keys.h"

namespace corvane::platform {

/// Ed25519 with libsodium.
class SodiumSigningKeys final : public SigningKeys
{
public:
    [[nodiscard]] SecretBytes makeSeed() override;
    [[nodiscard]] std::optional<PublicKey> publicKey(const SecretBytes &seed) const override;
    [[nodiscard]] std::unique_ptr<const Signer> signer(const SecretBytes &seed) const override;
    [[nodiscard]] bool isPublicKey(const PublicKey &key) const override;
};

} // namespace corvane::platform
