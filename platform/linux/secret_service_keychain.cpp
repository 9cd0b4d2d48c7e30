#define SECRET_API_SUBJECT_TO_CHANGE
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
        G_DBUS_ERROR_SERVICE_UNKNOWN, G_DBUS_ERROR_NAME_HAS_NO_OWNER, G_DBUS_ERROR_NO_REPLY,
        G_DBUS_ERROR_DISCONNECTED,    G_DBUS_ERROR_NO_SERVER,         G_DBUS_ERROR_TIMED_OUT,
        G_DBUS_ERROR_SPAWN_FAILED,    G_DBUS_ERROR_SPAWN_EXEC_FAILED, G_DBUS_ERROR_SPAWN_CHILD_EXITED,
    };
    const bool noService = std::ranges::any_of(unreachable, [&](GDBusError code) {
        return g_error_matches(error, G_DBUS_ERROR, code);
    });
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
        std::ranges::stable_partition(items, [](const Item &item) { return !isLocked(item); });
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

    [[nodiscard]] bool create(const Collection &collection, const QString &service,
                              const QString &account, const SecretBytes &data,
                              KeychainProtection protection)
    {
        if (!openEncryptedSession()) {
            return false;
        }
        const Attributes attributes = attributesOf(service);
        g_hash_table_insert(attributes.get(), g_strdup(accountAttribute),
                            g_strdup(account.toUtf8().constData()));
        g_hash_table_insert(attributes.get(), g_strdup(protectionAttribute),
                            g_strdup(protection == KeychainProtection::UserPresence
                                         ? presenceProtection
                                         : noProtection));
        // The value points into guarded memory, which lives as long as libsecret needs it.
        auto *guarded = new SecretBytes(data.clone());
        const Value value(secret_value_new_full(
            reinterpret_cast<char *>(guarded->bytes().data()),
            static_cast<gssize>(guarded->size()), contentType, [](gpointer bytes) {
                // libsecret hands back the bytes, not their owner; see `Guard`.
                static_cast<void>(bytes);
            }));
        const auto result = m_calls.await([&](auto *cancellable, auto done, auto userData) {
            secret_item_create(collection.get(), &schema, attributes.get(), label, value.get(),
                               SECRET_ITEM_CREATE_REPLACE, cancellable, done, userData);
        });
        return Item(finish(result, secret_item_create_finish)) != nullptr;
    }
