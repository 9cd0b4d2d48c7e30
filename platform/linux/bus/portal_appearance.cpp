#include "platform/linux/bus/portal_appearance.h"

namespace corvane::platform {

namespace {

/// The portal's value of "contrast" for higher contrast.
constexpr guint32 higherContrast = 1;

/// One setting of the portal; null if it is absent or of another type.
GioPtr<GVariant> setting(GVariant *settings, const char *space, const char *key,
                         const GVariantType *type)
{
    const GioPtr<GVariant> group(g_variant_lookup_value(settings, space, G_VARIANT_TYPE_VARDICT));
    return GioPtr<GVariant>(group ? g_variant_lookup_value(group.get(), key, type) : nullptr);
}

bool flag(GVariant *settings, const char *space, const char *key, bool otherwise)
{
    const GioPtr<GVariant> value = setting(settings, space, key, G_VARIANT_TYPE_BOOLEAN);
    return value ? g_variant_get_boolean(value.get()) != FALSE : otherwise;
}

/// True when the whole of `text` is the number 0.
bool isZero(const char *text)
{
    char *end = nullptr;
    return g_ascii_strtod(text, &end) == 0 && end != text && *end == '\0';
}

} // namespace

AppearanceSettings appearanceIn(GVariant *settings)
{
    const GioPtr<GVariant> contrast =
        setting(settings, commonAppearance, "contrast", G_VARIANT_TYPE_UINT32);
    // KDE multiplies all animation durations by this factor.
    const GioPtr<GVariant> speed =
        setting(settings, kdeInterface, "AnimationDurationFactor", G_VARIANT_TYPE_STRING);
    const bool stands = speed && isZero(g_variant_get_string(speed.get(), nullptr));
    return {stands || !flag(settings, gnomeInterface, "enable-animations", true),
            (contrast && g_variant_get_uint32(contrast.get()) == higherContrast) ||
                flag(settings, gnomeAccessibility, "high-contrast", false)};
}

} // namespace corvane::platform
