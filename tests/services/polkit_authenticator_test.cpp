#include "keyring_desktop.h"
#include "keys/key_vault.h"
#include "platform/linux/keyring/polkit_authenticator.h"
#include "polkit_desktop.h"
#include "tests/fakes/table.h"
#include "tests/platform/wait_until.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace corvane::tests {

namespace {

const std::string account = "4zMMC9srt5Ri5X14GAgXhaHii3GnPAEERYPJgZJDncDU";
const std::string seed(64, 'c');

/// The folder of the build may be closed to other users.
std::string copyInto(const std::string &folder, const std::filesystem::path &program)
{
    const std::string copy = std::filesystem::path(folder) / program.filename();
    std::filesystem::copy_file(program, copy, std::filesystem::copy_options::skip_existing);
    return copy;
}

/// The program as the ordinary user, hardened.
class Wallet : public ChildProcess
{
public:
    explicit Wallet(const std::string &folder, const char *userBound = "60000")
        : ChildProcess(
              {copyInto(folder, WALLET_ACTOR), folder + "/accounts.json", "polkit", userBound}, {},
              PolkitDesktop::user)
        , m_agent(copyInto(folder, POLKIT_AGENT))
    {
        EXPECT_EQ(readLine(), "ready");
    }

    [[nodiscard]] std::unique_ptr<ChildProcess> agent(const char *manner) const
    {
        auto agent = std::make_unique<ChildProcess>(
            std::vector<std::string>{"/usr/bin/python3", m_agent, std::to_string(pid()), manner,
                                     PolkitDesktop::userName, PolkitDesktop::password},
            std::map<std::string, std::string>{}, PolkitDesktop::user);
        EXPECT_EQ(agent->readLine(), "ready");
        return agent;
    }

private:
    std::string m_agent;
};

class PolkitAuthenticatorTest : public testing::Test
{
protected:
    static void SetUpTestSuite() { lacking = PolkitDesktop::enter(); }
    void SetUp() override
    {
        if (lacking) {
            GTEST_SKIP() << "polkit is NOT tested here; this needs " << *lacking;
        }
        desktop = std::make_unique<PolkitDesktop>();
        folder.emplace(PolkitDesktop::user);
    }

    static inline std::optional<std::string> lacking;
    std::unique_ptr<PolkitDesktop> desktop;
    std::optional<TemporaryFolder> folder;
};

TEST_F(PolkitAuthenticatorTest, CannotEvaluateWithoutPolkitActionOrAgent)
{
    Wallet wallet(folder->path());
    const auto expectNobody = [&] {
        EXPECT_EQ(wallet.ask("can"), "no");
        EXPECT_EQ(wallet.ask("evaluate unlock Corvane"), "failure not passed");
    };
    expectNobody();

    ASSERT_TRUE(desktop->startPolkit(false));
    auto agent = wallet.agent("authenticate");
    expectNobody();
    agent.reset();
    desktop->killPolkit();

    ASSERT_TRUE(desktop->startPolkit());
    expectNobody();
    agent = wallet.agent("authenticate");
    EXPECT_EQ(wallet.ask("can"), "yes");
    EXPECT_EQ(wallet.ask("can"), "yes");
    agent.reset();
    EXPECT_TRUE(waitUntil([&] { return wallet.ask("can") == "no"; }));
}

TEST_F(PolkitAuthenticatorTest, ShowsTheReasonAndRepliesWithTheOwnersAnswer)
{
    ASSERT_TRUE(desktop->startPolkit());
    Wallet wallet(folder->path());
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
    EXPECT_EQ(wallet.ask("evaluate format the disk"), "failure not passed");
    EXPECT_EQ(wallet.ask("evaluate unlock Corvane"), "success passed");
    EXPECT_EQ(agent->readLine(), "org.corvane.unlock: unlock Corvane");
}

TEST_F(PolkitAuthenticatorTest, GivesUpOnAPersonWhoDoesNotAnswerAndOnAPolkitThatDies)
{
    ASSERT_TRUE(desktop->startPolkit());
    {
        Wallet hasty(folder->path(), "3000");
        const auto agent = hasty.agent("hang");
        EXPECT_EQ(hasty.ask("evaluate unlock Corvane"), "failure not passed");
        EXPECT_EQ(agent->readLine(), "org.corvane.unlock: unlock Corvane");
        EXPECT_EQ(agent->readLine(), "cancelled");
    }
    Wallet wallet(folder->path());
    const auto agent = wallet.agent("hang");
    wallet.write("evaluate unlock Corvane\n");
    EXPECT_EQ(agent->readLine(), "org.corvane.unlock: unlock Corvane");
    desktop->killPolkit();
    EXPECT_EQ(wallet.readLine(), "failure not passed");
}

TEST_F(PolkitAuthenticatorTest, GuardsTheKeyInARealKeyring)
{
    ASSERT_TRUE(desktop->startPolkit());
    const SessionBus bus(PolkitDesktop::user);
    KeyringDesktop keyring(bus);
    ASSERT_TRUE(keyring.startKeyring());
    const auto protection = [&] {
        const auto items = keyring.items(keys::KeyVault::serviceName);
        return items && items->size() == 1
                   ? items->front().value(QStringLiteral("protection")).toStdString()
                   : "not one item";
    };
    Wallet wallet(folder->path());

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
    EXPECT_EQ(wallet.ask("account"), account);

    agent.reset();
    agent = wallet.agent("dismiss");
    EXPECT_EQ(wallet.ask("read unlock Corvane"), "nothing");
    agent.reset();
    EXPECT_EQ(wallet.ask("read unlock Corvane"), "nothing");
    EXPECT_EQ(protection(), "user-presence");
}

} // namespace

} // namespace corvane::tests
