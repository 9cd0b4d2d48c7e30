#pragma once

#include "core/wallet_services.h"
#include "island/island_controller.h"
#include "look/theme.h"
#include "onboarding/onboarding.h"
#include "platform/appearance.h"
#include "platform/application.h"
#include "platform/application_bundle.h"
#include "platform/instance.h"
#include "platform/login_item.h"
#include "platform/status_item.h"

#include <functional>
#include <memory>

namespace corvane::core {
class WalletModel;
} // namespace corvane::core

namespace corvane::app {

/// What the application needs besides a wallet and an island. Everything outlives the delegate.
struct ShellServices
{
    platform::Application &application;
    platform::StatusBar &statusBar;
    platform::LoginItem &loginItem;
    platform::ApplicationBundle &bundle;
    platform::Appearance &appearance;
    look::Theme &theme;
    onboarding::Onboarding &onboarding;
    /// Called some time after the start and after each folding, when the island has come to rest.
    std::function<void()> rested;
};

/// Owns what lives from launch to exit. Main thread. Whatever is done before the launch has
/// finished, other than launching, is a programming error and stops the process.
class AppDelegate
{
public:
    AppDelegate(core::WalletServices walletServices, island::IslandServices islandServices,
                ShellServices shellServices);
    ~AppDelegate();

    /// Creates the wallet and the island, shows it and the status item, registers the installed
    /// program to start at login, and opens the tour unless it has been shown before. Called once,
    /// before the event loop runs.
    void applicationDidFinishLaunching();

    /// The entries of the status item's menu.
    void refreshNow();
    void openSettings();
    void showTour();
    void quit();

    /// Opens the island on `pane` as the user would: asking for presence first where that is due.
    void open(island::IslandPane pane);
    /// Does what another start of the program asks for; false when it is nothing known.
    [[nodiscard]] bool perform(const platform::InstanceRequest &request);

private:
    void makeStatusItem();
    void registerAsLoginItem();
    void scheduleRest();
    /// Looks as the user has asked every program to look.
    void followAppearance();
    [[nodiscard]] core::WalletModel &model() const;
    [[nodiscard]] island::IslandController &island() const;

    std::unique_ptr<core::WalletModel> m_model;
    std::unique_ptr<island::IslandController> m_island;
    std::unique_ptr<platform::StatusItem> m_statusItem;

    core::WalletServices m_walletServices;
    island::IslandServices m_islandServices;
    ShellServices m_shellServices;
    std::shared_ptr<platform::WorkItem> m_restWork;
    std::shared_ptr<platform::WorkItem> m_appearanceWork;
};

} // namespace corvane::app
