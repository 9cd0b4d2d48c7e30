#include "platform/linux/icu_number_formatter.h"

#include <gtest/gtest.h>

#include <limits>

namespace corvane::tests {
namespace {

using platform::IcuNumberFormatter;

struct Case
{
    QByteArray locale;
    double value;
    int decimals;
    const char16_t *text;
};

TEST(IcuNumberFormatter, WritesAsPeopleRead)
{
    const Case cases[] = {
        {"en_US.UTF-8", 1234.5, 2, u"1,234.50"},
        {"en_US.UTF-8", 0.123456, 4, u"0.1235"},
        {"en_US.UTF-8", 1500, 0, u"1,500"},
        {"en_US.UTF-8", -1234567.891, 2, u"-1,234,567.89"},
        // Ties go to the even neighbour.
        {"en_US.UTF-8", 0.5, 0, u"0"},
        {"en_US.UTF-8", 1.5, 0, u"2"},
        {"en_US.UTF-8", 2.5, 0, u"2"},
        {"en_US.UTF-8", 0.125, 2, u"0.12"},
        {"en_US.UTF-8", 0.375, 2, u"0.38"},
        // The same formatter serves another number of decimals.
        {"en_US.UTF-8", 999.99996, 4, u"1,000.0000"},
        {"en_US.UTF-8", 1e15, 0, u"1,000,000,000,000,000"},
        {"de_DE.UTF-8", 1234.5, 2, u"1.234,50"},
        {"de_DE@euro", 1234.5, 2, u"1.234,50"},
        {"fr_FR.UTF-8", 1234.5, 2, u"1\u202f234,50"},
        {"de_CH.UTF-8", 1234.5, 2, u"1\u2019234.50"},
        {"en_IN.UTF-8", 123456, 0, u"1,23,456"},
        {"ar_EG.UTF-8", 1234.5, 2, u"\u0661\u066c\u0662\u0663\u0664\u066b\u0665\u0660"},
        {"C", 1234.5, 2, u"1,234.50"},
        {"C.UTF-8", 1234.5, 2, u"1,234.50"},
        {"POSIX", 1234.5, 2, u"1,234.50"},
        {"", 1234.5, 2, u"1,234.50"},
        {"xx_YY.UTF-8", 1234.5, 2, u"1,234.50"},
        {"no such locale; at all", 1234.5, 2, u"1,234.50"},
    };
    for (const Case &each : cases) {
        EXPECT_EQ(IcuNumberFormatter(each.locale).decimal(each.value, each.decimals),
                  QString::fromUtf16(each.text))
            << each.locale.constData() << ' ' << each.value << ' ' << each.decimals;
    }
}

TEST(IcuNumberFormatter, KeepsApartTheFormatsOfOneLocale)
{
    const IcuNumberFormatter formatter("en_US");
    EXPECT_EQ(formatter.decimal(2.25, 1), QStringLiteral("2.2"));
    EXPECT_EQ(formatter.decimal(2.25, 4), QStringLiteral("2.2500"));
    EXPECT_EQ(formatter.decimal(2.25, 1), QStringLiteral("2.2"));
}

TEST(IcuNumberFormatter, HasTextForWhatIsNoNumber)
{
    const IcuNumberFormatter formatter("en_US");
    for (const double value : {std::numeric_limits<double>::quiet_NaN(),
                               std::numeric_limits<double>::infinity(), 1e300}) {
        const auto text = formatter.decimal(value, 2);
        ASSERT_TRUE(text.has_value());
        EXPECT_FALSE(text->isEmpty());
    }
    EXPECT_FALSE(formatter.decimal(1, -1).has_value());
}

TEST(IcuNumberFormatter, FollowsTheEnvironmentInItsOrder)
{
    struct Environment
    {
        const char *all, *numeric, *lang;
        QByteArray locale;
    };
    const Environment environments[] = {
        {"de_DE", "fr_FR", "en_IN", "de_DE"},
        {"", "fr_FR", "en_IN", "fr_FR"},
        {"", "", "en_IN", "en_IN"},
        {"", "", "", ""},
    };
    const auto before = qgetenv("LC_ALL");
    for (const Environment &each : environments) {
        qputenv("LC_ALL", each.all);
        qputenv("LC_NUMERIC", each.numeric);
        qputenv("LANG", each.lang);
        EXPECT_EQ(IcuNumberFormatter::localeOfEnvironment(), each.locale);
    }
    qputenv("LC_ALL", before);
}

} // namespace
} // namespace corvane::tests
