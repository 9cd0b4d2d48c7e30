#pragma once

#include "platform/secret_bytes.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

namespace corvane::platform {

// Types of their own, so that no two of the values that look alike can be taken for one another.

/// An Ed25519 public key.
struct PublicKey
{
    std::array<std::uint8_t, 32> bytes{};

    [[nodiscard]] bool operator==(const PublicKey &) const = default;
};

/// An Ed25519 signature.
struct Signature
{
    std::array<std::uint8_t, 64> bytes{};

    [[nodiscard]] bool operator==(const Signature &) const = default;
};

/// A key pair that signs. It is derived once, and lies in guarded memory until the signer is
/// destroyed. Thread-safe.
///
/// Signatures contain the pair's own public key. There is deliberately no way to sign with a seed
/// and a public key from elsewhere: two signatures of one message with different public keys reveal
/// the secret key.
class Signer
{
public:
    Signer() = default;
    Signer(const Signer &) = delete;
    Signer &operator=(const Signer &) = delete;
    virtual ~Signer() = default;

    [[nodiscard]] virtual PublicKey publicKey() const = 0;
    [[nodiscard]] virtual Signature sign(std::span<const std::uint8_t> message) const = 0;
};

/// Ed25519 as defined in RFC 8032, with 32-byte seeds. Thread-safe.
class SigningKeys
{
public:
    /// Size of an Ed25519 seed in bytes.
    static constexpr std::size_t seedSize = 32;

    SigningKeys() = default;
    SigningKeys(const SigningKeys &) = delete;
    SigningKeys &operator=(const SigningKeys &) = delete;
    virtual ~SigningKeys() = default;

    /// A fresh random seed.
    [[nodiscard]] virtual SecretBytes makeSeed() = 0;
    /// The public key of `seed`; empty unless the seed has 32 bytes.
    [[nodiscard]] virtual std::optional<PublicKey> publicKey(const SecretBytes &seed) const = 0;
    /// A signer with the key pair of `seed`; null unless the seed has 32 bytes.
    [[nodiscard]] virtual std::unique_ptr<const Signer> signer(const SecretBytes &seed) const = 0;
    /// True for the public key of every seed. False for nearly all other bytes: those that are not
    /// a point of the curve, or one outside its main subgroup.
    [[nodiscard]] virtual bool isPublicKey(const PublicKey &key) const = 0;
};

} // namespace corvane::platform
