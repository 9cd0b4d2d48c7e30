#pragma once

#include "island/card.h"
#include "island/hover_machine.h"
#include "island/island_pane.h"
#include "island/unlock_machine.h"
#include "look/motion/transaction.h"
#include "platform/authenticator.h"
#include "platform/clipboard.h"
#include "platform/island_panel.h"
#include "platform/main_queue.h"
#include "platform/pointer_monitor.h"
#include "platform/screens.h"

#include <QObject>
#include <QSizeF>
#include <QtQmlIntegration/qqmlintegration.h>

#include <functional>
#include <memory>
#include <optional>

class QQuickItem;

namespace corvane::core {
class WalletModel;
} // namespace corvane::core

namespace corvane::island {

class IslandController;

/// The services that the island uses. All must outlive the controller.
struct IslandServices
{
    platform::MainQueue &queue;
    platform::Screens &screens;
    platform::PointerMonitor &pointer;
    platform::IslandPanelFactory &panels;
    platform::Authenticator &authenticator;
    platform::Clipboard &clipboard;
    /// Creates the panel's content; called once, by `show`. The result may be null and stays owned
    /// by the creator.
    std::function<QQuickItem *(IslandController &)> makeContent;
};

/// The island: its panel, the flags that its views follow, and the current card. HoverMachine and
/// UnlockMachine decide when these change; this class chooses the animations.
///
/// Views follow the flags with the animation of `transaction`. Main thread.
class IslandController : public QObject, private HoverMachine::Island, private UnlockMachine::Island
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made once, at launch")
    Q_PROPERTY(bool expanded READ expanded NOTIFY expandedChanged FINAL)
    Q_PROPERTY(corvane::island::IslandPane pane READ pane NOTIFY paneChanged FINAL)
    Q_PROPERTY(corvane::island::cards::Card card READ card NOTIFY cardChanged FINAL)
    Q_PROPERTY(bool widened READ widened NOTIFY widenedChanged FINAL)
    Q_PROPERTY(bool hovering READ hovering NOTIFY hoveringChanged FINAL)
    Q_PROPERTY(bool islandUnlocked READ islandUnlocked NOTIFY islandUnlockedChanged FINAL)
    /// True while the island is used by keyboard: since it was opened by keyboard or a key was
    /// pressed in it, until the pointer is used on it.
    Q_PROPERTY(bool keyboardDriven READ keyboardDriven NOTIFY keyboardDrivenChanged FINAL)
    Q_PROPERTY(QString authMessage READ authMessageText NOTIFY authMessageChanged FINAL)
    /// What is missing to ask for the user's presence; empty if nothing is known to be.
    Q_PROPERTY(QString presenceText READ presenceText NOTIFY presenceTextChanged FINAL)
    Q_PROPERTY(double notchWidth READ notchWidth NOTIFY geometryChanged FINAL)
    Q_PROPERTY(double topBandHeight READ topBandHeight NOTIFY geometryChanged FINAL)
    Q_PROPERTY(double collapsedWidth READ collapsedWidth NOTIFY geometryChanged FINAL)
    /// The horizontal middle of the island's screen, in points from the panel's left edge.
    Q_PROPERTY(double stageMiddle READ stageMiddle NOTIFY geometryChanged FINAL)
    Q_PROPERTY(corvane::look::Transaction *transaction READ transaction CONSTANT FINAL)

public:
    /// In points, for layouts beside the notch. Not used in computations.
    static constexpr double earWidth = 78;
    static constexpr double shadowPad = 44;

    IslandController(core::WalletModel &model, IslandServices services, QObject *parent = nullptr);
    ~IslandController() override;

    /// Creates and shows the panel and starts to follow the pointer and the displays. Must be
    /// called once.
    void show();
    /// Opens the island with the current pane. `show` must have been called.
    void expand();
    /// Opens the island although the pointer is elsewhere, and gives it keyboard focus. It stays
    /// open as long as it has that, or until the pointer has entered and left it; for some seconds
    /// if neither comes.
    void present();
    /// Goes one step back, as the Escape key does: from a pane to the balance, from there to the
    /// collapsed island. Has no effect while the user is asked to prove presence.
    Q_INVOKABLE void goBack();
    /// Collapses the island, unless it shows a pane other than the balance or a prompt is open.
    void collapse();
    /// Asks the user to prove presence, unless the island is unlocked. Calls `then` on success, and
    /// immediately if the island is unlocked or the device cannot authenticate its owner; never
    /// after a refusal or while another request is open.
    void requestIslandUnlock(std::function<void()> then);
    /// The same without a continuation.
    Q_INVOKABLE void requestIslandUnlock();
    /// Shows `pane`; opens the island if it is closed. `show` must have been called.
    Q_INVOKABLE void setPane(corvane::island::IslandPane pane);
    /// Copies the wallet's address to the clipboard.
    Q_INVOKABLE void copyAddress();
    /// Called by the root view: sets the area of the island, in points from the panel's top left
    /// corner.
    Q_INVOKABLE void setContentOutline(const QRectF &outline, double bottomRadius);

    [[nodiscard]] bool expanded() const { return m_expanded; }
    [[nodiscard]] IslandPane pane() const { return m_pane; }
    [[nodiscard]] Card card() const { return chosenCard(m_choice); }
    [[nodiscard]] bool widened() const { return m_widened; }
    [[nodiscard]] bool hovering() const { return m_hovering; }
    [[nodiscard]] bool keyboardDriven() const { return m_keyboardDriven; }
    [[nodiscard]] bool islandUnlocked() const { return m_islandUnlocked; }
    [[nodiscard]] const std::optional<QString> &authMessage() const { return m_authMessage; }
    [[nodiscard]] const QString &presenceText() const { return m_presenceText; }
    [[nodiscard]] look::Transaction *transaction() { return &m_transaction; }
    [[nodiscard]] core::WalletModel &model() const { return m_model; }

    /// The screen of the island and the sizes on it, from `island_geometry.h`.
    [[nodiscard]] std::optional<platform::Screen> screen() const;
    [[nodiscard]] double notchWidth() const;
    [[nodiscard]] double topBandHeight() const;
    [[nodiscard]] double collapsedWidth() const;
    [[nodiscard]] double stageMiddle() const;
    [[nodiscard]] QRectF collapsedRect() const;
    [[nodiscard]] QRectF stageRect() const;
    /// The size of the expanded island with `pane`.
    [[nodiscard]] Q_INVOKABLE QSizeF size(corvane::island::IslandPane pane) const;

Q_SIGNALS:
    /// A published value is about to change; getters still return the old value.
    void objectWillChange();
    void expandedChanged();
    void paneChanged();
    /// The card must be replaced, possibly by a new one of the same kind.
    void cardChanged();
    void widenedChanged();
    void hoveringChanged();
    void keyboardDrivenChanged();
    void islandUnlockedChanged();
    void authMessageChanged();
    void presenceTextChanged();
    /// The displays have changed; all sizes must be read again.
    void geometryChanged();
    /// The hover poll has run. Animations at rest use it as their clock.
    void hoverPolled();

private:
    using Notify = void (IslandController::*)();

    template <typename Value>
    void publish(Value &stored, const Value &value, Notify notify);

    /// Changes a published value with an animation.
    template <typename Value>
    void animate(const look::Animation &animation, Value &stored, const Value &value,
                 Notify notify);

    void perform(HoverMachine::Action action) override;
    [[nodiscard]] bool showsBalance() const override { return m_pane == IslandPane::Balance; }
    [[nodiscard]] bool isPrompting() const override;
    [[nodiscard]] bool isHeld() const override;

    void clearMessage() override;
    void unlock() override;
    void unlockAtOnce() override;
    void meansFound(platform::PresenceMeans means) override;
    void loadKey(std::shared_ptr<platform::AuthenticationContext> context) override;

    void startHoverTracking();
    void followKeyboard();
    void keyboardChanged(bool hasKeyboard);
    /// True while a prompt of any part of the program is open.
    [[nodiscard]] bool isUserAsked() const;
    /// Takes the keyboard back from a prompt that has been answered.
    void reclaimKeyboard();
    void setKeyboardDriven(bool on);
    void evaluateHover();
    void screensChanged();
    void followCard();
    void takeClicks();
    void letClicksPass();
    [[nodiscard]] platform::IslandPanel &panel() const;
    [[nodiscard]] QString authMessageText() const { return m_authMessage.value_or(QString()); }
    /// Wraps an action so that it does nothing after this object is destroyed.
    [[nodiscard]] std::function<void()> weakly(void (IslandController::*action)());

    bool m_expanded = false;
    IslandPane m_pane = IslandPane::Balance;
    bool m_widened = false;
    bool m_hovering = false;
    bool m_keyboardDriven = false;
    bool m_islandUnlocked = false;
    std::optional<QString> m_authMessage;
    QString m_presenceText;
    core::WalletModel &m_model;
    IslandServices m_services;
    look::Transaction m_transaction;
    HoverMachine m_hover;
    UnlockMachine m_unlock;
    CardChoice m_choice;
    bool m_openedByKeyboard = false;
    bool m_hasKeyboard = false;
    /// A prompt has taken keyboard focus from the island.
    bool m_keyboardLent = false;
    std::optional<QPointF> m_lastPointer;
    std::unique_ptr<platform::IslandPanel> m_panel;
    std::shared_ptr<platform::WorkItem> m_hoverPoll;
    std::unique_ptr<platform::PointerMonitor::Token> m_globalMonitor;
    std::unique_ptr<platform::PointerMonitor::Token> m_localMonitor;
};

} // namespace corvane::island
