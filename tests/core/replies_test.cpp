// What the replies of the cluster and of the price services mean.

#include "core/balances.h"
#include "core/json.h"
#include "core/json_calls.h"
#include "core/price_feeds.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <limits>

using namespace corvane::core;
using namespace corvane::platform;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

QJsonValue json(const QByteArray &text)
{
    const std::optional<QJsonValue> value = parseJson(text);
    EXPECT_TRUE(value) << text.constData();
    return value.value_or(QJsonValue());
}

TEST(JsonCalls, PostsTheEnvelope)
{
    const QJsonArray params{u"key"_s, QJsonObject{{u"mint"_s, u"m"_s}}, 3};
    const auto request = rpcRequest(QUrl(u"https://rpc.test/?k=v"_s), u"getIt"_s, params);
    ASSERT_TRUE(request);
    EXPECT_EQ(request->method, HttpMethod::Post);
    EXPECT_EQ(request->url, QUrl(u"https://rpc.test/?k=v"_s));
    ASSERT_EQ(request->headers.size(), 1);
    EXPECT_EQ(request->headers[0].name, "Content-Type");
    EXPECT_EQ(request->headers[0].value, "application/json");
    EXPECT_EQ(request->timeout, 12s);
    EXPECT_EQ(json(request->body), json(R"({"jsonrpc": "2.0", "id": 1, "method": "getIt",
                                            "params": ["key", {"mint": "m"}, 3]})"));

    const HttpRequest probe = healthRequest(QUrl(u"https://app.test/api/rpc"_s));
    EXPECT_EQ(probe.method, HttpMethod::Post);
    EXPECT_EQ(probe.timeout, 8s);
    EXPECT_EQ(json(probe.body), json(R"({"jsonrpc": "2.0", "id": 1, "method": "getHealth"})"));
}

TEST(JsonCalls, RefusesToSendWhatIsNotJson)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const QUrl url(u"https://rpc.test"_s);
    EXPECT_FALSE(rpcRequest(url, u"m"_s, {infinity}));
    EXPECT_FALSE(rpcRequest(url, u"m"_s, {u"a"_s, QJsonObject{{u"a"_s, QJsonArray{-infinity}}}}));
    EXPECT_TRUE(rpcRequest(url, u"m"_s, {}));
}

TEST(JsonCalls, GetsADocument)
{
    const QString url = u"https://h.test/a/b?ids=solana&x=%2F"_s;
    const auto request = jsonRequest(url);
    ASSERT_TRUE(request);
    EXPECT_EQ(request->method, HttpMethod::Get);
    EXPECT_EQ(request->url.toString(QUrl::FullyEncoded), url);
    EXPECT_TRUE(request->headers.empty());
    EXPECT_TRUE(request->body.isEmpty());
    EXPECT_EQ(request->timeout, 12s);
    EXPECT_FALSE(jsonRequest(u""_s));
    EXPECT_FALSE(jsonRequest(u"https://h test/"_s));
}

TEST(JsonCalls, ReadsRepliesWhateverTheStatus)
{
    const struct
    {
        HttpResult reply;
        JsonResult value;
    } cases[] = {
        {HttpReply{200, R"({"result": {"value": 1}})"}, QJsonValue(QJsonObject{{u"value"_s, 1}})},
        {HttpReply{500, R"({"result": "x"})"}, QJsonValue(u"x"_s)},
        {HttpReply{200, R"({"result": null})"}, QJsonValue()},
        {HttpReply{200, R"({"result": null, "error": {}})"}, QJsonValue()},
        {HttpReply{200, R"({"error": {"code": -32000}})"}, CallError::BadServerResponse},
        {HttpReply{200, R"([{"result": 1}])"}, CallError::BadServerResponse},
        {HttpReply{200, "null"}, CallError::BadServerResponse},
        {HttpReply{429, "<html>"}, CallError::NotJson},
        {HttpReply{200, ""}, CallError::NotJson},
        {HttpError::TimedOut, HttpError::TimedOut},
        {HttpError::BadUrl, HttpError::BadUrl},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(readRpcReply(cases[i].reply), cases[i].value);
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
    const struct
    {
        QByteArray value;
        std::optional<double> total;
    } cases[] = {
        {"[]", 0.0},
        {"[" + account("1.25") + "," + account("0.75") + "," + account("null") + "]", 2.0},
        {"[" + account("\"9\"") + "," + account("true") + "]", 0.0},
        {R"([{"account": {"data": ["base64"]}}, {}, )" + account("3") + "]", 3.0},
        {"[" + account("1") + ", null]", std::nullopt},
        {"[1]", std::nullopt},
        {"{}", std::nullopt},
        {"null", std::nullopt},
    };
    for (const auto &[value, total] : cases) {
        SCOPED_TRACE(value.constData());
        EXPECT_EQ(readTokenBalance(json("{\"value\": " + value + "}")), total);
    }
    EXPECT_EQ(readTokenBalance(json("[]")), std::nullopt);
    EXPECT_EQ(readTokenBalance(json("{}")), std::nullopt);
}

TEST(PriceFeeds, ReadsEachServiceOrRefusesIt)
{
    constexpr std::size_t coinGecko = 0;
    constexpr std::size_t binance = 1;
    constexpr std::size_t coinbase = 2;
    const struct
    {
        std::size_t source;
        const char *document;
        std::optional<PriceQuote> quote;
    } cases[] = {
        {coinGecko, R"({"solana": {"usd": 150.5, "usd_24h_change": -3.2}})",
         PriceQuote{150.5, -3.2}},
        {coinGecko, R"({"solana": {"usd": 150.5}})", PriceQuote{150.5, {}}},
        {coinGecko, R"({"solana": {"usd": 150, "usd_24h_change": "1"}})", PriceQuote{150, {}}},
        {coinGecko, R"({"solana": {"usd": "150"}})", {}},
        {coinGecko, R"({"solana": {"usd": null, "usd_24h_change": 1}})", {}},
        {coinGecko, R"({"solana": [150]})", {}},
        {coinGecko, "{}", {}},
        {coinGecko, "[]", {}},
        {binance, R"({"lastPrice": "150.20", "priceChangePercent": "-1.5"})",
         PriceQuote{150.2, -1.5}},
        {binance, R"({"lastPrice": "150.20", "priceChangePercent": "n/a"})", PriceQuote{150.2, {}}},
        {binance, R"({"lastPrice": "150.20", "priceChangePercent": 1})", PriceQuote{150.2, {}}},
        {binance, R"({"lastPrice": " 150.20", "priceChangePercent": "1"})", {}},
        {binance, R"({"lastPrice": 150.2, "priceChangePercent": "1"})", {}},
        {binance, R"({"lastPrice": ""})", {}},
        {binance, R"({"code": -1121, "msg": "Invalid symbol."})", {}},
        {binance, R"("150.20")", {}},
        {coinbase, R"({"data": {"amount": "150.25", "currency": "USD"}})", PriceQuote{150.25, {}}},
        {coinbase, R"({"data": {"amount": 150.25}})", {}},
        {coinbase, R"({"amount": "150.25"})", {}},
        {coinbase, "null", {}},
    };
    ASSERT_EQ(priceSources().size(), 3U);
    for (const auto &[source, document, quote] : cases) {
        SCOPED_TRACE(document);
        EXPECT_EQ(priceSources()[source].read(json(document)), quote);
    }
}

QJsonValue chart(int points)
{
    QJsonArray rows;
    for (int i = 0; i < points; ++i) {
        rows.append(QJsonArray{1.7e12 + i, i});
    }
    return QJsonObject{{u"prices"_s, rows}};
}

TEST(PriceFeeds, ThinsTheChartByIndexAndKeepsItsEnds)
{
    for (const int points : {3, 50, 72, 73, 143, 288, 2000}) {
        SCOPED_TRACE(points);
        const std::optional<QList<double>> thinned = readChart(chart(points));
        ASSERT_TRUE(thinned);
        ASSERT_EQ(thinned->size(), std::min(points, 72));
        for (int i = 0; i < thinned->size(); ++i) {
            // In whole numbers, where the floor is exact.
            EXPECT_EQ(thinned->at(i), (points - 1) * i / (static_cast<int>(thinned->size()) - 1));
        }
        EXPECT_EQ(thinned->back(), points - 1);
    }
}

TEST(PriceFeeds, SkipsRowsWithoutAPriceAndRefusesOtherShapes)
{
    EXPECT_EQ(readChart(json(R"({"prices": [[0, 1], [], [0, null], [2], [0, "3"], [0, 9, 4]]})")),
              (QList<double>{1, 2, 4}));
    for (const char *refused :
         {R"({"prices": [[0, 1], [0, 2]]})", R"({"prices": [[0, 1], [0, 2], [0, 3], 4]})",
          R"({"prices": []})", R"({"prices": {}})", "{}", "[[0, 1], [0, 2], [0, 3]]"}) {
        EXPECT_EQ(readChart(json(refused)), std::nullopt) << refused;
    }
}

} // namespace
