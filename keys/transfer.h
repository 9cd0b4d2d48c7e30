#pragma once

#include "keys/address.h"
#include "keys/lamports.h"
#include "platform/signing_keys.h"

#include <QByteArray>

#include <array>
#include <cstdint>
#include <vector>

namespace corvane::keys {

/// The hash of a block, which a transaction must contain to prove that it is recent.
struct Blockhash
{
    std::array<std::uint8_t, 32> bytes{};

    [[nodiscard]] bool operator==(const Blockhash &) const = default;
};

/// One transfer of SOL by the System Program.
struct Transfer
{
    /// Pays the amount and the fee, and must sign.
    platform::PublicKey sender;
    Address recipient;
    Lamports amount;
    /// A recent blockhash; the cluster rejects the transaction when it is older than about 150
    /// slots.
    Blockhash recentBlockhash;

    [[nodiscard]] bool operator==(const Transfer &) const = default;
};

/// A transfer with its sender's signature.
struct SignedTransfer
{
    Transfer transfer;
    platform::Signature signature;
};

/// The most digits that a signature's 64 bytes have in Base58.
inline constexpr qsizetype longestSignature = 88;

/// Appends `length` in Solana's compact encoding: seven bits per byte, lowest first; the high bit
/// is set in all bytes except the last.
void appendCompactLength(std::vector<std::uint8_t> &bytes, std::size_t length);

/// The legacy message that is signed, 150 bytes.
[[nodiscard]] std::vector<std::uint8_t> transferMessage(const Transfer &transfer);

/// The encoded transaction: one signature, then the message; standard Base64 with padding.
[[nodiscard]] QByteArray signedTransaction(const platform::Signature &signature,
                                           const std::vector<std::uint8_t> &message);

} // namespace corvane::keys
