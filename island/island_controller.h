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

/// What the island needs from the desktop. Everything outlives the controller.
struct IslandServices
{
    platform::MainQueue &queue;
    platform::Screens &screens;
    platform::PointerMonitor &pointer;
    platform::IslandPanelFactory &panels;
    platform::Authenticator &authenticator;
    platform::Clipboard &clipboard;
    /// Makes the panel's content; called once, by `show`. The caller keeps what it returns, which
    /// may be null.
    std::function<QQuickItem *(IslandController &)> makeContent;
};

/// The island: its panel, the flags that its views follow, and the card that it shows. When they
/// change is decided by HoverMachine and UnlockMachine; with which animation, here.
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
    Q_PROPERTY(QString authMessage READ authMessageText NOTIFY authMessageChanged FINAL)
    Q_PROPERTY(double notchWidth READ notchWidth NOTIFY geometryChanged FINAL)
    Q_PROPERTY(double topBandHeight READ topBandHeight NOTIFY geometryChanged FINAL)
    Q_PROPERTY(double collapsedWidth READ collapsedWidth NOTIFY geometryChanged FINAL)
    Q_PROPERTY(corvane::look::Transaction *transaction READ transaction CONSTANT FINAL)

public:
    /// Points. For what is laid out beside the notch; no computation reads them.
    static constexpr double earWidth = 78;
    static constexpr double shadowPad = 44;

    IslandController(core::WalletModel &model, IslandServices services, QObject *parent = nullptr);
    ~IslandController() override;

    /// Builds the panel, shows it and starts to follow the pointer and the displays. Called once.
    void show();
    /// Opens the island on the current pane. `show` must have been called.
    void expand();
    /// Opens the island although the pointer is elsewhere. It stays until the pointer has been
    /// there and left, or for some seconds when that does not come.
    void present();
    /// Folds the island, unless it shows another pane than the balance or is asking for presence.
    void collapse();
    /// Asks the user to prove presence, unless that has been done. `then` runs after a success, and
    /// at once when the island is unlocked or the device has no means to ask; never after a
    /// refusal, nor while another request is open.
    void requestIslandUnlock(std::function<void()> then);
    /// The same without anything to run afterwards.
    Q_INVOKABLE void requestIslandUnlock();
    /// Shows `pane`, opening the island if it is closed. `show` must have been called.
    Q_INVOKABLE void setPane(corvane::island::IslandPane pane);
    /// Puts the wallet's address on the clipboard.
    Q_INVOKABLE void copyAddress();
    /// Told by the root view: where the island is drawn, in points from the panel's top left
    /// corner.
    Q_INVOKABLE void setContentOutline(const QRectF &outline, double bottomRadius);

    [[nodiscard]] bool expanded() const { return m_expanded; }
    [[nodiscard]] IslandPane pane() const { return m_pane; }
    [[nodiscard]] Card card() const { return chosenCard(m_choice); }
    [[nodiscard]] bool widened() const { return m_widened; }
    [[nodiscard]] bool hovering() const { return m_hovering; }
    [[nodiscard]] bool islandUnlocked() const { return m_islandUnlocked; }
    [[nodiscard]] const std::optional<QString> &authMessage() const { return m_authMessage; }
    [[nodiscard]] look::Transaction *transaction() { return &m_transaction; }
    [[nodiscard]] core::WalletModel &model() const { return m_model; }

    /// The screen that the island lives on and its measures there, from `island_geometry.h`.
    [[nodiscard]] std::optional<platform::Screen> screen() const;
    [[nodiscard]] double notchWidth() const;
    [[nodiscard]] double topBandHeight() const;
    [[nodiscard]] double collapsedWidth() const;
    [[nodiscard]] QRectF collapsedRect() const;
    [[nodiscard]] QRectF stageRect() const;
    /// The size of the expanded island on `pane`.
    [[nodiscard]] Q_INVOKABLE QSizeF size(corvane::island::IslandPane pane) const;

Q_SIGNALS:
    /// Announces the change of a published value before it happens.
    void objectWillChange();
    void expandedChanged();
    void paneChanged();
    /// Another card is to be shown, maybe one of the same kind.
    void cardChanged();
    void widenedChanged();
    void hoveringChanged();
    void islandUnlockedChanged();
    void authMessageChanged();
    /// The displays have changed; every measure must be read anew.
    void geometryChanged();
    /// The hover poll has looked at the pointer; what moves at rest may move along.
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

    void clearMessage() override;
    void unlock() override;
    void unlockAtOnce() override;
    void loadKey(std::shared_ptr<platform::AuthenticationContext> context) override;

    void startHoverTracking();
    void evaluateHover();
    void screensChanged();
    void followCard();
    void takeClicks();
    void letClicksPass();
    [[nodiscard]] platform::IslandPanel &panel() const;
    [[nodiscard]] QString authMessageText() const { return m_authMessage.value_or(QString()); }
    /// Wraps an action so that it does nothing once this object is gone.
    [[nodiscard]] std::function<void()> weakly(void (IslandController::*action)());

    bool m_expanded = false;
    IslandPane m_pane = IslandPane::Balance;
    bool m_widened = false;
    bool m_hovering = false;
    bool m_islandUnlocked = false;
    std::optional<QString> m_authMessage;
    core::WalletModel &m_model;
    IslandServices m_services;
    look::Transaction m_transaction;
    HoverMachine m_hover;
    UnlockMachine m_unlock;
    CardChoice m_choice;
    std::unique_ptr<platform::IslandPanel> m_panel;
    std::shared_ptr<platform::WorkItem> m_hoverPoll;
    std::unique_ptr<platform::PointerMonitor::Token> m_globalMonitor;
    std::unique_ptr<platform::PointerMonitor::Token> m_localMonitor;
};

} // namespace corvane::island
