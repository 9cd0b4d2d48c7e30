#pragma once

#include "app/options.h"
#include "island/island_pane.h"
#include "platform/instance.h"

#include <QString>

#include <optional>

namespace corvane::app {

// The actions that the running program takes from outside. "open" has a pane's name as its
// parameter, the others none.
inline const QString openAction = QStringLiteral("open");
inline const QString refreshAction = QStringLiteral("refresh");
inline const QString quitAction = QStringLiteral("quit");

/// The pane that is called "balance", "send", "receive" or "settings" outside.
[[nodiscard]] std::optional<island::IslandPane> paneNamed(const QString &name);

/// Hands what `options` ask for to the running instance, where that is due. None when this start is
/// the one to run, and has `instance` then; otherwise how it ends.
[[nodiscard]] std::optional<EarlyExit> handOver(const Options &options,
                                                platform::Instance &instance);

} // namespace corvane::app
