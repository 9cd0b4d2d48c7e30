#pragma once

#include "island/island_controller.h"
#include "platform/application.h"
#include "platform/application_bundle.h"
#include "platform/floating_window.h"
#include "platform/login_item.h"
#include "platform/main_queue.h"
#include "platform/settings_store.h"

#include <QObject>
#include <QPointer>
#include <QSizeF>
#include <QtQmlIntegration/qqmlintegration.h>

#include <functional>
#include <memory>

class QQuickItem;

namespace corvane::onboarding {

class Onboarding;

/// What the onboarding needs from the desktop. Everything outlives it.
struct OnboardingServices
{
    platform::MainQueue &queue;
    platform::SettingsStore &settings;
    platform::ApplicationBundle &bundle;
    platform::LoginItem &loginItem;
    platform::Application &application;
    platform::FloatingWindowFactory &windows;
    /// Makes the window's content, an OnboardingView; called for each window.
    std::function<std::unique_ptr<QQuickItem>(Onboarding &)> makeContent;
};

/// The tour of a first run: its one window, and the move into the applications folder. Main thread.
class Onboarding : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made once, at launch")
    Q_PROPERTY(int lastPage READ lastPage CONSTANT FINAL)

public:
    /// In points.
    static constexpr QSizeF windowSize{520, 640};

    explicit Onboarding(OnboardingServices services, QObject *parent = nullptr);
    ~Onboarding() override;

    /// Setting (boolean) that says that the tour has been shown.
    [[nodiscard]] static QString shownSetting();
    /// Index of the last of the pages.
    [[nodiscard]] static int lastPage() { return 4; }

    /// Opens the window on the first page, on the screen with the island; or brings the one that
    /// there is to the front, on the page where the user left it. `island` is what the tour ends
    /// with.
    void show(island::IslandController &island);
    /// Ends the tour: its window goes for good, and the island opens.
    Q_INVOKABLE void finish();
    /// Hides the window. It keeps its page.
    Q_INVOKABLE void close();
    /// Lets go of the window and all that it shows; before the program ends.
    void dismiss();
    /// Copies the application into the applications folder, over what is there, and starts it from
    /// there; this instance ends 0.8 s later. False, with nothing changed, when it is no bundle, is
    /// in that folder already, or cannot be copied; only an old copy may then be gone.
    [[nodiscard]] bool moveToApplications();

    [[nodiscard]] const OnboardingServices &services() const { return m_services; }

private:
    OnboardingServices m_services;
    std::unique_ptr<platform::FloatingWindow> m_window;
    /// The window of a finished tour, until it can go.
    std::unique_ptr<platform::FloatingWindow> m_finished;
    QPointer<island::IslandController> m_island;
};

} // namespace corvane::onboarding
