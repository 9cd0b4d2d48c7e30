#include "island/island_controller.h"

#include "core/wallet_model.h"
#include "island/island_animations.h"
#include "island/island_geometry.h"
#include "island/presence_wording.h"

#include <QPointer>

#include <chrono>

namespace corvane::island {

namespace {

constexpr std::chrono::milliseconds hoverPollInterval{150};

} // namespace

IslandController::IslandController(core::WalletModel &model, IslandServices services,
                                   QObject *parent)
    : QObject(parent)
    , m_model(model)
    , m_services(std::move(services))
    , m_hover(m_services.queue, *this)
    , m_unlock(m_services.queue, m_services.authenticator, *this)
{
    followCard();
    for (const auto signal :
         {&IslandController::islandUnlockedChanged, &IslandController::paneChanged}) {
        connect(this, signal, this, &IslandController::followCard);
    }
    for (const auto signal :
         {&core::WalletModel::signingPubkeyChanged, &core::WalletModel::pendingBackupChanged}) {
        connect(&m_model, signal, this, &IslandController::followCard);
    }
}

IslandController::~IslandController()
{
    if (m_hoverPoll) {
        m_hoverPoll->cancel();
    }
}

void IslandController::show()
{
    m_panel = m_services.panels.makePanel(stageRect());
    m_panel->setLevel(platform::IslandPanel::Level::Resting);
    m_panel->setClickThrough(true);
    if (m_services.makeContent) {
        m_panel->setContent(m_services.makeContent(*this));
    }
    followKeyboard();
    m_panel->show();
    startHoverTracking();
    m_services.screens.observeChanges(weakly(&IslandController::screensChanged));
}

void IslandController::screensChanged()
{
    m_hover.handle(HoverMachine::Event::ScreensChange);
    if (m_panel) {
        m_panel->setFrame(stageRect());
    }
    Q_EMIT geometryChanged();
}

void IslandController::startHoverTracking()
{
    const auto sample = weakly(&IslandController::evaluateHover);
    m_globalMonitor = m_services.pointer.addGlobalMonitor(sample);
    m_localMonitor = m_services.pointer.addLocalMonitor(sample);
    // The poll also detects a pointer that was moved without an event.
    m_hoverPoll = m_services.queue.every(hoverPollInterval, [controller = QPointer(this)] {
        if (controller) {
            controller->evaluateHover();
            controller->reclaimKeyboard();
            Q_EMIT controller->hoverPolled();
        }
    });
}

void IslandController::evaluateHover()
{
    const std::optional<platform::Screen> current = screen();
    if (!current) {
        return;
    }
    // Empty if the pointer is on no known screen, and so not on the island.
    const std::optional<QPointF> pointer = m_services.pointer.location();
    const QRectF area =
        m_expanded ? expandedHoverRect(*current, m_pane) : island::collapsedRect(current);
    const bool inside = pointer && !panel().isAway() && containsPoint(area, *pointer);
    // A card that unfolds under a resting pointer is not a use of the pointer.
    if (std::exchange(m_lastPointer, pointer) != pointer && inside) {
        setKeyboardDriven(false);
    }
    m_hover.handle(inside ? HoverMachine::Event::PointerInside
                          : HoverMachine::Event::PointerOutside);
}

void IslandController::followKeyboard()
{
    m_panel->observeKeyboard({.focusChanged = [this](bool on) { keyboardChanged(on); },
                              .keyPressed = [this] { setKeyboardDriven(m_expanded); },
                              .buttonPressed = [this] { setKeyboardDriven(false); }});
}

void IslandController::keyboardChanged(bool hasKeyboard)
{
    m_hasKeyboard = hasKeyboard;
    m_keyboardLent = !hasKeyboard && (m_openedByKeyboard || m_expanded) && isUserAsked();
    if (!hasKeyboard && !m_keyboardLent) {
        m_hover.handle(HoverMachine::Event::KeyboardLost);
    }
}

void IslandController::reclaimKeyboard()
{
    // Window managers return the keyboard to a window that they manage, which the panel is not.
    if (m_keyboardLent && !isUserAsked()) {
        m_keyboardLent = false;
        if (m_expanded) {
            panel().activate();
        }
    }
}

void IslandController::setKeyboardDriven(bool on)
{
    publish(m_keyboardDriven, on, &IslandController::keyboardDrivenChanged);
}

void IslandController::expand()
{
    m_hover.handle(HoverMachine::Event::Open);
}

void IslandController::present()
{
    m_openedByKeyboard = true;
    setKeyboardDriven(true);
    m_hover.handle(HoverMachine::Event::Present);
    panel().activate();
}

void IslandController::goBack()
{
    if (isPrompting()) {
        return;
    }
    // The locked card is the same for every pane.
    if (m_pane != IslandPane::Balance && card() != Card::Locked) {
        setPane(IslandPane::Balance);
        return;
    }
    m_transaction.run(standardSpring(), [this] {
        publish(m_pane, IslandPane::Balance, &IslandController::paneChanged);
        m_hover.handle(HoverMachine::Event::Dismiss);
    });
}

void IslandController::collapse()
{
    m_hover.handle(HoverMachine::Event::Close);
}

void IslandController::setPane(IslandPane pane)
{
    if (!m_expanded && !m_hovering) {
        setKeyboardDriven(true);
    }
    takeClicks();
    m_transaction.run(standardSpring(), [this, pane] {
        publish(m_pane, pane, &IslandController::paneChanged);
        m_hover.handle(HoverMachine::Event::ShowPane);
    });
    if (pane != IslandPane::Balance) {
        panel().activate();
    }
}

void IslandController::perform(HoverMachine::Action action)
{
    using enum HoverMachine::Action;
    switch (action) {
    case Swell:
        m_unlock.approached();
        animate(swellSpring(), m_hovering, true, &IslandController::hoveringChanged);
        break;
    case Settle:
        animate(settleCurve(), m_hovering, false, &IslandController::hoveringChanged);
        break;
    case Raise:
        takeClicks();
        panel().show();
        break;
    case Widen:
        animate(widenSpring(), m_widened, true, &IslandController::widenedChanged);
        break;
    case Prompt:
        m_unlock.opened();
        break;
    case Unfold:
        animate(standardSpring(), m_expanded, true, &IslandController::expandedChanged);
        break;
    case Fold:
        m_openedByKeyboard = false;
        setKeyboardDriven(false);
        panel().deactivate();
        animate(standardSpring(), m_expanded, false, &IslandController::expandedChanged);
        break;
    case Narrow:
        animate(widenSpring(), m_widened, false, &IslandController::widenedChanged);
        break;
    case LetClicksPass:
        letClicksPass();
        break;
    case Reset:
        publish(m_widened, false, &IslandController::widenedChanged);
        publish(m_hovering, false, &IslandController::hoveringChanged);
        // If the island was about to open, nothing else would turn click-through on again.
        letClicksPass();
        break;
    }
}

bool IslandController::isPrompting() const
{
    return m_unlock.state() == UnlockMachine::State::Prompting;
}

bool IslandController::isUserAsked() const
{
    return isPrompting() || m_services.authenticator.isAsking();
}

bool IslandController::isHeld() const
{
    return m_openedByKeyboard && m_keyboardDriven && (m_hasKeyboard || m_keyboardLent);
}

void IslandController::requestIslandUnlock()
{
    requestIslandUnlock(nullptr);
}

void IslandController::requestIslandUnlock(std::function<void()> then)
{
    m_unlock.request(std::move(then));
}

void IslandController::clearMessage()
{
    publish(m_authMessage, std::optional<QString>(), &IslandController::authMessageChanged);
}

void IslandController::unlock()
{
    animate(standardSpring(), m_islandUnlocked, true, &IslandController::islandUnlockedChanged);
}

void IslandController::unlockAtOnce()
{
    publish(m_islandUnlocked, true, &IslandController::islandUnlockedChanged);
}

void IslandController::meansFound(platform::PresenceMeans means)
{
    publish(m_presenceText, presenceWording(means), &IslandController::presenceTextChanged);
}

void IslandController::loadKey(std::shared_ptr<platform::AuthenticationContext> context)
{
    m_model.unlockSigningKey(std::move(context));
}

void IslandController::followCard()
{
    const CardChoice choice{m_islandUnlocked, m_pane, m_model.hasSigningKey(),
                            m_model.hasPendingBackup()};
    if (m_choice != choice) {
        m_choice = choice;
        Q_EMIT cardChanged();
    }
}

void IslandController::copyAddress()
{
    m_services.clipboard.setText(m_model.address());
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

double IslandController::stageMiddle() const
{
    return island::stageMiddle(screen());
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

void IslandController::takeClicks()
{
    panel().setLevel(platform::IslandPanel::Level::Active);
    panel().setClickThrough(false);
}

void IslandController::letClicksPass()
{
    panel().setLevel(platform::IslandPanel::Level::Resting);
    panel().setClickThrough(true);
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
    // May be called on any thread; the action runs on the main thread.
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

template <typename Value>
void IslandController::animate(const look::Animation &animation, Value &stored, const Value &value,
                               Notify notify)
{
    m_transaction.run(animation, [&] { publish(stored, value, notify); });
}

} // namespace corvane::island
