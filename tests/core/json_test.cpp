#include "core/blank_trimming.h"
#include "core/json.h"

#include <QJsonArray>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace corvane::core;
using namespace Qt::StringLiterals;

namespace {

TEST(Json, ReadsAnyTopLevelValue)
{
    const struct
    {
        QByteArray text;
        QJsonValue value;
    } cases[] = {
        {"null", QJsonValue()},
        {"true", true},
        {" \r\n\t-1.5e3 \n", -1500.0},
        {"\"ok\"", u"ok"_s},
        {"\"],[\"", u"],["_s},
        {"[]", QJsonArray()},
        {"[1,[2]]", QJsonArray{1, QJsonArray{2}}},
        {"{\"a\":{\"b\":null}}", QJsonObject{{u"a"_s, QJsonObject{{u"b"_s, QJsonValue()}}}}},
        {"\xEF\xBB\xBF{}", QJsonObject()},
        {"\xEF\xBB\xBF"
         "7",
         7},
        {"{\"rentEpoch\":18446744073709551615}",
         QJsonObject{{u"rentEpoch"_s, 18446744073709551615.0}}},
    };
    for (const auto &[text, value] : cases) {
        SCOPED_TRACE(text.constData());
        const std::optional<QJsonValue> parsed = parseJson(text);
        ASSERT_TRUE(parsed);
        EXPECT_EQ(*parsed, value);
    }
}

TEST(Json, RefusesWhatIsNotExactlyOneValue)
{
    const QByteArray cases[] = {"",
                                " ",
                                "1,2",
                                "1,",
                                ",1",
                                ",",
                                "],[",
                                "1],[2",
                                "[1],[2]",
                                "[1,]",
                                "{\"a\":1,}",
                                "{} {}",
                                "{}x",
                                "][",
                                "1]",
                                "[1",
                                "nul",
                                "NaN",
                                "+1",
                                "01",
                                "'a'",
                                "\"a",
                                "<html>",
                                "// a\n1",
                                "1e999",
                                "\"\xFF\"",
                                QByteArray("1\0", 2),
                                QByteArray("\0", 1),
                                "\xEF\xBB\xBF\xEF\xBB\xBF{}",
                                "\xEF\xBB\xBF"};
    for (const QByteArray &text : cases) {
        SCOPED_TRACE(text.toPercentEncoding().constData());
        EXPECT_FALSE(parseJson(text));
    }
}

TEST(Json, BoundsTheDepth)
{
    const auto nested = [](int depth) { return QByteArray(depth, '[') + QByteArray(depth, ']'); };
    EXPECT_TRUE(parseJson(nested(1024)));
    EXPECT_FALSE(parseJson(nested(1025)));
    EXPECT_FALSE(parseJson(nested(1'000'000)));
}

TEST(Json, ReadsNumbersInTextAsStrtodDoes)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const struct
    {
        QString text;
        double value;
    } cases[] = {{u"150.20"_s, 150.2},
                 {u"-3.5"_s, -3.5},
                 {u"+2"_s, 2},
                 {u".5"_s, 0.5},
                 {u"1."_s, 1},
                 {u"1e3"_s, 1000},
                 {u"0x1p-1"_s, 0.5},
                 {u"0X10"_s, 16},
                 {u"inf"_s, infinity},
                 {u"1e999"_s, infinity},
                 {u"-Infinity"_s, -infinity}};
    for (const auto &[text, value] : cases) {
        SCOPED_TRACE(text.toStdString());
        EXPECT_EQ(parseNumber(text), value);
    }
    const std::optional<double> notANumber = parseNumber(u"nan"_s);
    ASSERT_TRUE(notANumber);
    EXPECT_TRUE(std::isnan(*notANumber));

    const QString refused[] = {u""_s,
                               u" 1"_s,
                               u"\t1"_s,
                               u"\n1"_s,
                               u"\u00A01"_s,
                               u"\u00011"_s,
                               u"1 "_s,
                               u"1\n"_s,
                               u"1,5"_s,
                               u"1.5x"_s,
                               u"abc"_s,
                               u"1e"_s,
                               u"0x"_s,
                               u"--1"_s,
                               u"\u0661"_s,
                               u"\uFF11"_s,
                               QString(u"1\0"_s),
                               QString(u"1\0"
                                       u"2"_s),
                               u"$1"_s};
    for (const QString &text : refused) {
        SCOPED_TRACE(text.toStdString());
        EXPECT_FALSE(parseNumber(text));
    }
}

TEST(BlankTrimming, TakesTabsAndSpaceSeparatorsButNoLineBreaks)
{
    const struct
    {
        QString text;
        QString trimmed;
    } cases[] = {
        {u""_s, u""_s},
        {u" \t\u00A0\u3000"_s, u""_s},
        {u"\u2003\ta b\t\u202F "_s, u"a b"_s},
        {u"\na\r\n"_s, u"\na\r\n"_s},
        {u" \n a"_s, u"\n a"_s},
        {u"\u200Ba\u2028\u000B"_s, u"\u200Ba\u2028\u000B"_s},
    };
    for (const auto &[text, trimmed] : cases) {
        SCOPED_TRACE(text.toStdString());
        EXPECT_EQ(trimmingBlanks(text), trimmed);
    }
}

} // namespace
