#include "keys/address.h"

#include "keys/base58.h"

#include <utility>

namespace corvane::keys {

std::optional<Address> Address::fromText(QStringView text)
{
    if (const auto bytes = Base58::decode32(text)) {
        return Address(*bytes, text.toString());
    }
    return std::nullopt;
}

Address::Address(const platform::PublicKey &key)
    : Address(key.bytes, Base58::encode(key.bytes))
{}

Address::Address(const std::array<std::uint8_t, 32> &bytes, QString text)
    : m_bytes(bytes)
    , m_text(std::move(text))
{}

} // namespace corvane::keys
