// Before Qt, whose keywords the GIO headers use as identifiers.
#include "platform/linux/bus/instance_messages.h"
#include "platform/linux/bus/large_message_filter.h"
#include "platform/linux/bus/portal_appearance.h"

#include "assets/bundled_fonts.h"
#include "platform/linux/toolkit/desktop_link_opener.h"
#include "platform/linux/toolkit/fontconfig_font_registry.h"
#include "platform/linux/toolkit/qt_clipboard.h"
#include "platform/linux/toolkit/qt_screens.h"
#include "platform/linux/x11/xcb_island_panel.h"
#include "platform/linux/x11/xcb_pointer_monitor.h"
#include "tests/fakes/table.h"
#include "tests/platform/wait_until.h"

#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QMimeData>
#include <QTemporaryDir>
#include <QUrl>

#include <gtest/gtest.h>

#include <span>
#include <string>
#include <string_view>
#include <vector>

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

TEST(DesktopLinkOpener, TellsThatNothingOpensALink)
{
    const QTemporaryDir folder;
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", folder.path().toLocal8Bit());
    platform::DesktopLinkOpener links;
    int failures = 0;
    const auto open = [&](const QString &page) { links.open(QUrl(page), [&] { ++failures; }); };
    const QString program = folder.filePath(u"xdg-open"_s);
    open(u"file:///etc"_s);
    open(u"https://a.test"_s);
    EXPECT_TRUE(waitUntil([&] { return failures == 1; }));
    for (const QByteArray &status : {"0", "3"}) {
        QFile script(program);
        ASSERT_TRUE(script.open(QFile::WriteOnly));
        script.write("#!/bin/sh\n>\"$0.${1##*/}\"\nexit " + status);
        script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        script.close();
        open(status == "0" ? u"https://a.test/b%20"_s : u"https://a.test/c"_s);
        EXPECT_TRUE(waitUntil([&] {
            return QFile::exists(program + u".b%20"_s) && (status == "0" || failures == 2);
        }));
    }
    qputenv("PATH", path);
}

TEST(QtClipboard, HintsAtASecretAndTakesBackOnlyItsOwn)
{
    QClipboard *desktop = QGuiApplication::clipboard();
    platform::QtClipboard clipboard;
    clipboard.clearSecret();
    clipboard.setSecret(u"secret");
    EXPECT_EQ(desktop->text(), u"secret"_s);
    EXPECT_EQ(desktop->mimeData()->data(u"x-kde-passwordManagerHint"_s), "secret");
    clipboard.clearSecret();
    EXPECT_EQ(desktop->text(), QString());
    for (const bool bySelf : {true, false}) {
        clipboard.setSecret(u"secret");
        bySelf ? clipboard.setText(u"else"_s) : desktop->setText(u"else"_s);
        EXPECT_FALSE(desktop->mimeData()->hasFormat(u"x-kde-passwordManagerHint"_s));
        clipboard.clearSecret();
        EXPECT_EQ(desktop->text(), u"else"_s);
    }
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

/// What a filter lets pass of `stream`, taken in pieces of `step` bytes and written into `room`.
std::string filtered(std::string_view stream, std::size_t step, std::size_t room)
{
    platform::LargeMessageFilter filter;
    std::string passed;
    std::vector<std::byte> output(room);
    for (std::size_t begin = 0; begin < stream.size();) {
        const auto piece = stream.substr(begin, step);
        const auto progress = filter.copy(std::as_bytes(std::span(piece)), output);
        passed.append(reinterpret_cast<const char *>(output.data()), progress.written);
        begin += progress.taken;
        if (progress.taken == 0) {
            // The largest header needs this room at once.
            output.resize(output.size() * 2);
        }
    }
    return passed;
}

/// The bytes of a call with `body`, in GIO's own words.
std::string callWith(GVariant *body, bool bigEndian, const char *path = "/a")
{
    const platform::GioPtr<GDBusMessage> message(
        g_dbus_message_new_method_call("org.corvane.A", path, "org.corvane.B", "Call"));
    g_dbus_message_set_sender(message.get(), ":1.7");
    g_dbus_message_set_serial(message.get(), 3);
    g_dbus_message_set_byte_order(message.get(), bigEndian
                                                     ? G_DBUS_MESSAGE_BYTE_ORDER_BIG_ENDIAN
                                                     : G_DBUS_MESSAGE_BYTE_ORDER_LITTLE_ENDIAN);
    if (body != nullptr) {
        g_dbus_message_set_body(message.get(), body);
    }
    gsize size = 0;
    guchar *blob =
        g_dbus_message_to_blob(message.get(), &size, G_DBUS_CAPABILITY_FLAGS_NONE, nullptr);
    const std::string bytes(reinterpret_cast<const char *>(blob), size);
    g_free(blob);
    return bytes;
}

TEST(LargeMessageFilter, TakesTheArgumentsFromWhatIsTooLargeAndNothingElse)
{
    constexpr std::size_t largest = platform::LargeMessageFilter::largest;
    const auto text = [](std::size_t size) {
        return g_variant_new("(s)", std::string(size, 'x').c_str());
    };
    for (const bool bigEndian : {false, true}) {
        const std::string small = callWith(text(10), bigEndian);
        const std::string empty = callWith(nullptr, bigEndian);
        // A text takes five bytes more than its characters.
        const std::string allowed = callWith(text(largest - 5), bigEndian);
        const std::string large = callWith(text(largest - 4), bigEndian);
        const std::string longPath =
            callWith(text(1), bigEndian, ('/' + std::string(largest, 'a')).c_str());
        for (const std::size_t step : {std::size_t{1}, std::size_t{7}, 3 * largest}) {
            for (const std::size_t room : {std::size_t{1}, 3 * largest}) {
                SCOPED_TRACE(testing::Message() << bigEndian << step << room);
                const std::string rest =
                    filtered(empty + small + allowed + longPath + small, step, room);
                EXPECT_TRUE(rest == empty + small + allowed + small);
                const std::string passed = filtered(large + small, step, room);
                ASSERT_TRUE(passed.ends_with(small));
                std::string bare = passed.substr(0, passed.size() - small.size());
                const platform::GioPtr<GDBusMessage> message(g_dbus_message_new_from_blob(
                    reinterpret_cast<guchar *>(bare.data()), bare.size(),
                    G_DBUS_CAPABILITY_FLAGS_NONE, nullptr));
                ASSERT_TRUE(message);
                EXPECT_EQ(g_dbus_message_get_body(message.get()), nullptr);
                EXPECT_STREQ(g_dbus_message_get_member(message.get()), "Call");
                EXPECT_STREQ(g_dbus_message_get_sender(message.get()), ":1.7");
                EXPECT_EQ(g_dbus_message_get_serial(message.get()), 3U);
            }
        }
    }
}

TEST(LargeMessageFilter, LeavesOutWhatItCannotRead)
{
    const std::string good = callWith(nullptr, false);
    const std::string large =
        callWith(g_variant_new("(s)", std::string(70'000, 'x').c_str()), false);
    // The first field's type, a type of two characters, and a length beyond the header.
    for (const auto &[position, byte] :
         Table<std::size_t, char>{{18, 'x'}, {17, 2}, {20, '\x7f'}, {22, '\x7f'}}) {
        SCOPED_TRACE(position);
        std::string odd = large;
        odd[position] = byte;
        EXPECT_TRUE(filtered(odd + good, 64, 1024) == good);
    }
    std::string noFields(16, '\0');
    noFields[0] = 'l';
    EXPECT_TRUE(filtered(noFields + good, 64, 1024) == good);
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
