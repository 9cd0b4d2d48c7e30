#pragma once

// Before Qt, whose keywords the GIO headers use as identifiers.
#include "platform/linux/bus/gio_calls.h"

#include "platform/appearance.h"

namespace corvane::platform {

inline constexpr char gnomeInterface[] = "org.gnome.desktop.interface";
inline constexpr char gnomeAccessibility[] = "org.gnome.desktop.a11y.interface";
inline constexpr char kdeInterface[] = "org.kde.kdeglobals.KDE";
inline constexpr char commonAppearance[] = "org.freedesktop.appearance";

/// Converts the portal's settings, of type a{sa{sv}}. Settings that are missing or of an unexpected
/// type keep their defaults.
[[nodiscard]] AppearanceSettings appearanceIn(GVariant *settings);

} // namespace corvane::platform
