#pragma once

namespace corvane::platform {

/// Whether the installed application starts when the user logs in. Main thread.
class LoginItem
{
public:
    LoginItem() = default;
    LoginItem(const LoginItem &) = delete;
    LoginItem &operator=(const LoginItem &) = delete;
    virtual ~LoginItem() = default;

    /// True when the desktop will start this installation at the next login. Asks anew each time,
    /// because the user may change it elsewhere.
    [[nodiscard]] virtual bool isEnabled() const = 0;
    /// Makes the desktop start this installation at login. False when that failed; nothing has
    /// changed then.
    virtual bool enable() = 0;
};

} // namespace corvane::platform
