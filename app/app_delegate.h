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

/// The services that the application needs besides those of the wallet and the island. All must
/// outlive the delegate.
struct ShellServices
{
    platform::Application &application;
    platform::StatusBar &statusBar;
    platform::LoginItem &loginItem;
    platform::ApplicationBundle &bundle;
    platform::Appearance &appearance;
    look::Theme &theme;
    onboarding::Onboarding &onboarding;
    /// Called when the island is at rest, some time after the start and after each collapse.
    std::function<void()> rested;
};

/// Owns the objects that exist from launch to exit. Main thread. Calling any other function before
/// applicationDidFinishLaunching() is a programming error and aborts the process.
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

    /// The actions of the status item's menu.
    void refreshNow();
    void openSettings();
    void showTour();
    void quit();

    /// Opens the island with `pane`. Asks the user to prove presence first if required.
    void open(island::IslandPane pane);
    /// Performs a request from another start of the program; false if it is unknown.
    [[nodiscard]] bool perform(const platform::InstanceRequest &request);

private:
    void makeStatusItem();
    void registerAsLoginItem();
    void scheduleRest();
    /// Applies the desktop's appearance settings.
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
