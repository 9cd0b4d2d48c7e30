#pragma once

#include <QAbstractNativeEventFilter>
#include <QList>
#include <QRect>
#include <QTimer>

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

struct xcb_connection_t;

namespace corvane::platform {

/// The X11 part of the island's window: its regions, its stacking position, and the state of the
/// window manager and the compositing manager. Uses Qt's connection. Main thread.
class XcbPanelWindow final : public QAbstractNativeEventFilter
{
public:
    /// Callbacks, called on the main thread.
    struct Observer
    {
        /// A compositing manager has started or stopped.
        std::function<void()> compositingChanged;
        /// The stacking order of managed windows has changed or may have changed.
        std::function<void()> stackChanged;
    };

    /// Manages the X window `id`, which must not be mapped yet.
    XcbPanelWindow(xcb_connection_t *connection, std::uint32_t id, Observer observer);
    ~XcbPanelWindow() override;
    XcbPanelWindow(const XcbPanelWindow &) = delete;
    XcbPanelWindow &operator=(const XcbPanelWindow &) = delete;

    /// True while a compositing manager is running, which translucent windows need.
    [[nodiscard]] bool isComposited() const { return m_compositor != 0; }

    /// Sets the region of the window that receives clicks, in pixels.
    void setInputRegion(const QList<QRect> &region);
    /// Sets the bounding region of the window, in pixels; empty optional for the whole window.
    void setBoundingRegion(const std::optional<QList<QRect>> &region);

    /// Records the window with keyboard focus, unless it is this one.
    void rememberFocus();
    /// Takes keyboard focus, whoever has it. The window must be mapped.
    void takeFocus();
    /// Returns keyboard focus to the recorded window if this one has it.
    void returnFocus();

    /// Raises the window above all others, except a locked screen: a window that is not managed by
    /// the window manager and covers the whole `display` (in pixels).
    void raiseToTop(const QRect &display);
    /// Raises the window above the topmost managed window, if that one covers it.
    void raiseAboveManaged();
    /// Lowers the window below the unmanaged windows that `raiseToTop` has raised it above since
    /// the last call, but not below managed windows.
    void lowerFromTop();
    /// While on, the observer also hears of unmanaged windows, such as menus.
    void followUnmanaged(bool on);

    bool nativeEventFilter(const QByteArray &type, void *message, qintptr *result) override;

private:
    /// The children of the root window, from bottom to top.
    [[nodiscard]] std::vector<std::uint32_t> stack() const;
    /// The first of these windows that is a locked screen; empty if none is.
    [[nodiscard]] std::optional<std::uint32_t> lowestCover(std::span<const std::uint32_t> windows,
                                                           const QRect &display) const;
    /// The frames of the managed windows; without a window manager, the visible windows that one
    /// would manage.
    [[nodiscard]] std::vector<std::uint32_t> managedFrames() const;
    [[nodiscard]] std::vector<std::uint32_t> framesOf(std::vector<std::uint32_t> climbing) const;
    [[nodiscard]] std::vector<std::uint32_t> ordinaryWindows() const;
    void findWindowManager();
    /// Subscribes to the events that tell of a change of the stacking order.
    void selectRootEvents();
    [[nodiscard]] bool changesStack(const void *message) const;
    /// The window with keyboard focus, or one of the protocol's special values.
    [[nodiscard]] std::uint32_t focus() const;
    void announceStackChange();

    xcb_connection_t *m_connection;
    std::uint32_t m_id;
    std::uint32_t m_root = 0;
    Observer m_observer;
    std::uint32_t m_compositor = 0;
    std::uint32_t m_previousFocus = 0;
    std::uint32_t m_compositorAtom = 0;
    std::uint32_t m_stackingAtom = 0;
    std::uint32_t m_activeWindowAtom = 0;
    std::uint32_t m_managerAtom = 0;
    std::uint32_t m_managerCheckAtom = 0;
    /// The events of the root window that are needed in any case.
    std::uint32_t m_rootMask = 0;
    bool m_managed = false;
    bool m_followsUnmanaged = false;
    /// The windows that raiseToTop has raised this one above.
    std::vector<std::uint32_t> m_passed;
    int m_selectionEvent = -1;
    std::optional<QList<QRect>> m_input;
    std::optional<QList<QRect>> m_bounding;
    QTimer m_soon;
    QTimer m_settled;
};

} // namespace corvane::platform
