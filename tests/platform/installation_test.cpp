#include "platform/linux/files/local_application_bundle.h"
#include "platform/linux/files/xdg_autostart.h"
#include "tests/fakes/table.h"
#include "tests/platform/wait_until.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <unistd.h>

namespace corvane::platform {
namespace {

void write(const QString &path, const QByteArray &text)
{
    ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text);
}

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
}

/// The names in a folder, including hidden ones.
QStringList names(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System |
                                  QDir::NoDotAndDotDot);
}

class InstallationTest : public testing::Test
{
protected:
    [[nodiscard]] QString path(const char *name) const
    {
        return m_folder.filePath(QString::fromUtf8(name));
    }

    QTemporaryDir m_folder;
};

TEST_F(InstallationTest, AutostartEntrySurvivesEveryPath)
{
    const QString entry = path("autostart/org.corvane.Corvane.desktop");
    for (const char *name :
         {"/Applications/Corvane.app/bin/corvane", "/My Apps/Corvane.app/bin/corvane",
          R"(/a"b`c$d\e/corvane)", "/100%/%U/corvane", "/äöü/…/corvane", "/line\nbreak/tab\t",
          "/no-break space at the end\u00a0"}) {
        XdgAutostart item(m_folder.path(), QString::fromUtf8(name));
        EXPECT_FALSE(item.isEnabled()) << name; // first no entry, then one for another path
        EXPECT_TRUE(item.enable());
        EXPECT_TRUE(item.isEnabled()) << name;
        EXPECT_EQ(names(path("autostart")).size(), 1);
    }
    // According to the Desktop Entry Specification: quoted first, then escaped as a string.
    XdgAutostart(m_folder.path(), QStringLiteral(R"(/a"b$c\d 5%/x)")).enable();
    EXPECT_TRUE(contents(entry).contains(R"(Exec="/a\\"b\\$c\\\\d 5%%/x")"
                                         "\n"))
        << contents(entry).toStdString();
}

TEST_F(InstallationTest, AutostartFollowsWhatTheUserHasChosen)
{
    const QString entry = path("autostart/org.corvane.Corvane.desktop");
    const QByteArray head = "[Other]\nHidden=true\n[Desktop Entry]\n";
    for (const auto &[lines, enabled, enables] : tests::Table<const char *, bool, bool>{
             {"Exec=/opt/corvane", true, true},
             {"Exec = \"/opt/corvane\" --open balance", true, true},
             {"Exec=/opt/corvane\nHidden=false", true, true},
             {"Exec=/old/corvane", false, true},
             {"Exec=/opt/corvane-old", false, true},
             {"Name=Corvane", false, true},
             {"Exec=\"/opt/corvane", false, true},
             {"this is no entry", false, true},
             {"Exec=/opt/corvane\nHidden=true", false, false},
             {"Exec=/opt/corvane\nX-GNOME-Autostart-enabled=false", false, false},
         }) {
        write(entry, head + lines + "\n");
        XdgAutostart item(m_folder.path(), QStringLiteral("/opt/corvane"));
        EXPECT_EQ(item.isEnabled(), enabled) << lines;
        EXPECT_EQ(item.enable(), enables) << lines;
        EXPECT_EQ(item.isEnabled(), enables) << lines;
    }
    // A folder cannot be created at a file's path.
    write(path("file"), {});
    EXPECT_FALSE(XdgAutostart(path("file"), QStringLiteral("/opt/corvane")).enable());
}

TEST_F(InstallationTest, FindsTheBundleAroundTheProgram)
{
    for (const auto &[program, bundle] :
         {std::pair("/Applications/Corvane.app/bin/corvane", "/Applications/Corvane.app"),
          std::pair("/a.app/b.app/c/corvane", "/a.app/b.app"),
          std::pair("/usr/bin/corvane", "/usr/bin"),
          std::pair("/opt/corvane.app.old/corvane", "/opt/corvane.app.old")}) {
        EXPECT_EQ(LocalApplicationBundle(QString::fromLatin1(program), {}).path(),
                  QString::fromLatin1(bundle));
    }
}

TEST_F(InstallationTest, CopiesABundleWithItsLinksAndPermissions)
{
    const QString from = path("My Corvane.app");
    write(from + QStringLiteral("/bin/corvane"), "#!/bin/sh\n");
    write(from + QStringLiteral("/share/readme"), "read me");
    QFile::setPermissions(from + QStringLiteral("/bin/corvane"), QFile::Permissions(0x7755));
    QFile::link(QStringLiteral("bin/corvane"), from + QStringLiteral("/AppRun"));
    QFile::link(QStringLiteral("nowhere"), from + QStringLiteral("/dangling"));
    QFile::setPermissions(from + QStringLiteral("/share"), QFile::Permissions(0x5555));

    LocalApplicationBundle bundle(from + QStringLiteral("/bin/corvane"), {});
    const QString to = path("Applications/Corvane.app");
    EXPECT_FALSE(bundle.copy(from, to)); // no such folder
    ASSERT_TRUE(QDir().mkpath(path("Applications")));
    ASSERT_TRUE(bundle.copy(from, to));
    EXPECT_EQ(names(path("Applications")), QStringList{QStringLiteral("Corvane.app")});
    EXPECT_EQ(names(to), names(from));
    EXPECT_TRUE(QFileInfo(to + QStringLiteral("/bin/corvane")).isExecutable());
    EXPECT_EQ(contents(to + QStringLiteral("/AppRun")), "#!/bin/sh\n");
    EXPECT_TRUE(QFileInfo(to + QStringLiteral("/AppRun")).isSymLink());
    EXPECT_TRUE(bundle.exists(to + QStringLiteral("/dangling")));
    EXPECT_EQ(QFileInfo(to + QStringLiteral("/share")).permissions(),
              QFileInfo(from + QStringLiteral("/share")).permissions());

    // An existing bundle is not changed, and a failed copy leaves nothing.
    EXPECT_FALSE(bundle.copy(from, to));
    ASSERT_EQ(mkfifo(QFile::encodeName(from + QStringLiteral("/bin/pipe")).constData(), 0600), 0);
    EXPECT_FALSE(bundle.copy(from, path("Applications/Other.app")));
    EXPECT_EQ(names(path("Applications")), QStringList{QStringLiteral("Corvane.app")});

    // A folder without permissions is removed too; of a link, only the link.
    for (const QString &linked : {to, from}) {
        QFile::link(linked, path("Applications/Link.app"));
        EXPECT_TRUE(bundle.remove(path("Applications/Link.app")));
        EXPECT_TRUE(bundle.exists(linked));
    }
    // The running bundle is not removed, whatever path leads to it.
    QFile::link(m_folder.path(), path("detour"));
    EXPECT_FALSE(bundle.remove(path("detour/My Corvane.app")));
    EXPECT_TRUE(bundle.exists(from));
    EXPECT_TRUE(bundle.remove(to));
    EXPECT_FALSE(bundle.remove(to));
    EXPECT_TRUE(names(path("Applications")).isEmpty());
}

TEST_F(InstallationTest, WhatCannotBeRemovedStaysAsItWas)
{
    if (geteuid() == 0) {
        // Permissions do not apply to root, so the test continues as another user.
        ASSERT_EQ(chmod(QFile::encodeName(m_folder.path()).constData(), 0777), 0);
        ASSERT_EQ(seteuid(65534), 0);
    }
    write(path("Applications/Corvane.app/bin/corvane"), "old");
    const QString folder = path("Applications");
    QFile::setPermissions(folder, QFile::Permissions(0x5555));
    LocalApplicationBundle bundle(path("Corvane.app/bin/corvane"), {});
    EXPECT_FALSE(bundle.remove(folder + QStringLiteral("/Corvane.app")));
    EXPECT_EQ(contents(folder + QStringLiteral("/Corvane.app/bin/corvane")), "old");
    QFile::setPermissions(folder, QFile::Permissions(0x7777));
    EXPECT_EQ(names(folder), QStringList{QStringLiteral("Corvane.app")});
    if (getuid() == 0) {
        EXPECT_EQ(seteuid(0), 0);
    }
}

} // namespace
} // namespace corvane::platform
