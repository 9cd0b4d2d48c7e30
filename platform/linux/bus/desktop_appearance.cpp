#include "platform/linux/bus/desktop_appearance.h"

#include "platform/background_tasks.h"
#include "platform/linux/bus/gio_calls.h"
#include "platform/linux/bus/portal_appearance.h"
#include "platform/main_queue.h"

#include <string_view>
#include <utility>

namespace corvane::platform {

namespace {

constexpr std::chrono::milliseconds portalBound{1500};
constexpr char portalName[] = "org.freedesktop.portal.Desktop";

bool isRunning(BoundedCalls &calls, GDBusConnection *bus, const char *name)
{
    GioPtr<GError> error;
    const GioPtr<GVariant> reply =
        calls.call(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                   "NameHasOwner", g_variant_new("(s)", name), "(b)", error);
    gboolean owned = FALSE;
    if (reply != nullptr) {
        g_variant_get(reply.get(), "(b)", &owned);
    }
    return owned != FALSE;
}

bool gnomeFlag(const char *schemaName, const char *key, bool otherwise)
{
    GSettingsSchemaSource *source = g_settings_schema_source_get_default();
    GSettingsSchema *schema =
        source != nullptr ? g_settings_schema_source_lookup(source, schemaName, TRUE) : nullptr;
    if (schema == nullptr) {
        return otherwise;
    }
    bool value = otherwise;
    if (g_settings_schema_has_key(schema, key) != FALSE) {
        const GioPtr<GSettings> settings(g_settings_new(schemaName));
        value = g_settings_get_boolean(settings.get(), key) != FALSE;
    }
    g_settings_schema_unref(schema);
    return value;
}

AppearanceSettings readSettings()
{
    BoundedCalls calls(portalBound);
    GioPtr<GError> error;
    const GioPtr<GDBusConnection> bus = calls.bus(G_BUS_TYPE_SESSION, error);
    if (bus == nullptr) {
        return {};
    }
    // A call without this check would start a portal.
    if (isRunning(calls, bus.get(), portalName)) {
        const char *const spaces[] = {commonAppearance, gnomeInterface, gnomeAccessibility,
                                      kdeInterface, nullptr};
        const GioPtr<GVariant> reply =
            calls.call(bus.get(), portalName, "/org/freedesktop/portal/desktop",
                       "org.freedesktop.portal.Settings", "ReadAll", g_variant_new("(^as)", spaces),
                       "(a{sa{sv}})", error);
        if (reply != nullptr) {
            const GioPtr<GVariant> settings(g_variant_get_child_value(reply.get(), 0));
            return appearanceIn(settings.get());
        }
    }
    return {!gnomeFlag(gnomeInterface, "enable-animations", true),
            gnomeFlag(gnomeAccessibility, "high-contrast", false)};
}

} // namespace

DesktopAppearance::DesktopAppearance(BackgroundTasks &background, MainQueue &queue)
    : m_background(background)
    , m_queue(queue)
{}

void DesktopAppearance::read(Reply reply)
{
    m_background.run([&queue = m_queue, reply = std::move(reply)] {
        queue.post([reply, settings = readSettings()] { reply(settings); });
    });
}

} // namespace corvane::platform
