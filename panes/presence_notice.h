#pragma once

#include "platform/presence.h"

#include <QCoroTask>

#include <QObject>
#include <QPointer>
#include <QString>
#include <QtQmlIntegration/qqmlintegration.h>

namespace corvane::core {
class WalletModel;
} // namespace corvane::core

namespace corvane::platform {
class Authenticator;
class MainQueue;
} // namespace corvane::platform

namespace corvane::panes {

/// What a card says where nobody can ask the user to prove presence. Found out without a prompt,
/// when the card appears and again whenever the key was read or could not be. Main thread.
class PresenceNotice : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by CardModels")
    /// Why the stored key cannot be read; empty if it can, or if it is in memory already.
    Q_PROPERTY(QString keyText READ keyText NOTIFY changed FINAL)
    /// Why a key that is stored now would lie unprotected; empty if it would not.
    Q_PROPERTY(QString newKeyText READ newKeyText NOTIFY changed FINAL)

public:
    PresenceNotice(core::WalletModel &wallet, platform::Authenticator &authenticator,
                   platform::MainQueue &queue, QObject *parent = nullptr);

    [[nodiscard]] QString keyText() const;
    [[nodiscard]] QString newKeyText() const;

Q_SIGNALS:
    void changed();

private:
    void findOut();
    static QCoro::Task<> findProtection(QPointer<PresenceNotice> notice);

    core::WalletModel &m_wallet;
    platform::Authenticator &m_authenticator;
    platform::MainQueue &m_queue;
    platform::PresenceMeans m_means = platform::PresenceMeans::Available;
    /// False until it is known.
    bool m_keyIsProtected = false;
};

} // namespace corvane::panes
