#pragma once

#include "panes/passing_flag.h"
#include "platform/application.h"

#include <QCoroTask>

#include <QList>
#include <QObject>
#include <QString>
#include <QtQmlIntegration/qqmlintegration.h>

#include <chrono>
#include <optional>

namespace corvane::core {
class WalletModel;
} // namespace corvane::core

namespace corvane::island {
class IslandController;
} // namespace corvane::island

namespace corvane::panes {

/// The model of the settings card: the settings, which take effect with every key press, and the
/// backup and removal of the key. Main thread.
class SettingsCardModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by CardModels")
    Q_PROPERTY(QString address READ address WRITE setAddress NOTIFY changed FINAL)
    /// The error message for the address; empty if there is none.
    Q_PROPERTY(QString addressError READ addressError NOTIFY changed FINAL)
    /// Why the typed endpoint cannot be one; empty if it can be or if there is none.
    Q_PROPERTY(QString customRPCError READ customRPCError NOTIFY changed FINAL)
    /// As typed; empty for none.
    Q_PROPERTY(QString customRPC READ customRPC WRITE setCustomRPC NOTIFY changed FINAL)
    /// The public endpoint of the network.
    Q_PROPERTY(QString rpcPlaceholder READ rpcPlaceholder NOTIFY changed FINAL)
    /// The text that names the endpoint in use.
    Q_PROPERTY(QString rpcSource READ rpcSource NOTIFY changed FINAL)
    /// Since when the endpoint in use does not answer; empty while it does.
    Q_PROPERTY(QString rpcSilence READ rpcSilence NOTIFY changed FINAL)
    /// True if the public endpoint is in use.
    Q_PROPERTY(bool rpcIsPublic READ rpcIsPublic NOTIFY changed FINAL)
    Q_PROPERTY(QList<QString> networks READ networks CONSTANT FINAL)
    /// Index of the current network in `networks`.
    Q_PROPERTY(int network READ network WRITE setNetwork NOTIFY changed FINAL)
    Q_PROPERTY(bool hasKey READ hasKey NOTIFY changed FINAL)
    /// The text that distinguishes a wallet with a key from one that only watches an address.
    Q_PROPERTY(QString walletText READ walletText NOTIFY changed FINAL)
    /// A reminder of a key without a backup; empty if there is a backup or no key.
    Q_PROPERTY(QString backupText READ backupText NOTIFY changed FINAL)
    /// The label of the remove button; after the first press it asks for a second.
    Q_PROPERTY(QString removeLabel READ removeLabel NOTIFY removeLabelChanged FINAL)

public:
    /// `doubleClick`: the desktop's interval for double clicks.
    SettingsCardModel(core::WalletModel &wallet, island::IslandController &island,
                      platform::Application &application, platform::MainQueue &queue,
                      std::chrono::milliseconds doubleClick, QObject *parent = nullptr);

    /// Shows the key on the backup card. Asks the user to unlock it first if necessary; a refusal
    /// changes nothing.
    Q_INVOKABLE void backup();
    /// Removes the wallet if called twice within three seconds, but not for the second press of a
    /// double click.
    Q_INVOKABLE void remove();
    /// Exits the program.
    Q_INVOKABLE void quit();
    /// Shows the balance card and starts a refresh.
    Q_INVOKABLE void done();

    [[nodiscard]] QString address() const;
    void setAddress(const QString &address);
    [[nodiscard]] QString addressError() const;
    [[nodiscard]] QString customRPC() const;
    void setCustomRPC(const QString &customRPC);
    [[nodiscard]] QString customRPCError() const;
    [[nodiscard]] QString rpcPlaceholder() const;
    [[nodiscard]] QString rpcSource() const;
    [[nodiscard]] QString rpcSilence() const;
    [[nodiscard]] bool rpcIsPublic() const;
    [[nodiscard]] QList<QString> networks() const;
    [[nodiscard]] int network() const;
    void setNetwork(int network);
    [[nodiscard]] bool hasKey() const;
    [[nodiscard]] QString walletText() const;
    [[nodiscard]] QString backupText() const;
    [[nodiscard]] QString removeLabel() const;

Q_SIGNALS:
    void changed();
    void removeLabelChanged();

private:
    /// Continues after the card is destroyed, because the user may already have agreed.
    static QCoro::Task<> showBackup(QPointer<core::WalletModel> wallet,
                                    QPointer<island::IslandController> island);

    core::WalletModel &m_wallet;
    island::IslandController &m_island;
    platform::Application &m_application;
    platform::MainQueue &m_queue;
    PassingFlag m_confirmRemove;
    const std::chrono::nanoseconds m_doubleClick;
    std::optional<std::chrono::nanoseconds> m_lastPress;
};

} // namespace corvane::panes
