#pragma once

#include "platform/secret_bytes.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>

namespace corvane::platform {

/// Ed25519 as defined in RFC 8032, with 32-byte seeds. Thread-safe.
class SigningKeys
{
public:
    /// Size of an Ed25519 seed in bytes.
    static constexpr std::size_t seedSize = 32;
    using PublicKey = std::array<std::uint8_t, 32>;
    using Signature = std::array<std::uint8_t, 64>;

    SigningKeys() = default;
    SigningKeys(const SigningKeys &) = delete;
    SigningKeys &operator=(const SigningKeys &) = delete;
    virtual ~SigningKeys() = default;

    /// A fresh random seed.
    [[nodiscard]] virtual SecretBytes makeSeed() = 0;
    /// The public key of `seed`; empty unless the seed has 32 bytes.
    [[nodiscard]] virtual std::optional<PublicKey> publicKey(const SecretBytes &seed) const = 0;
    /// The signature of `message`; empty unless the seed has 32 bytes.
    [[nodiscard]] virtual std::optional<Signature>
    sign(const SecretBytes &seed, std::span<const std::uint8_t> message) const = 0;
};

} // namespace corvane::platform
