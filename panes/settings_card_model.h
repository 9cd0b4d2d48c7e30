#pragma once

#include "panes/passing_flag.h"
#include "platform/application.h"

#include <QCoroTask>

#include <QList>
#include <QObject>
#include <QString>
#include <QtQmlIntegration/qqmlintegration.h>

namespace corvane::core {
class WalletModel;
} // namespace corvane::core

namespace corvane::island {
class IslandController;
} // namespace corvane::island

namespace corvane::panes {

/// The settings, which take effect with every key, and the last things to do with a key. Main
/// thread.
class SettingsCardModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by CardModels")
    Q_PROPERTY(QString address READ address WRITE setAddress NOTIFY changed FINAL)
    /// What is wrong with the address; empty while nothing is.
    Q_PROPERTY(QString addressError READ addressError NOTIFY changed FINAL)
    /// As typed; empty for none.
    Q_PROPERTY(QString customRPC READ customRPC WRITE setCustomRPC NOTIFY changed FINAL)
    /// The public endpoint of the network.
    Q_PROPERTY(QString rpcPlaceholder READ rpcPlaceholder NOTIFY changed FINAL)
    /// Which endpoint is in use, in words.
    Q_PROPERTY(QString rpcSource READ rpcSource NOTIFY changed FINAL)
    /// `rpcSource` names the public endpoint.
    Q_PROPERTY(bool rpcIsPublic READ rpcIsPublic NOTIFY changed FINAL)
    Q_PROPERTY(QList<QString> networks READ networks CONSTANT FINAL)
    /// Index of the current one among `networks`.
    Q_PROPERTY(int network READ network WRITE setNetwork NOTIFY changed FINAL)
    Q_PROPERTY(bool hasKey READ hasKey NOTIFY changed FINAL)
    /// Whether this is a wallet or only watches, in words.
    Q_PROPERTY(QString walletText READ walletText NOTIFY changed FINAL)
    /// Asks for the second press after the first.
    Q_PROPERTY(QString removeLabel READ removeLabel NOTIFY removeLabelChanged FINAL)

public:
    SettingsCardModel(core::WalletModel &wallet, island::IslandController &island,
                      platform::Application &application, platform::MainQueue &queue,
                      QObject *parent = nullptr);

    /// Asks for the key where it must, and shows it on the backup card. A refusal changes nothing.
    Q_INVOKABLE void backup();
    /// Removes the wallet when pressed twice within three seconds.
    Q_INVOKABLE void remove();
    /// Ends the program.
    Q_INVOKABLE void quit();
    /// Back to the balance, with fresh figures.
    Q_INVOKABLE void done();

    [[nodiscard]] QString address() const;
    void setAddress(const QString &address);
    [[nodiscard]] QString addressError() const;
    [[nodiscard]] QString customRPC() const;
    void setCustomRPC(const QString &customRPC);
    [[nodiscard]] QString rpcPlaceholder() const;
    [[nodiscard]] QString rpcSource() const;
    [[nodiscard]] bool rpcIsPublic() const;
    [[nodiscard]] QList<QString> networks() const;
    [[nodiscard]] int network() const;
    void setNetwork(int network);
    [[nodiscard]] bool hasKey() const;
    [[nodiscard]] QString walletText() const;
    [[nodiscard]] QString removeLabel() const;

Q_SIGNALS:
    void changed();
    void removeLabelChanged();

private:
    /// Goes on when the card is gone: the user has been asked and has agreed.
    static QCoro::Task<> showBackup(QPointer<core::WalletModel> wallet,
                                    QPointer<island::IslandController> island);

    core::WalletModel &m_wallet;
    island::IslandController &m_island;
    platform::Application &m_application;
    PassingFlag m_confirmRemove;
};

} // namespace corvane::panes
