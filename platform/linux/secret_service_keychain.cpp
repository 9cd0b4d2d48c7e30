#include <libsecret/secret.h>

#include "platform/linux/secret_service_keychain.h"

#include "platform/authenticator.h"
#include "platform/linux/gio_calls.h"
#include "platform/linux/one_time_context.h"

#include <algorithm>
#include <future>
#include <thread>
#include <utility>
#include <vector>

namespace corvane::platform {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

/// What a service that was too slow a moment ago gets for its next quick answer.
constexpr milliseconds impatientBound{200};
constexpr std::chrono::seconds impatience{10};
/// Bound on finding out whether an item was stored after all.
constexpr milliseconds recheckBound{500};

constexpr char serviceAttribute[] = "service";
constexpr char accountAttribute[] = "account";
constexpr char protectionAttribute[] = "protection";
constexpr char presenceProtection[] = "user-presence";
constexpr char noProtection[] = "none";
/// Shown by keyring managers; says nothing about what the item is worth.
constexpr char label[] = "Corvane";
constexpr char contentType[] = "application/octet-stream";

/// Searches leave the schema's name out, because a keyring that has been locked since its start
/// does not find an item by it.
const SecretSchema schema = {
    "org.corvane.Item",
    SECRET_SCHEMA_DONT_MATCH_NAME,
    {{serviceAttribute, SECRET_SCHEMA_ATTRIBUTE_STRING},
     {accountAttribute, SECRET_SCHEMA_ATTRIBUTE_STRING},
     {protectionAttribute, SECRET_SCHEMA_ATTRIBUTE_STRING},
     {nullptr, SECRET_SCHEMA_ATTRIBUTE_STRING}},
    0,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
};

struct TableDeleter
{
    void operator()(GHashTable *table) const { g_hash_table_unref(table); }
};
using Attributes = std::unique_ptr<GHashTable, TableDeleter>;

struct ValueDeleter
{
    /// libsecret wipes the memory of a value when it frees it.
    void operator()(SecretValue *value) const { secret_value_unref(value); }
};
using Value = std::unique_ptr<SecretValue, ValueDeleter>;

using Item = GioPtr<SecretItem>;
using Collection = GioPtr<SecretCollection>;

Attributes attributesOf(const QString &service)
{
    Attributes attributes(g_hash_table_new_full(g_str_hash, g_str_equal, g_free, g_free));
    g_hash_table_insert(attributes.get(), g_strdup(serviceAttribute),
                        g_strdup(service.toUtf8().constData()));
    return attributes;
}

Attributes attributesOf(const QString &service, const QString &account,
                        KeychainProtection protection)
{
    Attributes attributes = attributesOf(service);
    g_hash_table_insert(attributes.get(), g_strdup(accountAttribute),
                        g_strdup(account.toUtf8().constData()));
    g_hash_table_insert(attributes.get(), g_strdup(protectionAttribute),
                        g_strdup(protection == KeychainProtection::UserPresence ? presenceProtection
                                                                                : noProtection));
    return attributes;
}

/// The service of an item that is being stored.
QString unfinishedName(const QString &service)
{
    return service + QStringLiteral(".unfinished");
}

/// Empty where the keyring does not tell.
QString attribute(const Item &item, const char *name)
{
    const Attributes attributes(secret_item_get_attributes(item.get()));
    if (attributes == nullptr) {
        return {};
    }
    return QString::fromUtf8(
        static_cast<const char *>(g_hash_table_lookup(attributes.get(), name)));
}

bool isLocked(const Item &item)
{
    return secret_item_get_locked(item.get()) != FALSE;
}

/// An item that does not say clearly that it is unprotected is protected.
bool isProtected(const Item &item)
{
    return attribute(item, protectionAttribute) != QLatin1StringView(noProtection);
}

QString pathOf(gpointer proxy)
{
    return QString::fromUtf8(g_dbus_proxy_get_object_path(G_DBUS_PROXY(proxy)));
}

/// An item's path is its keyring's path and one element.
QString collectionOf(const Item &item)
{
    return pathOf(item.get()).section(u'/', 0, -2);
}

KeychainStatus statusOf(const GError *error)
{
    if (g_error_matches(error, SECRET_ERROR, SECRET_ERROR_IS_LOCKED)) {
        return keychainAuthFailed;
    }
    if (g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED)) {
        return keychainUserCanceled;
    }
    constexpr GDBusError unreachable[] = {
        G_DBUS_ERROR_SERVICE_UNKNOWN,    G_DBUS_ERROR_NAME_HAS_NO_OWNER,
        G_DBUS_ERROR_NO_REPLY,           G_DBUS_ERROR_DISCONNECTED,
        G_DBUS_ERROR_NO_SERVER,          G_DBUS_ERROR_TIMED_OUT,
        G_DBUS_ERROR_SPAWN_FAILED,       G_DBUS_ERROR_SPAWN_EXEC_FAILED,
        G_DBUS_ERROR_SPAWN_CHILD_EXITED,
    };
    const bool noService = std::ranges::any_of(
        unreachable, [&](GDBusError code) { return g_error_matches(error, G_DBUS_ERROR, code); });
    return noService || error->domain == G_IO_ERROR ? keychainNotAvailable : keychainInternalError;
}

enum class Lock {
    Unlocked,
    Locked,
    Missing, ///< there is no such keyring
    Unknown, ///< the service did not say
};

/// One talk with the service, on a connection that is looked up anew. After a step has failed,
/// `status()` says why.
class Conversation
{
public:
    explicit Conversation(milliseconds bound)
        : m_calls(bound)
    {}

    [[nodiscard]] KeychainStatus status() const { return m_status; }
    [[nodiscard]] bool expired() const { return m_calls.expired(); }

    [[nodiscard]] bool open()
    {
        GioPtr<GError> error;
        m_bus = m_calls.bus(G_BUS_TYPE_SESSION, error);
        if (m_bus == nullptr) {
            return fail(error.get());
        }
        const auto result = m_calls.await([](auto *cancellable, auto done, auto data) {
            secret_service_open(SECRET_TYPE_SERVICE, nullptr, SECRET_SERVICE_NONE, cancellable,
                                done, data);
        });
        m_service.reset(finish(result, secret_service_open_finish));
        return m_service != nullptr;
    }

    /// The items of `service`, those in unlocked keyrings first; none when the service did not
    /// answer.
    [[nodiscard]] std::optional<std::vector<Item>> search(const QString &service)
    {
        const Attributes wanted = attributesOf(service);
        const auto result = m_calls.await([&](auto *cancellable, auto done, auto data) {
            secret_service_search(m_service.get(), &schema, wanted.get(), SECRET_SEARCH_ALL,
                                  cancellable, done, data);
        });
        GError *error = nullptr;
        GList *found = result != nullptr
                           ? secret_service_search_finish(m_service.get(), result.get(), &error)
                           : nullptr;
        if (result == nullptr || error != nullptr) {
            fail(GioPtr<GError>(error).get());
            return std::nullopt;
        }
        std::vector<Item> items;
        for (const GList *entry = found; entry != nullptr; entry = entry->next) {
            items.emplace_back(SECRET_ITEM(entry->data));
        }
        g_list_free(found);
        std::ranges::sort(items, {}, isLocked);
        return items;
    }

    /// The keyring for new items; null when there is none.
    [[nodiscard]] Collection defaultCollection()
    {
        const auto result = m_calls.await([&](auto *cancellable, auto done, auto data) {
            secret_collection_for_alias(m_service.get(), SECRET_COLLECTION_DEFAULT,
                                        SECRET_COLLECTION_NONE, cancellable, done, data);
        });
        m_status = keychainNotAvailable;
        return Collection(finish(result, secret_collection_for_alias_finish));
    }

    [[nodiscard]] Lock lockOf(const QString &collection)
    {
        const QByteArray path = collection.toUtf8();
        if (g_variant_is_object_path(path.constData()) == FALSE) {
            return Lock::Missing;
        }
        GioPtr<GError> error;
        const auto reply = m_calls.call(
            m_bus.get(), g_dbus_proxy_get_name(G_DBUS_PROXY(m_service.get())), path.constData(),
            "org.freedesktop.DBus.Properties", "Get",
            g_variant_new("(ss)", "org.freedesktop.Secret.Collection", "Locked"), "(v)", error);
        if (reply == nullptr) {
            const bool unknownObject =
                g_error_matches(error.get(), G_DBUS_ERROR, G_DBUS_ERROR_UNKNOWN_OBJECT) ||
                g_error_matches(error.get(), G_DBUS_ERROR, G_DBUS_ERROR_UNKNOWN_METHOD) ||
                g_error_matches(error.get(), G_DBUS_ERROR, G_DBUS_ERROR_UNKNOWN_INTERFACE);
            return unknownObject ? Lock::Missing : Lock::Unknown;
        }
        GVariant *child = nullptr;
        g_variant_get(reply.get(), "(v)", &child);
        const GioPtr<GVariant> locked(child);
        return g_variant_is_of_type(locked.get(), G_VARIANT_TYPE_BOOLEAN) != FALSE &&
                       g_variant_get_boolean(locked.get()) == FALSE
                   ? Lock::Unlocked
                   : Lock::Locked;
    }

    /// Whether a search that found nothing has looked everywhere: into the keyring that held the
    /// item last, or where that is gone or nothing was stored, into the one for new items.
    [[nodiscard]] bool hasSeenAll(const std::optional<RememberedAccount> &remembered)
    {
        if (remembered) {
            switch (lockOf(remembered->collection)) {
            case Lock::Unlocked:
                return true;
            case Lock::Locked:
            case Lock::Unknown:
                return false;
            case Lock::Missing:
                break;
            }
        }
        const Collection collection = defaultCollection();
        if (collection == nullptr) {
            return !remembered && !expired();
        }
        return secret_collection_get_locked(collection.get()) == FALSE;
    }

    /// GNOME Keyring saves a new item before the item's secret, so that one which is killed in
    /// between keeps an empty item. The item gets its name when it is whole.
    [[nodiscard]] bool create(const Collection &collection, const QString &service,
                              const QString &account, const SecretBytes &data,
                              KeychainProtection protection)
    {
        if (!openEncryptedSession()) {
            return false;
        }
        const Attributes unfinished = attributesOf(unfinishedName(service), account, protection);
        const auto bytes = data.bytes();
        const Value value(secret_value_new(reinterpret_cast<const char *>(bytes.data()),
                                           static_cast<gssize>(bytes.size()), contentType));
        const auto result = m_calls.await([&](auto *cancellable, auto done, auto userData) {
            secret_item_create(collection.get(), &schema, unfinished.get(), label, value.get(),
                               SECRET_ITEM_CREATE_REPLACE, cancellable, done, userData);
        });
        const Item item(finish(result, secret_item_create_finish));
        if (item == nullptr) {
            return false;
        }
        const Attributes finished = attributesOf(service, account, protection);
        if (setAttributes(item, finished)) {
            return true;
        }
        const KeychainStatus status = m_status;
        static_cast<void>(erase(item));
        m_status = status;
        return false;
    }

    /// Deletes what a store that was interrupted has left.
    void eraseUnfinished(const QString &service)
    {
        const auto items = search(unfinishedName(service));
        if (!items) {
            return;
        }
        for (const Item &item : *items) {
            if (!isLocked(item)) {
                static_cast<void>(erase(item));
            }
        }
    }

    [[nodiscard]] bool erase(const Item &item)
    {
        const auto result = m_calls.await([&](auto *cancellable, auto done, auto data) {
            secret_item_delete(item.get(), cancellable, done, data);
        });
        GError *error = nullptr;
        if (result != nullptr && secret_item_delete_finish(item.get(), result.get(), &error)) {
            return true;
        }
        return fail(GioPtr<GError>(error).get());
    }

    [[nodiscard]] std::optional<SecretBytes> secretOf(const Item &item)
    {
        if (!openEncryptedSession()) {
            return std::nullopt;
        }
        const auto result = m_calls.await([&](auto *cancellable, auto done, auto data) {
            secret_item_load_secret(item.get(), cancellable, done, data);
        });
        if (result == nullptr ||
            secret_item_load_secret_finish(item.get(), result.get(), nullptr) == FALSE) {
            return std::nullopt;
        }
        const Value value(secret_item_get_secret(item.get()));
        if (value == nullptr) {
            return std::nullopt;
        }
        gsize size = 0;
        const char *bytes = secret_value_get(value.get(), &size);
        return SecretBytes::copyOf({reinterpret_cast<const std::uint8_t *>(bytes), size});
    }

    /// Has the user asked to unlock what `object`, an item or a keyring, belongs to.
    [[nodiscard]] bool unlock(gpointer object, milliseconds bound)
    {
        m_calls.restart(bound);
        GList objects{object, nullptr, nullptr};
        const auto result = m_calls.await([&](auto *cancellable, auto done, auto data) {
            secret_service_unlock(m_service.get(), &objects, cancellable, done, data);
        });
        return result != nullptr &&
               secret_service_unlock_finish(m_service.get(), result.get(), nullptr, nullptr) > 0;
    }

private:
    [[nodiscard]] bool setAttributes(const Item &item, const Attributes &attributes)
    {
        const auto result = m_calls.await([&](auto *cancellable, auto done, auto data) {
            secret_item_set_attributes(item.get(), &schema, attributes.get(), cancellable, done,
                                       data);
        });
        GError *error = nullptr;
        if (result != nullptr &&
            secret_item_set_attributes_finish(item.get(), result.get(), &error) != FALSE) {
            return true;
        }
        return fail(GioPtr<GError>(error).get());
    }

    /// libsecret would settle for a session without encryption.
    [[nodiscard]] bool openEncryptedSession()
    {
        const auto result = m_calls.await([&](auto *cancellable, auto done, auto data) {
            secret_service_ensure_session(m_service.get(), cancellable, done, data);
        });
        GError *error = nullptr;
        if (result == nullptr ||
            secret_service_ensure_session_finish(m_service.get(), result.get(), &error) == FALSE) {
            return fail(GioPtr<GError>(error).get());
        }
        const char *algorithms = secret_service_get_session_algorithms(m_service.get());
        if (algorithms == nullptr || QLatin1StringView(algorithms) == QLatin1StringView("plain")) {
            m_status = keychainInternalError;
            return false;
        }
        return true;
    }

    template <typename Finish>
    auto finish(const GioPtr<GAsyncResult> &result, Finish finishCall)
        -> decltype(finishCall(nullptr, nullptr))
    {
        GError *error = nullptr;
        auto *object = result != nullptr ? finishCall(result.get(), &error) : nullptr;
        if (result == nullptr || error != nullptr) {
            fail(GioPtr<GError>(error).get());
        }
        return object;
    }

    /// Without an error the bound ran out.
    bool fail(const GError *error)
    {
        m_status = error == nullptr || expired() ? keychainNotAvailable : statusOf(error);
        return false;
    }

    BoundedCalls m_calls;
    GioPtr<GDBusConnection> m_bus;
    GioPtr<SecretService> m_service;
    KeychainStatus m_status = keychainInternalError;
};

/// The item that a read would take, in an unlocked keyring; null when there is none.
Item findUnlocked(Conversation &talk, const QString &service)
{
    auto items = talk.search(service);
    if (!items || items->empty() || isLocked(items->front())) {
        return nullptr;
    }
    return std::move(items->front());
}

/// Asks the user to unlock the keyring that holds the item, or where items are hidden while it is
/// locked, the one for new items. False when there is nothing to unlock or the user refused.
bool unlockKeyringOf(Conversation &talk, const QString &service, milliseconds bound)
{
    const auto items = talk.search(service);
    if (!items) {
        return false;
    }
    if (!items->empty()) {
        return talk.unlock(items->front().get(), bound);
    }
    const Collection collection = talk.defaultCollection();
    return collection != nullptr && secret_collection_get_locked(collection.get()) != FALSE &&
           talk.unlock(collection.get(), bound);
}

} // namespace

/// A conversation that the main thread waits for.
class SecretServiceKeychain::QuickCall : public Conversation
{
public:
    explicit QuickCall(const SecretServiceKeychain &keychain)
        : Conversation(boundFor(keychain))
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
    /// Replacing a key takes several calls; a service that hangs must not freeze the program in
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
    , m_unlocking(std::make_shared<std::atomic<bool>>(false))
{}

SecretServiceKeychain::~SecretServiceKeychain() = default;

KeychainStatus SecretServiceKeychain::add(const QString &service, const QString &account,
                                          const SecretBytes &data, KeychainProtection protection)
{
    if (protection == KeychainProtection::UserPresence && !canAskForPresence()) {
        return keychainAuthFailed;
    }
    QuickCall talk(*this);
    const auto existing = talk.open() ? talk.search(service) : std::nullopt;
    if (!existing) {
        return talk.status();
    }
    if (std::ranges::any_of(*existing, isLocked)) {
        unlockInBackground();
        return keychainAuthFailed;
    }
    if (!existing->empty()) {
        return keychainDuplicateItem;
    }
    const Collection collection = talk.defaultCollection();
    if (collection == nullptr) {
        return talk.status();
    }
    const auto remembered = m_accounts.find(service);
    if (secret_collection_get_locked(collection.get()) != FALSE || !talk.hasSeenAll(remembered)) {
        unlockInBackground();
        return keychainAuthFailed;
    }

    // Remembered first: a program that dies in between has remembered a key that does not exist,
    // which the next look into the open keyring puts right. The other way round, a key would exist
    // that a locked keyring does not tell of.
    m_accounts.remember(service, {account, pathOf(collection.get())});
    if (talk.create(collection, service, account, data, protection)) {
        return keychainSuccess;
    }

    // The service may have stored the item and died, or have been too slow to say so.
    const KeychainStatus status = talk.status();
    Conversation recheck(recheckBound);
    const auto stored = recheck.open() ? recheck.search(service) : std::nullopt;
    if (!stored) {
        return status;
    }
    if (!stored->empty()) {
        return attribute(stored->front(), accountAttribute) == account ? keychainSuccess : status;
    }
    m_accounts.forget(service);
    return status;
}

std::optional<SecretBytes> SecretServiceKeychain::copyData(const QString &service,
                                                           const QString &prompt)
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
        Conversation talk(m_bounds.quick);
        if (!talk.open()) {
            return std::nullopt;
        }
        Item item = findUnlocked(talk, service);
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
        // The user may take minutes: the service is looked up anew afterwards.
        opened = mayOpen();
        if (!opened) {
            return std::nullopt;
        }
    }
}

std::optional<QString> SecretServiceKeychain::copyAccount(const QString &service) const
{
    const auto remembered = m_accounts.find(service);
    const auto fromMemory = [&] {
        m_missedItems = !remembered;
        return remembered ? std::optional(remembered->account) : std::nullopt;
    };
    QuickCall talk(*this);
    const auto items = talk.open() ? talk.search(service) : std::nullopt;
    if (!items) {
        return fromMemory();
    }
    if (!items->empty()) {
        const Item &item = items->front();
        const QString account = attribute(item, accountAttribute);
        if (account.isEmpty()) {
            return fromMemory();
        }
        m_accounts.remember(service, {account, collectionOf(item)});
        m_missedItems = false;
        return account;
    }
    if (!talk.hasSeenAll(remembered)) {
        return fromMemory();
    }
    m_accounts.forget(service);
    m_missedItems = false;
    return std::nullopt;
}

KeychainStatus SecretServiceKeychain::remove(const QString &service)
{
    QuickCall talk(*this);
    const auto items = talk.open() ? talk.search(service) : std::nullopt;
    if (!items) {
        return talk.status();
    }
    if (std::ranges::any_of(*items, isLocked)) {
        return keychainAuthFailed;
    }
    if (m_missedItems && !items->empty()) {
        return keychainDuplicateItem;
    }
    talk.eraseUnfinished(service);
    if (items->empty()) {
        if (!talk.hasSeenAll(m_accounts.find(service))) {
            return talk.expired() ? keychainNotAvailable : keychainAuthFailed;
        }
        m_accounts.forget(service);
        return keychainItemNotFound;
    }
    for (const Item &item : *items) {
        if (!talk.erase(item)) {
            return talk.status();
        }
    }
    m_accounts.forget(service);
    return keychainSuccess;
}

bool SecretServiceKeychain::canAskForPresence()
{
    const auto context = m_authenticator.makeContext({});
    return m_authenticator.canEvaluate(*context);
}

bool SecretServiceKeychain::askForPresence(const QString &prompt)
{
    // Owned by the reply as well, which may come after the wait has been given up.
    const auto answer = std::make_shared<std::promise<bool>>();
    std::future<bool> success = answer->get_future();
    m_authenticator.evaluate(m_authenticator.makeContext(QStringLiteral("Cancel")), prompt,
                             [answer](bool passed) { answer->set_value(passed); });
    return success.wait_for(m_bounds.presence) == std::future_status::ready && success.get();
}

void SecretServiceKeychain::unlockInBackground()
{
    if (m_unlocking->exchange(true)) {
        return;
    }
    std::thread([unlocking = m_unlocking, bounds = m_bounds] {
        {
            Conversation talk(bounds.quick);
            const Collection collection = talk.open() ? talk.defaultCollection() : nullptr;
            if (collection != nullptr) {
                static_cast<void>(talk.unlock(collection.get(), bounds.unlock));
            }
        }
        *unlocking = false;
    }).detach();
}

} // namespace corvane::platform
