#pragma once

#include "platform/login_item.h"

#include <QString>

namespace corvane::platform {

/// A desktop entry in the user's autostart folder (Desktop Application Autostart Specification).
class XdgAutostart final : public LoginItem
{
public:
    /// `configFolder`: the user's $XDG_CONFIG_HOME. `executable`: absolute path of the program that
    /// is to start.
    XdgAutostart(const QString &configFolder, QString executable);

    /// True when the entry starts this very executable and has not been switched off.
    [[nodiscard]] bool isEnabled() const override;
    /// Writes the entry, replacing one for another executable. Refuses when the user has switched
    /// the entry off in the desktop's settings; only there it is switched on again.
    bool enable() override;

private:
    QString m_path;
    QString m_executable;
};

} // namespace corvane::platform
