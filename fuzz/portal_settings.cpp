// The desktop portal's reply about appearance settings: in GVariant's text format if the input can
// be parsed as such, otherwise as raw bytes.

#include "platform/linux/bus/portal_appearance.h"

#include "fuzz/property.h"
#include "fuzz/variant.h"

using namespace corvane::platform;
using corvane::fuzz::require;

namespace {

const GVariantType *settingsType()
{
    return G_VARIANT_TYPE("a{sa{sv}}");
}

GioPtr<GVariant> settingsIn(const QByteArray &bytes)
{
    GVariant *parsed = g_variant_parse(settingsType(), bytes.constData(),
                                       bytes.constData() + bytes.size(), nullptr, nullptr);
    if (parsed != nullptr) {
        return GioPtr<GVariant>(parsed);
    }
    return corvane::fuzz::variantOf(settingsType(), bytes);
}

/// Reads `settings` with one more setting in front, which takes precedence.
AppearanceSettings withSetting(GVariant *settings, const char *space, const char *key,
                               GVariant *value)
{
    GVariantBuilder group;
    g_variant_builder_init(&group, G_VARIANT_TYPE_VARDICT);
    g_variant_builder_add(&group, "{sv}", key, value);
    GVariantBuilder all;
    g_variant_builder_init(&all, settingsType());
    g_variant_builder_add(&all, "{s@a{sv}}", space, g_variant_builder_end(&group));
    const gsize count = g_variant_n_children(settings);
    for (gsize i = 0; i < count; ++i) {
        const GioPtr<GVariant> child(g_variant_get_child_value(settings, i));
        g_variant_builder_add_value(&all, child.get());
    }
    const GioPtr<GVariant> more(g_variant_ref_sink(g_variant_builder_end(&all)));
    return appearanceIn(more.get());
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const GioPtr<GVariant> settings = settingsIn(corvane::fuzz::Input(data, size).rest());
    const AppearanceSettings appearance = appearanceIn(settings.get());

    // Settings of other programs are ignored; known settings always take effect.
    require(withSetting(settings.get(), "org.example", "contrast", g_variant_new_uint32(1)) ==
            appearance);
    require(withSetting(settings.get(), gnomeInterface, "enable-animations",
                        g_variant_new_boolean(FALSE))
                .reducedMotion);
    require(withSetting(settings.get(), commonAppearance, "contrast", g_variant_new_uint32(1))
                .highContrast);
    // A duration factor disables animations only if it is the number 0.
    const char *factor = nullptr;
    const GioPtr<GVariant> kde(
        g_variant_lookup_value(settings.get(), kdeInterface, G_VARIANT_TYPE_VARDICT));
    if (kde && g_variant_lookup(kde.get(), "AnimationDurationFactor", "&s", &factor) != FALSE &&
        QByteArrayView(factor).indexOf('0') < 0) {
        require(withSetting(settings.get(), gnomeInterface, "enable-animations",
                            g_variant_new_boolean(TRUE))
                    .reducedMotion == false);
    }
    return 0;
}
