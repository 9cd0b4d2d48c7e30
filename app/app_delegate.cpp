#include "app/app_delegate.h"

namespace corvane::app {

AppDelegate::AppDelegate(core::WalletServices walletServices, island::IslandServices islandServices)
    : m_walletServices(std::move(walletServices))
    , m_islandServices(std::move(islandServices))
{}

void AppDelegate::applicationDidFinishLaunching()
{
    m_model = std::make_unique<core::WalletModel>(m_walletServices);
    m_island = std::make_unique<island::IslandController>(*m_model, m_islandServices);
    m_island->show();
}

} // namespace corvane::app
