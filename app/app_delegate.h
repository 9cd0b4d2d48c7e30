#pragma once

#include "core/wallet_model.h"
#include "island/island_controller.h"

#include <functional>
#include <memory>

namespace corvane::app {

/// Owns what lives from launch to exit. Main thread.
class AppDelegate
{
public:
    /// `rested` is called some time after the start and after each folding, when the island has
    /// come to rest.
    AppDelegate(core::WalletServices walletServices, island::IslandServices islandServices,
                std::function<void()> rested);
    ~AppDelegate();

    /// Creates the wallet and the island and shows it. Called once, before the event loop runs.
    void applicationDidFinishLaunching();

    /// Exists once the application has launched.
    [[nodiscard]] island::IslandController &island() { return *m_island; }

private:
    void scheduleRest();

    core::WalletServices m_walletServices;
    island::IslandServices m_islandServices;
    std::unique_ptr<core::WalletModel> m_model;
    std::unique_ptr<island::IslandController> m_island;
    std::function<void()> m_rested;
    std::shared_ptr<platform::WorkItem> m_restWork;
};

} // namespace corvane::app
