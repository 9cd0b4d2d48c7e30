#pragma once

// Before Qt, whose keywords its headers use as names.
#include "platform/linux/bus/gio_calls.h"

#include "platform/appearance.h"

namespace corvane::platform {

inline constexpr char gnomeInterface[] = "org.gnome.desktop.interface";
inline constexpr char gnomeAccessibility[] = "org.gnome.desktop.a11y.interface";
inline constexpr char kdeInterface[] = "org.kde.kdeglobals.KDE";
inline constexpr char commonAppearance[] = "org.freedesktop.appearance";

/// What the portal's settings, of type a{sa{sv}}, say. Settings that are missing or of an
/// unexpected type change nothing.
[[nodiscard]] AppearanceSettings appearanceIn(GVariant *settings);

} // namespace corvane::platform
