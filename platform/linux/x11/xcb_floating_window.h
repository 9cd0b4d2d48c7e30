#pragma once

#include "platform/floating_window.h"

#include <QRect>

#include <memory>

class QQuickWindow;

namespace corvane::platform {

class QtScreens;

/// A floating window on X11, managed by the window manager.
///
/// Its shape has rounded corners, so that they are not black on a desktop without a compositing
/// manager, where translucent areas are dark. Desktops with support for it blur the background.
/// Closing the window only hides it; it keeps its position. If the application does not run on X11,
/// it is an ordinary frameless window.
class XcbFloatingWindow final : public FloatingWindow
{
public:
    /// Radius of the corners in points.
    static constexpr double cornerRadius = 12;

    XcbFloatingWindow(const QString &title, const QRect &geometry,
                      std::unique_ptr<QQuickItem> content);
    ~XcbFloatingWindow() override;

    void show() override;
    void hide() override;

    [[nodiscard]] QQuickWindow &window();

private:
    class Window;

    std::unique_ptr<Window> m_window;
    std::unique_ptr<QQuickItem> m_content;
};

class XcbFloatingWindowFactory final : public FloatingWindowFactory
{
public:
    /// `screens` must outlive the factory.
    explicit XcbFloatingWindowFactory(const QtScreens &screens);

    [[nodiscard]] std::unique_ptr<FloatingWindow>
    makeWindow(const QString &title, const QRectF &frame,
               std::unique_ptr<QQuickItem> content) override;

private:
    const QtScreens &m_screens;
};

} // namespace corvane::platform
