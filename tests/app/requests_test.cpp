#include "app/chosen_endpoints.h"
#include "app/qt_environment.h"
#include "app/requests.h"
#include "app/while_covered.h"

#include "platform/linux/x11/x11_window_system.h"
#include "tests/fakes/fake_shell.h"
#include "tests/fakes/table.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace corvane::app {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Claim = platform::Instance::Claim;

std::variant<Options, EarlyExit> parse(const QStringList &arguments)
{
    return parseOptions(QStringList{QStringLiteral("corvane")} + arguments, {});
}

TEST(RequestsTest, AStartRunsOrHandsOver)
{
    const QString watch = u"--watch So11111111111111111111111111111111111111112"_s;
    const std::optional<int> runs;
    // What the running instance receives: action and parameter, or "-" for activation.
    for (const auto &[line, claim, answers, received, status] :
         tests::Table<QString, Claim, bool, QString, std::optional<int>>{
             {{}, Claim::Granted, false, {}, runs},
             {{}, Claim::Unavailable, false, {}, runs},
             {u"--open send"_s, Claim::Granted, false, {}, runs},
             {{}, Claim::Refused, true, u"-"_s, 0},
             {{}, Claim::Refused, false, u"-"_s, 1},
             {u"--take-over"_s, Claim::Refused, true, u"-"_s, 0},
             {u"--open send"_s, Claim::Refused, true, u"open send"_s, 0},
             {u"--hide-amounts"_s, Claim::Granted, true, {}, runs},
             {u"--hide-amounts"_s, Claim::Refused, true, u"hide-amounts"_s, 0},
             {watch, Claim::Refused, true, u"-"_s, 1},
             {u"--refresh"_s, Claim::Granted, true, u"refresh"_s, 0},
             {u"--refresh"_s, Claim::Granted, false, u"refresh"_s, 1},
             {u"--quit"_s, Claim::Granted, true, u"quit"_s, 0},
         }) {
        SCOPED_TRACE(line.toStdString());
        tests::FakeInstance instance;
        instance.answerToClaim = claim;
        instance.answers = answers;
        const auto parsed = parse(line.split(u' ', Qt::SkipEmptyParts));
        ASSERT_TRUE(std::holds_alternative<Options>(parsed));
        const auto earlyExit = handOver(std::get<Options>(parsed), instance);

        ASSERT_EQ(earlyExit.has_value(), status.has_value());
        if (earlyExit) {
            EXPECT_EQ(earlyExit->status, *status);
            EXPECT_EQ(earlyExit->text.isEmpty(), earlyExit->status == 0);
        }
        QStringList sent;
        for (const auto &request : instance.sent) {
            sent << (request.action.isEmpty() ? QStringLiteral("-") : request.action);
            if (request.parameter) {
                sent << *request.parameter;
            }
        }
        EXPECT_EQ(sent.join(u' '), received);
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
    for (const char *line :
         {"--open", "--no-such-option", "--open wallet", "--open Send", "--refresh --quit",
          "--open send --quit", "--refresh --hide-amounts"}) {
        const auto parsed = parse(QString::fromLatin1(line).split(u' '));
        const auto *earlyExit = std::get_if<EarlyExit>(&parsed);
        ASSERT_NE(earlyExit, nullptr) << line;
        EXPECT_EQ(earlyExit->status, 2) << line;
    }
}

TEST(RequestsTest, ADemoNeverRunsWhereItsKeyCouldBePaidRealCoins)
{
    const QTemporaryDir folder;
    const auto chosenWith = [&folder](const QByteArray &mainnet, bool demo, bool watches) {
        QFile written(folder.filePath(QStringLiteral("endpoints.json")));
        EXPECT_TRUE(written.open(QIODevice::WriteOnly));
        const QByteArray here = R"("http://127.0.0.1:1")";
        written.write(R"({"mainnet": ")" + mainnet + R"(", "devnet": )" + here +
                      R"(, "walletApp": )" + here + "}");
        written.close();
        Options options;
        options.endpointsFile = written.fileName();
        options.demoKeychain = demo;
        options.watch = watches ? std::optional(keys::Address({})) : std::nullopt;
        return chosenEndpoints(options);
    };
    for (const auto &[mainnet, demo, watches, runs] : tests::Table<const char *, bool, bool, bool>{
             {"http://localhost:2", true, false, true},
             {"https://rpc.test", true, false, false},
             {"https://rpc.test", true, true, true},
             {"https://rpc.test", false, false, true},
             {"ftp://127.0.0.1", false, false, false},
         }) {
        SCOPED_TRACE(mainnet);
        const auto chosen = chosenWith(mainnet, demo, watches);
        ASSERT_EQ(std::holds_alternative<core::Endpoints>(chosen), runs);
        if (runs) {
            EXPECT_EQ(std::get<core::Endpoints>(chosen).mainnet, QString::fromLatin1(mainnet));
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

TEST(WhileCoveredTest, TheEnvironmentWinsAndNonsenseIsNamed)
{
    using enum platform::WhileCovered;
    const QString nonsense = u"corvane.fullscreen must be hide or show, not \"Hide\"\n"_s;
    const QString variable = u"CORVANE_FULLSCREEN must be hide or show, not \"x\"\n"_s;
    for (const auto &[environment, setting, value, complaints] :
         tests::Table<QString, std::optional<QString>, platform::WhileCovered, QString>{
             {{}, std::nullopt, Show, {}},
             {{}, u"hide"_s, Hide, {}},
             {{}, u"show"_s, Show, {}},
             {u"show"_s, u"hide"_s, Show, {}},
             {u"hide"_s, u"Hide"_s, Hide, {}},
             {u"x"_s, u"hide"_s, Hide, variable},
             {{}, u"Hide"_s, Show, nonsense},
             {u"x"_s, u"Hide"_s, Show, variable + nonsense},
         }) {
        const WhileCoveredChoice choice = chosenWhileCovered(environment, setting);
        EXPECT_EQ(choice.value, value) << environment.toStdString();
        EXPECT_EQ(choice.complaints, complaints);
    }
}

TEST(QtEnvironmentTest, IsChangedForThisProgramAlone)
{
    const QByteArray original = qgetenv("QT_QPA_PLATFORM");
    const QByteArray originalDisplay = qgetenv("DISPLAY");
    qputenv("QT_XCB_NO_MITSHM", "0");
    qunsetenv("QT_QPA_UPDATE_IDLE_TIME");
    for (const auto &[display, before, during] :
         tests::Table<const char *, const char *, const char *>{{":9", "", "xcb"},
                                                                {":9", "wayland;xcb", "xcb"},
                                                                {"", "wayland", "wayland"},
                                                                {":9", "offscreen", "offscreen"}}) {
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
