// What is known of a transfer before it is sent.

#include "core/transfer_outlook.h"

#include "core/rent_minimum.h"
#include "core/typed_amount.h"
#include "tests/fakes/fake_http_client.h"
#include "tests/fakes/hand_driven_queue.h"
#include "tests/fakes/table.h"

#include <QRegularExpression>

namespace corvane::core {
namespace {

using namespace Qt::StringLiterals;
using keys::Lamports;
using tests::Table;

TEST(TransferOutlook, SaysWhatTheClusterWillSayAndWhatWouldWork)
{
    constexpr std::uint64_t sol = 1'000'000'000;
    const auto tooMuchOf = [](const QString &balance) {
        return u"amount + fee is more than the balance of "_s + balance + u" SOL"_s;
    };
    const QString tooMuch = tooMuchOf(u"2"_s);
    const QString little = u"SEND ALL 0.000995"_s;
    const QString least = u"KEEP ACCOUNT 0.00010412"_s;
    const auto leaves = [](const QString &rest) {
        return u"leaves "_s + rest + u" SOL — your account keeps nothing or at least 0.00089088"_s;
    };
    const auto left = [](const QString &rest) {
        return u"leaves "_s + rest + u" SOL · fee 0.000005"_s;
    };
    const QString newAddress = u"a new address needs at least 0.00089088 SOL"_s;
    const QString all = u"SEND ALL 1.999995"_s;
    const QString most = u"KEEP ACCOUNT 1.99910412"_s;
    using Count = std::optional<std::uint64_t>;
    for (const auto &[balance, amount, recipientHas, isToSelf, text, offers] :
         Table<std::uint64_t, Count, Count, bool, QString, QStringList>{
             {2'400'000'000, {}, {}, false, u"2.399995 SOL available · fee 0.000005"_s, {}},
             {4'999, {}, {}, false, u"0 SOL available · fee 0.000005"_s, {}},
             {2 * sol, sol, {}, false, left(u"0.999995"_s), {}},
             {2 * sol, 0, 0, false, left(u"1.999995"_s), {}},
             // The rest is nothing, or the minimum.
             {2 * sol, 1'999'995'000, sol, false, left(u"0"_s), {}},
             {2 * sol, 1'999'104'120, sol, false, left(u"0.00089088"_s), {}},
             {2 * sol, 1'999'104'121, sol, false, leaves(u"0.000890879"_s), {all, most}},
             {2 * sol, 1'999'994'999, {}, false, leaves(u"0.000000001"_s), {all, most}},
             {2 * sol, 1'999'995'001, {}, false, tooMuch, {all, most}},
             {2 * sol, ~std::uint64_t{0}, {}, false, tooMuch, {all, most}},
             // What an account that is to be created needs.
             {2 * sol, 890'880, 0, false, left(u"1.99910412"_s), {}},
             {2 * sol, 890'879, 0, false, newAddress, {u"SEND 0.00089088"_s}},
             {2 * sol, 890'879, 1, false, left(u"1.999104121"_s), {}},
             {892'000, 100, 0, false, newAddress, {}},
             {1'000'000, 2 * sol, 0, false, tooMuchOf(u"0.001"_s), {little}},
             {1'000'000, 2 * sol, 1, false, tooMuchOf(u"0.001"_s), {little, least}},
             // To itself, only the fee leaves the account.
             {2 * sol, 1'999'994'999, 2 * sol, true, left(u"1.999995"_s), {}},
             {2 * sol, 2 * sol, 2 * sol, true, tooMuch, {all, most}},
             {800'000, 100, 800'000, true, leaves(u"0.000795"_s), {}},
             {3'000, 1, {}, false, tooMuchOf(u"0.000003"_s), {}},
         }) {
        SCOPED_TRACE(testing::Message() << balance << ' ' << amount.value_or(0));
        const auto lamports = [](Count count) {
            return count ? std::optional(Lamports(*count)) : std::nullopt;
        };
        TransferFacts facts{Lamports(balance), lamports(amount), lamports(recipientHas), isToSelf};
        const TransferOutlook outlook = transferOutlook(facts);
        EXPECT_EQ(outlook.text, text);
        EXPECT_EQ(outlook.isRefused, !text.contains(u"fee 0.000005"));
        QStringList labels;
        for (const AmountOffer &offer : outlook.offers) {
            labels.append(offer.label);
            EXPECT_TRUE(offer.label.endsWith(u' ' + solText(offer.amount)));
        }
        EXPECT_EQ(labels, offers);

        // What the payer has can be hidden; what every account must keep is known to everybody.
        static const QRegularExpression own(
            u"(?<![0-9.])(?<!fee |at least |SEND )[0-9.]+( SOL)?"_s);
        facts.hidesAmounts = true;
        const TransferOutlook hidden = transferOutlook(facts);
        EXPECT_EQ(hidden.text, QString(text).replace(own, u"•••••"_s));
        EXPECT_EQ(hidden.offers.size(), offers.size());
        for (qsizetype index = 0; index < offers.size(); ++index) {
            EXPECT_EQ(hidden.offers[index].label, QString(offers[index]).replace(own, u"•••••"_s));
        }
    }
}

TEST(TransferOutlook, WritesAmountsExactly)
{
    for (const auto &[lamports, text] : Table<std::uint64_t, QString>{
             {0, u"0"_s},
             {1, u"0.000000001"_s},
             {10'000'000'000, u"10"_s},
             {1'020'000'000, u"1.02"_s},
             {18'446'744'073'709'551'615U, u"18446744073.709551615"_s},
         }) {
        EXPECT_EQ(solText(Lamports(lamports)), text);
    }
}

TEST(TypedAmount, TellsWhetherRoundingChangesIt)
{
    for (const auto &[text, lamports, isExact] : Table<QString, std::uint64_t, bool>{
             {u"1"_s, 1'000'000'000, true},
             {u"+001,50"_s, 1'500'000'000, true},
             {u".5"_s, 500'000'000, true},
             {u"5."_s, 5'000'000'000, true},
             {u"15E-1"_s, 1'500'000'000, true},
             {u"0.0015e+3"_s, 1'500'000'000, true},
             {u"0.000000001"_s, 1, true},
             {u"1.0000000004"_s, 1'000'000'000, false},
             {u"0.0000000004"_s, 0, false},
             {u"1.5"_s, 150'000'000, false},
             // More digits than a double has.
             {u"12345678.123456789"_s, 12'345'678'123'456'788, false},
         }) {
        EXPECT_EQ(isExactly(text, Lamports(lamports)), isExact) << text.toStdString();
    }
}

TEST(RentMinimum, IsAskedOnceAndBelievedWithinReason)
{
    tests::HandDrivenQueue queue;
    tests::FakeHttpClient http(queue);
    const QString method = u"getMinimumBalanceForRentExemption"_s;
    for (const auto &[reply, amount, isAnswer] : Table<QByteArray, std::uint64_t, bool>{
             {R"({"result": 1000000})", 1'000'000, true},
             {R"({"result": 0})", 0, true},
             {R"({"result": 8908800})", 8'908'800, true},
             {R"({"result": 8908801})", 890'880, true},
             {R"({"result": -1})", 890'880, false},
             {R"({"result": "x"})", 890'880, false},
             {"<html>", 890'880, false},
         }) {
        RentMinimum minimum(http);
        http.answer(method, reply);
        http.forgetRequests();
        EXPECT_EQ(minimum.amount(), usualRentMinimum);
        minimum.ask(QUrl(u"http://a.test"_s));
        minimum.ask(QUrl(u"http://a.test"_s));
        EXPECT_EQ(http.count(method), 1);
        queue.drain();
        EXPECT_EQ(minimum.amount(), Lamports(amount)) << reply.constData();
        minimum.ask(QUrl(u"http://a.test"_s));
        EXPECT_EQ(http.count(method), isAnswer ? 1 : 2);
        queue.drain();
    }
    EXPECT_TRUE(http.requests()[0].body.contains(R"("params":[0])"));
}

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
} // namespace corvane::core
