// The unlock state machine of IslandController, and what changes the pane.
// - locked: an expansion prompts;
// - prompting (`m_authInFlight`): success: unlocked; anything else: refused;
// - refused (`m_wantsManualUnlock`): only the button prompts;
// - unlocked (`m_islandUnlocked`): stays so until the program ends.
// Where nobody can be asked, a request unlocks at once, without the key.

#include "island/island_animations.h"
#include "island/island_controller.h"

#include <QPointer>

namespace corvane::island {

void IslandController::requestIslandUnlock()
{
    requestIslandUnlock(nullptr);
}

void IslandController::requestIslandUnlock(std::function<void()> then)
{
    if (m_islandUnlocked) {
        if (then) {
            then();
        }
        return;
    }
    if (m_authInFlight) {
        return;
    }
    m_authInFlight = true;
    publish(m_authMessage, std::optional<QString>(), &IslandController::authMessageChanged);

    const auto context = m_services.authenticator.makeContext(QStringLiteral("Cancel"));
    if (!m_services.authenticator.canEvaluate(*context)) {
        m_authInFlight = false;
        publish(m_islandUnlocked, true, &IslandController::islandUnlockedChanged);
        if (then) {
            then();
        }
        return;
    }
    m_services.authenticator.evaluate(context, QStringLiteral("unlock Corvane"),
                                      [controller = QPointer(this), &queue = m_services.queue,
                                       context, then = std::move(then)](bool success) {
                                          queue.post([controller, context, then, success] {
                                              if (controller) {
                                                  controller->finishUnlock(success, context, then);
                                              }
                                          });
                                      });
}

void IslandController::finishUnlock(bool success,
                                    const std::shared_ptr<platform::AuthenticationContext> &context,
                                    const std::function<void()> &then)
{
    m_authInFlight = false;
    if (!success) {
        m_wantsManualUnlock = true;
        return;
    }
    m_transaction.run(standardSpring(), [this] {
        publish(m_islandUnlocked, true, &IslandController::islandUnlockedChanged);
    });
    m_model.unlockSigningKey(context);
    if (then) {
        then();
    }
}

void IslandController::setPane(IslandPane pane)
{
    becomeActive();
    m_transaction.run(standardSpring(), [this, pane] {
        publish(m_pane, pane, &IslandController::paneChanged);
        publish(m_expanded, true, &IslandController::expandedChanged);
    });
    if (pane != IslandPane::Balance) {
        panel().activate();
    }
}

void IslandController::copyAddress()
{
    m_services.clipboard.setText(m_model.address());
}

} // namespace corvane::island
