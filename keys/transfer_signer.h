#pragma once

#include "keys/transfer.h"

#include <memory>
#include <optional>

namespace corvane::keys {

/// The key for one payment. The recipient and the amount are fixed when it is made, before anything
/// is known from a cluster; it builds the message itself and signs nothing else, and only once.
///
/// The key pair lies in guarded memory until it has signed or is destroyed.
class TransferSigner
{
public:
    /// Empty unless `seed` has 32 bytes.
    [[nodiscard]] static std::optional<TransferSigner> make(const platform::SigningKeys &keys,
                                                            const platform::SecretBytes &seed,
                                                            Address recipient, Lamports amount);

    /// The public key, from which the payment is made.
    [[nodiscard]] platform::PublicKey sender() const { return m_signer->publicKey(); }
    /// Signs the payment and wipes the key pair.
    [[nodiscard]] SignedTransfer sign(const Blockhash &recentBlockhash) &&;

private:
    TransferSigner(std::unique_ptr<const platform::Signer> signer, Address recipient,
                   Lamports amount);

    std::unique_ptr<const platform::Signer> m_signer;
    Address m_recipient;
    Lamports m_amount;
};

} // namespace corvane::keys
