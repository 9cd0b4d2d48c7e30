#include "app/chosen_endpoints.h"
#include "app/qt_environment.h"
#include "app/requests.h"

#include "platform/linux/x11/x11_window_system.h"
#include "tests/fakes/fake_shell.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace corvane::app {
namespace {

using namespace std::chrono_literals;
using Claim = platform::Instance::Claim;

std::variant<Options, EarlyExit> parse(const QStringList &arguments)
{
    return parseOptions(QStringList{QStringLiteral("corvane")} + arguments, {});
}

TEST(RequestsTest, AStartRunsOrHandsOver)
{
    struct Case
    {
        QStringList arguments;
        Claim claim;
        bool answers;
        /// Action and parameter that the running instance receives; empty for none, "-" for
        /// activation.
        QString sent;
        /// Empty: this process continues to run.
        std::optional<int> status;
    };
    const auto text = [](const char *latin1) { return QString::fromLatin1(latin1); };
    const std::vector<Case> cases{
        {{}, Claim::Granted, false, {}, std::nullopt},
        {{}, Claim::Unavailable, false, {}, std::nullopt},
        {{text("--open"), text("send")}, Claim::Granted, false, {}, std::nullopt},
        {{}, Claim::Refused, true, text("-"), 0},
        {{}, Claim::Refused, false, text("-"), 1},
        {{text("--take-over")}, Claim::Refused, true, text("-"), 0},
        {{text("--open"), text("send")}, Claim::Refused, true, text("open send"), 0},
        {{text("--watch"), text("So11111111111111111111111111111111111111112")},
         Claim::Refused,
         true,
         text("-"),
         1},
        {{text("--refresh")}, Claim::Granted, true, text("refresh"), 0},
        {{text("--refresh")}, Claim::Granted, false, text("refresh"), 1},
        {{text("--quit")}, Claim::Granted, true, text("quit"), 0},
    };
    for (const Case &start : cases) {
        SCOPED_TRACE(start.arguments.join(u' ').toStdString());
        tests::FakeInstance instance;
        instance.answerToClaim = start.claim;
        instance.answers = start.answers;
        const auto parsed = parse(start.arguments);
        ASSERT_TRUE(std::holds_alternative<Options>(parsed));
        const auto earlyExit = handOver(std::get<Options>(parsed), instance);

        ASSERT_EQ(earlyExit.has_value(), start.status.has_value());
        if (earlyExit) {
            EXPECT_EQ(earlyExit->status, *start.status);
            EXPECT_EQ(earlyExit->text.isEmpty(), earlyExit->status == 0);
        }
        QStringList sent;
        for (const auto &request : instance.sent) {
            sent << (request.action.isEmpty() ? QStringLiteral("-") : request.action);
            if (request.parameter) {
                sent << *request.parameter;
            }
        }
        EXPECT_EQ(sent.join(u' '), start.sent);
        // A process that only sends a request does not claim to be the instance.
        EXPECT_EQ(instance.patience.has_value(),
                  std::get<Options>(parsed).command == Options::Command::Run);
        if (instance.patience) {
            EXPECT_EQ(*instance.patience, std::get<Options>(parsed).takeOver ? 10s : 0s);
        }
    }
}

TEST(RequestsTest, RefusesWhatCannotBeMeant)
{
    for (const char *line : {"--open", "--no-such-option", "--open wallet", "--open Send",
                             "--refresh --quit", "--open send --quit"}) {
        const auto parsed = parse(QString::fromLatin1(line).split(u' '));
        const auto *earlyExit = std::get_if<EarlyExit>(&parsed);
        ASSERT_NE(earlyExit, nullptr) << line;
        EXPECT_EQ(earlyExit->status, 2) << line;
    }
}

TEST(RequestsTest, ADemoNeverRunsWhereItsKeyCouldBePaidRealCoins)
{
    const QTemporaryDir folder;
    const auto file = [&folder](const char *mainnet, const char *devnet, const char *walletApp) {
        QFile written(folder.filePath(QStringLiteral("endpoints.json")));
        EXPECT_TRUE(written.open(QIODevice::WriteOnly));
        written.write(QByteArray(R"({"mainnet": ")") + mainnet + R"(", "devnet": ")" + devnet +
                      R"(", "walletApp": ")" + walletApp + R"("})");
        return written.fileName();
    };
    struct Case
    {
        const char *mainnet;
        const char *devnet;
        const char *walletApp;
        bool demo;
        bool watches;
        bool runs;
    };
    constexpr auto here = "http://127.0.0.1:1";
    constexpr auto there = "https://rpc.test";
    for (const auto &[mainnet, devnet, walletApp, demo, watches, runs] : {
             Case{here, "http://localhost:2", here, true, false, true},
             Case{"http://[::1]:1", "http://127.8.8.8", here, true, false, true},
             Case{there, here, here, true, false, false},
             Case{here, there, here, true, false, false},
             Case{here, here, there, true, false, false},
             Case{here, "https://127.0.0.1.rpc.test", here, true, false, false},
             Case{here, "https://localhost.rpc.test", here, true, false, false},
             Case{there, there, there, true, true, true},
             Case{there, there, there, false, false, true},
             Case{"ftp://127.0.0.1", here, here, false, false, false},
         }) {
        Options options;
        options.endpointsFile = file(mainnet, devnet, walletApp);
        options.demoKeychain = demo;
        options.watch = watches ? std::optional(keys::Address({})) : std::nullopt;
        const auto chosen = chosenEndpoints(options);
        ASSERT_EQ(std::holds_alternative<core::Endpoints>(chosen), runs)
            << mainnet << ' ' << devnet;
        if (runs) {
            EXPECT_EQ(std::get<core::Endpoints>(chosen).devnet, QString::fromLatin1(devnet));
        } else {
            EXPECT_EQ(std::get<EarlyExit>(chosen).status, usageError);
        }
    }
    Options demo;
    demo.demoKeychain = true;
    EXPECT_TRUE(std::holds_alternative<EarlyExit>(chosenEndpoints(demo))) << "the built-in ones";
}

TEST(RequestsTest, ARelaunchKeepsTheKindOfRun)
{
    const auto parsed =
        parse(QString::fromLatin1("--demo-keychain --endpoints /e.json --open send").split(u' '));
    EXPECT_EQ(relaunchArguments(std::get<Options>(parsed)).join(u' '),
              QStringLiteral("--take-over --endpoints /e.json --demo-keychain"));
}

TEST(QtEnvironmentTest, IsChangedForThisProgramAlone)
{
    struct Case
    {
        const char *display;
        const char *before;
        const char *during;
    };
    const QByteArray original = qgetenv("QT_QPA_PLATFORM");
    const QByteArray originalDisplay = qgetenv("DISPLAY");
    qputenv("QT_XCB_NO_MITSHM", "0");
    qunsetenv("QT_QPA_UPDATE_IDLE_TIME");
    for (const auto &[display, before, during] :
         {Case{":9", "", "xcb"}, Case{":9", "wayland;xcb", "xcb"}, Case{"", "wayland", "wayland"},
          Case{":9", "offscreen", "offscreen"}}) {
        qputenv("DISPLAY", display);
        qputenv("QT_QPA_PLATFORM", before);
        QtEnvironment environment;
        environment.prepare(platform::X11WindowSystem::qtEnvironment());
        EXPECT_EQ(qgetenv("QT_QPA_PLATFORM"), during);
        EXPECT_EQ(qgetenv("QT_XCB_NO_MITSHM"), "0") << "the variable is set already";
        EXPECT_EQ(qgetenv("QT_QPA_UPDATE_IDLE_TIME"), "0");
        environment.restore();
        EXPECT_EQ(qgetenv("QT_QPA_PLATFORM"), before);
        EXPECT_FALSE(qEnvironmentVariableIsSet("QT_QPA_UPDATE_IDLE_TIME"));
    }
    qputenv("QT_QPA_PLATFORM", original);
    qputenv("DISPLAY", originalDisplay);
    qunsetenv("QT_XCB_NO_MITSHM");
}

} // namespace
} // namespace corvane::app
