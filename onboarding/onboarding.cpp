#include "onboarding/onboarding.h"

#include "onboarding/applications_folder.h"

#include <QQuickItem>

#include <chrono>
#include <cmath>

namespace corvane::onboarding {

using island::IslandController;

namespace {

/// Time for the new instance to set out, and for this one to show that something happens.
constexpr std::chrono::milliseconds terminationDelay{800};

/// How long the island is held to opening at the end of the tour.
constexpr std::chrono::seconds openingTime{2};

/// The window's place: the middle of the screen, in whole points.
QRectF centredFrame(const std::optional<platform::Screen> &screen)
{
    const QPointF centre = screen ? screen->frame.center() : QPointF();
    const QSizeF size = Onboarding::windowSize;
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
        connect(&island, &IslandController::widenedChanged, this, &Onboarding::keepOpening,
                Qt::UniqueConnection);
        connect(&island, &IslandController::expandedChanged, this, &Onboarding::stopOpening,
                Qt::UniqueConnection);
        m_window = m_services.windows.makeWindow(QStringLiteral("Welcome to Corvane"),
                                                 centredFrame(island.screen()),
                                                 m_services.makeContent(*this));
        // Who leaves the tour half-way is not asked to take it again.
        m_services.settings.setBoolean(shownSetting(), true);
    }
    m_window->makeKeyAndOrderFront();
}

void Onboarding::finish()
{
    if (m_window) {
        m_window->orderOut();
        // A button of the window is still handling its click.
        m_finished = std::move(m_window);
        m_services.queue.post([self = QPointer(this)] {
            if (self) {
                self->m_finished.reset();
            }
        });
    }
    if (m_island) {
        m_openingEnd = m_services.queue.now() + openingTime;
        m_island->expand();
    }
}

void Onboarding::keepOpening()
{
    if (m_services.queue.now() < m_openingEnd && !m_island->widened() && !m_island->expanded()) {
        m_services.queue.post([island = m_island] {
            if (island) {
                island->expand();
            }
        });
    }
}

void Onboarding::stopOpening()
{
    m_openingEnd = {};
}

void Onboarding::close()
{
    if (m_window) {
        m_window->orderOut();
    }
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
