#include "keyring_desktop.h"

#include "tests/platform/wait_until.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace corvane::tests {

namespace {

using namespace Qt::StringLiterals;

const QString secrets = u"/org/freedesktop/secrets"_s;
constexpr char serviceInterface[] = "org.freedesktop.Secret.Service";
constexpr char itemInterface[] = "org.freedesktop.Secret.Item";

bool isReply(const QDBusMessage &message)
{
    return message.type() == QDBusMessage::ReplyMessage;
}

} // namespace

SessionBus::SessionBus()
{
    const std::string folder = m_folder.path().toStdString();
    const std::string configuration = folder + "/bus.conf";
    std::ofstream(configuration)
        << "<busconfig><type>session</type><listen>unix:path=" + folder +
               "/bus</listen><auth>EXTERNAL</auth><policy context=\"default\"><allow user=\"*\"/>"
               "<allow own=\"*\"/><allow send_destination=\"*\" eavesdrop=\"true\"/>"
               "<allow eavesdrop=\"true\"/></policy></busconfig>";
    m_daemon = std::make_unique<ChildProcess>(
        std::vector<std::string>{"dbus-daemon", "--config-file=" + configuration, "--nofork",
                                 "--nopidfile", "--print-address=1"});
    m_address = m_daemon->readLine().value_or("");
    const QString address = QString::fromStdString(m_address);
    m_connection = QDBusConnection::connectToBus(address, address);
    if (!m_connection->isConnected()) {
        throw std::runtime_error("no session bus");
    }
    qDBusRegisterMetaType<KeyringDesktop::Attributes>();
}

KeyringDesktop::KeyringDesktop(const SessionBus &bus)
    : m_bus(bus)
{
    setenv("DBUS_SESSION_BUS_ADDRESS", bus.address().c_str(), 1);
}

bool KeyringDesktop::startKeyring(Start start)
{
    std::vector<std::string> command{GNOME_KEYRING_DAEMON, "--foreground", "--components=secrets"};
    if (start == Start::Unlocked) {
        command.emplace_back("--unlock");
    }
    const std::string folder = m_folder.path().toStdString();
    m_daemon = std::make_unique<ChildProcess>(
        command, std::map<std::string, std::string>{{"HOME", folder},
                                                    {"XDG_DATA_HOME", folder},
                                                    {"XDG_RUNTIME_DIR", folder},
                                                    {"DBUS_SESSION_BUS_ADDRESS", m_bus.address()}});
    m_daemon->write(start == Start::Unlocked ? "correct horse" : "");
    m_daemon->closeInput();
    return waitUntil([&] { return items(u"nothing"_s).has_value(); });
}

void KeyringDesktop::killKeyring()
{
    m_daemon.reset();
    // The next daemon would not wait for the name.
    static_cast<void>(waitUntil([&] { return !items(u"nothing"_s).has_value(); }));
}

void KeyringDesktop::signalKeyring(int number) const
{
    kill(m_daemon->pid(), number);
}

bool KeyringDesktop::lock() const
{
    const QList login{QDBusObjectPath(secrets + u"/collection/login"_s)};
    return isReply(call(secrets, serviceInterface, "Lock", {QVariant::fromValue(login)}));
}

QDBusMessage KeyringDesktop::call(const QString &path, const char *interface, const char *method,
                                  const QVariantList &arguments) const
{
    auto message =
        QDBusMessage::createMethodCall(u"org.freedesktop.secrets"_s, path,
                                       QString::fromLatin1(interface), QString::fromLatin1(method));
    message.setArguments(arguments);
    message.setAutoStartService(false);
    return m_bus.connection().call(message, QDBus::Block, static_cast<int>(patience.count()));
}

std::optional<QStringList> KeyringDesktop::paths(const QString &service) const
{
    const Attributes wanted{{u"service"_s, service}};
    const QDBusMessage reply =
        call(secrets, serviceInterface, "SearchItems", {QVariant::fromValue(wanted)});
    if (!isReply(reply)) {
        return std::nullopt;
    }
    QStringList paths;
    for (const QVariant &lockedOrNot : reply.arguments()) {
        for (const auto &path : qdbus_cast<QList<QDBusObjectPath>>(lockedOrNot)) {
            paths.append(path.path());
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
        const QDBusMessage reply = call(path, "org.freedesktop.DBus.Properties", "Get",
                                        {QString::fromLatin1(itemInterface), u"Attributes"_s});
        if (!isReply(reply)) {
            return std::nullopt;
        }
        const auto value = reply.arguments().constFirst().value<QDBusVariant>().variant();
        items.append(qdbus_cast<Attributes>(value));
    }
    return items;
}

bool KeyringDesktop::deleteItems(const QString &service) const
{
    const QStringList found = paths(service).value_or(QStringList());
    return !found.isEmpty() && std::ranges::all_of(found, [&](const QString &path) {
        return isReply(call(path, itemInterface, "Delete", {}));
    });
}

QString KeyringDesktop::file(const char *name) const
{
    return m_folder.filePath(QString::fromUtf8(name));
}

} // namespace corvane::tests
