#pragma once

// Before Qt, whose keywords the GIO headers use as identifiers.
#include "platform/linux/bus/gio_calls.h"

#include "platform/instance.h"

#include <optional>

namespace corvane::platform {

/// The request in the arguments of an ActivateAction call, of type (sava{sv}); empty if the action
/// has no name or if its parameter has a type that no action takes.
[[nodiscard]] std::optional<InstanceRequest> actionIn(GVariant *arguments);

/// The arguments of the call for `request`: Activate if it has no action, otherwise ActivateAction.
/// Returns a floating reference.
[[nodiscard]] GVariant *argumentsOf(const InstanceRequest &request);

} // namespace corvane::platform
