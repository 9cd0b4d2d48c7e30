#include "assets/bundled_fonts.h"
#include "platform/linux/fontconfig_font_registry.h"
#include "platform/linux/local_file_system.h"
#include "platform/linux/no_authenticator.h"
#include "platform/linux/qt_clipboard.h"
#include "platform/linux/qt_screens.h"
#include "platform/linux/xcb_island_panel.h"
#include "platform/linux/xcb_pointer_monitor.h"
#include "tests/platform/wait_until.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QTemporaryFile>

#include <fontconfig/fontconfig.h>
#include <gtest/gtest.h>

namespace corvane::tests {
namespace {

TEST(QtClipboard, ReplacesTheText)
{
    platform::QtClipboard clipboard;
    clipboard.setText(QStringLiteral("first"));
    clipboard.setText(QStringLiteral("second"));
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("second"));
    clipboard.setText(QString());
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QString());
}

TEST(LocalFileSystem, SeesFilesAndFolders)
{
    const platform::LocalFileSystem files;
    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    EXPECT_TRUE(files.exists(file.fileName()));
    EXPECT_FALSE(files.exists(file.fileName() + QStringLiteral(".none")));
    EXPECT_FALSE(files.exists(QString()));
    EXPECT_TRUE(files.exists(files.homeDirectory()));
    EXPECT_FALSE(files.homeDirectory().endsWith(u'/'));
}

TEST(NoAuthenticator, RefusesLaterAndKeepsTheContextUntilThen)
{
    platform::NoAuthenticator authenticator;
    auto context = authenticator.makeContext(QStringLiteral("Cancel"));
    EXPECT_FALSE(authenticator.canEvaluate(*context));
    const std::weak_ptr<platform::AuthenticationContext> alive = context;
    std::optional<bool> answer;
    authenticator.evaluate(std::move(context), QStringLiteral("test"), [&](bool success) {
        EXPECT_FALSE(alive.expired());
        answer = success;
    });
    EXPECT_FALSE(answer.has_value());
    ASSERT_TRUE(waitUntil([&] { return answer.has_value(); }));
    EXPECT_EQ(answer, false);
}

/// A name of the first font that fontconfig lists.
QString nameOfSomeFont(const char *object)
{
    const FcFontSet *fonts = FcConfigGetFonts(FcConfigGetCurrent(), FcSetSystem);
    FcChar8 *name = nullptr;
    if (fonts == nullptr || fonts->nfont == 0 ||
        FcPatternGetString(fonts->fonts[0], object, 0, &name) != FcResultMatch) {
        return {};
    }
    return QString::fromUtf8(reinterpret_cast<const char *>(name));
}

TEST(FontconfigFontRegistry, FindsAFontByEachOfItsNames)
{
    const platform::FontconfigFontRegistry fonts;
    const QString family = nameOfSomeFont(FC_FAMILY);
    if (family.isEmpty()) {
        GTEST_SKIP() << "no fonts are installed";
    }
    EXPECT_EQ(fonts.familyOf(family), family);
    EXPECT_EQ(fonts.familyOf(nameOfSomeFont(FC_POSTSCRIPT_NAME)), family);
    EXPECT_TRUE(fonts.familyOf(nameOfSomeFont(FC_FULLNAME)).has_value());
    // Exactly: fontconfig itself would always find something near.
    EXPECT_FALSE(fonts.familyOf(family + QStringLiteral(" Nonesuch")).has_value());
    EXPECT_FALSE(fonts.familyOf(QString()).has_value());
    EXPECT_FALSE(fonts.monospacedFamily().isEmpty());
}

TEST(FontconfigFontRegistry, FindsAFontThatIsRegisteredLater)
{
    const platform::FontconfigFontRegistry fonts;
    const QString name = QStringLiteral("Silkscreen-Regular");
    if (fonts.familyOf(name)) {
        GTEST_SKIP() << "the font is installed on this machine";
    }
    assets::registerBundledFonts();
    EXPECT_EQ(fonts.familyOf(name), QStringLiteral("Silkscreen"));
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
        panel.setContentView(&content);
        EXPECT_EQ(content.size(), QSizeF(300, 200));
        panel.setFrame(QRectF(10, 100, 300, 250.5));
        panel.orderFrontRegardless();
        EXPECT_EQ(content.size(), QSizeF(300, 251));
        panel.setIgnoresMouseEvents(false);
        EXPECT_FALSE(panel.window().flags().testFlag(Qt::WindowTransparentForInput));
        EXPECT_TRUE(panel.window().isVisible());
    }
    // The panel does not own its content.
    EXPECT_EQ(content.parentItem(), nullptr);
}

} // namespace
} // namespace corvane::tests
