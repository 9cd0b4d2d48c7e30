#pragma once

#include <QRectF>

#include <memory>

class QQuickItem;

namespace corvane::platform {

/// The borderless, transparent window on which the island is drawn.
///
/// It lies above docks, panels and full-screen windows on every workspace, never shows up in task
/// bars or window cycling, is never pushed elsewhere by the window manager and never takes the
/// keyboard by itself. Used on the main thread.
class IslandPanel
{
public:
    /// How high the panel lies.
    enum class Level {
        Resting = 100, ///< above panels and normal windows, below pop-up menus
        Active = 1000, ///< above everything that a program normally shows
    };

    IslandPanel() = default;
    IslandPanel(const IslandPanel &) = delete;
    IslandPanel &operator=(const IslandPanel &) = delete;
    virtual ~IslandPanel() = default;

    /// Moves and resizes the panel; `frame` is in the coordinates of `Screen`.
    virtual void setFrame(const QRectF &frame) = 0;
    virtual void setLevel(Level level) = 0;
    /// While on, every click goes to the window beneath.
    virtual void setClickThrough(bool on) = 0;
    /// Shows `content`, resized to fill the panel. The panel does not own it.
    virtual void setContent(QQuickItem *content) = 0;
    /// Tells which part of the panel is drawn on, in points from the panel's top left corner with y
    /// downward. Clicks beside it go to the window beneath, and on a desktop without translucent
    /// windows the panel is cut to it.
    virtual void setContentOutline(const QRectF &outline, double bottomRadius) = 0;
    /// Shows the panel on top of the windows of its level without activating it.
    virtual void show() = 0;
    /// Activates the program and gives the panel the keyboard.
    virtual void activate() = 0;
    /// Gives the keyboard back to the window that had it before the panel, also when the panel took
    /// it because a field in it was clicked. Nothing happens when the panel does not have it.
    virtual void deactivate() = 0;
};

/// Makes the panel of the running desktop.
class IslandPanelFactory
{
public:
    IslandPanelFactory() = default;
    IslandPanelFactory(const IslandPanelFactory &) = delete;
    IslandPanelFactory &operator=(const IslandPanelFactory &) = delete;
    virtual ~IslandPanelFactory() = default;

    /// A panel with the given frame, hidden, at the resting level, letting clicks through.
    [[nodiscard]] virtual std::unique_ptr<IslandPanel> makePanel(const QRectF &frame) = 0;
};

} // namespace corvane::platform
