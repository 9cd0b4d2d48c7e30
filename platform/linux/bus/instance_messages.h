#pragma once

// Before Qt, whose keywords its headers use as names.
#include "platform/linux/bus/gio_calls.h"

#include "platform/instance.h"

#include <optional>

namespace corvane::platform {

/// What the arguments of an ActivateAction, of type (sava{sv}), ask for; none when the action has
/// no name or its parameter a form that no action takes.
[[nodiscard]] std::optional<InstanceRequest> actionIn(GVariant *arguments);

/// The arguments of the call that `request` is made with: Activate without an action, otherwise
/// ActivateAction. Floating.
[[nodiscard]] GVariant *argumentsOf(const InstanceRequest &request);

} // namespace corvane::platform
