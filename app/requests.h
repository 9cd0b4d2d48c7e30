#pragma once

#include "app/options.h"
#include "island/island_pane.h"
#include "platform/instance.h"

#include <QString>

#include <optional>

namespace corvane::app {

// The actions that the running instance accepts. "open" has a pane's name as its parameter, the
// others have none.
inline const QString openAction = QStringLiteral("open");
inline const QString refreshAction = QStringLiteral("refresh");
inline const QString hideAmountsAction = QStringLiteral("hide-amounts");
inline const QString quitAction = QStringLiteral("quit");

/// The pane named "balance", "send", "receive" or "settings"; empty for any other name.
[[nodiscard]] std::optional<island::IslandPane> paneNamed(const QString &name);

/// Sends the request in `options` to the running instance, if there is one or if `options` only
/// contain a request. Empty if this process must run the program; it then owns `instance`.
[[nodiscard]] std::optional<EarlyExit> handOver(const Options &options,
                                                platform::Instance &instance);

} // namespace corvane::app
