#pragma once

#include "platform/linux/toolkit/screen_coordinates.h"
#include "platform/screens.h"

#include <QSizeF>

#include <memory>

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

    /// `notch`: "WIDTHxHEIGHT" in points; any other text means no notch.
    explicit QtScreens(const QString &notch = qEnvironmentVariable(notchVariable));
    ~QtScreens() override;

    [[nodiscard]] QList<Screen> all() const override;
    [[nodiscard]] std::optional<Screen> main() const override;
    /// Several changes within one event are reported once, after it has been handled.
    void observeChanges(std::function<void()> handler) override;

    /// The current coordinate systems.
    [[nodiscard]] ScreenCoordinates coordinates() const;

private:
    class Watcher;

    std::optional<QSizeF> m_notch;
    std::unique_ptr<Watcher> m_watcher;
};

} // namespace corvane::platform
