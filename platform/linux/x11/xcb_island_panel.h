#pragma once

#include "platform/island_panel.h"

#include <QPointer>
#include <QQuickItem>
#include <QQuickWindow>

#include <memory>

namespace corvane::platform {

class QtScreens;

/// The island's window on X11, out of the window manager's reach.
///
/// Clicks pass it by the input region, so nothing is repainted or mapped anew when they are to
/// pass. On a desktop without a compositing manager its bounding region is the drawn outline; the
/// panel follows when one starts or stops. After the window manager has moved windows in the
/// stack, a resting panel goes back above the topmost of them, which leaves open menus above the
/// panel, and an active one to the very top.
///
/// Where the application does not run on X11 the panel is an ordinary frameless window that lets
/// clicks through as a whole.
class XcbIslandPanel final : public IslandPanel
{
public:
    /// `screens` must outlive the panel.
    XcbIslandPanel(const QtScreens &screens, const QRectF &frame);
    ~XcbIslandPanel() override;

    void setFrame(const QRectF &frame) override;
    void setLevel(Level level) override;
    void setClickThrough(bool on) override;
    void setContent(QQuickItem *content) override;
    void setContentOutline(const QRectF &outline, double bottomRadius) override;
    void show() override;
    void activate() override;
    void deactivate() override;

    [[nodiscard]] QQuickWindow &window() { return m_window; }

private:
    class Desktop;

    void fitContent();
    void applyShape();
    void restack();
    /// The display that the panel is on, in pixels.
    [[nodiscard]] QRect displayPixels() const;

    const QtScreens &m_screens;
    QQuickWindow m_window;
    QPointer<QQuickItem> m_content;
    Level m_level = Level::Resting;
    bool m_clickThrough = true;
    QRectF m_outline;
    double m_bottomRadius = 0;
    /// The X11 side of the window; none on another platform.
    std::unique_ptr<Desktop> m_desktop;
};

/// Makes the island's window on X11.
class XcbIslandPanelFactory final : public IslandPanelFactory
{
public:
    /// `screens` must outlive the panels.
    explicit XcbIslandPanelFactory(const QtScreens &screens);

    [[nodiscard]] std::unique_ptr<IslandPanel> makePanel(const QRectF &frame) override;

private:
    const QtScreens &m_screens;
};

} // namespace corvane::platform
