#pragma once

#include "core/wallet_model.h"
#include "island/island_controller.h"

#include <memory>

namespace corvane::app {

/// Owns what lives from launch to exit. Main thread.
class AppDelegate
{
public:
    AppDelegate(core::WalletServices walletServices, island::IslandServices islandServices);

    /// Creates the wallet and the island and shows it. Called once, before the event loop runs.
    void applicationDidFinishLaunching();

private:
    core::WalletServices m_walletServices;
    island::IslandServices m_islandServices;
    std::unique_ptr<core::WalletModel> m_model;
    std::unique_ptr<island::IslandController> m_island;
};

} // namespace corvane::app
