// A wallet without a user interface: it has the same adapters as the program, reads commands from
// standard input and replies to each with one line, so that tests can run it as another user, kill
// it, and stop its services.
//
// wallet_actor <accounts file> polkit|willing [<milliseconds for the user> [<for the keyring>]]

#include "keys/key_vault.h"
#include "platform/linux/bus/gio_calls.h"
#include "platform/linux/keyring/polkit_authenticator.h"
#include "platform/linux/keyring/secret_service_keychain.h"
#include "platform/linux/process/process_hardening.h"
#include "platform/thread_background_tasks.h"
#include "tests/fakes/fake_desktop.h"
#include "tests/fakes/secrets.h"

#include <QByteArray>

#include <chrono>
#include <future>
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

/// A prompt with this text; its first word selects the reason.
PresencePrompt promptOf(const QString &text)
{
    const QString word = text.section(u' ', 0, 0);
    const PresenceReason reason = word == u"reveal" ? PresenceReason::Reveal
                                  : word == u"send" ? PresenceReason::Send
                                                    : PresenceReason::Unlock;
    return {reason, text};
}

template <typename Answer, typename Start>
Answer replyOf(Start start)
{
    std::promise<Answer> answer;
    start([&](Answer value) { answer.set_value(value); });
    return answer.get_future().get();
}

class Actor
{
public:
    /// `willing` reports the prompts it has received; `bound` is the time limit for each call to
    /// the keyring.
    Actor(Authenticator &authenticator, tests::FakeAuthenticator &willing, const QString &accounts,
          std::chrono::milliseconds bound)
        : m_authenticator(authenticator)
        , m_willing(willing)
        , m_keychain(authenticator, accounts, {.quick = bound, .unlock = bound, .presence = bound})
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
            return toHex(m_vault.loadSecret(promptOf(rest)));
        }
        if (command == u"open") {
            return toHex(m_vault.loadSecret(*m_context));
        }
        if (command == u"agree") {
            m_willing.agrees = rest == u"yes";
            return "well";
        }
        if (command == u"asked") {
            return std::to_string(std::exchange(m_willing.reasons, {}).size());
        }
        if (command == u"can") {
            const auto means =
                replyOf<PresenceMeans>([&](auto reply) { m_authenticator.canEvaluate(reply); });
            return means == PresenceMeans::Available ? "yes"
                   : means == PresenceMeans::NoAgent ? "no agent"
                                                     : "not installed";
        }
        if (command == u"protected") {
            return m_vault.isProtected() ? "yes" : "no";
        }
        if (command == u"evaluate") {
            m_context = m_authenticator.makeContext({});
            const auto answer = replyOf<PresenceAnswer>(
                [&](auto reply) { m_authenticator.evaluate(m_context, promptOf(rest), reply); });
            if (m_context->passed() != (answer == PresenceAnswer::Passed)) {
                return "the context says something else";
            }
            return answer == PresenceAnswer::Passed    ? "passed"
                   : answer == PresenceAnswer::Refused ? "refused"
                                                       : "nobody";
        }
        return "unknown command";
    }

private:
    const QString service = keys::KeyVault::serviceName;
    Authenticator &m_authenticator;
    tests::FakeAuthenticator &m_willing;
    SecretServiceKeychain m_keychain;
    keys::KeyVault m_vault{m_keychain};
    std::shared_ptr<AuthenticationContext> m_context = m_authenticator.makeContext({});
};

} // namespace

int main(int count, char **arguments)
{
    if (count < 3 || !hardenProcess()) {
        return 2;
    }
    const std::chrono::milliseconds userBound(count > 3 ? std::atoi(arguments[3]) : 60'000);
    const std::chrono::milliseconds keyringBound(count > 4 ? std::atoi(arguments[4]) : 60'000);
    ThreadBackgroundTasks background;
    PolkitAuthenticator polkit(background, userBound);
    // Keeps a connection to the system bus, as the program does: otherwise polkit would treat the
    // end of an evaluation as the end of the program.
    const GioPtr<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr));
    if (bus != nullptr) {
        g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
    }
    tests::FakeAuthenticator willing(true);
    const bool usesPolkit = std::string(arguments[2]) == "polkit";
    Actor actor(usesPolkit ? static_cast<Authenticator &>(polkit) : willing, willing,
                QString::fromUtf8(arguments[1]), keyringBound);
    std::cout << "ready" << std::endl;
    for (std::string line; std::getline(std::cin, line);) {
        const QString text = QString::fromStdString(line);
        std::cout << actor.obey(text.section(u' ', 0, 0), text.section(u' ', 1)) << std::endl;
    }
    return 0;
}
