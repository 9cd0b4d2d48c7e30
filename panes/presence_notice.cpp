#include "panes/presence_notice.h"

#include "core/wallet_model.h"
#include "island/presence_wording.h"
#include "platform/authenticator.h"
#include "platform/main_queue.h"

namespace corvane::panes {

using core::WalletModel;
using platform::PresenceMeans;

PresenceNotice::PresenceNotice(WalletModel &wallet, platform::Authenticator &authenticator,
                               platform::MainQueue &queue, QObject *parent)
    : QObject(parent)
    , m_wallet(wallet)
    , m_authenticator(authenticator)
    , m_queue(queue)
{
    connect(&m_wallet, &WalletModel::signingPubkeyChanged, this, &PresenceNotice::findOut);
    connect(&m_wallet, &WalletModel::sessionSecretChanged, this, &PresenceNotice::findOut);
    findOut();
}

void PresenceNotice::findOut()
{
    Q_EMIT changed();
    // The reply may come on any thread.
    m_authenticator.canEvaluate([notice = QPointer(this), &queue = m_queue](PresenceMeans means) {
        queue.post([notice, means] {
            if (notice) {
                notice->m_means = means;
                Q_EMIT notice->changed();
            }
        });
    });
    if (m_wallet.hasSigningKey() && !m_wallet.sessionSecret()) {
        findProtection(this);
    }
}

QCoro::Task<> PresenceNotice::findProtection(QPointer<PresenceNotice> notice)
{
    auto finding = notice->m_wallet.isKeyProtected();
    const bool isProtected = co_await finding;
    if (notice) {
        notice->m_keyIsProtected = isProtected;
        Q_EMIT notice->changed();
    }
}

QString PresenceNotice::keyText() const
{
    const bool isOutOfReach =
        m_wallet.hasSigningKey() && !m_wallet.sessionSecret() && m_keyIsProtected;
    return isOutOfReach ? island::presenceWording(m_means) : QString();
}

QString PresenceNotice::newKeyText() const
{
    switch (m_means) {
    case PresenceMeans::Available:
        return {};
    case PresenceMeans::NoAgent:
        return QStringLiteral(
            "nobody can ask for your password, so the key will lie unprotected in "
            "the keychain: to protect it, start a polkit agent and then corvane "
            "again");
    case PresenceMeans::NotInstalled:
        break;
    }
    return QStringLiteral(
        "nobody can ask for your password, so the key will lie unprotected in the "
        "keychain: to protect it, install polkit and corvane's polkit action");
}

} // namespace corvane::panes
