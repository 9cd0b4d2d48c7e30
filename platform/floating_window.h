#pragma once

#include <QRectF>
#include <QString>

#include <memory>

class QQuickItem;

namespace corvane::platform {

/// A frameless window that stays above normal windows: translucent, of fixed size, with rounded
/// corners. The user moves it by dragging any part of its content that does not accept clicks.
///
/// It appears in task bars and in window cycling like any other window. Main thread.
class FloatingWindow
{
public:
    FloatingWindow() = default;
    FloatingWindow(const FloatingWindow &) = delete;
    FloatingWindow &operator=(const FloatingWindow &) = delete;
    virtual ~FloatingWindow() = default;

    /// Shows the window at its last position, above other windows, and requests keyboard focus,
    /// which the window manager may refuse while the user is typing elsewhere.
    virtual void show() = 0;
    /// Hides the window. The user may hide it too, through the desktop.
    virtual void hide() = 0;
};

/// Creates floating windows. Main thread.
class FloatingWindowFactory
{
public:
    FloatingWindowFactory() = default;
    FloatingWindowFactory(const FloatingWindowFactory &) = delete;
    FloatingWindowFactory &operator=(const FloatingWindowFactory &) = delete;
    virtual ~FloatingWindowFactory() = default;

    /// Creates a hidden window. It owns `content`, which fills it; `frame` is in the coordinates of
    /// `Screen`.
    [[nodiscard]] virtual std::unique_ptr<FloatingWindow>
    makeWindow(const QString &title, const QRectF &frame, std::unique_ptr<QQuickItem> content) = 0;
};

} // namespace corvane::platform
