#include "platform/linux/keyring/secret_service_conversation.h"

#include <algorithm>
#include <memory>

namespace corvane::platform {

namespace {

constexpr char serviceAttribute[] = "service";
constexpr char accountAttribute[] = "account";
constexpr char protectionAttribute[] = "protection";
constexpr char presenceProtection[] = "user-presence";
constexpr char noProtection[] = "none";
/// Shown by keyring managers; does not reveal the purpose of the item.
constexpr char label[] = "Corvane";
constexpr char keyringLabel[] = "Default keyring";
constexpr char contentType[] = "application/octet-stream";

/// Searches omit the schema's name, because a keyring that has been locked since its start does not
/// find items by it.
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
    /// libsecret wipes a value's memory when it frees the value.
    void operator()(SecretValue *value) const { secret_value_unref(value); }
};
using Value = std::unique_ptr<SecretValue, ValueDeleter>;

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

/// The service attribute of an item while it is being stored.
QString unfinishedName(const QString &service)
{
    return service + QStringLiteral(".unfinished");
}

/// The value of an attribute; empty if the keyring does not provide it.
QString attribute(const KeyringItem &item, const char *name)
{
    const Attributes attributes(secret_item_get_attributes(item.get()));
    if (attributes == nullptr) {
        return {};
    }
    return QString::fromUtf8(
        static_cast<const char *>(g_hash_table_lookup(attributes.get(), name)));
}

QString objectPath(gpointer proxy)
{
    return QString::fromUtf8(g_dbus_proxy_get_object_path(G_DBUS_PROXY(proxy)));
}

KeychainStatus statusOf(const GError *error)
{
    if (g_error_matches(error, SECRET_ERROR, SECRET_ERROR_IS_LOCKED)) {
        return KeychainStatus::AuthFailed;
    }
    if (g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED)) {
        return KeychainStatus::UserCanceled;
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
    return noService || error->domain == G_IO_ERROR ? KeychainStatus::NotAvailable
                                                    : KeychainStatus::InternalError;
}

} // namespace

bool isLocked(const KeyringItem &item)
{
    return secret_item_get_locked(item.get()) != FALSE;
}

bool isLocked(const KeyringCollection &collection)
{
    return secret_collection_get_locked(collection.get()) != FALSE;
}

bool isProtected(const KeyringItem &item)
{
    return attribute(item, protectionAttribute) != QLatin1StringView(noProtection);
}

QString accountOf(const KeyringItem &item)
{
    return attribute(item, accountAttribute);
}

QString pathOf(const KeyringCollection &collection)
{
    return objectPath(collection.get());
}

QString collectionPathOf(const KeyringItem &item)
{
    // An item's path is its keyring's path followed by one element.
    return objectPath(item.get()).section(u'/', 0, -2);
}

SecretServiceConversation::SecretServiceConversation(std::chrono::milliseconds bound)
    : m_calls(bound)
{}

template <typename Finish>
auto SecretServiceConversation::finish(const GioPtr<GAsyncResult> &result, Finish finishCall)
    -> decltype(finishCall(nullptr, nullptr))
{
    GError *error = nullptr;
    auto *object = result != nullptr ? finishCall(result.get(), &error) : nullptr;
    if (result == nullptr || error != nullptr) {
        fail(GioPtr<GError>(error).get());
    }
    return object;
}

bool SecretServiceConversation::open()
{
    GioPtr<GError> error;
    m_bus = m_calls.bus(G_BUS_TYPE_SESSION, error);
    if (m_bus == nullptr) {
        return fail(error.get());
    }
    const auto result = m_calls.await([](auto *cancellable, auto done, auto data) {
        secret_service_open(SECRET_TYPE_SERVICE, nullptr, SECRET_SERVICE_NONE, cancellable, done,
                            data);
    });
    m_service.reset(finish(result, secret_service_open_finish));
    return m_service != nullptr;
}

std::optional<std::vector<KeyringItem>> SecretServiceConversation::search(const QString &service)
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
    std::vector<KeyringItem> items;
    for (const GList *entry = found; entry != nullptr; entry = entry->next) {
        items.emplace_back(SECRET_ITEM(entry->data));
    }
    g_list_free(found);
    std::ranges::sort(items, {}, [](const KeyringItem &item) { return isLocked(item); });
    return items;
}

KeyringCollection SecretServiceConversation::defaultCollection()
{
    const auto result = m_calls.await([&](auto *cancellable, auto done, auto data) {
        secret_collection_for_alias(m_service.get(), SECRET_COLLECTION_DEFAULT,
                                    SECRET_COLLECTION_NONE, cancellable, done, data);
    });
    m_status = KeychainStatus::NotAvailable;
    return KeyringCollection(finish(result, secret_collection_for_alias_finish));
}

KeyringLock SecretServiceConversation::lockOf(const QString &collection)
{
    const QByteArray path = collection.toUtf8();
    if (g_variant_is_object_path(path.constData()) == FALSE) {
        return KeyringLock::Missing;
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
        return unknownObject ? KeyringLock::Missing : KeyringLock::Unknown;
    }
    GVariant *child = nullptr;
    g_variant_get(reply.get(), "(v)", &child);
    const GioPtr<GVariant> locked(child);
    return g_variant_is_of_type(locked.get(), G_VARIANT_TYPE_BOOLEAN) != FALSE &&
                   g_variant_get_boolean(locked.get()) == FALSE
               ? KeyringLock::Unlocked
               : KeyringLock::Locked;
}

/// GNOME Keyring saves a new item before its secret: if it is killed in between, an item without a
/// secret remains. The item therefore gets its final service attribute only when it is complete.
bool SecretServiceConversation::create(const KeyringCollection &collection, const QString &service,
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
    const KeyringItem item(finish(result, secret_item_create_finish));
    if (item == nullptr) {
        return false;
    }
    const Attributes finished = attributesOf(service, account, protection);
    if (setAttributes(item, finished.get())) {
        return true;
    }
    const KeychainStatus status = m_status;
    static_cast<void>(erase(item));
    m_status = status;
    return false;
}

void SecretServiceConversation::eraseUnfinished(const QString &service)
{
    const auto items = search(unfinishedName(service));
    if (!items) {
        return;
    }
    for (const KeyringItem &item : *items) {
        if (!isLocked(item)) {
            static_cast<void>(erase(item));
        }
    }
}

bool SecretServiceConversation::erase(const KeyringItem &item)
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

std::optional<SecretBytes> SecretServiceConversation::secretOf(const KeyringItem &item)
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

bool SecretServiceConversation::unlock(gpointer object, std::chrono::milliseconds bound)
{
    m_calls.restart(bound);
    GList objects{object, nullptr, nullptr};
    const auto result = m_calls.await([&](auto *cancellable, auto done, auto data) {
        secret_service_unlock(m_service.get(), &objects, cancellable, done, data);
    });
    return result != nullptr &&
           secret_service_unlock_finish(m_service.get(), result.get(), nullptr, nullptr) > 0;
}

bool SecretServiceConversation::createDefaultCollection(std::chrono::milliseconds bound)
{
    m_calls.restart(bound);
    const auto result = m_calls.await([&](auto *cancellable, auto done, auto data) {
        secret_collection_create(m_service.get(), keyringLabel, SECRET_COLLECTION_DEFAULT,
                                 SECRET_COLLECTION_CREATE_NONE, cancellable, done, data);
    });
    return KeyringCollection(finish(result, secret_collection_create_finish)) != nullptr;
}

bool SecretServiceConversation::setAttributes(const KeyringItem &item, GHashTable *attributes)
{
    const auto result = m_calls.await([&](auto *cancellable, auto done, auto data) {
        secret_item_set_attributes(item.get(), &schema, attributes, cancellable, done, data);
    });
    GError *error = nullptr;
    if (result != nullptr &&
        secret_item_set_attributes_finish(item.get(), result.get(), &error) != FALSE) {
        return true;
    }
    return fail(GioPtr<GError>(error).get());
}

/// Checked explicitly, because libsecret would accept a session without encryption.
bool SecretServiceConversation::openEncryptedSession()
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
        m_status = KeychainStatus::InternalError;
        return false;
    }
    return true;
}

/// No error means that the time limit expired.
bool SecretServiceConversation::fail(const GError *error)
{
    m_status = error == nullptr || expired() ? KeychainStatus::NotAvailable : statusOf(error);
    return false;
}

} // namespace corvane::platform
