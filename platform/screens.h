#pragma once

#include <QList>
#include <QRectF>
#include <QString>

#include <functional>
#include <optional>

namespace corvane::platform {

/// One display, in points of the global coordinate system whose origin is the bottom left corner
/// of the primary screen and whose y axis points up.
///
/// A rectangle's `y()` is therefore its bottom edge and `y() + height()` its top edge.
struct Screen
{
    /// The connector, such as "eDP-1".
    QString name;
    QRectF frame;
    /// Height of the band at the top that a camera housing occupies; 0 without one.
    double safeAreaTop = 0;
    /// The usable areas beside the camera housing; empty on screens without one.
    std::optional<QRectF> auxiliaryTopLeftArea;
    std::optional<QRectF> auxiliaryTopRightArea;
};

/// The current displays. Main thread; callers must not cache the results.
class Screens
{
public:
    Screens() = default;
    Screens(const Screens &) = delete;
    Screens &operator=(const Screens &) = delete;
    virtual ~Screens() = default;

    /// All screens in the desktop's order; may be empty while displays are being switched.
    [[nodiscard]] virtual QList<Screen> all() const = 0;
    /// The screen that the user works on; empty if the desktop reports none.
    [[nodiscard]] virtual std::optional<Screen> main() const = 0;
    /// Calls `handler` after every change of the screens, on any thread, for the lifetime of this
    /// object.
    virtual void observeChanges(std::function<void()> handler) = 0;
};

} // namespace corvane::platform
