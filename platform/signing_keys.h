#pragma once

#include "platform/secret_bytes.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>

namespace corvane::platform {

/// Ed25519 as of RFC 8032, on 32-byte seeds. May be called from any thread.
class SigningKeys
{
public:
    /// Bytes of an Ed25519 seed.
    static constexpr std::size_t seedSize = 32;
    using PublicKey = std::array<std::uint8_t, 32>;
    using Signature = std::array<std::uint8_t, 64>;

    SigningKeys() = default;
    SigningKeys(const SigningKeys &) = delete;
    SigningKeys &operator=(const SigningKeys &) = delete;
    virtual ~SigningKeys() = default;

    /// A fresh random seed.
    [[nodiscard]] virtual SecretBytes makeSeed() = 0;
    /// The public key of `seed`; none unless the seed has 32 bytes.
    [[nodiscard]] virtual std::optional<PublicKey> publicKey(const SecretBytes &seed) const = 0;
    /// The signature of `message`; none unless the seed has 32 bytes.
    [[nodiscard]] virtual std::optional<Signature>
    sign(const SecretBytes &seed, std::span<const std::uint8_t> message) const = 0;
};

} // namespace corvane::platform
