#include "keyring_desktop.h"
#include "keys/key_vault.h"
#include "platform/linux/remembered_accounts.h"

#include <gtest/gtest.h>

#include <fstream>
#include <set>

namespace corvane::tests {

namespace {

const QString service = keys::KeyVault::serviceName;
const QString leftovers = service + QStringLiteral(".unfinished");
const std::string oldAccount = "4zMMC9srt5Ri5X14GAgXhaHii3GnPAEERYPJgZJDncDU";
const std::string newAccount = "9WzDXwBbmkg8ZTbNMqUxvQRAyrZzDsGYdLVL9zYtAWWM";
const std::string oldSeed(64, 'a');
const std::string newSeed(64, 'b');

std::vector<std::string> walletCommand(const QString &accounts)
{
    return {WALLET_ACTOR, accounts.toStdString(), "willing"};
}

/// Kills a program at the given step after it has been armed.
class KillSwitch
{
public:
    KillSwitch(int step, const char *when)
        : environment{{"LD_PRELOAD", KILL_POINTS},
                      {"CORVANE_KILL_STEP", std::to_string(step)},
                      {"CORVANE_KILL_WHEN", when},
                      {"CORVANE_KILL_ARMED", m_folder.path() + "/armed"}}
    {}
    void arm() const { std::ofstream file(environment.at("CORVANE_KILL_ARMED")); }

private:
    TemporaryFolder m_folder;

public:
    const std::map<std::string, std::string> environment;
};

TEST(KeyCrashTest, AKillLeavesTheOldKeyNoKeyOrTheNewKey)
{
    const SessionBus bus;
    KeyringDesktop desktop(bus);
    ASSERT_TRUE(desktop.startKeyring());
    const QString accounts = desktop.file("accounts.json");
    const platform::RememberedAccounts memory(accounts);
    ChildProcess wallet(walletCommand(accounts));
    ASSERT_EQ(wallet.readLine(), "ready");

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
                EXPECT_TRUE(desktop.items(leftovers).value().isEmpty());
                KillSwitch killSwitch(step, when);
                ChildProcess victim(walletCommand(accounts), killSwitch.environment);
                ASSERT_EQ(victim.readLine(), "ready");
                killSwitch.arm();
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
        }
        EXPECT_TRUE(outcomes.contains(oldAccount));
        EXPECT_TRUE(outcomes.contains("none"));
        EXPECT_EQ(outcomes.contains(newAccount), command != "remove");
    }
}

TEST(KeyCrashTest, AKeyringKilledMeanwhileLeavesAWholeKeyOrNone)
{
    const SessionBus bus;
    KeyringDesktop desktop(bus);
    ChildProcess wallet(walletCommand(desktop.file("accounts.json")));
    ASSERT_EQ(wallet.readLine(), "ready");
    std::set<std::string> outcomes;
    bool died = true;
    int step = 0;
    while (died) {
        ++step;
        SCOPED_TRACE(step);
        ASSERT_LT(step, 1000);
        KillSwitch killSwitch(step, "after");
        ASSERT_TRUE(desktop.startKeyring(KeyringDesktop::Start::Unlocked, killSwitch.environment));
        ASSERT_EQ(wallet.ask("store " + oldSeed + ' ' + oldAccount), "0");
        EXPECT_TRUE(desktop.items(leftovers).value().isEmpty());
        killSwitch.arm();
        const std::string answer = wallet.ask("store " + newSeed + ' ' + newAccount);
        died = !desktop.items(service).has_value();
        desktop.killKeyring();

        ASSERT_TRUE(desktop.startKeyring());
        const auto items = desktop.items(service);
        ASSERT_TRUE(items.has_value());
        ASSERT_LE(items->size(), 1);
        const std::string account = wallet.ask("account");
        const std::string secret = wallet.ask("read why");
        outcomes.insert(account);
        if (answer == "0") {
            EXPECT_EQ(account, newAccount);
        }
        EXPECT_EQ(secret, account == oldAccount   ? oldSeed
                          : account == newAccount ? newSeed
                                                  : "nothing");
        desktop.killKeyring();
    }
    EXPECT_GT(step, 10);
    EXPECT_EQ(outcomes, (std::set<std::string>{oldAccount, newAccount, "none"}));
}

TEST(KeyCrashTest, AProgramWithoutABusHasNoKeychain)
{
    const TemporaryFolder folder;
    ChildProcess wallet(walletCommand(QString::fromStdString(folder.path() + "/accounts.json")),
                        {{"DBUS_SESSION_BUS_ADDRESS", "unix:path=" + folder.path() + "/none"}});
    ASSERT_EQ(wallet.readLine(), "ready");
    EXPECT_EQ(wallet.ask("account"), "none");
    EXPECT_EQ(wallet.ask("remove"), "kept");
    EXPECT_EQ(wallet.ask("store " + newSeed + ' ' + newAccount),
              std::to_string(platform::keychainNotAvailable));
    EXPECT_EQ(wallet.ask("read why"), "nothing");
}

} // namespace

} // namespace corvane::tests
