#pragma once

#include "platform/keychain.h"

#include <QString>

#include <variant>

namespace corvane::core {

/// Why an operation on the key or a transfer failed. The description is shown to the user
/// unchanged.
class SendError
{
public:
    /// The kind of error, for code; users see the description.
    enum class Kind {
        Rpc,          ///< the cluster or the keychain; with a text of its own
        BadKey,       ///< not a secret key
        Locked,       ///< the user did not open the key
        BadRecipient, ///< not an address
        BadAmount,    ///< not greater than 0
    };

    [[nodiscard]] static SendError rpc(const QString &text) { return {Kind::Rpc, text}; }
    [[nodiscard]] static SendError badKey() { return {Kind::BadKey, {}}; }
    [[nodiscard]] static SendError locked() { return {Kind::Locked, {}}; }
    [[nodiscard]] static SendError badRecipient() { return {Kind::BadRecipient, {}}; }
    [[nodiscard]] static SendError badAmount() { return {Kind::BadAmount, {}}; }
    /// The keychain failed to store a key.
    [[nodiscard]] static SendError keychainRefused(platform::KeychainStatus status);

    [[nodiscard]] Kind kind() const { return m_kind; }
    /// In English: one sentence, or the server's error message.
    [[nodiscard]] QString description() const;
    [[nodiscard]] bool operator==(const SendError &) const = default;

private:
    SendError(Kind kind, QString text)
        : m_kind(kind)
        , m_text(std::move(text))
    {}

    Kind m_kind;
    QString m_text;
};

/// The result of an operation, or why it failed.
template <typename Value>
using SendResult = std::variant<Value, SendError>;

} // namespace corvane::core
