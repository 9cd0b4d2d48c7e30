#include "app/app_delegate.h"

#include <chrono>

namespace corvane::app {

namespace {

/// After this long it is a rest and not a pause.
constexpr auto restDelay = std::chrono::seconds(10);

} // namespace

AppDelegate::AppDelegate(core::WalletServices walletServices, island::IslandServices islandServices,
                         std::function<void()> rested)
    : m_walletServices(std::move(walletServices))
    , m_islandServices(std::move(islandServices))
    , m_rested(std::move(rested))
{}

AppDelegate::~AppDelegate()
{
    if (m_restWork) {
        m_restWork->cancel();
    }
}

void AppDelegate::applicationDidFinishLaunching()
{
    m_model = std::make_unique<core::WalletModel>(m_walletServices);
    m_island = std::make_unique<island::IslandController>(*m_model, m_islandServices);
    m_island->show();
    QObject::connect(m_island.get(), &island::IslandController::expandedChanged, m_island.get(),
                     [this] { scheduleRest(); });
    scheduleRest();
}

void AppDelegate::scheduleRest()
{
    if (m_restWork) {
        m_restWork->cancel();
    }
    m_restWork = m_islandServices.queue.after(restDelay, [this] {
        if (!m_island->expanded()) {
            m_rested();
        }
    });
}

} // namespace corvane::app
