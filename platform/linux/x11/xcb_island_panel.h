#pragma once

#include "platform/island_panel.h"

#include <QPointer>
#include <QQuickItem>
#include <QQuickWindow>

#include <memory>

namespace corvane::platform {

class QtScreens;
class XcbFullscreenWatch;

/// The island's window on X11, not managed by the window manager (override-redirect).
///
/// Click-through uses the input region, so that nothing is repainted or remapped when it changes.
/// On a desktop without a compositing manager the bounding region is the content's outline; it is
/// updated when a compositing manager starts or stops. After the window manager has restacked
/// windows, or another window has appeared where there is none, a resting panel is raised above the
/// topmost of them, which leaves open menus above the panel. An active one is raised to the very
/// top, above later menus too, and leaves that place when it rests again.
///
/// With `WhileCovered::Hide` a resting panel is unmapped while a full-screen window covers its
/// display, but not before its first frame, which tells the program that it has started.
///
/// If the application does not run on X11, the panel is an ordinary frameless window with
/// click-through for the whole window only.
class XcbIslandPanel final : public IslandPanel
{
public:
    /// `screens` must outlive the panel.
    XcbIslandPanel(const QtScreens &screens, const QRectF &frame,
                   WhileCovered whileCovered = WhileCovered::Show);
    ~XcbIslandPanel() override;

    void setFrame(const QRectF &frame) override;
    void setLevel(Level level) override;
    void setClickThrough(bool on) override;
    void setContent(QQuickItem *content) override;
    void setContentOutline(const QRectF &outline, double bottomRadius) override;
    void show() override;
    void activate() override;
    void deactivate() override;
    [[nodiscard]] bool isAway() const override { return m_away; }
    void observeKeyboard(KeyboardObserver observer) override;

    [[nodiscard]] QQuickWindow &window() { return m_window; }

private:
    class Desktop;
    class Input;

    void fitContent();
    void applyShape();
    void restack();
    /// Hides the panel, or shows it again, according to its level and to what covers its display.
    void comeOrGo();
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
    /// Null if the panel stays in view.
    std::unique_ptr<XcbFullscreenWatch> m_fullscreen;
    bool m_drawn = false;
    bool m_away = false;
    /// The X11 part of the window; null on other platforms.
    std::unique_ptr<Desktop> m_desktop;
};

/// Creates the island's window on X11.
class XcbIslandPanelFactory final : public IslandPanelFactory
{
public:
    /// `screens` must outlive the panels.
    XcbIslandPanelFactory(const QtScreens &screens, WhileCovered whileCovered);

    [[nodiscard]] std::unique_ptr<IslandPanel> makePanel(const QRectF &frame) override;

private:
    const QtScreens &m_screens;
    WhileCovered m_whileCovered;
};

} // namespace corvane::platform
