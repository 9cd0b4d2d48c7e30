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

/// The services that the onboarding uses. All must outlive it.
struct OnboardingServices
{
    platform::MainQueue &queue;
    platform::SettingsStore &settings;
    platform::ApplicationBundle &bundle;
    platform::LoginItem &loginItem;
    platform::Application &application;
    platform::FloatingWindowFactory &windows;
    /// Creates the window's content, an OnboardingView; called for each window.
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
    /// In points. On a screen that is lower, the window is as high as the screen.
    static constexpr QSizeF windowSize{520, 640};

    explicit Onboarding(OnboardingServices services, QObject *parent = nullptr);
    ~Onboarding() override;

    /// Key of the setting (boolean) that is true once the tour has been shown.
    [[nodiscard]] static QString shownSetting();
    /// Index of the last page.
    [[nodiscard]] static int lastPage() { return 4; }

    /// Opens the window with the first page, on the screen with the island, or brings the existing
    /// window to the front with its current page. `island` is opened when the tour is finished.
    void show(island::IslandController &island);
    /// Finishes the tour: destroys its window and opens the island.
    Q_INVOKABLE void finish();
    /// Hides the window, which keeps its page.
    Q_INVOKABLE void close();
    /// Destroys the window and its content. Must be called before the program exits.
    void dismiss();
    /// Copies the application to the applications folder, replacing an old copy, and starts it
    /// there; this instance exits 0.8 s later. Returns false without a change if it is not a bundle
    /// or is in that folder already, and false if it cannot be copied, in which case an old copy
    /// may be lost.
    [[nodiscard]] bool moveToApplications();

    [[nodiscard]] const OnboardingServices &services() const { return m_services; }

private:
    OnboardingServices m_services;
    std::unique_ptr<platform::FloatingWindow> m_window;
    /// The window of a finished tour, until it can be destroyed.
    std::unique_ptr<platform::FloatingWindow> m_finished;
    QPointer<island::IslandController> m_island;
};

} // namespace corvane::onboarding
