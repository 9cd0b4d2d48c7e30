#pragma once

#include "child_process.h"
#include "platform/linux/gio_calls.h"

#include <QList>
#include <QMap>
#include <QString>

#include <memory>

namespace corvane::tests {

/// A session bus of its own, on which nothing is started by itself.
class SessionBus
{
public:
    explicit SessionBus(std::optional<uid_t> user = std::nullopt);

    [[nodiscard]] GDBusConnection *connection() const { return m_connection.get(); }
    [[nodiscard]] const std::string &address() const { return m_address; }
    [[nodiscard]] std::optional<uid_t> user() const { return m_user; }

private:
    std::optional<uid_t> m_user;
    TemporaryFolder m_folder;
    std::unique_ptr<ChildProcess> m_daemon;
    std::string m_address;
    platform::GioPtr<GDBusConnection> m_connection;
};

/// A GNOME Keyring with files of its own that can be stopped, locked and started again. Its bus
/// becomes this process's session bus.
class KeyringDesktop
{
public:
    enum class Start {
        Unlocked, ///< the login keyring is open
        Locked,   ///< nobody has given the password since the start
    };
    using Attributes = QMap<QString, QString>;

    explicit KeyringDesktop(const SessionBus &bus);
    ~KeyringDesktop();
    KeyringDesktop(const KeyringDesktop &) = delete;
    KeyringDesktop &operator=(const KeyringDesktop &) = delete;

    /// `environment` is for a copy of the daemon without its privileges, which would make it ignore
    /// some of that. False when the daemon does not come up.
    [[nodiscard]] bool startKeyring(Start start = Start::Unlocked,
                                    std::map<std::string, std::string> environment = {});
    void killKeyring();
    void signalKeyring(int number) const { m_daemon->signal(number); }
    /// Locks or unlocks the login keyring of the running daemon.
    [[nodiscard]] bool lock();

    /// The attributes of the items of `service`, read without the code under test. None when the
    /// service does not answer.
    [[nodiscard]] std::optional<QList<Attributes>> items(const QString &service) const;
    /// Deletes every item of `service` behind the wallet's back.
    [[nodiscard]] bool deleteItems(const QString &service) const;

    [[nodiscard]] QString file(const char *name) const;

private:
    [[nodiscard]] platform::GioPtr<GVariant> call(const char *path, const char *interface,
                                                  const char *method, GVariant *parameters) const;
    [[nodiscard]] std::optional<QStringList> paths(const QString &service) const;

    const SessionBus &m_bus;
    TemporaryFolder m_folder;
    std::unique_ptr<ChildProcess> m_daemon;
};

/// A session bus's or system bus's configuration that lets everybody do everything and starts no
/// service.
[[nodiscard]] std::string busConfiguration(const std::string &type, const std::string &socket);

} // namespace corvane::tests
