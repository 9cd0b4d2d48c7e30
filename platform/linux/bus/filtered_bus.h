#pragma once

#include "platform/linux/bus/gio_calls.h"

namespace corvane::platform {

/// A connection of its own to the session bus, whose messages pass through a LargeMessageFilter.
/// GIO would otherwise read messages of up to 128 MB, and keep a buffer of that size. Null and an
/// error if there is no bus.
[[nodiscard]] GioPtr<GDBusConnection> filteredSessionBus(BoundedCalls &calls,
                                                         GioPtr<GError> &error);

} // namespace corvane::platform
