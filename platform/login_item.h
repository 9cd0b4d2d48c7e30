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

    /// True if the desktop will start this installation at the next login. Reads the setting on
    /// every call, because the user may change it elsewhere.
    [[nodiscard]] virtual bool isEnabled() const = 0;
    /// Makes the desktop start this installation at login. Returns false on failure and then
    /// changes nothing.
    virtual bool enable() = 0;
};

} // namespace corvane::platform
