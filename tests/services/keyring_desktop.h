#pragma once

#include "child_process.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QMap>
#include <QTemporaryDir>

#include <memory>

namespace corvane::tests {

/// A session bus of its own, which lets everybody do everything and starts no service.
class SessionBus
{
public:
    SessionBus();

    [[nodiscard]] const QDBusConnection &connection() const { return *m_connection; }
    [[nodiscard]] const std::string &address() const { return m_address; }

private:
    QTemporaryDir m_folder;
    std::unique_ptr<ChildProcess> m_daemon;
    std::string m_address;
    std::optional<QDBusConnection> m_connection;
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
    ~KeyringDesktop() { killKeyring(); }

    /// False when the daemon does not come up.
    [[nodiscard]] bool startKeyring(Start start = Start::Unlocked);
    void killKeyring();
    void signalKeyring(int number) const;
    /// Locks the login keyring of the running daemon.
    [[nodiscard]] bool lock() const;

    /// The attributes of the items of `service`, read without the code under test. None when the
    /// service does not answer.
    [[nodiscard]] std::optional<QList<Attributes>> items(const QString &service) const;
    /// Deletes every item of `service` behind the wallet's back.
    [[nodiscard]] bool deleteItems(const QString &service) const;

    [[nodiscard]] QString file(const char *name) const;

private:
    [[nodiscard]] QDBusMessage call(const QString &path, const char *interface, const char *method,
                                    const QVariantList &arguments) const;
    [[nodiscard]] std::optional<QStringList> paths(const QString &service) const;

    const SessionBus &m_bus;
    QTemporaryDir m_folder;
    std::unique_ptr<ChildProcess> m_daemon;
};

} // namespace corvane::tests
