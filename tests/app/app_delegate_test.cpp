#include "app/app_delegate.h"

#include "tests/core/wallet_fixture.h"
#include "tests/fakes/fake_desktop.h"
#include "tests/fakes/fake_font_registry.h"
#include "tests/fakes/fake_shell.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace corvane::app {
namespace {

using namespace std::chrono_literals;
using island::IslandPane;

class AppDelegateTest : public tests::WalletTest
{
protected:
    void launchApplication(bool onboarded = true)
    {
        settings.values.insert_or_assign(QStringLiteral("corvane.onboarded.v1"), onboarded);
        settings.values.insert_or_assign(QStringLiteral("corvane.address"), tests::addressA);
        m_screens.screens = {tests::plainScreen({0, 0, 1512, 982})};
        m_authenticator.available = false;
        m_delegate = std::make_unique<AppDelegate>(
            core::WalletServices{queue, http, settings, keychain, signingKeys, background,
                                 formatter, files, endpoints},
            island::IslandServices{queue, m_screens, m_pointer, m_panels, m_authenticator,
                                   m_clipboard,
                                   [this](island::IslandController &island) {
                                       m_island = &island;
                                       return nullptr;
                                   }},
            ShellServices{m_application, m_statusBar, m_loginItem, m_bundle, m_appearance, m_theme,
                          m_tour, [] {}});
        m_delegate->applicationDidFinishLaunching();
        queue.drain();
        http.forgetRequests();
    }

    void choose(const QString &title)
    {
        const auto item = std::ranges::find(m_statusBar.menu, title, &platform::MenuItem::title);
        ASSERT_NE(item, m_statusBar.menu.end());
        item->action();
        queue.drain();
    }

    tests::FakeScreens m_screens;
    tests::FakePointer m_pointer;
    tests::FakePanelFactory m_panels;
    tests::FakeAuthenticator m_authenticator;
    tests::FakeClipboard m_clipboard;
    tests::FakeApplication m_application;
    tests::FakeStatusBar m_statusBar;
    tests::FakeLoginItem m_loginItem;
    tests::FakeBundle m_bundle;
    tests::FakeAppearance m_appearance;
    tests::FakeFontRegistry m_fonts = tests::FakeFontRegistry::bundled();
    look::Theme m_theme{m_fonts};
    tests::FakeFloatingWindows m_windows;
    onboarding::Onboarding m_tour{
        {queue, settings, m_bundle, m_loginItem, m_application, m_windows,
         [](onboarding::Onboarding &) { return std::make_unique<QQuickItem>(); }}};
    island::IslandController *m_island = nullptr;
    std::unique_ptr<AppDelegate> m_delegate;
};

TEST_F(AppDelegateTest, TheMenuActsOnTheWalletAndTheIsland)
{
    launchApplication();
    EXPECT_EQ(m_panels.state.orderedFront, 1);

    choose(QStringLiteral("Refresh now"));
    // Only a forced refresh fetches the chart.
    EXPECT_EQ(std::ranges::count(http.names(), tests::chart), 1);
    choose(QStringLiteral("Settings…"));
    EXPECT_TRUE(m_island->expanded());
    EXPECT_EQ(m_island->pane(), IslandPane::Settings);
    EXPECT_TRUE(m_panels.state.isActive);
    EXPECT_EQ(m_windows.existing, 0);
    choose(QStringLiteral("Welcome tour…"));
    EXPECT_TRUE(m_windows.visible);
    choose(QStringLiteral("Quit Corvane"));
    EXPECT_EQ(m_application.terminations, 1);
}

TEST_F(AppDelegateTest, OpensTheTourOnceByItself)
{
    launchApplication(false);
    EXPECT_TRUE(m_windows.visible);
    EXPECT_TRUE(settings.boolean(onboarding::Onboarding::shownSetting()).value_or(false));
}

TEST_F(AppDelegateTest, AsksForTheAppearanceWhenTheIslandIsAboutToOpen)
{
    launchApplication();
    queue.advance(1s);
    EXPECT_FALSE(m_theme.isMotionReduced());
    m_appearance.settings = {.reducedMotion = true, .highContrast = true};
    const QColor muted = m_theme.muted();
    m_pointer.moveTo({756, 975});
    queue.drain();
    EXPECT_TRUE(m_theme.isMotionReduced());
    EXPECT_GT(m_theme.muted().lightness(), muted.lightness());
}

TEST_F(AppDelegateTest, RegistersOnlyTheInstalledProgramAndOnlyOnce)
{
    for (const auto &[path, enabled, registrations] : tests::Table<const char *, bool, int>{
             {"/Applications/Corvane.app", false, 1},
             {"/ApplicationsOfMine/Corvane.app", false, 1},
             {"/Applications/Corvane.app", true, 0},
             {"/Applications/corvane", false, 0},
             {"/home/ada/Corvane.app", false, 0},
         }) {
        m_bundle.runningFrom = QString::fromLatin1(path);
        m_loginItem.enabled = enabled;
        m_loginItem.registrations = 0;
        launchApplication();
        EXPECT_EQ(m_loginItem.registrations, registrations) << path;
    }
}

TEST_F(AppDelegateTest, DoesWhatAnotherStartAsksFor)
{
    const auto open = [](const char *pane) {
        return platform::InstanceRequest{QStringLiteral("open"), QString::fromLatin1(pane)};
    };
    const tests::Table<platform::InstanceRequest, bool, IslandPane> cases{
        {{}, true, IslandPane::Balance},
        {open("settings"), true, IslandPane::Settings},
        {{}, true, IslandPane::Settings},
        {open("balance"), true, IslandPane::Balance},
        {open("send"), true, IslandPane::Send},
        {open("receive"), true, IslandPane::Receive},
        {open("Settings"), false, IslandPane::Receive},
        {open(""), false, IslandPane::Receive},
        {{QStringLiteral("open"), std::nullopt}, false, IslandPane::Receive},
        {{QStringLiteral("explode"), std::nullopt}, false, IslandPane::Receive},
        {{QStringLiteral("quit"), QStringLiteral("now")}, false, IslandPane::Receive},
    };
    launchApplication();
    for (const auto &[request, known, pane] : cases) {
        const auto what =
            (request.action + u' ' + request.parameter.value_or(QString())).toStdString();
        EXPECT_EQ(m_delegate->perform(request), known) << what;
        queue.advance(300ms);
        EXPECT_TRUE(m_island->expanded()) << what;
        EXPECT_EQ(m_island->pane(), pane) << what;
    }
    m_panels.state.isActive = false;
    EXPECT_TRUE(m_delegate->perform(open("receive")));
    EXPECT_TRUE(m_panels.state.isActive);
    for (const bool hides : {true, false}) {
        EXPECT_TRUE(m_delegate->perform({QStringLiteral("hide-amounts"), std::nullopt}));
        EXPECT_EQ(settings.boolean(QStringLiteral("corvane.hideAmounts")), hides);
    }
    EXPECT_EQ(m_application.terminations, 0);
    EXPECT_TRUE(m_delegate->perform({QStringLiteral("quit"), std::nullopt}));
    EXPECT_EQ(m_application.terminations, 1);
}

} // namespace
} // namespace corvane::app
