#include "keyring_desktop.h"
#include "keys/key_vault.h"
#include "platform/linux/remembered_accounts.h"

#include <gtest/gtest.h>

#include <csignal>
#include <set>

namespace corvane::tests {

namespace {

const QString service = keys::KeyVault::serviceName;
const std::string oldAccount = "4zMMC9srt5Ri5X14GAgXhaHii3GnPAEERYPJgZJDncDU";
const std::string newAccount = "9WzDXwBbmkg8ZTbNMqUxvQRAyrZzDsGYdLVL9zYtAWWM";
const std::string oldSeed(64, 'a');
const std::string newSeed(64, 'b');

class Wallet
{
public:
    explicit Wallet(const QString &accounts, std::map<std::string, std::string> environment = {})
        : m_process({WALLET_ACTOR, accounts.toStdString(), "willing"}, std::move(environment))
    {
        m_ready = m_process.readLine() == "ready";
    }

    /// "died" instead of an answer when the process has gone.
    std::string ask(const std::string &command)
    {
        m_process.write(command + '\n');
        return m_process.readLine().value_or("died");
    }
    [[nodiscard]] bool ready() const { return m_ready; }

private:
    ChildProcess m_process;
    bool m_ready = false;
};

TEST(KeyCrashTest, AKillLeavesTheOldKeyNoKeyOrTheNewKey)
{
    const SessionBus bus;
    KeyringDesktop desktop(bus);
    ASSERT_TRUE(desktop.startKeyring());
    const QString accounts = desktop.file("accounts.json");
    const platform::RememberedAccounts memory(accounts);
    Wallet wallet(accounts);
    ASSERT_TRUE(wallet.ready());

    for (const std::string &command :
         {"store " + newSeed + ' ' + newAccount, std::string("remove")}) {
        std::set<std::string> outcomes;
        for (const char *when : {"before", "after"}) {
            bool died = true;
            int step = 0;
            while (died) {
                ++step;
                SCOPED_TRACE(command.substr(0, 6) + ' ' + when + " step " + std::to_string(step));
                ASSERT_LT(step, 1000);
                ASSERT_EQ(wallet.ask("store " + oldSeed + ' ' + oldAccount), "0");
                Wallet victim(accounts, {{"LD_PRELOAD", KILL_POINTS},
                                         {"CORVANE_KILL_STEP", std::to_string(step)},
                                         {"CORVANE_KILL_WHEN", when}});
                ASSERT_TRUE(victim.ready());
                ASSERT_EQ(victim.ask("arm"), "armed");
                died = victim.ask(command) == "died";

                // The service has answered this after everything that the victim asked it for.
                const auto items = desktop.items(service);
                ASSERT_TRUE(items.has_value());
                ASSERT_LE(items->size(), 1);
                // What a locked keyring would answer, before the wallet puts it right.
                const auto remembered = memory.find(service);
                const std::string account = wallet.ask("account");
                const std::string secret = wallet.ask("read why");
                outcomes.insert(account);
                if (items->isEmpty()) {
                    EXPECT_EQ(account, "none");
                    EXPECT_EQ(secret, "nothing");
                    continue;
                }
                EXPECT_EQ(items->front().value(QStringLiteral("account")).toStdString(), account);
                ASSERT_TRUE(remembered.has_value());
                EXPECT_EQ(remembered->account.toStdString(), account);
                ASSERT_TRUE(account == oldAccount || account == newAccount);
                EXPECT_EQ(secret, account == oldAccount ? oldSeed : newSeed);
            }
            EXPECT_GT(step, 10);
            RecordProperty(command.substr(0, 6) + '_' + when, step - 1);
        }
        EXPECT_TRUE(outcomes.contains(oldAccount));
        EXPECT_TRUE(outcomes.contains("none"));
        EXPECT_EQ(outcomes.contains(newAccount), command != "remove");
    }
}

TEST(KeyCrashTest, AKeyringThatIsKilledKeepsAWholeKeyOrNone)
{
    const SessionBus bus;
    KeyringDesktop desktop(bus);
    Wallet wallet(desktop.file("accounts.json"));
    ASSERT_TRUE(wallet.ready());
    for (int round = 0; round < 5; ++round) {
        SCOPED_TRACE(round);
        ASSERT_TRUE(desktop.startKeyring());
        const bool stored = wallet.ask("store " + newSeed + ' ' + newAccount) == "0";
        EXPECT_TRUE(stored);
        desktop.killKeyring();
        EXPECT_EQ(wallet.ask("account"), newAccount);
        ASSERT_TRUE(desktop.startKeyring());
        EXPECT_EQ(wallet.ask("read why"), newSeed);
        desktop.killKeyring();
    }
}

TEST(KeyCrashTest, AProgramWithoutABusHasNoKeychain)
{
    const TemporaryFolder folder;
    Wallet wallet(QString::fromStdString(folder.path() + "/accounts.json"),
                  {{"DBUS_SESSION_BUS_ADDRESS", "unix:path=" + folder.path() + "/none"}});
    ASSERT_TRUE(wallet.ready());
    EXPECT_EQ(wallet.ask("account"), "none");
    EXPECT_EQ(wallet.ask("remove"), "kept");
    EXPECT_EQ(wallet.ask("store " + newSeed + ' ' + newAccount),
              std::to_string(platform::keychainNotAvailable));
    EXPECT_EQ(wallet.ask("read why"), "nothing");
}

} // namespace

} // namespace corvane::tests
