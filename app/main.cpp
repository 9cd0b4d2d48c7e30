#include "app/app_delegate.h"
#include "app/chosen_endpoints.h"
#include "app/demo_wallet.h"
#include "app/frame_log.h"
#include "app/island_content.h"
#include "app/onboarding_content.h"
#include "app/options.h"
#include "app/qt_environment.h"
#include "app/requests.h"
#include "app/while_covered.h"
#include "assets/bundled_fonts.h"
#include "core/wallet_settings.h"
#include "look/theme.h"
#include "onboarding/onboarding.h"
#include "platform/linux/bus/desktop_appearance.h"
#include "platform/linux/bus/session_bus_instance.h"
#include "platform/linux/files/json_settings.h"
#include "platform/linux/files/local_application_bundle.h"
#include "platform/linux/files/local_file_system.h"
#include "platform/linux/files/xdg_autostart.h"
#include "platform/linux/keyring/no_authenticator.h"
#include "platform/linux/keyring/polkit_authenticator.h"
#include "platform/linux/keyring/secret_service_keychain.h"
#include "platform/linux/network/network_process.h"
#include "platform/linux/process/free_memory.h"
#include "platform/linux/process/process_hardening.h"
#include "platform/linux/process/termination_signals.h"
#include "platform/linux/toolkit/canberra_sound_player.h"
#include "platform/linux/toolkit/desktop_link_opener.h"
#include "platform/linux/toolkit/fontconfig_font_registry.h"
#include "platform/linux/toolkit/icu_number_formatter.h"
#include "platform/linux/toolkit/qt_application.h"
#include "platform/linux/toolkit/qt_clipboard.h"
#include "platform/linux/toolkit/qt_main_queue.h"
#include "platform/linux/toolkit/qt_screens.h"
#include "platform/linux/tray/qt_status_bar.h"
#include "platform/linux/x11/x11_window_system.h"
#include "platform/secret_bytes.h"
#include "platform/sodium_signing_keys.h"
#include "platform/thread_background_tasks.h"

#include <QApplication>
#include <QQuickWindow>
#include <QStandardPaths>
#include <QStyleHints>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>

namespace {

using namespace corvane;

int say(const QString &text, int status)
{
    std::fputs(qPrintable(text), status == 0 ? stdout : stderr);
    return status;
}

QString settingsPath(bool demo)
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           (demo ? QStringLiteral("/corvane-demo") : QStringLiteral("/corvane")) +
           QStringLiteral("/settings.json");
}

/// The services that store and unlock the signing key.
struct KeyServices
{
    std::unique_ptr<platform::Authenticator> authenticator;
    std::unique_ptr<platform::Keychain> keychain;
};

KeyServices systemKeyServices(platform::BackgroundTasks &background)
{
    KeyServices services;
    services.authenticator = std::make_unique<platform::PolkitAuthenticator>(background);
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    services.keychain = std::make_unique<platform::SecretServiceKeychain>(
        *services.authenticator, data + QStringLiteral("/corvane/accounts.json"));
    return services;
}

/// A new key in memory, without authentication. Watches its address unless the settings contain
/// another.
KeyServices demoKeyServices(platform::SigningKeys &signingKeys, platform::SettingsStore &settings)
{
    app::DemoWallet demo = app::makeDemoWallet(signingKeys);
    say(QStringLiteral("demo address: %1\n").arg(demo.address.text()), 0);
    std::fflush(stdout);
    app::watchDemoWallet(demo, settings);
    // A demo does not show the tour, unless the settings request it.
    if (const QString onboarded = onboarding::Onboarding::shownSetting();
        !settings.boolean(onboarded)) {
        settings.setBoolean(onboarded, true);
    }
    return {std::make_unique<platform::NoAuthenticator>(), std::move(demo.keychain)};
}

/// Separate names, because a demo and the user's wallet may run at the same time.
QString instanceName(bool demo)
{
    return demo ? QStringLiteral("org.corvane.Corvane.Demo")
                : QStringLiteral("org.corvane.Corvane");
}

/// The desktop adapters, in the order of their dependencies.
struct Desktop
{
    Desktop(const app::Options &options, platform::WhileCovered whileCovered)
        : windowSystem(screens, whileCovered)
        , loginItem(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation),
                    executable)
        , bundle(executable, app::relaunchArguments(options))
    {}

    const QString executable = QCoreApplication::applicationFilePath();
    platform::QtMainQueue queue;
    platform::ThreadBackgroundTasks background;
    platform::NetworkProcess http{QCoreApplication::applicationDirPath() +
                                  QStringLiteral("/corvane-net")};
    platform::IcuNumberFormatter formatter;
    platform::LocalFileSystem files;
    platform::QtScreens screens;
    platform::X11WindowSystem windowSystem;
    platform::QtClipboard clipboard;
    platform::CanberraSoundPlayer sounds{background};
    platform::DesktopLinkOpener links;
    platform::DesktopAppearance appearance{background, queue};
    platform::QtApplication application;
    platform::TerminationSignals signals{[this] { application.terminate(); }};
    platform::QtStatusBar statusBar;
    platform::XdgAutostart loginItem;
    platform::LocalApplicationBundle bundle;
    platform::FontconfigFontRegistry fonts;
};

/// Calls `act` once, after the first frame of the window in which `root` will be shown.
template <typename Act>
void afterFirstFrame(QQuickItem &root, Act act)
{
    QObject::connect(
        &root, &QQuickItem::windowChanged, &root,
        [act](QQuickWindow *window) {
            if (window != nullptr) {
                app::logFrames(*window);
                QObject::connect(window, &QQuickWindow::frameSwapped, window, act,
                                 Qt::SingleShotConnection);
            }
        },
        Qt::SingleShotConnection);
}

int run(const app::Options &options, const core::Endpoints &endpoints,
        std::unique_ptr<platform::Instance> instance, app::QtEnvironment &environment)
{
    platform::SodiumSigningKeys signingKeys;
    platform::JsonSettings settings(settingsPath(options.demoKeychain));
    const app::WhileCoveredChoice whileCovered = app::chosenWhileCovered(
        qEnvironmentVariable(app::fullscreenVariable), settings.string(app::fullscreenSetting));
    std::fputs(qPrintable(whileCovered.complaints), stderr);
    Desktop desktop(options, whileCovered.value);
    const KeyServices keyServices = options.demoKeychain ? demoKeyServices(signingKeys, settings)
                                                         : systemKeyServices(desktop.background);
    if (options.watch) {
        settings.setString(core::addressSetting, options.watch->text());
    }
    if (options.hideAmounts) {
        settings.setBoolean(core::hidesAmountsSetting, true);
    }

    look::Theme theme(desktop.fonts);
    app::IslandContent content(
        {desktop.queue, desktop.clipboard, desktop.sounds, desktop.links, desktop.application,
         *keyServices.authenticator,
         std::chrono::milliseconds(QGuiApplication::styleHints()->mouseDoubleClickInterval())},
        options.demoKeychain ? QStringLiteral("DEMO") : QString());
    onboarding::Onboarding tour({desktop.queue, settings, desktop.bundle, desktop.loginItem,
                                 desktop.application, desktop.windowSystem.floatingWindows(),
                                 [&content](onboarding::Onboarding &onboarding) {
                                     return app::makeOnboardingView(content.engine(), onboarding);
                                 }});
    std::optional<app::AppDelegate> delegate;
    const auto makeContent = [&](island::IslandController &island) {
        QQuickItem *root = content.make(island);
        afterFirstFrame(*root, [&] {
            // Qt has read all of the variables by now.
            environment.restore();
            // The collapsed island has no text, so the fonts are loaded after its first frame.
            assets::registerBundledFonts();
            desktop.http.start();
            if (options.open) {
                delegate->open(*app::paneNamed(*options.open));
            }
        });
        return root;
    };
    delegate.emplace(
        core::WalletServices{desktop.queue, desktop.http, settings, *keyServices.keychain,
                             signingKeys, desktop.background, desktop.formatter, desktop.files,
                             endpoints},
        island::IslandServices{desktop.queue, desktop.screens,
                               desktop.windowSystem.pointerMonitor(),
                               desktop.windowSystem.islandPanels(), *keyServices.authenticator,
                               desktop.clipboard, makeContent},
        app::ShellServices{desktop.application, desktop.statusBar, desktop.loginItem,
                           desktop.bundle, desktop.appearance, theme, tour, [&content] {
                               content.releaseUnused();
                               platform::releaseFreeMemory();
                           }});
    delegate->applicationDidFinishLaunching();
    instance->serve(desktop.queue, [&delegate](const platform::InstanceRequest &request) {
        // A request may arrive before the first frame, and create a card.
        assets::registerBundledFonts();
        return delegate->perform(request);
    });
    const int status = QApplication::exec();
    // It handles requests on the queue, and so must be destroyed first.
    instance.reset();
    // The views use the model and the island, and so must be destroyed first.
    tour.dismiss();
    content.unload();
    delegate.reset();
    if (desktop.background.isBusy()) {
        // A thread with an open prompt still uses the keychain, polkit or the queue, so these must
        // not be destroyed. Settings are written when they change, so it is safe to exit here.
        std::_Exit(status);
    }
    return status;
}

} // namespace

int main(int argc, char *argv[])
{
    platform::setUpHeap();
    if (!platform::hardenProcess()) {
        return say(QStringLiteral("cannot keep other programs out of this one's memory\n"), 1);
    }
    QStringList arguments;
    for (int index = 0; index < argc; ++index) {
        arguments.append(QString::fromLocal8Bit(argv[index]));
    }
    const auto parsed = app::parseOptions(arguments, qEnvironmentVariable("CORVANE_ENDPOINTS"));
    if (const auto *earlyExit = std::get_if<app::EarlyExit>(&parsed)) {
        return say(earlyExit->text, earlyExit->status);
    }
    const auto &options = std::get<app::Options>(parsed);
    const bool runs = options.command == app::Options::Command::Run;
    const auto endpoints = runs ? app::chosenEndpoints(options) : core::Endpoints();
    if (const auto *earlyExit = std::get_if<app::EarlyExit>(&endpoints)) {
        return say(earlyExit->text, earlyExit->status);
    }
    std::unique_ptr<platform::Instance> instance =
        std::make_unique<platform::SessionBusInstance>(instanceName(options.demoKeychain));
    if (const auto earlyExit = app::handOver(options, *instance)) {
        return say(earlyExit->text, earlyExit->status);
    }
    if (!platform::SecretBytes::canBeLocked()) {
        std::fputs("cannot lock memory: a key in use may be written to swap; raise the limit of "
                   "locked memory (ulimit -l)\n",
                   stderr);
    }

    app::QtEnvironment environment;
    environment.prepare(platform::X11WindowSystem::qtEnvironment());
    if (qEnvironmentVariableIsEmpty("QT_QUICK_BACKEND")) {
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    }
    QCoreApplication::setApplicationName(QStringLiteral("corvane"));
    QCoreApplication::setApplicationVersion(QStringLiteral(CORVANE_VERSION));
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    return run(options, std::get<core::Endpoints>(endpoints), std::move(instance), environment);
}
