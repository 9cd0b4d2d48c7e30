#pragma once

#include "platform/keychain.h"

#include <mutex>
#include <vector>

namespace corvane::platform {

/// A keychain that keeps its items in this process's memory only, for demos and tests.
///
/// It never prompts: a protected item can be read with any prompt, or with a context that has
/// passed. `protection` therefore says `None` of every item. Thread-safe.
class InMemoryKeychain : public Keychain
{
public:
    [[nodiscard]] KeychainStatus add(const QString &service, const QString &account,
                                     const SecretBytes &data,
                                     KeychainProtection protection) override;
    [[nodiscard]] std::optional<SecretBytes> copyData(const QString &service,
                                                      const PresencePrompt &prompt) override;
    [[nodiscard]] std::optional<SecretBytes> copyData(const QString &service,
                                                      AuthenticationContext &context) override;
    [[nodiscard]] std::optional<QString> copyAccount(const QString &service) const override;
    [[nodiscard]] std::optional<QString> rememberedAccount(const QString &service) const override
    {
        return copyAccount(service);
    }
    [[nodiscard]] std::optional<KeychainProtection>
    protection(const QString &service) const override;
    KeychainStatus remove(const QString &service) override;

private:
    struct Item
    {
        QString service;
        QString account;
        SecretBytes data;
        KeychainProtection protection = KeychainProtection::None;
    };

    [[nodiscard]] const Item *find(const QString &service) const;

    /// Needed because background threads read.
    mutable std::mutex m_mutex;
    std::vector<Item> m_items;
};

} // namespace corvane::platform
