#include "onboarding/onboarding.h"

#include "onboarding/applications_folder.h"

#include <QQuickItem>

#include <algorithm>
#include <chrono>
#include <cmath>

namespace corvane::onboarding {

using island::IslandController;

namespace {

/// Time for the new instance to start, and for this one to show a reaction.
constexpr std::chrono::milliseconds terminationDelay{800};

/// The window's frame: centred on the screen, in whole points, and no higher than the screen.
QRectF centredFrame(const std::optional<platform::Screen> &screen)
{
    const QPointF centre = screen ? screen->frame.center() : QPointF();
    QSizeF size = Onboarding::windowSize;
    if (screen) {
        size.setHeight(std::min(size.height(), std::floor(screen->frame.height())));
    }
    return {std::round(centre.x() - size.width() / 2), std::round(centre.y() - size.height() / 2),
            size.width(), size.height()};
}

} // namespace

Onboarding::Onboarding(OnboardingServices services, QObject *parent)
    : QObject(parent)
    , m_services(std::move(services))
{}

Onboarding::~Onboarding() = default;

QString Onboarding::shownSetting()
{
    return QStringLiteral("corvane.onboarded.v1");
}

void Onboarding::show(IslandController &island)
{
    if (!m_window) {
        m_island = &island;
        m_window = m_services.windows.makeWindow(QStringLiteral("Welcome to Corvane"),
                                                 centredFrame(island.screen()),
                                                 m_services.makeContent(*this));
        // Stored when the tour opens, so that a user who closes it early does not see it again at
        // the next start.
        m_services.settings.setBoolean(shownSetting(), true);
    }
    m_window->show();
}

void Onboarding::finish()
{
    // Before the window is hidden, which makes a window manager give the keyboard to another one.
    if (m_island) {
        m_island->present();
    }
    if (m_window) {
        m_window->hide();
        // Destroyed later, because a button of the window is still handling its click.
        m_finished = std::move(m_window);
        m_services.queue.post([self = QPointer(this)] {
            if (self) {
                self->m_finished.reset();
            }
        });
    }
}

void Onboarding::close()
{
    if (m_window) {
        m_window->hide();
    }
}

void Onboarding::dismiss()
{
    m_window.reset();
    m_finished.reset();
}

bool Onboarding::moveToApplications()
{
    const QString destination = QStringLiteral("/Applications/Corvane.app");
    platform::ApplicationBundle &bundle = m_services.bundle;
    const QString running = bundle.path();
    if (!isApplicationBundle(running) || isInApplications(running)) {
        return false;
    }
    if (bundle.exists(destination) && !bundle.remove(destination)) {
        return false;
    }
    if (!bundle.copy(running, destination)) {
        return false;
    }
    bundle.openNewInstance(destination);
    m_services.queue.after(terminationDelay,
                           [&application = m_services.application] { application.terminate(); });
    return true;
}

} // namespace corvane::onboarding
