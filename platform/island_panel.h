#pragma once

#include <QRectF>

#include <functional>
#include <memory>

class QQuickItem;

namespace corvane::platform {

/// What becomes of a resting panel while another program covers its whole screen. An active panel
/// is shown in any case. Given to the window system when it is made.
enum class WhileCovered {
    Show, ///< it stays above that program
    Hide, ///< it is away until the screen is no longer covered
};

/// The borderless, transparent window on which the island is drawn.
///
/// It is above docks, panels and full-screen windows on every workspace, never appears in task bars
/// or window cycling, is never moved by the window manager and never takes keyboard focus by
/// itself. Main thread.
class IslandPanel
{
public:
    /// The stacking level of the panel.
    enum class Level {
        Resting = 100, ///< above panels and normal windows, below pop-up menus
        Active = 1000, ///< above all windows that programs normally show
    };

    /// Called on the main thread.
    struct KeyboardObserver
    {
        /// The panel has got keyboard focus (true), or lost it.
        std::function<void(bool)> focusChanged;
        /// The user has pressed a key while the panel has keyboard focus.
        std::function<void()> keyPressed;
        /// The user has pressed a mouse button on the panel.
        std::function<void()> buttonPressed;
    };

    IslandPanel() = default;
    IslandPanel(const IslandPanel &) = delete;
    IslandPanel &operator=(const IslandPanel &) = delete;
    virtual ~IslandPanel() = default;

    /// Moves and resizes the panel; `frame` is in the coordinates of `Screen`.
    virtual void setFrame(const QRectF &frame) = 0;
    virtual void setLevel(Level level) = 0;
    /// While on, all clicks go to the window below.
    virtual void setClickThrough(bool on) = 0;
    /// Shows `content`, resized to fill the panel. The panel does not own it.
    virtual void setContent(QQuickItem *content) = 0;
    /// Sets the visible part of the panel, in points from the panel's top left corner with y
    /// downward. Clicks outside of it go to the window below. On a desktop without translucent
    /// windows the panel has this shape.
    virtual void setContentOutline(const QRectF &outline, double bottomRadius) = 0;
    /// Shows the panel above the windows of its level, without activating it.
    virtual void show() = 0;
    /// Activates the program and gives the panel keyboard focus, also while the user works in
    /// another window.
    virtual void activate() = 0;
    /// Returns keyboard focus to the window that had it before the panel, also if the panel got it
    /// by a click on a field. Does nothing if the panel does not have focus.
    virtual void deactivate() = 0;
    /// True while the panel is away (`WhileCovered::Hide`): the pointer is then on another program,
    /// wherever it is. Always false where the window system does not report a pointer there.
    [[nodiscard]] virtual bool isAway() const { return false; }
    /// Replaces the observer, which must remain valid until the panel is destroyed.
    virtual void observeKeyboard(KeyboardObserver observer) = 0;
};

/// Creates island panels. Main thread.
class IslandPanelFactory
{
public:
    IslandPanelFactory() = default;
    IslandPanelFactory(const IslandPanelFactory &) = delete;
    IslandPanelFactory &operator=(const IslandPanelFactory &) = delete;
    virtual ~IslandPanelFactory() = default;

    /// Creates a hidden panel with this frame, at the resting level, with click-through on.
    [[nodiscard]] virtual std::unique_ptr<IslandPanel> makePanel(const QRectF &frame) = 0;
};

} // namespace corvane::platform
