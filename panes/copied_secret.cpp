#include "panes/copied_secret.h"

#include "core/wallet_model.h"

namespace corvane::panes {

CopiedSecret::CopiedSecret(core::WalletModel &wallet, platform::Clipboard &clipboard,
                           platform::MainQueue &queue)
    : m_clipboard(clipboard)
    , m_queue(queue)
{
    connect(&wallet, &core::WalletModel::signingPubkeyChanged, this, [this, &wallet] {
        if (!wallet.hasSigningKey()) {
            clear();
        }
    });
}

CopiedSecret::~CopiedSecret()
{
    // At the end of the program Qt would otherwise hand it over to a clipboard manager.
    clear();
}

void CopiedSecret::copy(QStringView text)
{
    if (m_clearing) {
        m_clearing->cancel();
    }
    m_clipboard.setSecret(text);
    m_clearing = m_queue.after(keptFor, [this] { clear(); });
}

void CopiedSecret::clear()
{
    if (m_clearing) {
        m_clearing->cancel();
        m_clearing.reset();
        m_clipboard.clearSecret();
    }
}

} // namespace corvane::panes
