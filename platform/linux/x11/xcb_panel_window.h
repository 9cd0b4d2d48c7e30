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

/// The X11 side of the island's window: its regions, its place in the stack, and what it must know
/// of the window manager and the compositing manager. Speaks over Qt's own connection.
class XcbPanelWindow final : public QAbstractNativeEventFilter
{
public:
    /// Who is told, on the main thread.
    struct Observer
    {
        /// A compositing manager has started or stopped.
        std::function<void()> compositingChanged;
        /// The window manager has, or may have, moved windows in the stack.
        std::function<void()> stackChanged;
    };

    /// Takes over the X window `id`, which is not mapped yet.
    XcbPanelWindow(xcb_connection_t *connection, std::uint32_t id, Observer observer);
    ~XcbPanelWindow() override;
    XcbPanelWindow(const XcbPanelWindow &) = delete;
    XcbPanelWindow &operator=(const XcbPanelWindow &) = delete;

    /// True while a compositing manager shows translucent windows as such.
    [[nodiscard]] bool isComposited() const { return m_compositor != 0; }

    /// Where the window takes clicks, in pixels.
    void setInputRegion(const QList<QRect> &region);
    /// What there is of the window at all; none is the whole of it.
    void setBoundingRegion(const std::optional<QList<QRect>> &region);

    /// Notes which window has the keyboard, unless it is this one.
    void rememberFocus();
    /// Gives the keyboard to the noted window if this one has it.
    void returnFocus();

    /// Raises the window above all others, but for one that no window manager looks after and
    /// that hides the whole display (in pixels): that is a locked screen.
    void raiseToTop(const QRect &display);
    /// Raises the window above the topmost one that the window manager looks after, if that one
    /// covers it.
    void raiseAboveManaged();

    bool nativeEventFilter(const QByteArray &type, void *message, qintptr *result) override;

private:
    /// The windows of the root window from the bottom to the top.
    [[nodiscard]] std::vector<std::uint32_t> stack() const;
    /// The first of these windows that is a locked screen.
    [[nodiscard]] std::optional<std::uint32_t> lowestCover(std::span<const std::uint32_t> windows,
                                                           const QRect &display) const;
    /// The windows that the window manager looks after, or rather their frames.
    [[nodiscard]] std::vector<std::uint32_t> managedFrames() const;
    /// The window that has the keyboard; it may also be one of the protocol's special values.
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
    int m_selectionEvent = -1;
    std::optional<QList<QRect>> m_input;
    std::optional<QList<QRect>> m_bounding;
    QTimer m_soon;
    QTimer m_settled;
};

} // namespace corvane::platform
