#include "keyring_desktop.h"
#include "keys/key_vault.h"
#include "platform/linux/keyring/polkit_authenticator.h"
#include "tests/fakes/table.h"
#include "tests/platform/wait_until.h"

#include <QFile>

#include <gtest/gtest.h>

namespace corvane::tests {

namespace {

const std::string account = "4zMMC9srt5Ri5X14GAgXhaHii3GnPAEERYPJgZJDncDU";
const std::string seed(64, 'c');

std::string variable(const char *name)
{
    return qEnvironmentVariable(name).toStdString();
}

std::string accounts()
{
    static const QTemporaryDir folder;
    return folder.filePath(QStringLiteral("accounts.json")).toStdString();
}

/// The program as the ordinary user, hardened.
class Wallet : public ChildProcess
{
public:
    explicit Wallet(const std::string &userBound = "60000",
                    const std::map<std::string, std::string> &environment = {})
        : ChildProcess({variable("WALLET_ACTOR"), accounts(), "polkit", userBound}, environment)
    {
        EXPECT_EQ(readLine(), "ready");
    }

    [[nodiscard]] std::unique_ptr<ChildProcess> agent(const char *manner) const
    {
        auto agent = std::make_unique<ChildProcess>(std::vector<std::string>{
            "/usr/bin/python3", variable("POLKIT_AGENT"), std::to_string(pid()), manner,
            variable("CORVANE_TESTER"), variable("CORVANE_TESTER_PASSWORD")});
        EXPECT_EQ(agent->readLine(), "ready");
        return agent;
    }
};

class PolkitAuthenticatorTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!qEnvironmentVariableIsSet("CORVANE_TESTER")) {
            GTEST_SKIP() << "polkit is NOT tested here; this needs with_polkit.py and root";
        }
    }
};

TEST_F(PolkitAuthenticatorTest, CannotEvaluateWithoutPolkitActionOrAgent)
{
    const auto expectNobody = [](Wallet &wallet) {
        EXPECT_EQ(wallet.ask("can"), "no");
        EXPECT_EQ(wallet.ask("evaluate unlock Corvane"), "failure not passed");
    };
    const SessionBus bus;
    Wallet alone("60000", {{"DBUS_SYSTEM_BUS_ADDRESS", bus.address()}});
    expectNobody(alone);

    Wallet wallet;
    expectNobody(wallet);
    auto agent = wallet.agent("authenticate");
    EXPECT_EQ(wallet.ask("can"), "yes");
    EXPECT_EQ(wallet.ask("can"), "yes");

    const auto action = QStringLiteral("/usr/share/polkit-1/actions/org.corvane.policy");
    ASSERT_TRUE(QFile::rename(action, action + u'~'));
    EXPECT_TRUE(waitUntil([&] { return wallet.ask("can") == "no"; }));
    expectNobody(wallet);
    ASSERT_TRUE(QFile::rename(action + u'~', action));
    EXPECT_TRUE(waitUntil([&] { return wallet.ask("can") == "yes"; }));

    agent.reset();
    EXPECT_TRUE(waitUntil([&] { return wallet.ask("can") == "no"; }));
}

TEST_F(PolkitAuthenticatorTest, ShowsTheReasonAndRepliesWithTheOwnersAnswer)
{
    Wallet wallet;
    const char *passed = "success passed";
    const char *failed = "failure not passed";
    for (const auto &[manner, reason, shown, answer] :
         Table<const char *, std::string, std::string, std::string>{
             {"authenticate", "unlock Corvane", "org.corvane.unlock: unlock Corvane", passed},
             {"authenticate", "reveal your wallet backup key",
              "org.corvane.reveal: reveal your wallet backup key", passed},
             {"authenticate", "send 1.2500 SOL",
              "org.corvane.send: send SOL from your Corvane wallet", passed},
             {"refuse", "unlock Corvane", "org.corvane.unlock: unlock Corvane", failed},
             {"dismiss", "unlock Corvane", "org.corvane.unlock: unlock Corvane", failed},
         }) {
        SCOPED_TRACE(manner + reason);
        const auto agent = wallet.agent(manner);
        // Nothing is prompted before, and what was granted once is not kept.
        EXPECT_EQ(wallet.ask("can"), "yes");
        for (int round = 0; round < 2; ++round) {
            EXPECT_EQ(wallet.ask("evaluate " + reason), answer);
            EXPECT_EQ(agent->readLine(), shown);
        }
    }
    const auto agent = wallet.agent("authenticate");
    EXPECT_EQ(wallet.ask("evaluate format the disk"), failed);
    EXPECT_EQ(wallet.ask("evaluate unlock Corvane"), passed);
    EXPECT_EQ(agent->readLine(), "org.corvane.unlock: unlock Corvane");
}

TEST_F(PolkitAuthenticatorTest, GivesUpOnAPersonWhoDoesNotAnswer)
{
    Wallet hasty("3000");
    const auto agent = hasty.agent("hang");
    EXPECT_EQ(hasty.ask("evaluate unlock Corvane"), "failure not passed");
    EXPECT_EQ(agent->readLine(), "org.corvane.unlock: unlock Corvane");
    EXPECT_EQ(agent->readLine(), "cancelled");
}

TEST_F(PolkitAuthenticatorTest, GuardsTheKeyInARealKeyring)
{
    const SessionBus bus;
    KeyringDesktop keyring(bus);
    ASSERT_TRUE(keyring.startKeyring());
    const auto protection = [&] {
        const auto items = keyring.items(keys::KeyVault::serviceName);
        return items && items->size() == 1
                   ? items->front().value(QStringLiteral("protection")).toStdString()
                   : "not one item";
    };
    Wallet wallet;

    // Nobody can be asked: the key is stored all the same, and read without asking.
    EXPECT_EQ(wallet.ask("store " + seed + ' ' + account), "0");
    EXPECT_EQ(protection(), "none");
    EXPECT_EQ(wallet.ask("read unlock Corvane"), seed);

    auto agent = wallet.agent("authenticate");
    EXPECT_EQ(wallet.ask("store " + seed + ' ' + account), "0");
    EXPECT_EQ(protection(), "user-presence");
    EXPECT_EQ(wallet.ask("open"), "nothing");
    EXPECT_EQ(wallet.ask("read send 1.0000 SOL"), seed);
    EXPECT_EQ(agent->readLine(), "org.corvane.send: send SOL from your Corvane wallet");
    EXPECT_EQ(wallet.ask("evaluate unlock Corvane"), "success passed");
    EXPECT_EQ(wallet.ask("open"), seed);
    EXPECT_EQ(wallet.ask("open"), "nothing");

    agent.reset();
    EXPECT_EQ(wallet.ask("read unlock Corvane"), "nothing");
    EXPECT_EQ(protection(), "user-presence");
}

} // namespace

} // namespace corvane::tests
