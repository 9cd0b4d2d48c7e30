// The hover state machine of IslandController; its table stands above the class.

#include "island/island_animations.h"
#include "island/island_controller.h"
#include "island/island_geometry.h"

#include <QPointer>

#include <chrono>

namespace corvane::island {

using namespace std::chrono_literals;

namespace {

constexpr auto hoverPollInterval = 150ms;
constexpr auto expandDelay = 120ms;
/// From widening to unfolding the card.
constexpr auto unfoldDelay = 100ms;
constexpr auto collapseDelay = 320ms;
/// From folding the card to narrowing the strip.
constexpr auto narrowDelay = 160ms;
/// From the start of a motion until clicks pass through again.
constexpr auto restAfterNarrowing = 400ms;
constexpr auto restAfterFolding = 700ms;

/// How long an island that was opened without the pointer waits for it: time to read the figures.
constexpr auto presentationTime = 6s;

void cancel(std::shared_ptr<platform::WorkItem> &work)
{
    if (work) {
        work->cancel();
        work.reset();
    }
}

} // namespace

void IslandController::startHoverTracking()
{
    const auto sample = weakly(&IslandController::evaluateHover);
    m_globalMonitor = m_services.pointer.addGlobalMonitor(sample);
    m_localMonitor = m_services.pointer.addLocalMonitor(sample);
    // The poll also catches a pointer that was moved without an event.
    m_hoverPoll = m_services.queue.every(hoverPollInterval, [controller = QPointer(this)] {
        if (controller) {
            controller->evaluateHover();
            Q_EMIT controller->hoverPolled();
        }
    });
}

void IslandController::evaluateHover()
{
    if (!m_panel) {
        return;
    }
    const std::optional<platform::Screen> current = screen();
    if (!current) {
        return;
    }
    // None where it is on no screen that is known, and so not on the island.
    const std::optional<QPointF> pointer = m_services.pointer.location();
    const QRectF area =
        m_expanded ? expandedHoverRect(*current, m_pane) : island::collapsedRect(current);
    if (pointer && containsPoint(area, *pointer)) {
        pointerIsInside();
    } else {
        pointerIsOutside();
    }
}

void IslandController::pointerIsInside()
{
    cancel(m_collapseWork);
    m_presentedUntil.reset();
    if (!m_expanded && !m_widened && !m_hovering) {
        m_transaction.run(swellSpring(), [this] {
            publish(m_hovering, true, &IslandController::hoveringChanged);
        });
    }
    if (m_expanded || m_expandWork) {
        return;
    }
    m_expandWork = m_services.queue.after(expandDelay, [controller = QPointer(this)] {
        if (controller) {
            controller->m_expandWork.reset();
            controller->expand();
        }
    });
}

void IslandController::pointerIsOutside()
{
    cancel(m_expandWork);
    if (m_hovering) {
        m_transaction.run(settleCurve(), [this] {
            publish(m_hovering, false, &IslandController::hoveringChanged);
        });
    }
    if (isPresented()) {
        // Also when a folding that was under way has won over it.
        expand();
        return;
    }
    if (m_widened && !m_expanded) {
        m_transaction.run(widenSpring(),
                          [this] { publish(m_widened, false, &IslandController::widenedChanged); });
        m_services.queue.after(restAfterNarrowing, [controller = QPointer(this)] {
            if (controller) {
                controller->becomeRestingUnlessOpen();
            }
        });
    }
    // An island that shows another pane than the balance never closes by itself.
    if (!m_expanded || m_pane != IslandPane::Balance || m_collapseWork) {
        return;
    }
    m_collapseWork = m_services.queue.after(collapseDelay, [controller = QPointer(this)] {
        if (controller) {
            controller->m_collapseWork.reset();
            controller->collapse();
        }
    });
}

bool IslandController::isPresented() const
{
    return m_presentedUntil && m_services.queue.now() < *m_presentedUntil;
}

void IslandController::present()
{
    cancel(m_collapseWork);
    m_presentedUntil = m_services.queue.now() + presentationTime;
    expand();
}

void IslandController::expand()
{
    if (m_expanded) {
        return;
    }
    becomeActive();
    panel().show();
    m_transaction.run(widenSpring(),
                      [this] { publish(m_widened, true, &IslandController::widenedChanged); });
    m_services.queue.after(unfoldDelay, [controller = QPointer(this)] {
        if (controller && controller->m_widened && !controller->m_expanded) {
            controller->m_transaction.run(standardSpring(), [&] {
                controller->publish(controller->m_expanded, true,
                                    &IslandController::expandedChanged);
            });
        }
    });
    if (!m_islandUnlocked && !m_wantsManualUnlock) {
        requestIslandUnlock();
    }
}

void IslandController::collapse()
{
    if (!m_expanded || m_pane != IslandPane::Balance || m_authInFlight) {
        return;
    }
    panel().deactivate();
    m_transaction.run(standardSpring(),
                      [this] { publish(m_expanded, false, &IslandController::expandedChanged); });
    m_services.queue.after(narrowDelay, [controller = QPointer(this)] {
        if (controller && !controller->m_expanded) {
            controller->m_transaction.run(widenSpring(), [&] {
                controller->publish(controller->m_widened, false,
                                    &IslandController::widenedChanged);
            });
        }
    });
    m_services.queue.after(restAfterFolding, [controller = QPointer(this)] {
        if (controller) {
            controller->becomeRestingUnlessOpen();
        }
    });
}

} // namespace corvane::island
