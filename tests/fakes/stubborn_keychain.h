#pragma once

#include "platform/in_memory_keychain.h"

#include <QList>
#include <QStringList>

namespace corvane::tests {

/// A keychain whose next `add` calls fail with the given statuses, whose reads may be refused by
/// the user, which may remember no account and keep its items, and which tells any protection.
class StubbornKeychain final : public platform::InMemoryKeychain
{
public:
    [[nodiscard]] platform::KeychainStatus add(const QString &service, const QString &account,
                                               const platform::SecretBytes &data,
                                               platform::KeychainProtection protection) override
    {
        if (!failures.isEmpty()) {
            return failures.takeFirst();
        }
        return InMemoryKeychain::add(service, account, data, protection);
    }
    [[nodiscard]] std::optional<platform::SecretBytes>
    copyData(const QString &service, const platform::PresencePrompt &prompt) override
    {
        prompts.append(prompt.text);
        reasons.append(prompt.reason);
        return refuses ? std::nullopt : InMemoryKeychain::copyData(service, prompt);
    }
    using InMemoryKeychain::copyData;
    [[nodiscard]] std::optional<QString> rememberedAccount(const QString &service) const override
    {
        return forgets ? std::nullopt : InMemoryKeychain::rememberedAccount(service);
    }

    platform::KeychainStatus remove(const QString &service) override
    {
        return keeps ? platform::KeychainStatus::AuthFailed : InMemoryKeychain::remove(service);
    }
    [[nodiscard]] std::optional<platform::KeychainProtection>
    protection(const QString &) const override
    {
        return tells;
    }

    QList<platform::KeychainStatus> failures;
    QStringList prompts;
    QList<platform::PresenceReason> reasons;
    bool refuses = false;
    bool forgets = false;
    bool keeps = false;
    std::optional<platform::KeychainProtection> tells;
};

} // namespace corvane::tests
