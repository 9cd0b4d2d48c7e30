#include "keyring_desktop.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace corvane::tests {

namespace {

constexpr char secretsName[] = "org.freedesktop.secrets";
constexpr char secretsPath[] = "/org/freedesktop/secrets";
constexpr char loginKeyring[] = "/org/freedesktop/secrets/collection/login";
constexpr char serviceInterface[] = "org.freedesktop.Secret.Service";
constexpr char itemInterface[] = "org.freedesktop.Secret.Item";
constexpr int callTimeout = 5000;

} // namespace

std::string busConfiguration(const std::string &type, const std::string &socket)
{
    return "<busconfig><type>" + type + "</type><listen>unix:path=" + socket +
           "</listen><auth>EXTERNAL</auth><policy context=\"default\"><allow user=\"*\"/>"
           "<allow own=\"*\"/><allow send_destination=\"*\" eavesdrop=\"true\"/>"
           "<allow eavesdrop=\"true\"/></policy></busconfig>";
}

SessionBus::SessionBus(std::optional<uid_t> user)
    : m_user(user)
    , m_folder(user)
{
    const std::string configuration = m_folder.path() + "/bus.conf";
    std::ofstream(configuration) << busConfiguration("session", m_folder.path() + "/bus");
    m_daemon = std::make_unique<ChildProcess>(
        std::vector<std::string>{"dbus-daemon", "--config-file=" + configuration, "--nofork",
                                 "--nopidfile", "--print-address=1"},
        std::map<std::string, std::string>{}, user);
    m_address = m_daemon->readLine().value_or("");
    m_connection.reset(g_dbus_connection_new_for_address_sync(
        m_address.c_str(),
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, nullptr));
    if (m_connection == nullptr) {
        throw std::runtime_error("no session bus");
    }
}

KeyringDesktop::KeyringDesktop(const SessionBus &bus)
    : m_bus(bus)
    , m_folder(bus.user())
{
    setenv("DBUS_SESSION_BUS_ADDRESS", bus.address().c_str(), 1);
}

KeyringDesktop::~KeyringDesktop()
{
    killKeyring();
}

bool KeyringDesktop::startKeyring(Start start, std::map<std::string, std::string> environment)
{
    std::string program = GNOME_KEYRING_DAEMON;
    if (!environment.empty()) {
        const std::string copy = m_folder.path() + "/gnome-keyring-daemon";
        std::filesystem::copy_file(program, copy,
                                   std::filesystem::copy_options::overwrite_existing);
        program = copy;
    }
    std::vector<std::string> command{program, "--foreground", "--components=secrets"};
    if (start == Start::Unlocked) {
        command.emplace_back("--unlock");
    }
    environment.insert({{"HOME", m_folder.path()},
                        {"XDG_DATA_HOME", m_folder.path()},
                        {"XDG_RUNTIME_DIR", m_folder.path()},
                        {"DBUS_SESSION_BUS_ADDRESS", m_bus.address()}});
    m_daemon = std::make_unique<ChildProcess>(command, environment, m_bus.user());
    m_daemon->write(start == Start::Unlocked ? "correct horse" : "");
    m_daemon->closeInput();
    return waitUntil([&] { return items(QStringLiteral("nothing")).has_value(); });
}

void KeyringDesktop::killKeyring()
{
    m_daemon.reset();
    // The next daemon would not wait for the name.
    waitUntil([&] { return !items(QStringLiteral("nothing")).has_value(); });
}

bool KeyringDesktop::lock()
{
    const char *keyrings[] = {loginKeyring};
    return call(secretsPath, serviceInterface, "Lock",
                g_variant_new("(@ao)", g_variant_new_objv(keyrings, 1))) != nullptr;
}

platform::GioPtr<GVariant> KeyringDesktop::call(const char *path, const char *interface,
                                                const char *method, GVariant *parameters) const
{
    return platform::GioPtr<GVariant>(g_dbus_connection_call_sync(
        m_bus.connection(), secretsName, path, interface, method, parameters, nullptr,
        G_DBUS_CALL_FLAGS_NO_AUTO_START, callTimeout, nullptr, nullptr));
}

std::optional<QStringList> KeyringDesktop::paths(const QString &service) const
{
    GVariantBuilder wanted;
    g_variant_builder_init(&wanted, G_VARIANT_TYPE("a{ss}"));
    g_variant_builder_add(&wanted, "{ss}", "service", service.toUtf8().constData());
    const auto reply =
        call(secretsPath, serviceInterface, "SearchItems", g_variant_new("(a{ss})", &wanted));
    if (reply == nullptr) {
        return std::nullopt;
    }
    QStringList paths;
    for (gsize half = 0; half < 2; ++half) {
        const platform::GioPtr<GVariant> found(g_variant_get_child_value(reply.get(), half));
        for (gsize index = 0; index < g_variant_n_children(found.get()); ++index) {
            const char *path = nullptr;
            g_variant_get_child(found.get(), index, "&o", &path);
            paths.append(QString::fromUtf8(path));
        }
    }
    return paths;
}

std::optional<QList<KeyringDesktop::Attributes>> KeyringDesktop::items(const QString &service) const
{
    const auto found = paths(service);
    if (!found) {
        return std::nullopt;
    }
    QList<Attributes> items;
    for (const QString &path : *found) {
        const auto reply = call(path.toUtf8().constData(), "org.freedesktop.DBus.Properties", "Get",
                                g_variant_new("(ss)", itemInterface, "Attributes"));
        if (reply == nullptr) {
            return std::nullopt;
        }
        GVariant *child = nullptr;
        g_variant_get(reply.get(), "(v)", &child);
        const platform::GioPtr<GVariant> table(child);
        Attributes attributes;
        for (gsize index = 0; index < g_variant_n_children(table.get()); ++index) {
            const char *name = nullptr;
            const char *value = nullptr;
            g_variant_get_child(table.get(), index, "{&s&s}", &name, &value);
            attributes.insert(QString::fromUtf8(name), QString::fromUtf8(value));
        }
        items.append(attributes);
    }
    return items;
}

bool KeyringDesktop::deleteItems(const QString &service) const
{
    const QStringList found = paths(service).value_or(QStringList());
    for (const QString &path : found) {
        if (call(path.toUtf8().constData(), itemInterface, "Delete", nullptr) == nullptr) {
            return false;
        }
    }
    return !found.isEmpty();
}

QString KeyringDesktop::file(const char *name) const
{
    return QString::fromStdString(m_folder.path()) + u'/' + QString::fromUtf8(name);
}

} // namespace corvane::tests
