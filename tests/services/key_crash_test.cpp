#include "keyring_desktop.h"
#include "keys/key_vault.h"
#include "platform/linux/keyring/remembered_accounts.h"

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
const std::string storeOld = "store " + oldSeed + ' ' + oldAccount;
const std::string storeNew = "store " + newSeed + ' ' + newAccount;

/// A wallet that has got ready; `environment` is added to that of this process.
class Wallet : public ChildProcess
{
public:
    explicit Wallet(const QString &accounts, const std::map<std::string, std::string> &more = {})
        : ChildProcess({WALLET_ACTOR, accounts.toStdString(), "willing"}, more)
    {
        EXPECT_EQ(readLine(), "ready");
    }

    /// The account of the key that it holds, which must be whole; "none" without one.
    std::string wholeKey()
    {
        const std::string account = ask("account");
        EXPECT_EQ(ask("read why"), account == oldAccount   ? oldSeed
                                   : account == newAccount ? newSeed
                                                           : "nothing");
        return account;
    }
};

/// Kills a program at the given step after it has been armed.
class KillSwitch
{
public:
    KillSwitch(int step, const char *when)
        : environment{{"LD_PRELOAD", KILL_POINTS},
                      {"CORVANE_KILL_STEP", std::to_string(step)},
                      {"CORVANE_KILL_WHEN", when},
                      {"CORVANE_KILL_ARMED", m_folder.path().toStdString() + "/armed"}}
    {}
    void arm() const { std::ofstream file(environment.at("CORVANE_KILL_ARMED")); }

private:
    QTemporaryDir m_folder;

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
    Wallet wallet(accounts);
    for (const auto &[command, outcomes] : std::map<std::string, std::set<std::string>>{
             {storeNew, {oldAccount, newAccount, "none"}}, {"remove", {oldAccount, "none"}}}) {
        std::set<std::string> seen;
        for (const char *when : {"before", "after"}) {
            bool died = true;
            int step = 0;
            while (died) {
                ++step;
                SCOPED_TRACE(command.substr(0, 6) + ' ' + when + " step " + std::to_string(step));
                ASSERT_LT(step, 1000);
                ASSERT_EQ(wallet.ask(storeOld), "0");
                EXPECT_TRUE(desktop.items(leftovers).value().isEmpty());
                const KillSwitch killSwitch(step, when);
                Wallet victim(accounts, killSwitch.environment);
                killSwitch.arm();
                died = victim.ask(command) == "died";

                // The service has answered this after everything that the victim asked it for.
                const auto items = desktop.items(service).value();
                ASSERT_LE(items.size(), 1);
                // What a locked keyring would answer, before the wallet puts it right.
                const auto remembered = memory.find(service);
                const std::string account = wallet.wholeKey();
                seen.insert(account);
                if (items.isEmpty()) {
                    EXPECT_EQ(account, "none");
                } else {
                    EXPECT_EQ(items[0].value(QStringLiteral("account")).toStdString(), account);
                    ASSERT_TRUE(remembered.has_value());
                    EXPECT_EQ(remembered->account.toStdString(), account);
                }
            }
            EXPECT_GT(step, 10);
        }
        EXPECT_EQ(seen, outcomes);
    }
}

TEST(KeyCrashTest, AKeyringKilledMeanwhileLeavesAWholeKeyOrNone)
{
    const SessionBus bus;
    KeyringDesktop desktop(bus);
    Wallet wallet(desktop.file("accounts.json"));
    std::set<std::string> outcomes;
    bool died = true;
    int step = 0;
    while (died) {
        ++step;
        SCOPED_TRACE(step);
        ASSERT_LT(step, 1000);
        const KillSwitch killSwitch(step, "after");
        ASSERT_TRUE(desktop.startKeyring(KeyringDesktop::Start::Unlocked, killSwitch.environment));
        ASSERT_EQ(wallet.ask(storeOld), "0");
        EXPECT_TRUE(desktop.items(leftovers).value().isEmpty());
        killSwitch.arm();
        const bool stored = wallet.ask(storeNew) == "0";
        died = !desktop.items(service).has_value();
        desktop.killKeyring();

        ASSERT_TRUE(desktop.startKeyring());
        ASSERT_LE(desktop.items(service).value().size(), 1);
        const std::string account = wallet.wholeKey();
        outcomes.insert(account);
        EXPECT_TRUE(!stored || account == newAccount);
        desktop.killKeyring();
    }
    EXPECT_GT(step, 10);
    EXPECT_EQ(outcomes, (std::set<std::string>{oldAccount, newAccount, "none"}));
}

TEST(KeyCrashTest, AProgramWithoutABusHasNoKeychain)
{
    const QTemporaryDir folder;
    Wallet wallet(folder.filePath(QStringLiteral("accounts.json")),
                  {{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent"}});
    EXPECT_EQ(wallet.wholeKey(), "none");
    EXPECT_EQ(wallet.ask("remove"), "kept");
    EXPECT_EQ(wallet.ask(storeNew), std::to_string(platform::keychainNotAvailable));
}

} // namespace
} // namespace corvane::tests
