#include "core/labels.h"

#include "tests/fakes/english_number_formatter.h"
#include "tests/fakes/table.h"

#include <gtest/gtest.h>

using namespace corvane::core;
using namespace Qt::StringLiterals;
using namespace corvane::tests;

namespace {

TEST(Labels, TellsTheBalanceInBothUnits)
{
    EnglishNumberFormatter formatter;
    for (const auto &[sol, solText, quibText] : Table<std::optional<double>, QString, QString>{
             {std::nullopt, u"—"_s, u"—"_s},
             {0, u"0.0000 SOL"_s, u"0 QUIB"_s},
             {0.0025, u"0.0025 SOL"_s, u"3 QUIB"_s},
             {-0.0025, u"-0.0025 SOL"_s, u"-3 QUIB"_s},
             {999.99999, u"1,000.0000 SOL"_s, u"1,000,000 QUIB"_s},
             {1000, u"1,000.00 SOL"_s, u"1,000,000 QUIB"_s},
         }) {
        SCOPED_TRACE(solText.toStdString());
        EXPECT_EQ(solLabel(formatter, sol), solText);
        EXPECT_EQ(quibLabel(formatter, sol), quibText);
    }
    formatter.silent = true;
    EXPECT_EQ(group(formatter, 0.123456, 4), u"0.1235"_s);
    EXPECT_EQ(solLabel(formatter, 1500), u"1500.00 SOL"_s);
}

TEST(Labels, TotalsWhatIsKnown)
{
    EXPECT_EQ(totalUSD(2, 3, 100), 203);
    EXPECT_EQ(totalUSD(2, {}, 100), 200) << "an unknown USDC balance counts nothing";
    EXPECT_EQ(totalUSD({}, 3, 100), std::nullopt);
    EXPECT_EQ(totalUSD(2, 3, {}), std::nullopt);
}

TEST(Labels, ShortensAddressesByUserPerceivedCharacters)
{
    const QString flag = u"\U0001F1E9\U0001F1EA"_s;
    const QString accented = u"e\u0301"_s;
    for (const auto &[address, label] : Table<QString, QString>{
             {u" \u00A012345678901\t"_s, u"1234…8901"_s},
             {u"12345678\n901"_s, u"1234…\n901"_s},
             {accented.repeated(10), accented.repeated(10)},
             {accented.repeated(11), accented.repeated(4) + u'…' + accented.repeated(4)},
             {flag.repeated(12), flag.repeated(4) + u'…' + flag.repeated(4)},
         }) {
        EXPECT_EQ(shortAddress(address), label) << address.toStdString();
    }
}

TEST(Labels, NamesTheEndpointInUse)
{
    for (const auto &[customRPC, proxyOK, label] : Table<QString, bool, QString>{
             {u" \t"_s, false, u"PUBLIC RPC (RATE-LIMITED)"_s},
             {u"rpc.helius.test"_s, false, u"PUBLIC RPC (RATE-LIMITED)"_s},
             {u"HTTP://rpc.helius.test"_s, true, u"HELIUS · PROXIED VIA YOUR APP"_s},
             {u" https://rpc.helius.test"_s, true, u"HELIUS · CUSTOM ENDPOINT"_s},
             {u"https://rpc.test/?helius"_s, false, u"HELIUS · CUSTOM ENDPOINT"_s},
             {u"http"_s, true, u"CUSTOM ENDPOINT"_s},
         }) {
        EXPECT_EQ(rpcSourceLabel(rpcSource(customRPC, proxyOK)), label) << customRPC.toStdString();
    }
}

} // namespace
