#pragma once

#include "platform/island_panel.h"

#include <QString>

#include <optional>

namespace corvane::app {

/// What the user wants while a program covers the island's screen, and what to tell the user.
struct WhileCoveredChoice
{
    platform::WhileCovered value = platform::WhileCovered::Show;
    /// One line for each invalid text, which has no effect; empty without one.
    QString complaints;
};

/// The environment variable and the key of the settings. Each is "hide" or "show".
inline constexpr const char *fullscreenVariable = "CORVANE_FULLSCREEN";
inline constexpr QLatin1StringView fullscreenSetting{"corvane.fullscreen"};

/// The choice in the environment (empty if there is none), else that in the settings.
[[nodiscard]] WhileCoveredChoice chosenWhileCovered(const QString &environment,
                                                    const std::optional<QString> &setting);

} // namespace corvane::app
