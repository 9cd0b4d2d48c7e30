#include "keys/transfer_signer.h"

#include <utility>

namespace corvane::keys {

std::optional<TransferSigner> TransferSigner::make(const platform::SigningKeys &keys,
                                                   const platform::SecretBytes &seed,
                                                   Address recipient, Lamports amount)
{
    auto signer = keys.signer(seed);
    return signer ? std::optional(TransferSigner(std::move(signer), std::move(recipient), amount))
                  : std::nullopt;
}

TransferSigner::TransferSigner(std::unique_ptr<const platform::Signer> signer, Address recipient,
                               Lamports amount)
    : m_signer(std::move(signer))
    , m_recipient(std::move(recipient))
    , m_amount(amount)
{}

SignedTransfer TransferSigner::sign(const Blockhash &recentBlockhash) &&
{
    const auto signer = std::move(m_signer);
    const Transfer transfer{signer->publicKey(), m_recipient, m_amount, recentBlockhash};
    return {transfer, signer->sign(transferMessage(transfer))};
}

} // namespace corvane::keys
