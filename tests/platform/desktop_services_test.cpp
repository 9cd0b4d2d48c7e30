// Before Qt, whose keywords the GIO headers use as identifiers.
#include "platform/linux/bus/instance_messages.h"
#include "platform/linux/bus/portal_appearance.h"

#include "assets/bundled_fonts.h"
#include "platform/linux/toolkit/fontconfig_font_registry.h"
#include "platform/linux/toolkit/qt_screens.h"
#include "platform/linux/x11/xcb_island_panel.h"
#include "platform/linux/x11/xcb_pointer_monitor.h"
#include "tests/fakes/table.h"

#include <QGuiApplication>

#include <gtest/gtest.h>

namespace corvane::tests {
namespace {

using namespace Qt::StringLiterals;

TEST(FontconfigFontRegistry, FindsAFontByEachOfItsNamesAsSoonAsItIsThere)
{
    const platform::FontconfigFontRegistry fonts;
    if (fonts.familyOf(u"Silkscreen-Regular"_s)) {
        GTEST_SKIP() << "the font is installed on this machine";
    }
    assets::registerBundledFonts();
    for (const QString &name : {u"Silkscreen-Regular"_s, u"Silkscreen"_s}) {
        EXPECT_EQ(fonts.familyOf(name), u"Silkscreen"_s);
    }
    // The match must be exact: fontconfig itself would return a similar font.
    EXPECT_FALSE(fonts.familyOf(u"Silkscreen Nonesuch"_s).has_value());
    EXPECT_FALSE(fonts.familyOf(QString()).has_value());
    EXPECT_FALSE(fonts.monospacedFamily().isEmpty());
}

/// Parses a value in GVariant's text format.
platform::GioPtr<GVariant> variant(const char *type, const char *text)
{
    return platform::GioPtr<GVariant>(
        g_variant_parse(G_VARIANT_TYPE(type), text, nullptr, nullptr, nullptr));
}

TEST(PortalAppearance, HearsWishesAndNothingElse)
{
    for (const auto &[settings, reducedMotion, highContrast] : Table<const char *, bool, bool>{
             {"{}", false, false},
             {"{'org.gnome.desktop.interface': {'enable-animations': <false>}}", true, false},
             {"{'org.gnome.desktop.interface': {'enable-animations': <'false'>}}", false, false},
             {"{'org.gnome.desktop.a11y.interface': {'high-contrast': <true>}}", false, true},
             {"{'org.freedesktop.appearance': {'contrast': <uint32 1>}}", false, true},
             {"{'org.freedesktop.appearance': {'contrast': <uint32 2>}}", false, false},
             {"{'org.kde.kdeglobals.KDE': {'AnimationDurationFactor': <'0'>}}", true, false},
             {"{'org.kde.kdeglobals.KDE': {'AnimationDurationFactor': <'0.5'>}}", false, false},
             {"{'org.kde.kdeglobals.KDE': {'AnimationDurationFactor': <''>}}", false, false},
             {"{'org.kde.kdeglobals.KDE': {'AnimationDurationFactor': <'0,5'>}}", false, false},
             {"{'org.kde.kdeglobals.KDE': {'AnimationDurationFactor': <'off'>}}", false, false},
         }) {
        const auto answer = variant("a{sa{sv}}", settings);
        ASSERT_TRUE(answer) << settings;
        EXPECT_EQ(platform::appearanceIn(answer.get()),
                  (platform::AppearanceSettings{reducedMotion, highContrast}))
            << settings;
    }
}

TEST(InstanceMessages, TakeAnActionWithOneTextAtMost)
{
    using platform::InstanceRequest;
    for (const auto &[arguments, request] : Table<const char *, std::optional<InstanceRequest>>{
             {"('send', [], {})", InstanceRequest{u"send"_s, std::nullopt}},
             {"('send', [<'Cor'>], {})", InstanceRequest{u"send"_s, u"Cor"_s}},
             {"('send', [<'Cor'>, <'vane'>], {})", std::nullopt},
             {"('send', [<uint32 1>], {})", std::nullopt},
             {"('', [], {})", std::nullopt},
         }) {
        EXPECT_EQ(platform::actionIn(variant("(sava{sv})", arguments).get()), request) << arguments;
    }
}

TEST(WithoutX11, TheAdaptersDoWithoutIt)
{
    const platform::QtScreens screens;
    platform::XcbPointerMonitor pointer(screens);
    EXPECT_EQ(pointer.addGlobalMonitor([] {}), nullptr);
    EXPECT_EQ(pointer.location(), std::nullopt);

    QQuickItem content;
    {
        platform::XcbIslandPanel panel(screens, QRectF(10, 100, 300, 200));
        EXPECT_EQ(panel.window().height(), 200);
        EXPECT_TRUE(panel.window().flags().testFlag(Qt::WindowTransparentForInput));
        panel.setContent(&content);
        EXPECT_EQ(content.size(), QSizeF(300, 200));
        panel.setFrame(QRectF(10, 100, 300, 250.5));
        panel.show();
        EXPECT_EQ(content.size(), QSizeF(300, 251));
        panel.setClickThrough(false);
        EXPECT_FALSE(panel.window().flags().testFlag(Qt::WindowTransparentForInput));
        EXPECT_TRUE(panel.window().isVisible());
    }
    // The panel must not own its content.
    EXPECT_EQ(content.parentItem(), nullptr);
}

} // namespace
} // namespace corvane::tests
