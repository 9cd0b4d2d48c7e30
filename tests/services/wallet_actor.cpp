// A wallet without a user interface: it has the same keychain as the program and a user who agrees
// until told otherwise, reads commands from standard input and replies to each with one line, so
// that tests can kill it and stop its services.
//
// wallet_actor <accounts file> [<milliseconds for each call to the keyring>]

#include "keys/key_vault.h"
#include "platform/linux/keyring/secret_service_keychain.h"
#include "platform/linux/process/process_hardening.h"
#include "tests/fakes/fake_desktop.h"
#include "tests/fakes/secrets.h"

#include <QByteArray>

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <string>
#include <utility>

namespace {

using namespace corvane;
using namespace corvane::platform;

SecretBytes fromHex(const QString &hex)
{
    const QByteArray bytes = QByteArray::fromHex(hex.toLatin1());
    return SecretBytes::copyOf(std::vector<std::uint8_t>(bytes.begin(), bytes.end()));
}

std::string toHex(const std::optional<SecretBytes> &data)
{
    return data ? tests::textOf(*data).toLatin1().toHex().toStdString() : "nothing";
}

class Actor
{
public:
    /// `limit` is the time limit for each call to the keyring.
    Actor(const QString &accounts, std::chrono::milliseconds limit)
        : m_keychain(m_willing, accounts, {.quick = limit, .unlock = limit, .presence = limit})
    {}

    std::string obey(const QString &command, const QString &rest)
    {
        if (command == u"store") {
            return std::to_string(platform::codeOf(
                m_vault.storeStatus(fromHex(rest.section(u' ', 0, 0)),
                                    *keys::Address::fromText(rest.section(u' ', 1)))));
        }
        if (command == u"add") {
            const bool isProtected = rest.endsWith(u"user-presence");
            return std::to_string(platform::codeOf(m_keychain.add(
                service, rest.section(u' ', 1, 1), fromHex(rest.section(u' ', 0, 0)),
                isProtected ? KeychainProtection::UserPresence : KeychainProtection::None)));
        }
        if (command == u"remove") {
            return std::to_string(platform::codeOf(m_keychain.remove(service)));
        }
        if (command == u"account") {
            return m_vault.pubkey().value_or(QStringLiteral("none")).toStdString();
        }
        if (command == u"remembered") {
            return m_vault.rememberedPubkey().value_or(QStringLiteral("none")).toStdString();
        }
        if (command == u"read") {
            return toHex(m_vault.loadSecret({PresenceReason::Unlock, rest}));
        }
        if (command == u"agree") {
            m_willing.agrees = rest == u"yes";
            return "well";
        }
        if (command == u"asked") {
            return std::to_string(std::exchange(m_willing.reasons, {}).size());
        }
        return "unknown command";
    }

private:
    const QString service = keys::KeyVault::serviceName;
    tests::FakeAuthenticator m_willing{true};
    SecretServiceKeychain m_keychain;
    keys::KeyVault m_vault{m_keychain};
};

} // namespace

int main(int count, char **arguments)
{
    if (count < 2 || !hardenProcess()) {
        return 2;
    }
    const std::chrono::milliseconds limit(count > 2 ? std::atoi(arguments[2]) : 60'000);
    Actor actor(QString::fromUtf8(arguments[1]), limit);
    std::cout << "ready" << std::endl;
    for (std::string line; std::getline(std::cin, line);) {
        const QString text = QString::fromStdString(line);
        std::cout << actor.obey(text.section(u' ', 0, 0), text.section(u' ', 1)) << std::endl;
    }
    return 0;
}
