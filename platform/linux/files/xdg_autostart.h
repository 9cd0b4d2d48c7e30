#pragma once

#include "platform/login_item.h"

#include <QString>

namespace corvane::platform {

/// A desktop entry in the user's autostart folder (Desktop Application Autostart Specification).
class XdgAutostart final : public LoginItem
{
public:
    /// `configFolder`: the user's $XDG_CONFIG_HOME. `executable`: absolute path of the program to
    /// start.
    XdgAutostart(const QString &configFolder, QString executable);

    /// True if the entry starts this executable and is not disabled.
    [[nodiscard]] bool isEnabled() const override;
    /// Writes the entry, replacing one for another executable. Fails if the user has disabled the
    /// entry in the desktop's settings; it can be enabled again only there.
    bool enable() override;

private:
    QString m_path;
    QString m_executable;
};

} // namespace corvane::platform
