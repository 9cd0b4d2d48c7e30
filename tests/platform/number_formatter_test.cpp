#include "platform/linux/toolkit/icu_number_formatter.h"
#include "tests/fakes/table.h"

#include <gtest/gtest.h>

#include <limits>

namespace corvane::tests {
namespace {

using namespace Qt::StringLiterals;
using platform::IcuNumberFormatter;

TEST(IcuNumberFormatter, WritesAsPeopleRead)
{
    for (const auto &[locale, value, decimals, text] : Table<QByteArray, double, int, QString>{
             {"en_US.UTF-8", 0.123456, 4, u"0.1235"_s},
             {"en_US.UTF-8", -1234567.891, 2, u"-1,234,567.89"_s},
             // Ties round to even.
             {"en_US.UTF-8", 0.5, 0, u"0"_s},
             {"en_US.UTF-8", 999.99996, 4, u"1,000.0000"_s},
             {"de_DE@euro", 1234.5, 2, u"1.234,50"_s},
             {"ar_EG.UTF-8", 1234.5, 2, u"\u0661\u066c\u0662\u0663\u0664\u066b\u0665\u0660"_s},
             {"POSIX", 1234.5, 2, u"1,234.50"_s},
             {"", 1234.5, 2, u"1,234.50"_s},
             {"no such locale; at all", 1234.5, 2, u"1,234.50"_s},
         }) {
        EXPECT_EQ(IcuNumberFormatter(locale).decimal(value, decimals), text)
            << locale.constData() << ' ' << value << ' ' << decimals;
    }
    // One formatter handles several numbers of decimals, and formats not-a-number.
    const IcuNumberFormatter formatter("en_US");
    EXPECT_EQ(formatter.decimal(2.25, 1), u"2.2"_s);
    EXPECT_EQ(formatter.decimal(2.25, 4), u"2.2500"_s);
    EXPECT_EQ(formatter.decimal(2.25, 1), u"2.2"_s);
    for (const double value : {std::numeric_limits<double>::quiet_NaN(),
                               std::numeric_limits<double>::infinity(), 1e300}) {
        EXPECT_FALSE(formatter.decimal(value, 2).value_or(QString()).isEmpty());
    }
    EXPECT_FALSE(formatter.decimal(1, -1).has_value());
}

TEST(IcuNumberFormatter, FollowsTheEnvironmentInItsOrder)
{
    const QByteArray before = qgetenv("LC_ALL");
    for (const auto &[all, numeric, lang, locale] :
         Table<const char *, const char *, const char *, QByteArray>{
             {"de_DE", "fr_FR", "en_IN", "de_DE"},
             {"", "fr_FR", "en_IN", "fr_FR"},
             {"", "", "en_IN", "en_IN"},
             {"", "", "", ""},
         }) {
        qputenv("LC_ALL", all);
        qputenv("LC_NUMERIC", numeric);
        qputenv("LANG", lang);
        EXPECT_EQ(IcuNumberFormatter::localeOfEnvironment(), locale);
    }
    qputenv("LC_ALL", before);
}

} // namespace
} // namespace corvane::tests
