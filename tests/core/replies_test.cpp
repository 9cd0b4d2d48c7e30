// Parsing of JSON, and of the replies of the cluster and of the price services.

#include "core/balances.h"
#include "core/blank_trimming.h"
#include "core/json.h"
#include "core/json_calls.h"
#include "core/price_feeds.h"
#include "tests/fakes/table.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <cmath>

#include <gtest/gtest.h>

#include <limits>

using namespace corvane::core;
using namespace corvane::platform;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using corvane::tests::Table;

namespace {

QJsonValue json(const QByteArray &text)
{
    const std::optional<QJsonValue> value = parseJson(text);
    EXPECT_TRUE(value) << text.constData();
    return value.value_or(QJsonValue());
}

TEST(JsonCalls, AsksAsDocumentedAndNeverForEver)
{
    const QUrl url(u"https://rpc.test/?k=v"_s);
    const auto call = rpcRequest(url, u"getIt"_s, {u"key"_s, QJsonObject{{u"mint"_s, u"m"_s}}, 3});
    ASSERT_TRUE(call);
    EXPECT_EQ(call->url, url);
    EXPECT_EQ(call->timeout, 12s);
    EXPECT_FALSE(call->once);
    EXPECT_TRUE(rpcRequest(url, u"sendTransaction"_s, {})->once)
        << "a transfer must not be sent twice";
    EXPECT_EQ(json(call->body), json(R"({"jsonrpc": "2.0", "id": 1, "method": "getIt",
                                         "params": ["key", {"mint": "m"}, 3]})"));
    constexpr double infinity = std::numeric_limits<double>::infinity();
    EXPECT_FALSE(rpcRequest(url, u"m"_s, {u"a"_s, QJsonObject{{u"a"_s, QJsonArray{-infinity}}}}));

    const HttpRequest health = healthRequest(url);
    EXPECT_EQ(health.timeout, 8s);
    EXPECT_EQ(health.method, HttpMethod::Post);
    EXPECT_EQ(health.headers.front().name + health.headers.front().value,
              "Content-Typeapplication/json");
    EXPECT_EQ(json(health.body), json(R"({"jsonrpc": "2.0", "id": 1, "method": "getHealth"})"));

    const QString page = u"https://h.test/a/b?ids=solana&x=%2F"_s;
    const auto get = jsonRequest(page);
    ASSERT_TRUE(get);
    EXPECT_EQ(get->url.toString(QUrl::FullyEncoded), page);
    EXPECT_EQ(get->timeout, 12s);
    EXPECT_FALSE(jsonRequest(u"https://h test/"_s));
}

TEST(JsonCalls, ReadsRepliesWhateverTheStatusButAsksForItOfAProxy)
{
    int row = 0;
    for (const auto &[reply, value] : Table<HttpResult, JsonResult>{
             {HttpReply{500, R"({"result": {"value": 1}})"},
              QJsonValue(QJsonObject{{u"value"_s, 1}})},
             {HttpReply{200, R"({"result": null, "error": {}})"}, QJsonValue()},
             {HttpReply{200, R"({"error": {"code": -32000}})"}, CallError::Refused},
             {HttpReply{429, R"({"error": {"code": -32429}})"}, CallError::Refused},
             // A gateway may have passed the call on.
             {HttpReply{502, R"({"error": {"code": -32603}})"}, CallError::BadServerResponse},
             {HttpReply{200, R"({"error": "busy"})"}, CallError::BadServerResponse},
             {HttpReply{200, R"([{"result": 1}])"}, CallError::BadServerResponse},
             {HttpReply{429, "<html>"}, CallError::NotJson},
             {HttpError::TimedOut, HttpError::TimedOut},
         }) {
        EXPECT_EQ(readRpcReply(reply), value) << row++;
    }
    EXPECT_TRUE(isHealthy(HttpReply{200, R"({"error": {"code": 1}})"}));
    for (const HttpResult &sick :
         {HttpResult(HttpReply{200, "<html>"}), HttpResult(HttpReply{503, R"({"result": "ok"})"}),
          HttpResult(HttpReply{204, "{}"}), HttpResult(HttpError::TimedOut)}) {
        EXPECT_FALSE(isHealthy(sick));
    }
    EXPECT_EQ(readJsonReply(HttpReply{404, "7"}), JsonResult(QJsonValue(7)));
    EXPECT_EQ(readJsonReply(HttpReply{200, "7,"}), JsonResult(CallError::NotJson));
    EXPECT_EQ(readJsonReply(HttpError::TooLarge), JsonResult(HttpError::TooLarge));
}

TEST(Balances, ReadsLamportsAsSol)
{
    EXPECT_EQ(readSolBalance(json(R"({"context": {"slot": 1}, "value": 1500000000})")), 1.5);
    EXPECT_EQ(readSolBalance(json(R"({"value": 0})")), 0.0);
    for (const char *other : {R"({"value": "1"})", R"({"value": null})", R"({"value": true})", "{}",
                              "1500000000", "null", "[1]"}) {
        EXPECT_EQ(readSolBalance(json(other)), std::nullopt) << other;
    }
}

TEST(Balances, SumsTokenAccountsAndSkipsThoseWithoutAnAmount)
{
    const auto account = [](const QByteArray &amount) {
        return R"({"account": {"data": {"parsed": {"info": {"tokenAmount": {"uiAmount": )" +
               amount + "}}}}}}";
    };
    for (const auto &[value, total] : Table<QByteArray, std::optional<double>>{
             {"[]", 0.0},
             {"[" + account("1.25") + "," + account("0.75") + "," + account("null") + "]", 2.0},
             {"[" + account("\"9\"") + "," + account("true") + "]", 0.0},
             {R"([{"account": {"data": ["base64"]}}, {}, )" + account("3") + "]", 3.0},
             {"[" + account("1") + ", null]", std::nullopt},
             {"{}", std::nullopt},
             {"null", std::nullopt},
         }) {
        EXPECT_EQ(readTokenBalance(json("{\"value\": " + value + "}")), total) << value.constData();
    }
    EXPECT_EQ(readTokenBalance(json("[]")), std::nullopt);
    EXPECT_EQ(usdcMint(SolNetwork::Mainnet), u"EPjFWdd5AufqSSqeM2qN1xzybapC8G4wEGGkZwyTDt1v"_s);
    EXPECT_EQ(usdcMint(SolNetwork::Devnet), u"4zMMC9srt5Ri5X14GAgXhaHii3GnPAEERYPJgZJDncDU"_s);
}

TEST(PriceFeeds, ReadsEachServiceOrRefusesIt)
{
    enum : std::size_t { CoinGecko, Binance, Coinbase };
    ASSERT_EQ(priceSources().size(), 3U);
    for (const auto &[source, document, quote] :
         Table<std::size_t, const char *, std::optional<PriceQuote>>{
             {CoinGecko, R"({"solana": {"usd": 150.5, "usd_24h_change": -3.2}})",
              PriceQuote{150.5, -3.2}},
             {CoinGecko, R"({"solana": {"usd": 150, "usd_24h_change": "1"}})", PriceQuote{150, {}}},
             {CoinGecko, R"({"solana": {"usd": "150"}})", {}},
             {CoinGecko, R"({"solana": {"usd": null, "usd_24h_change": 1}})", {}},
             {CoinGecko, "[]", {}},
             {Binance, R"({"lastPrice": "150.20", "priceChangePercent": "-1.5"})",
              PriceQuote{150.2, -1.5}},
             {Binance, R"({"lastPrice": "150.20", "priceChangePercent": "n/a"})",
              PriceQuote{150.2, {}}},
             {Binance, R"({"lastPrice": "150.20", "priceChangePercent": 1})",
              PriceQuote{150.2, {}}},
             {Binance, R"({"lastPrice": " 150.20", "priceChangePercent": "1"})", {}},
             {Binance, R"({"lastPrice": 150.2, "priceChangePercent": "1"})", {}},
             {Coinbase, R"({"data": {"amount": "150.25"}})", PriceQuote{150.25, {}}},
             {Coinbase, R"({"data": {"amount": 150.25}})", {}},
         }) {
        EXPECT_EQ(priceSources()[source].read(json(document)), quote) << document;
    }
}

TEST(PriceFeeds, ThinsTheChartByIndexAndKeepsItsEnds)
{
    for (const int points : {3, 72, 73, 143, 288, 2000}) {
        SCOPED_TRACE(points);
        QJsonArray rows;
        for (int i = 0; i < points; ++i) {
            rows.append(QJsonArray{1.7e12 + i, i});
        }
        const auto thinned = readChart(QJsonObject{{u"prices"_s, rows}});
        ASSERT_TRUE(thinned);
        const int size = std::min(points, 72);
        ASSERT_EQ(thinned->size(), size);
        for (int i = 0; i < size; ++i) {
            // In integers, where the floor is exact.
            EXPECT_EQ(thinned->at(i), (points - 1) * i / (size - 1));
        }
    }
    EXPECT_EQ(readChart(json(R"({"prices": [[0, 1], [], [0, null], [2], [0, "3"], [0, 9, 4]]})")),
              (QList<double>{1, 2, 4}));
    for (const char *refused :
         {R"({"prices": [[0, 1], [0, 2]]})", R"({"prices": [[0, 1], [0, 2], [0, 3], 4]})",
          R"({"prices": {}})", "[[0, 1], [0, 2], [0, 3]]"}) {
        EXPECT_EQ(readChart(json(refused)), std::nullopt) << refused;
    }
}

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
