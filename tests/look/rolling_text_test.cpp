#include "look/rolling_text.h"

#include <gtest/gtest.h>

namespace corvane::look {
namespace {

QString steadiness(const QList<RollingSlot> &places)
{
    QString marks;
    for (const RollingSlot &place : places) {
        marks += place.isSteady() ? u'=' : place.leaving && place.coming ? u'~' : u'+';
    }
    return marks;
}

TEST(RollingText, PairsPlacesFromTheRight)
{
    struct Case
    {
        QString from;
        QString to;
        QString marks;
    };
    const Case cases[] = {
        {QStringLiteral("$150.25"), QStringLiteral("$150.25"), QStringLiteral("=======")},
        {QStringLiteral("$150.25"), QStringLiteral("$151.35"), QStringLiteral("===~=~=")},
        {QStringLiteral("$999.50"), QStringLiteral("$1000.50"), QStringLiteral("+~~~~===")},
        {QStringLiteral("—"), QStringLiteral("$1"), QStringLiteral("+~")},
        {QString(), QStringLiteral("12"), QStringLiteral("++")},
    };
    for (const Case &expected : cases) {
        SCOPED_TRACE(qPrintable(expected.from + u'>' + expected.to));
        const QList<RollingSlot> places = rollingSlots(expected.from, expected.to);
        EXPECT_EQ(steadiness(places), expected.marks);
        QString from;
        QString to;
        for (const RollingSlot &place : places) {
            from += place.leaving ? QString(*place.leaving) : QString();
            to += place.coming ? QString(*place.coming) : QString();
        }
        EXPECT_EQ(from, expected.from);
        EXPECT_EQ(to, expected.to);
    }
}

TEST(RollingText, GivesAllDigitsTheSameWidth)
{
    RollingText text;
    QFont font;
    font.setPixelSize(24);
    text.setFont(font);
    text.setText(QStringLiteral("$111.11"));
    const double ones = text.implicitWidth();
    text.setText(QStringLiteral("$848.08"));
    EXPECT_EQ(text.implicitWidth(), ones);
}

} // namespace
} // namespace corvane::look
