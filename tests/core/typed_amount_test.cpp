#include "core/typed_amount.h"

#include "tests/fakes/table.h"

#include <QString>

#include <gtest/gtest.h>

using namespace corvane::core;
using namespace Qt::StringLiterals;
using corvane::tests::Table;

namespace {

TEST(ParseAmount, ReadsDecimalNumbersOnly)
{
    for (const auto &[text, value] : Table<QString, double>{{u"1.5"_s, 1.5},
                                                            {u"1,5"_s, 1.5},
                                                            {u",5"_s, 0.5},
                                                            {u"2."_s, 2},
                                                            {u"007"_s, 7},
                                                            {u"+1"_s, 1},
                                                            {u"-1"_s, -1},
                                                            {u"1e-3"_s, 0.001},
                                                            {u"1E2"_s, 100},
                                                            {u"0.0000"_s, 0}}) {
        EXPECT_EQ(parseAmount(text), value) << text.toStdString();
    }
    for (const QString &text : {u""_s, u" 1.5"_s, u"1.5 "_s, u"1\n"_s, u"1,000.5"_s, u"1.5.0"_s,
                                u"."_s, u"-"_s, u"+"_s, u"+-1"_s, u"++1"_s, u"1e"_s, u"1e999"_s,
                                u"0x10"_s, u"inf"_s, u"nan"_s, u"one"_s, u"1 SOL"_s, u"１"_s}) {
        EXPECT_EQ(parseAmount(text), std::nullopt) << text.toStdString();
    }
}

} // namespace
