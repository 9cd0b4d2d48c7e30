#pragma once

#include "platform/linux/toolkit/screen_coordinates.h"
#include "platform/screens.h"

#include <QByteArray>
#include <QSizeF>

#include <memory>
#include <optional>

class QScreen;

namespace corvane::platform {

/// The displays of the running QGuiApplication.
///
/// The main screen is the desktop's primary one, so that the island does not move when a window on
/// another screen gets keyboard focus.
class QtScreens final : public Screens
{
public:
    /// The environment variable for the notch, which no window system reports.
    static constexpr const char *notchVariable = "CORVANE_NOTCH";
    /// The names of this machine, where the kernel has a device tree.
    static constexpr const char *compatibleFile = "/proc/device-tree/compatible";

    /// `notch`: "WIDTHxHEIGHT" in points; any other text means no notch, and an empty one that of
    /// the laptop that `machine`, a file like `compatibleFile`, names.
    explicit QtScreens(const QString &notch = qEnvironmentVariable(notchVariable),
                       const QString &machine = QString::fromLatin1(compatibleFile));
    ~QtScreens() override;

    [[nodiscard]] QList<Screen> all() const override;
    [[nodiscard]] std::optional<Screen> main() const override;
    /// Several changes within one event are reported once, after it has been handled.
    void observeChanges(std::function<void()> handler) override;

    /// The current coordinate systems.
    [[nodiscard]] ScreenCoordinates coordinates() const;

private:
    class Watcher;

    [[nodiscard]] Screen described(const QScreen &screen, const ScreenCoordinates &system) const;
    /// The notch on a screen, if it has one.
    [[nodiscard]] std::optional<QSizeF> notchOf(const QScreen &screen) const;

    std::optional<QSizeF> m_notch;
    /// Empty if the notch is given.
    QByteArray m_compatible;
    std::unique_ptr<Watcher> m_watcher;
};

} // namespace corvane::platform
