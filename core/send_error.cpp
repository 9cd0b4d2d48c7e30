#include "core/send_error.h"

namespace corvane::core {

using namespace Qt::StringLiterals;

SendError SendError::keychainRefused(platform::KeychainStatus status)
{
    return rpc(
        u"keychain refused the key (error %1) — try again, and tell me this code if it persists"_s
            .arg(platform::codeOf(status)));
}

QString SendError::description() const
{
    switch (m_kind) {
    case Kind::Rpc:
        return m_text;
    case Kind::BadKey:
        return u"that key doesn't decode — paste the base58 secret key or a JSON byte array"_s;
    case Kind::Locked:
        return u"touch id cancelled — nothing was sent"_s;
    case Kind::BadRecipient:
        return u"recipient isn't a valid solana address"_s;
    case Kind::BadAmount:
        return u"bad amount"_s;
    }
    Q_UNREACHABLE();
}

} // namespace corvane::core
