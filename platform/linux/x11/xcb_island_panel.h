#pragma once

#include "platform/island_panel.h"

#include <QPointer>
#include <QQuickItem>
#include <QQuickWindow>

#include <memory>

namespace corvane::platform {

class QtScreens;

/// The island's window on X11, not managed by the window manager (override-redirect).
///
/// Click-through uses the input region, so that nothing is repainted or remapped when it changes.
/// On a desktop without a compositing manager the bounding region is the content's outline; it is
/// updated when a compositing manager starts or stops. After the window manager has restacked
/// windows, or another window has appeared where there is none, a resting panel is raised above the
/// topmost of them, which leaves open menus above the panel. An active one is raised to the very
/// top, above later menus too, and leaves that place when it rests again.
///
/// If the application does not run on X11, the panel is an ordinary frameless window with
/// click-through for the whole window only.
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
    void observeKeyboard(KeyboardObserver observer) override;

    [[nodiscard]] QQuickWindow &window() { return m_window; }

private:
    class Desktop;
    class Input;

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
    KeyboardObserver m_observer;
    std::unique_ptr<Input> m_input;
    /// The X11 part of the window; null on other platforms.
    std::unique_ptr<Desktop> m_desktop;
};

/// Creates the island's window on X11.
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
