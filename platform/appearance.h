#pragma once

#include <functional>

namespace corvane::platform {

/// What the user has asked of every program's looks.
struct AppearanceSettings
{
    /// Things should not move about; a short fade is fine.
    bool reducedMotion = false;
    bool highContrast = false;

    [[nodiscard]] bool operator==(const AppearanceSettings &) const = default;
};

/// The desktop's settings of appearance. Main thread.
class Appearance
{
public:
    using Reply = std::function<void(const AppearanceSettings &)>;

    Appearance() = default;
    Appearance(const Appearance &) = delete;
    Appearance &operator=(const Appearance &) = delete;
    virtual ~Appearance() = default;

    /// Asks the desktop without blocking. `reply` comes on the main thread, within two seconds; a
    /// desktop that cannot tell has the defaults.
    virtual void read(Reply reply) = 0;
};

} // namespace corvane::platform
