#pragma once

#include "platform/signing_keys.h"

#include <QString>
#include <QStringView>

#include <array>
#include <cstdint>
#include <optional>

namespace corvane::keys {

/// The address of a Solana account: 32 bytes, written in Base58. They need not be a point on the
/// curve.
class Address
{
public:
    /// Parses `text` without trimming; empty unless it is the Base58 form of exactly 32 bytes. The
    /// running time is bounded, however long the text is.
    [[nodiscard]] static std::optional<Address> fromText(QStringView text);
    /// The address of the account whose signing key is `key`.
    explicit Address(const platform::PublicKey &key);

    [[nodiscard]] const QString &text() const { return m_text; }
    [[nodiscard]] const std::array<std::uint8_t, 32> &bytes() const { return m_bytes; }
    [[nodiscard]] bool operator==(const Address &) const = default;

private:
    Address(const std::array<std::uint8_t, 32> &bytes, QString text);

    std::array<std::uint8_t, 32> m_bytes;
    QString m_text;
};

} // namespace corvane::keys
