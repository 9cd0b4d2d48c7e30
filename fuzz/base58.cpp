// Bytes converted to Base58 and back, and texts that may be Base58.

#include "keys/base58.h"
#include "fuzz/property.h"
#include "keys/address.h"

#include <algorithm>

using corvane::fuzz::require;
using corvane::keys::Address;
using corvane::keys::Base58;

namespace {

template <typename Secret>
bool areSame(const Secret &secret, std::span<const std::uint8_t> bytes)
{
    return std::ranges::equal(secret.bytes(), bytes);
}

void checkBytes(std::span<const std::uint8_t> bytes)
{
    const QString text = Base58::encode(bytes);
    const auto back = Base58::decode(text);
    require(back && std::ranges::equal(*back, bytes));
    const QByteArray latin1 = text.toLatin1();
    require(
        areSame(Base58::encodeSecret(bytes), {reinterpret_cast<const std::uint8_t *>(latin1.data()),
                                              static_cast<std::size_t>(latin1.size())}));
    require(Address::fromText(text).has_value() == (bytes.size() == 32));
}

void checkText(const QString &text)
{
    const auto bytes = Base58::decode(text);
    const auto secret = Base58::decodeSecret(text);
    require(bytes.has_value() == secret.has_value());
    require(bytes.has_value() == std::ranges::all_of(text, [](QChar c) {
                return std::ranges::find(Base58::alphabet, c.toLatin1()) !=
                           Base58::alphabet.end() &&
                       c.unicode() < 128;
            }));
    const auto address = Address::fromText(text);
    require(address.has_value() == (bytes && bytes->size() == 32));
    if (bytes) {
        require(Base58::encode(*bytes) == text);
        require(areSame(*secret, *bytes));
        require(!address || std::ranges::equal(address->bytes(), *bytes));
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    // The running time is quadratic, and callers limit the size.
    constexpr std::size_t longest = 100;
    if (size > longest) {
        return -1;
    }
    checkBytes({data, size});
    checkText(corvane::fuzz::Input(data, size).takeText());
    return 0;
}
