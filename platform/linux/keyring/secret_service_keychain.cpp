#include "platform/linux/keyring/secret_service_keychain.h"

#include "platform/authenticator.h"
#include "platform/linux/keyring/secret_service_conversation.h"
#include "platform/one_time_context.h"

#include <algorithm>
#include <future>
#include <thread>
#include <utility>
#include <vector>

namespace corvane::platform {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

/// Time limit for quick calls to a service that was recently too slow.
constexpr milliseconds impatientBound{200};
constexpr std::chrono::seconds impatience{10};
/// Time limit for checking whether an item was stored despite an error.
constexpr milliseconds recheckBound{500};

bool anyLocked(const std::vector<KeyringItem> &items)
{
    return std::ranges::any_of(items, [](const KeyringItem &item) { return isLocked(item); });
}

/// Waits for the reply of `start`; empty if it takes longer than `bound`.
template <typename Answer, typename Start>
std::optional<Answer> awaitReply(milliseconds bound, Start start)
{
    // Shared with the reply, which may come after this function has returned.
    const auto promise = std::make_shared<std::promise<Answer>>();
    std::future<Answer> answer = promise->get_future();
    start([promise](Answer value) { promise->set_value(value); });
    return answer.wait_for(bound) == std::future_status::ready ? std::optional(answer.get())
                                                               : std::nullopt;
}

/// True if a search without a result was complete: it included the keyring that last held the item
/// or, if that no longer exists or nothing was stored, the keyring for new items.
bool hasSeenAll(SecretServiceConversation &talk, const std::optional<RememberedAccount> &remembered)
{
    if (remembered) {
        switch (talk.lockOf(remembered->collection)) {
        case KeyringLock::Unlocked:
            return true;
        case KeyringLock::Locked:
        case KeyringLock::Unknown:
            return false;
        case KeyringLock::Missing:
            break;
        }
    }
    const KeyringCollection collection = talk.defaultCollection();
    if (collection == nullptr) {
        return !remembered && !talk.expired();
    }
    return !isLocked(collection);
}

/// The item to read, in an unlocked keyring; null if there is none.
KeyringItem findUnlocked(SecretServiceConversation &talk, const QString &service)
{
    auto items = talk.search(service);
    if (!items || items->empty() || isLocked(items->front())) {
        return nullptr;
    }
    return std::move(items->front());
}

/// Asks the user to unlock the keyring that holds the item, or, if locked keyrings hide their
/// items, the keyring for new items. False if there is nothing to unlock or if the user refused.
bool unlockKeyringOf(SecretServiceConversation &talk, const QString &service, milliseconds bound)
{
    const auto items = talk.search(service);
    if (!items) {
        return false;
    }
    if (!items->empty()) {
        return talk.unlock(items->front().get(), bound);
    }
    const KeyringCollection collection = talk.defaultCollection();
    return collection != nullptr && isLocked(collection) && talk.unlock(collection.get(), bound);
}

} // namespace

/// A conversation for a caller that must not be blocked for long.
class SecretServiceKeychain::QuickCall : public SecretServiceConversation
{
public:
    explicit QuickCall(const SecretServiceKeychain &keychain)
        : SecretServiceConversation(boundFor(keychain))
        , m_keychain(keychain)
    {}
    ~QuickCall()
    {
        if (expired()) {
            m_keychain.m_lastTimeOut = Clock::now();
        }
    }
    QuickCall(const QuickCall &) = delete;
    QuickCall &operator=(const QuickCall &) = delete;

private:
    /// Replacing a key takes several calls, and a service that hangs must not block the program in
    /// each of them.
    static milliseconds boundFor(const SecretServiceKeychain &keychain)
    {
        const Clock::time_point last = keychain.m_lastTimeOut;
        const bool hung = last != Clock::time_point() && Clock::now() - last < impatience;
        return hung ? std::min(impatientBound, keychain.m_bounds.quick) : keychain.m_bounds.quick;
    }

    const SecretServiceKeychain &m_keychain;
};

SecretServiceKeychain::SecretServiceKeychain(Authenticator &authenticator,
                                             const QString &accountsPath,
                                             SecretServiceBounds bounds)
    : m_authenticator(authenticator)
    , m_bounds(bounds)
    , m_accounts(accountsPath)
    , m_preparing(std::make_shared<std::atomic<bool>>(false))
{}

SecretServiceKeychain::~SecretServiceKeychain() = default;

KeychainStatus SecretServiceKeychain::add(const QString &service, const QString &account,
                                          const SecretBytes &data, KeychainProtection protection)
{
    if (protection == KeychainProtection::UserPresence && !canAskForPresence()) {
        return KeychainStatus::AuthFailed;
    }
    const std::scoped_lock lock(m_changing);
    QuickCall talk(*this);
    const auto existing = talk.open() ? talk.search(service) : std::nullopt;
    if (!existing) {
        return talk.status();
    }
    if (anyLocked(*existing)) {
        prepareInBackground();
        return KeychainStatus::AuthFailed;
    }
    if (!existing->empty()) {
        return KeychainStatus::DuplicateItem;
    }
    const KeyringCollection collection = talk.defaultCollection();
    if (collection == nullptr) {
        const KeychainStatus status = talk.status();
        prepareInBackground();
        return status;
    }
    const auto remembered = m_accounts.find(service);
    if (isLocked(collection) || !hasSeenAll(talk, remembered)) {
        prepareInBackground();
        return KeychainStatus::AuthFailed;
    }

    // Remembered first: if the program is killed in between, it has remembered a key that does not
    // exist, which the next read of the unlocked keyring corrects. In the other order, the key
    // would exist but would not be found while the keyring is locked.
    m_accounts.remember(service, {account, pathOf(collection)});
    if (talk.create(collection, service, account, data, protection)) {
        return KeychainStatus::Success;
    }

    // The service may have stored the item before it crashed or before it replied.
    const KeychainStatus status = talk.status();
    SecretServiceConversation recheck(recheckBound);
    const auto stored = recheck.open() ? recheck.search(service) : std::nullopt;
    if (!stored) {
        return status;
    }
    if (!stored->empty()) {
        return accountOf(stored->front()) == account ? KeychainStatus::Success : status;
    }
    m_accounts.forget(service);
    return status;
}

std::optional<SecretBytes> SecretServiceKeychain::copyData(const QString &service,
                                                           const PresencePrompt &prompt)
{
    return read(service, [&] { return askForPresence(prompt); });
}

std::optional<SecretBytes> SecretServiceKeychain::copyData(const QString &service,
                                                           AuthenticationContext &context)
{
    return read(service, [&] {
        auto *oneTime = dynamic_cast<OneTimeContext *>(&context);
        return oneTime != nullptr && oneTime->use();
    });
}

std::optional<SecretBytes> SecretServiceKeychain::read(const QString &service,
                                                       const std::function<bool()> &mayOpen) const
{
    bool opened = false;
    for (;;) {
        SecretServiceConversation talk(m_bounds.quick);
        if (!talk.open()) {
            return std::nullopt;
        }
        KeyringItem item = findUnlocked(talk, service);
        if (item == nullptr) {
            if (!unlockKeyringOf(talk, service, m_bounds.unlock)) {
                return std::nullopt;
            }
            item = findUnlocked(talk, service);
        }
        if (item == nullptr) {
            return std::nullopt;
        }
        if (opened || !isProtected(item)) {
            return talk.secretOf(item);
        }
        // The user may take minutes, so the service is looked up again afterwards.
        opened = mayOpen();
        if (!opened) {
            return std::nullopt;
        }
    }
}

std::optional<QString> SecretServiceKeychain::rememberedAccount(const QString &service) const
{
    const auto remembered = m_accounts.find(service);
    m_missedItems = !remembered;
    return remembered ? std::optional(remembered->account) : std::nullopt;
}

std::optional<QString> SecretServiceKeychain::copyAccount(const QString &service) const
{
    const std::scoped_lock lock(m_changing);
    const auto remembered = m_accounts.find(service);
    const auto fromMemory = [&] { return rememberedAccount(service); };
    QuickCall talk(*this);
    const auto items = talk.open() ? talk.search(service) : std::nullopt;
    if (!items) {
        return fromMemory();
    }
    if (!items->empty()) {
        const KeyringItem &item = items->front();
        QString account = accountOf(item);
        if (account.isEmpty()) {
            return fromMemory();
        }
        m_accounts.remember(service, {account, collectionPathOf(item)});
        m_missedItems = false;
        return account;
    }
    if (!hasSeenAll(talk, remembered)) {
        return fromMemory();
    }
    m_accounts.forget(service);
    m_missedItems = false;
    return std::nullopt;
}

std::optional<KeychainProtection> SecretServiceKeychain::protection(const QString &service) const
{
    QuickCall talk(*this);
    const KeyringItem item = talk.open() ? findUnlocked(talk, service) : nullptr;
    if (item == nullptr) {
        return std::nullopt;
    }
    return isProtected(item) ? KeychainProtection::UserPresence : KeychainProtection::None;
}

KeychainStatus SecretServiceKeychain::remove(const QString &service)
{
    const std::scoped_lock lock(m_changing);
    QuickCall talk(*this);
    const auto items = talk.open() ? talk.search(service) : std::nullopt;
    if (!items) {
        return talk.status();
    }
    if (anyLocked(*items)) {
        return KeychainStatus::AuthFailed;
    }
    if (m_missedItems && !items->empty()) {
        return KeychainStatus::DuplicateItem;
    }
    talk.eraseUnfinished(service);
    if (items->empty()) {
        if (!hasSeenAll(talk, m_accounts.find(service))) {
            return talk.expired() ? KeychainStatus::NotAvailable : KeychainStatus::AuthFailed;
        }
        m_accounts.forget(service);
        return KeychainStatus::ItemNotFound;
    }
    for (const KeyringItem &item : *items) {
        if (!talk.erase(item)) {
            return talk.status();
        }
    }
    m_accounts.forget(service);
    return KeychainStatus::Success;
}

bool SecretServiceKeychain::canAskForPresence()
{
    return awaitReply<PresenceMeans>(m_bounds.quick, [&](auto reply) {
               m_authenticator.canEvaluate(reply);
           }) == PresenceMeans::Available;
}

bool SecretServiceKeychain::askForPresence(const PresencePrompt &prompt)
{
    const auto context = m_authenticator.makeContext(QStringLiteral("Cancel"));
    return awaitReply<PresenceAnswer>(m_bounds.presence, [&](auto reply) {
               m_authenticator.evaluate(context, prompt, reply);
           }) == PresenceAnswer::Passed;
}

void SecretServiceKeychain::prepareInBackground()
{
    if (m_preparing->exchange(true)) {
        return;
    }
    std::thread([preparing = m_preparing, bounds = m_bounds] {
        {
            SecretServiceConversation talk(bounds.quick);
            const bool isOpen = talk.open();
            const KeyringCollection collection = isOpen ? talk.defaultCollection() : nullptr;
            if (collection != nullptr) {
                static_cast<void>(talk.unlock(collection.get(), bounds.unlock));
            } else if (isOpen && !talk.expired()) {
                static_cast<void>(talk.createDefaultCollection(bounds.unlock));
            }
        }
        *preparing = false;
    }).detach();
}

} // namespace corvane::platform
