#include "platform/linux/files/json_settings.h"
#include "platform/linux/keyring/remembered_accounts.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <csignal>

namespace corvane::tests {
namespace {

using namespace Qt::StringLiterals;
using platform::JsonSettings;

const QString key = u"corvane.rpc"_s;
const QString flag = u"corvane.displayUSD"_s;

class JsonSettingsTest : public testing::Test
{
protected:
    void writeFile(const QByteArray &text) const
    {
        ASSERT_TRUE(QDir().mkpath(m_inside));
        QFile file(m_path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(text), text.size());
    }
    [[nodiscard]] static QByteArray textOf(const QString &name)
    {
        QFile file(name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    [[nodiscard]] QJsonObject onDisk() const
    {
        return QJsonDocument::fromJson(textOf(m_path)).object();
    }

    const QTemporaryDir m_folder;
    const QString m_inside = m_folder.filePath(u"corvane"_s);
    const QString m_path = m_inside + u"/settings.json"_s;
};

TEST_F(JsonSettingsTest, WritesEachValueAtOnceForTheUserAlone)
{
    JsonSettings settings(m_path);
    EXPECT_FALSE(settings.string(key).has_value());
    EXPECT_FALSE(settings.boolean(flag).has_value());
    settings.setBoolean(flag, false);
    settings.setString(key, u"täst"_s);
    EXPECT_EQ(onDisk(), QJsonObject({{flag, false}, {key, u"täst"_s}}));
    EXPECT_EQ(QDir(m_inside).entryList(QDir::Files), QStringList{u"settings.json"_s});
    constexpr auto owner = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
    constexpr auto asked = QFileDevice::ReadGroup | QFileDevice::WriteGroup |
                           QFileDevice::ReadOther | QFileDevice::WriteOther;
    for (const QString &made : {m_path, m_inside}) {
        EXPECT_EQ(QFile::permissions(made) & (owner | asked), owner) << made.toStdString();
    }
    settings.setString(key, QString());
    const JsonSettings again(m_path);
    EXPECT_EQ(again.string(key), QString());
    EXPECT_EQ(again.boolean(flag), false);
}

TEST_F(JsonSettingsTest, ReplacesTheFileWithoutEverTouchingTheOldOne)
{
    writeFile(R"({"corvane.rpc":"old"})");
    // The old content stays complete for readers that have it open, and after a power failure.
    QFile before(m_path);
    ASSERT_TRUE(before.open(QIODevice::ReadOnly));
    JsonSettings settings(m_path);
    settings.setString(key, u"new"_s);
    EXPECT_EQ(before.readAll(), R"({"corvane.rpc":"old"})");
    const QByteArray written = textOf(m_path);
    EXPECT_EQ(onDisk().value(key), u"new"_s);
    // Setting the same value again writes nothing.
    ASSERT_TRUE(QFile::remove(m_path));
    settings.setString(key, u"new"_s);
    EXPECT_FALSE(QFile::exists(m_path));
}

TEST_F(JsonSettingsTest, KeepsTheOldFileWhereTheDiskTakesNoMore)
{
    const QByteArray old = R"({"corvane.rpc":"old"})";
    writeFile(old);
    JsonSettings settings(m_path);
    // Simulates a full disk: files of this process cannot grow.
    rlimit unlimited{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &unlimited), 0);
    const rlimit full{0, unlimited.rlim_max};
    auto *const handler = std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &full), 0);
    settings.setString(key, u"new"_s);
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &unlimited), 0);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(textOf(m_path), old);
    EXPECT_EQ(QDir(QFileInfo(m_path).path()).entryList(QDir::Files).size(), 1);
    settings.setString(key, u"new"_s);
    EXPECT_EQ(JsonSettings(m_path).string(key), u"new"_s);
}

TEST_F(JsonSettingsTest, KeepsWhatItDoesNotKnowAndTakesAnotherTypeForAbsent)
{
    const QByteArray foreign =
        R"({"other": [1, null, "x"], "corvane.rpc": 7, "big": 9007199254740993})";
    writeFile(foreign);
    JsonSettings settings(m_path);
    EXPECT_FALSE(settings.string(key).has_value());
    EXPECT_FALSE(settings.boolean(key).has_value());
    settings.setBoolean(flag, true);
    QJsonObject expected = QJsonDocument::fromJson(foreign).object();
    expected.insert(flag, true);
    EXPECT_EQ(onDisk(), expected);
    EXPECT_TRUE(textOf(m_path).contains("9007199254740993"));
}

TEST_F(JsonSettingsTest, SetsADamagedFileAside)
{
    const QByteArray damaged[] = {
        "",
        R"({"corvane.rpc": "x")",
        R"(["corvane.rpc"])",
        "{\"corvane.rpc\": \"\xc3\x28\"}",
        "{\"x\":\"" + QByteArray(JsonSettings::maximumSize, 'x') + "\"}",
    };
    QString aside = m_path + u".damaged"_s;
    for (int number = 2; const QByteArray &text : damaged) {
        writeFile(text);
        JsonSettings settings(m_path);
        EXPECT_FALSE(settings.string(key).has_value());
        EXPECT_EQ(textOf(aside), text);
        EXPECT_FALSE(QFile::exists(m_path));
        settings.setString(key, u"new"_s);
        EXPECT_EQ(JsonSettings(m_path).string(key), u"new"_s);
        aside = m_path + u".damaged.%1"_s.arg(number++);
    }
}

TEST_F(JsonSettingsTest, LivesInMemoryWhereItCannotWriteAndCatchesUp)
{
    // A folder at the file's path must not be replaced or renamed.
    const QString folder = m_folder.filePath(u"folder"_s);
    ASSERT_TRUE(QDir().mkpath(folder + u"/inside"_s));
    JsonSettings overFolder(folder);
    overFolder.setString(key, u"kept"_s);
    EXPECT_EQ(overFolder.string(key), u"kept"_s);
    EXPECT_TRUE(QFile::exists(folder + u"/inside"_s));

    QFile obstacle(m_inside);
    ASSERT_TRUE(obstacle.open(QIODevice::WriteOnly));
    JsonSettings settings(m_path);
    settings.setString(key, u"late"_s);
    EXPECT_EQ(settings.string(key), u"late"_s);
    ASSERT_TRUE(obstacle.remove());
    settings.setString(key, u"late"_s);
    EXPECT_EQ(JsonSettings(m_path).string(key), u"late"_s);
}

TEST_F(JsonSettingsTest, RememberedAccountsAreKeptByService)
{
    const QString path = m_folder.filePath(u"data/accounts.json"_s);
    const platform::RememberedAccount first{u"one"_s, u"/login"_s};
    const platform::RememberedAccount second{u"two"_s, {}};
    platform::RememberedAccounts accounts(path);
    EXPECT_FALSE(accounts.find(u"a"_s));
    accounts.remember(u"a"_s, first);
    accounts.remember(u"b"_s, second);
    EXPECT_FALSE(accounts.find(u"c"_s));
    // Another start reads what this one has written.
    EXPECT_EQ(platform::RememberedAccounts(path).find(u"a"_s), first);
    accounts.forget(u"a"_s);
    EXPECT_FALSE(platform::RememberedAccounts(path).find(u"a"_s));
    EXPECT_EQ(platform::RememberedAccounts(path).find(u"b"_s), second);
}

} // namespace
} // namespace corvane::tests
