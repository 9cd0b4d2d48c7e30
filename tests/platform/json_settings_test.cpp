#include "platform/linux/json_settings.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <unistd.h>

namespace corvane::tests {
namespace {

using platform::JsonSettings;

class JsonSettingsTest : public testing::Test
{
protected:
    [[nodiscard]] QString path() const
    {
        return m_folder.filePath(QStringLiteral("corvane/settings.json"));
    }

    void writeFile(const QByteArray &text) const
    {
        ASSERT_TRUE(QDir().mkpath(QFileInfo(path()).path()));
        QFile file(path());
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
        return QJsonDocument::fromJson(textOf(path())).object();
    }

    QTemporaryDir m_folder;
    const QString m_key = QStringLiteral("corvane.rpc");
    const QString m_flag = QStringLiteral("corvane.displayUSD");
};

TEST_F(JsonSettingsTest, WritesEachValueAtOnceForTheUserAlone)
{
    JsonSettings settings(path());
    EXPECT_FALSE(settings.string(m_key).has_value());
    EXPECT_FALSE(settings.boolean(m_flag).has_value());

    settings.setBoolean(m_flag, false);
    settings.setString(m_key, QStringLiteral("täst"));

    EXPECT_EQ(onDisk(), QJsonObject({{m_flag, false}, {m_key, QStringLiteral("täst")}}));
    constexpr auto owner = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
    constexpr auto asked = QFileDevice::ReadGroup | QFileDevice::WriteGroup |
                           QFileDevice::ReadOther | QFileDevice::WriteOther;
    EXPECT_EQ(QFile::permissions(path()) & (owner | asked), owner);
    EXPECT_EQ(QFile::permissions(QFileInfo(path()).path()) & (owner | asked), owner);

    const JsonSettings again(path());
    EXPECT_EQ(again.string(m_key), QStringLiteral("täst"));
    EXPECT_EQ(again.boolean(m_flag), false);
}

TEST_F(JsonSettingsTest, TakesAnotherTypeForAbsentUntilItIsWritten)
{
    writeFile(R"({"corvane.rpc": true, "corvane.displayUSD": "yes", "corvane.network": 1})");
    JsonSettings settings(path());
    EXPECT_FALSE(settings.string(m_key).has_value());
    EXPECT_FALSE(settings.boolean(m_flag).has_value());
    EXPECT_FALSE(settings.string(QStringLiteral("corvane.network")).has_value());

    settings.setBoolean(m_flag, true);
    EXPECT_EQ(settings.boolean(m_flag), true);
    EXPECT_EQ(onDisk().value(m_flag), QJsonValue(true));
}

TEST_F(JsonSettingsTest, KeepsWhatItDoesNotKnow)
{
    const QByteArray foreign =
        R"({"other": {"deep": [1, null, "x"]}, "corvane.rpc": 7, "big": 9007199254740993})";
    writeFile(foreign);
    JsonSettings(path()).setBoolean(m_flag, true);

    QJsonObject expected = QJsonDocument::fromJson(foreign).object();
    expected.insert(m_flag, true);
    EXPECT_EQ(onDisk(), expected);
    EXPECT_TRUE(textOf(path()).contains("9007199254740993"));
}

TEST_F(JsonSettingsTest, DoesNotRewriteForTheSameValue)
{
    writeFile(R"({"corvane.rpc":"same"})");
    JsonSettings settings(path());
    settings.setString(m_key, QStringLiteral("same"));
    EXPECT_EQ(textOf(path()), R"({"corvane.rpc":"same"})");
}

TEST_F(JsonSettingsTest, AnEmptyTextIsAValue)
{
    JsonSettings(path()).setString(m_key, QString());
    EXPECT_EQ(JsonSettings(path()).string(m_key), QString());
    EXPECT_TRUE(JsonSettings(path()).string(m_key).has_value());
}

TEST_F(JsonSettingsTest, SetsADamagedFileAside)
{
    const QByteArray damaged[] = {
        "",
        "not JSON",
        R"({"corvane.rpc": "x")",
        R"(["corvane.rpc"])",
        "\xff\xfe{",
        QByteArray("{\"corvane.rpc\": \"\xc3\x28\"}"),
        "{\"x\":\"" + QByteArray(JsonSettings::maximumSize, 'x') + "\"}",
    };
    int number = 1;
    for (const QByteArray &text : damaged) {
        writeFile(text);
        JsonSettings settings(path());
        EXPECT_FALSE(settings.string(m_key).has_value());
        const QString aside = path() + QStringLiteral(".damaged") +
                              (number == 1 ? QString() : QStringLiteral(".%1").arg(number));
        EXPECT_EQ(textOf(aside), text);
        EXPECT_FALSE(QFileInfo::exists(path()));
        settings.setString(m_key, QStringLiteral("new"));
        EXPECT_EQ(JsonSettings(path()).string(m_key), QStringLiteral("new"));
        ++number;
    }
}

TEST_F(JsonSettingsTest, LivesInMemoryWhereItCannotWrite)
{
    // A folder in the file's place cannot be read, replaced or set aside.
    ASSERT_TRUE(QDir().mkpath(path() + QStringLiteral("/inside")));
    JsonSettings settings(path());
    settings.setString(m_key, QStringLiteral("kept"));
    EXPECT_EQ(settings.string(m_key), QStringLiteral("kept"));
    EXPECT_TRUE(QFileInfo::exists(path() + QStringLiteral("/inside")));

    // A file in the folder's place.
    JsonSettings beneathFile(QStringLiteral("/dev/null/settings.json"));
    beneathFile.setBoolean(m_flag, true);
    EXPECT_EQ(beneathFile.boolean(m_flag), true);
}

TEST_F(JsonSettingsTest, LeavesAFileAloneThatItMayNotRead)
{
    if (geteuid() == 0) {
        GTEST_SKIP() << "nothing is unreadable to root";
    }
    writeFile(R"({"corvane.rpc":"hidden"})");
    ASSERT_TRUE(QFile::setPermissions(path(), QFileDevice::Permissions()));
    JsonSettings settings(path());
    settings.setString(m_key, QStringLiteral("mine"));
    EXPECT_EQ(settings.string(m_key), QStringLiteral("mine"));
    ASSERT_TRUE(QFile::setPermissions(path(), QFileDevice::ReadOwner));
    EXPECT_EQ(textOf(path()), R"({"corvane.rpc":"hidden"})");
}

TEST_F(JsonSettingsTest, CatchesUpWhenTheDiskWorksAgain)
{
    const QString folder = QFileInfo(path()).path();
    QFile obstacle(folder);
    ASSERT_TRUE(obstacle.open(QIODevice::WriteOnly));
    JsonSettings settings(path());
    settings.setString(m_key, QStringLiteral("late"));
    ASSERT_FALSE(QFileInfo::exists(path()));

    ASSERT_TRUE(obstacle.remove());
    settings.setString(m_key, QStringLiteral("late"));
    EXPECT_EQ(JsonSettings(path()).string(m_key), QStringLiteral("late"));
}

} // namespace
} // namespace corvane::tests
