#pragma once

#include "keys/address.h"
#include "keys/lamports.h"
#include "platform/signing_keys.h"

#include <QByteArray>

#include <array>
#include <cstdint>
#include <vector>

namespace corvane::keys {

/// The hash of a block: which moment of the cluster's history a transaction belongs to.
struct Blockhash
{
    std::array<std::uint8_t, 32> bytes{};

    [[nodiscard]] bool operator==(const Blockhash &) const = default;
};

/// One transfer of SOL by the System Program.
struct Transfer
{
    /// Pays the amount and the fee, and signs.
    platform::PublicKey sender;
    Address recipient;
    Lamports amount;
    /// A recent one; the cluster forgets it after some 150 slots, and with it the transaction.
    Blockhash recentBlockhash;
};

/// Appends `length` in Solana's compact form: seven bits a byte, lowest first, the high bit set on
/// all but the last.
void appendCompactLength(std::vector<std::uint8_t> &bytes, std::size_t length);

/// The legacy message that is signed, 150 bytes.
[[nodiscard]] std::vector<std::uint8_t> transferMessage(const Transfer &transfer);

/// The transaction as it is sent: one signature, then the message; standard Base64 with padding.
[[nodiscard]] QByteArray signedTransaction(const platform::Signature &signature,
                                           const std::vector<std::uint8_t> &message);

} // namespace corvane::keys
