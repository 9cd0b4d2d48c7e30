#include "platform/in_memory_keychain.h"

#include "platform/authenticator.h"

#include <algorithm>

namespace corvane::platform {

KeychainStatus InMemoryKeychain::add(const QString &service, const QString &account,
                                     const SecretBytes &data, KeychainProtection protection)
{
    const std::scoped_lock lock(m_mutex);
    const bool exists = std::ranges::any_of(m_items, [&](const Item &item) {
        return item.service == service && item.account == account;
    });
    if (exists) {
        return KeychainStatus::DuplicateItem;
    }
    m_items.push_back({service, account, data.clone(), protection});
    return KeychainStatus::Success;
}

std::optional<SecretBytes> InMemoryKeychain::copyData(const QString &service,
                                                      const PresencePrompt &)
{
    const std::scoped_lock lock(m_mutex);
    const Item *item = find(service);
    return item != nullptr ? std::optional(item->data.clone()) : std::nullopt;
}

std::optional<SecretBytes> InMemoryKeychain::copyData(const QString &service,
                                                      AuthenticationContext &context)
{
    const std::scoped_lock lock(m_mutex);
    const Item *item = find(service);
    if (item == nullptr ||
        (item->protection == KeychainProtection::UserPresence && !context.passed())) {
        return std::nullopt;
    }
    return item->data.clone();
}

std::optional<QString> InMemoryKeychain::copyAccount(const QString &service) const
{
    const std::scoped_lock lock(m_mutex);
    const Item *item = find(service);
    return item != nullptr ? std::optional(item->account) : std::nullopt;
}

std::optional<KeychainProtection> InMemoryKeychain::protection(const QString &service) const
{
    const std::scoped_lock lock(m_mutex);
    return find(service) != nullptr ? std::optional(KeychainProtection::None) : std::nullopt;
}

KeychainStatus InMemoryKeychain::remove(const QString &service)
{
    const std::scoped_lock lock(m_mutex);
    const auto removed =
        std::erase_if(m_items, [&](const Item &item) { return item.service == service; });
    return removed > 0 ? KeychainStatus::Success : KeychainStatus::ItemNotFound;
}

const InMemoryKeychain::Item *InMemoryKeychain::find(const QString &service) const
{
    const auto found = std::ranges::find(m_items, service, &Item::service);
    return found != m_items.end() ? &*found : nullptr;
}

} // namespace corvane::platform
