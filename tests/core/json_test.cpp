#include "core/blank_trimming.h"
#include "core/json.h"
#include "tests/fakes/table.h"

#include <QJsonArray>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace corvane::core;
using namespace Qt::StringLiterals;
using corvane::tests::Table;

namespace {

TEST(Json, ReadsAnyTopLevelValue)
{
    for (const auto &[text, value] : Table<QByteArray, QJsonValue>{
             {"null", QJsonValue()},
             {" \r\n\t-1.5e3 \n", -1500.0},
             {"\"],[\"", u"],["_s},
             {"[1,[2]]", QJsonArray{1, QJsonArray{2}}},
             {"{\"a\":{\"b\":null}}", QJsonObject{{u"a"_s, QJsonObject{{u"b"_s, QJsonValue()}}}}},
             {"\xEF\xBB\xBF{}", QJsonObject()},
             {"{\"rentEpoch\":18446744073709551615}",
              QJsonObject{{u"rentEpoch"_s, 18446744073709551615.0}}},
         }) {
        EXPECT_EQ(parseJson(text), std::optional(value)) << text.constData();
    }
}

TEST(Json, RefusesWhatIsNotExactlyOneValue)
{
    for (const QByteArray text :
         {"", " ", "1,2", "],[", "1],[2", "[1,]", "{} {}", "][", "[1", "nul", "1e999", "\"\xFF\"",
          "\xEF\xBB\xBF\xEF\xBB\xBF{}", "\xEF\xBB\xBF"}) {
        EXPECT_FALSE(parseJson(text)) << text.toPercentEncoding().constData();
    }
    EXPECT_FALSE(parseJson(QByteArray("1\0", 2)));
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
    for (const auto &[text, value] : Table<QString, double>{{u"150.20"_s, 150.2},
                                                            {u"-3.5"_s, -3.5},
                                                            {u"+2"_s, 2},
                                                            {u".5"_s, 0.5},
                                                            {u"1."_s, 1},
                                                            {u"1e3"_s, 1000},
                                                            {u"0x1p-1"_s, 0.5},
                                                            {u"1e999"_s, infinity},
                                                            {u"-Infinity"_s, -infinity}}) {
        EXPECT_EQ(parseNumber(text), value) << text.toStdString();
    }
    EXPECT_TRUE(std::isnan(parseNumber(u"nan"_s).value_or(0)));
    for (const QStringView text : {u"", u" 1", u"\t1", u"\u00A01", u"1 ", u"1\n", u"1,5", u"1.5x",
                                   u"abc", u"1e", u"0x", u"--1", u"\u0661", u"\uFF11", u"$1"}) {
        EXPECT_FALSE(parseNumber(text.toString())) << text.toString().toStdString();
    }
    EXPECT_FALSE(parseNumber(QString::fromUtf16(u"1\0", 2)));
}

TEST(BlankTrimming, TakesTabsAndSpaceSeparatorsButNoLineBreaks)
{
    for (const auto &[text, trimmed] : Table<QString, QString>{
             {u" \t\u00A0\u3000"_s, u""_s},
             {u"\u2003\ta b\t\u202F "_s, u"a b"_s},
             {u" \n a\r\n"_s, u"\n a\r\n"_s},
             {u"\u200Ba\u2028\u000B"_s, u"\u200Ba\u2028\u000B"_s},
         }) {
        EXPECT_EQ(trimmingBlanks(text), trimmed) << text.toStdString();
    }
}

} // namespace
