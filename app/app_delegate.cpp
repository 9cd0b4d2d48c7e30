#include "app/app_delegate.h"

#include "app/requests.h"
#include "core/wallet_model.h"
#include "look/paint/status_mark.h"
#include "onboarding/applications_folder.h"
#include "platform/settings_store.h"

#include <chrono>

namespace corvane::app {

namespace {

/// Time after a collapse until memory is released.
constexpr auto restDelay = std::chrono::seconds(10);
/// Delayed until after the first frame.
constexpr auto appearanceDelay = std::chrono::seconds(1);

} // namespace

AppDelegate::AppDelegate(core::WalletServices walletServices, island::IslandServices islandServices,
                         ShellServices shellServices)
    : m_walletServices(std::move(walletServices))
    , m_islandServices(std::move(islandServices))
    , m_shellServices(std::move(shellServices))
{}

AppDelegate::~AppDelegate()
{
    for (const auto &work : {m_restWork, m_appearanceWork}) {
        if (work) {
            work->cancel();
        }
    }
    // The menu uses the island and the wallet, and the island uses the wallet.
    m_statusItem.reset();
    m_island.reset();
}

void AppDelegate::applicationDidFinishLaunching()
{
    m_model = std::make_unique<core::WalletModel>(m_walletServices);
    m_island = std::make_unique<island::IslandController>(*m_model, m_islandServices);
    m_island->show();
    QObject::connect(m_island.get(), &island::IslandController::expandedChanged, m_island.get(),
                     [this] { scheduleRest(); });
    scheduleRest();
    // Read whenever the island is about to open, so that no notifications are needed at rest.
    QObject::connect(m_island.get(), &island::IslandController::hoveringChanged, m_island.get(),
                     [this] {
                         if (m_island->hovering()) {
                             followAppearance();
                         }
                     });
    m_appearanceWork =
        m_islandServices.queue.after(appearanceDelay, [this] { followAppearance(); });
    makeStatusItem();
    registerAsLoginItem();
    if (!m_walletServices.settings.boolean(onboarding::Onboarding::shownSetting())
             .value_or(false)) {
        showTour();
    }
}

void AppDelegate::makeStatusItem()
{
    m_statusItem = m_shellServices.statusBar.makeStatusItem(
        &look::paintStatusMark,
        {
            {QStringLiteral("CORVANE — your quibs, in the notch"), nullptr, {}},
            {},
            {QStringLiteral("Refresh now"), [this] { refreshNow(); }, QStringLiteral("r")},
            {QStringLiteral("Settings…"), [this] { openSettings(); }, QStringLiteral(",")},
            {QStringLiteral("Welcome tour…"), [this] { showTour(); }, {}},
            {},
            {QStringLiteral("Quit Corvane"), [this] { quit(); }, QStringLiteral("q")},
        });
}

void AppDelegate::registerAsLoginItem()
{
    const QString path = m_shellServices.bundle.path();
    if (onboarding::isApplicationBundle(path) && onboarding::isInApplications(path) &&
        !m_shellServices.loginItem.isEnabled()) {
        // After a failure the next launch retries.
        m_shellServices.loginItem.enable();
    }
}

void AppDelegate::refreshNow()
{
    model().refresh();
}

void AppDelegate::openSettings()
{
    island().setPane(island::IslandPane::Settings);
}

void AppDelegate::showTour()
{
    m_shellServices.onboarding.show(island());
}

void AppDelegate::quit()
{
    m_shellServices.application.terminate();
}

void AppDelegate::open(island::IslandPane pane)
{
    island().present();
    // Also if the pane is shown already, because another window may have keyboard focus.
    if (pane != island::IslandPane::Balance || pane != island().pane()) {
        island().setPane(pane);
    }
}

bool AppDelegate::perform(const platform::InstanceRequest &request)
{
    if (request.action.isEmpty()) {
        island().present();
        return true;
    }
    if (request.action == openAction) {
        const auto pane = paneNamed(request.parameter.value_or(QString()));
        if (pane) {
            open(*pane);
        }
        return pane.has_value();
    }
    if (request.parameter) {
        return false;
    }
    if (request.action == refreshAction) {
        refreshNow();
    } else if (request.action == hideAmountsAction) {
        model().setHidesAmounts(!model().hidesAmounts());
    } else if (request.action == quitAction) {
        quit();
    } else {
        return false;
    }
    return true;
}

void AppDelegate::followAppearance()
{
    m_shellServices.appearance.read(
        [&theme = m_shellServices.theme](const platform::AppearanceSettings &settings) {
            theme.setAppearance(settings);
        });
}

void AppDelegate::scheduleRest()
{
    if (m_restWork) {
        m_restWork->cancel();
    }
    m_restWork = m_islandServices.queue.after(restDelay, [this] {
        if (!m_island->expanded()) {
            m_shellServices.rested();
        }
    });
}

core::WalletModel &AppDelegate::model() const
{
    if (!m_model) {
        qFatal("the wallet is used before the launch");
    }
    return *m_model;
}

island::IslandController &AppDelegate::island() const
{
    if (!m_island) {
        qFatal("the island is used before the launch");
    }
    return *m_island;
}

} // namespace corvane::app
