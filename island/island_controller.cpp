#include "island/island_controller.h"

#include "island/island_geometry.h"

#include <QPointer>

namespace corvane::island {

IslandController::IslandController(core::WalletModel &model, IslandServices services,
                                   QObject *parent)
    : QObject(parent)
    , m_model(model)
    , m_services(std::move(services))
{}

IslandController::~IslandController()
{
    for (const auto &work : {m_expandWork, m_collapseWork, m_hoverPoll}) {
        if (work) {
            work->cancel();
        }
    }
}

void IslandController::show()
{
    m_panel = m_services.panels.makePanel(stageRect());
    m_panel->setLevel(platform::IslandPanel::restingLevel);
    m_panel->setClickThrough(true);
    if (m_services.makeContent) {
        m_panel->setContent(m_services.makeContent(*this));
    }
    m_panel->show();
    startHoverTracking();
    m_services.screens.observeChanges(weakly(&IslandController::screensChanged));
}

void IslandController::screensChanged()
{
    if (!m_expanded) {
        publish(m_widened, false, &IslandController::widenedChanged);
        publish(m_hovering, false, &IslandController::hoveringChanged);
        // Nothing else would let clicks pass again if it had been about to open.
        becomeRestingUnlessOpen();
    }
    if (m_panel) {
        m_panel->setFrame(stageRect());
    }
    Q_EMIT geometryChanged();
}

void IslandController::setContentOutline(const QRectF &outline, double bottomRadius)
{
    if (m_panel) {
        m_panel->setContentOutline(outline, bottomRadius);
    }
}

std::optional<platform::Screen> IslandController::screen() const
{
    return notchScreen(m_services.screens);
}

double IslandController::notchWidth() const
{
    return island::notchWidth(screen());
}

double IslandController::topBandHeight() const
{
    return island::topBandHeight(screen());
}

double IslandController::collapsedWidth() const
{
    return island::collapsedWidth(notchWidth());
}

QRectF IslandController::collapsedRect() const
{
    return island::collapsedRect(screen());
}

QRectF IslandController::stageRect() const
{
    return island::stageRect(screen());
}

QSizeF IslandController::size(IslandPane pane) const
{
    return paneSize(screen(), pane);
}

void IslandController::becomeActive()
{
    panel().setLevel(platform::IslandPanel::activeLevel);
    panel().setClickThrough(false);
}

void IslandController::becomeRestingUnlessOpen()
{
    if (!m_expanded && !m_widened) {
        panel().setLevel(platform::IslandPanel::restingLevel);
        panel().setClickThrough(true);
    }
}

platform::IslandPanel &IslandController::panel() const
{
    if (!m_panel) {
        qFatal("the island is used before it is shown");
    }
    return *m_panel;
}

std::function<void()> IslandController::weakly(void (IslandController::*action)())
{
    // Callers may be on any thread; the pointer is only looked at on the main thread.
    return [controller = QPointer(this), action, &queue = m_services.queue] {
        queue.post([controller, action] {
            if (controller) {
                (controller->*action)();
            }
        });
    };
}

template <typename Value>
void IslandController::publish(Value &stored, const Value &value, Notify notify)
{
    if (stored != value) {
        Q_EMIT objectWillChange();
        stored = value;
        Q_EMIT(this->*notify)();
    }
}

template void IslandController::publish(bool &, const bool &, Notify);
template void IslandController::publish(IslandPane &, const IslandPane &, Notify);
template void IslandController::publish(std::optional<QString> &, const std::optional<QString> &,
                                        Notify);

} // namespace corvane::island
