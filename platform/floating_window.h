#pragma once

#include <QRectF>
#include <QString>

#include <memory>

class QQuickItem;

namespace corvane::platform {

/// A window without a frame that stays above normal windows: translucent, of fixed size, with
/// rounded corners, and moved by dragging whatever of its content takes no clicks.
///
/// It can be reached like any other window: by task bars and by window cycling. Used on the main
/// thread.
class FloatingWindow
{
public:
    FloatingWindow() = default;
    FloatingWindow(const FloatingWindow &) = delete;
    FloatingWindow &operator=(const FloatingWindow &) = delete;
    virtual ~FloatingWindow() = default;

    /// Shows the window where it last was, in front of the others, and asks for the keyboard. The
    /// window manager may refuse that while the user is typing elsewhere.
    virtual void show() = 0;
    /// Hides the window. The user may hide it as well, by the means of the desktop.
    virtual void hide() = 0;
};

/// Makes such windows.
class FloatingWindowFactory
{
public:
    FloatingWindowFactory() = default;
    FloatingWindowFactory(const FloatingWindowFactory &) = delete;
    FloatingWindowFactory &operator=(const FloatingWindowFactory &) = delete;
    virtual ~FloatingWindowFactory() = default;

    /// A hidden window that is filled by `content` and owns it; `frame` is in the coordinates of
    /// `Screen`.
    [[nodiscard]] virtual std::unique_ptr<FloatingWindow>
    makeWindow(const QString &title, const QRectF &frame, std::unique_ptr<QQuickItem> content) = 0;
};

} // namespace corvane::platform
