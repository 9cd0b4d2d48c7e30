#include "look/rolling_text.h"
#include "tests/fakes/table.h"

#include <gtest/gtest.h>

namespace corvane::look {
namespace {

using namespace Qt::StringLiterals;

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
    for (const auto &[from, to, marks] : tests::Table<QString, QString, QString>{
             {u"$150.25"_s, u"$151.35"_s, u"===~=~="_s},
             {u"$999.50"_s, u"$1000.50"_s, u"+~~~~==="_s},
             {u"—"_s, u"$1"_s, u"+~"_s},
             {QString(), u"12"_s, u"++"_s},
         }) {
        SCOPED_TRACE(qPrintable(from + u'>' + to));
        const QList<RollingSlot> places = rollingSlots(from, to);
        EXPECT_EQ(steadiness(places), marks);
        QString left;
        QString came;
        for (const RollingSlot &place : places) {
            left += place.leaving ? QString(*place.leaving) : QString();
            came += place.coming ? QString(*place.coming) : QString();
        }
        EXPECT_EQ(left, from);
        EXPECT_EQ(came, to);
    }
}

TEST(RollingText, GivesAllDigitsTheSameWidth)
{
    RollingText text;
    QFont font;
    font.setPixelSize(24);
    text.setFont(font);
    text.setText(u"$111.11"_s);
    const double ones = text.implicitWidth();
    text.setText(u"$848.08"_s);
    EXPECT_EQ(text.implicitWidth(), ones);
}

} // namespace
} // namespace corvane::look
