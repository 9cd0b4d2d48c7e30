#pragma once

#include <functional>

namespace corvane::platform {

/// Appearance settings that the user has chosen for all programs.
struct AppearanceSettings
{
    /// Elements must not move or change size; short fades are allowed.
    bool reducedMotion = false;
    bool highContrast = false;

    [[nodiscard]] bool operator==(const AppearanceSettings &) const = default;
};

/// The desktop's appearance settings. Main thread.
class Appearance
{
public:
    using Reply = std::function<void(const AppearanceSettings &)>;

    Appearance() = default;
    Appearance(const Appearance &) = delete;
    Appearance &operator=(const Appearance &) = delete;
    virtual ~Appearance() = default;

    /// Reads the settings without blocking. `reply` is called on the main thread, within two
    /// seconds, with the defaults if the desktop does not provide the settings.
    virtual void read(Reply reply) = 0;
};

} // namespace corvane::platform
