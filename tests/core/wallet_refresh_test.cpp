// Balances, prices, refresh cycles, polling, and late replies.

#include "tests/core/wallet_fixture.h"

#include "core/balances.h"
#include "core/json.h"

#include <QJsonObject>

using namespace corvane;
using namespace corvane::tests;
using core::SolNetwork;
using core::WalletModel;
using platform::HttpError;
using platform::HttpReply;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using Names = std::vector<QString>;

QJsonArray paramsOf(const platform::HttpRequest &request)
{
    return core::parseJson(request.body).value_or(QJsonValue())[u"params"_s].toArray();
}

bool isTokenRequest(const platform::HttpRequest &request)
{
    return request.body.contains("getTokenAccountsByOwner");
}

class Refresh : public WalletTest
{
protected:
    Refresh()
    {
        settings.values.insert_or_assign(u"corvane.address"_s, u" "_s + addressA + u"\t"_s);
    }

    /// Lets a task finish and returns its result.
    std::optional<bool> outcome(QCoro::Task<bool> task)
    {
        std::optional<bool> result;
        task.then([&result](bool value) { result = value; });
        queue.drain();
        return result;
    }
};

TEST_F(Refresh, WritesEachBalanceThatCameInAndKeepsTheOther)
{
    const QByteArray sol = R"({"result": {"value": 2000000000}})";
    const QByteArray bad = R"({"error": {"code": -32005}})";
    for (const auto &[balanceReply, usdcReply, result, expectedSol, expectedUsdc] :
         Table<QByteArray, QByteArray, bool, double, double>{
             {sol, tokenReply("20"), true, 2, 20},
             {bad, tokenReply("20"), true, 1.5, 20},
             {sol, bad, true, 2, 10},
             {bad, bad, false, 1.5, 10},
             {sol, R"({"result": {"value": []}})", true, 2, 0},
             {R"({"result": {"value": "2"}})", R"({"result": {"value": [1]}})", false, 1.5, 10},
         }) {
        SCOPED_TRACE((balanceReply + usdcReply).constData());
        http.answer(balance, R"({"result": {"value": 1500000000}})");
        http.answer(tokens, tokenReply("10"));
        launchAndSettle();
        http.answer(balance, balanceReply);
        http.answer(tokens, usdcReply);
        EXPECT_EQ(outcome(model->refreshBalance()), result);
        EXPECT_EQ(model->sol(), expectedSol);
        EXPECT_EQ(model->usdc(), expectedUsdc);
    }
}

TEST_F(Refresh, DropsALateReplyOnlyForAnotherAddressOrNetwork)
{
    for (const auto &[name, change, makesStale] : Table<const char *, std::function<void()>, bool>{
             {"address", [&] { model->setAddress(addressB); }, true},
             {"no address", [&] { model->setAddress(QString()); }, true},
             {"network", [&] { model->setNetwork(SolNetwork::Devnet); }, true},
             {"blanks", [&] { model->setAddress(addressA + u"  "_s); }, false},
             {"there and back",
              [&] {
                  model->setAddress(addressB);
                  model->setAddress(addressA);
              },
              false},
         }) {
        for (const bool solIsLate : {true, false}) {
            SCOPED_TRACE(testing::Message() << name << solIsLate);
            http.answer(coinGecko, R"({"solana": {"usd": 150}})");
            http.answer(balance, R"({"result": {"value": 1500000000}})");
            http.answer(tokens, tokenReply("10"));
            settings.values.insert_or_assign(u"corvane.address"_s, addressA);
            settings.values.erase(u"corvane.network"_s);
            launchAndSettle();
            // The requests caused by the change are held too, so that their results cannot hide a
            // late write.
            http.hold(solIsLate ? balance : tokens);
            std::optional<bool> result;
            auto refreshing = model->refreshBalance();
            refreshing.then([&result](bool value) { result = value; });
            queue.drain();
            for (const QString &held : {coinGecko, balance, tokens}) {
                http.hold(held);
            }
            change();
            queue.drain();
            const std::optional<double> solBefore = model->sol();
            const std::optional<double> usdcBefore = model->usdc();
            if (solIsLate) {
                http.release(balance, R"({"result": {"value": 9000000000}})");
            }
            // The refresh for a new address has sent only its first request.
            http.release(tokens, tokenReply("99"));
            EXPECT_EQ(paramsOf(*std::ranges::find_if(http.requests(), isTokenRequest))[1],
                      (QJsonObject{{u"mint"_s, core::usdcMint(SolNetwork::Mainnet)}}))
                << "the mint is that of the network at the start";
            EXPECT_EQ(model->sol(), solIsLate && !makesStale ? 9.0 : solBefore);
            EXPECT_EQ(model->usdc(), makesStale ? usdcBefore : 99.0);
            EXPECT_EQ(result, !makesStale || !solIsLate)
                << "the SOL figure received before the change is kept";
            model.reset();
            http.cancelHeld();
        }
    }
}

TEST_F(Refresh, FallsBackFromOnePriceServiceToTheNext)
{
    const platform::HttpResult unasked = HttpError::Cancelled;
    const auto ok = [](const char *body) { return HttpReply{200, body}; };
    const HttpReply binanceQuote = ok(R"({"lastPrice": "170.5", "priceChangePercent": "-1"})");
    const HttpReply notANumber = ok(R"({"lastPrice": " 170.5"})");
    const HttpReply coinbaseQuote = ok(R"({"data": {"amount": "180"}})");
    const Names order{coinGecko, binance, coinbase};
    for (const auto &[first, second, third, asked, price, chg] :
         Table<platform::HttpResult, platform::HttpResult, platform::HttpResult, int, double,
               std::optional<double>>{
             {ok(R"({"solana": {"usd": 160}})"), unasked, unasked, 1, 160, {}},
             {ok("{}"), binanceQuote, unasked, 2, 170.5, -1},
             {HttpError::TimedOut, notANumber, coinbaseQuote, 3, 180, {}},
             {HttpError::TimedOut, HttpError::Unreachable, ok("<html>"), 3, 150, 2.5},
         }) {
        SCOPED_TRACE(price);
        http.answer(coinGecko, R"({"solana": {"usd": 150, "usd_24h_change": 2.5}})");
        launchAndSettle();
        http.answer(coinGecko, first);
        http.answer(binance, second);
        http.answer(coinbase, third);
        EXPECT_EQ(outcome(model->refreshPrice()), price != 150);
        EXPECT_EQ(http.names(), Names(order.begin(), order.begin() + asked));
        EXPECT_EQ(model->price(), price);
        EXPECT_EQ(model->chg(), chg);
    }
}

TEST_F(Refresh, StampsOnlyCyclesThatBroughtAPriceOrABalance)
{
    for (const QString &name : {coinGecko, binance, coinbase, balance, tokens}) {
        http.answer(name, HttpError::Unreachable);
    }
    launchAndSettle();
    EXPECT_EQ(model->lastUpdated(), std::nullopt);
    http.answer(balance, R"({"result": {"value": 1}})");
    queue.advance(30s);
    EXPECT_EQ(model->lastUpdated(), queue.wallTime());
}

TEST_F(Refresh, TellsSinceWhenTheEndpointDoesNotAnswer)
{
    using Reply = platform::HttpResult;
    for (const auto &[reply, answers] : Table<Reply, bool>{
             {HttpError::Unreachable, false},
             {HttpReply{200, "<html>"}, false},
             {HttpReply{503, R"({"error": {"code": 1}})"}, false},
             {HttpReply{429, R"({"error": {"code": -32005}})"}, true},
             {HttpReply{200, R"({"result": null})"}, true},
         }) {
        http.answer(balance, "{\"result\": {}}");
        http.answer(tokens, reply);
        launch();
        EXPECT_EQ(model->endpointSilentSince(), std::nullopt) << "not asked yet";
        queue.drain();
        const auto asked = queue.wallTime();
        http.answer(balance, reply);
        queue.advance(60s);
        EXPECT_EQ(model->endpointSilentSince(), answers ? std::nullopt : std::optional(asked));
        // What another endpoint does not answer says nothing of this one.
        http.hold(balance);
        model->refreshBalance();
        queue.drain();
        model->setCustomRPC(u"https://other.test"_s);
        http.release(balance, HttpError::TimedOut);
        EXPECT_EQ(model->endpointSilentSince(), std::nullopt);
        model->setCustomRPC({});
        EXPECT_EQ(model->endpointSilentSince().has_value(), !answers);
        http.answer(balance, "{\"result\": {}}");
        http.answer(tokens, HttpError::TimedOut);
        queue.advance(30s);
        EXPECT_EQ(model->endpointSilentSince(), queue.wallTime()) << "it answered in between";
    }
}

TEST_F(Refresh, PollsEveryThirtySecondsAndFetchesTheChartEveryThirtiethTime)
{
    launch();
    queue.drain();
    for (int cycle = 0; cycle <= 60; ++cycle) {
        SCOPED_TRACE(cycle);
        EXPECT_EQ(http.count(coinGecko), 1);
        EXPECT_EQ(http.count(chart), cycle % 30 == 0 ? 1 : 0);
        http.forgetRequests();
        queue.advance(30s - 1ns);
        EXPECT_TRUE(http.names().empty());
        queue.advance(1ns);
    }
    // A forced cycle fetches it too, and counts as a cycle of the schedule.
    launchAndSettle();
    model->refresh();
    queue.drain();
    EXPECT_EQ(http.names(), (Names{coinGecko, balance, tokens, chart}));
    queue.advance(28 * 30s);
    EXPECT_EQ(http.count(chart), 1);
    queue.advance(30s);
    EXPECT_EQ(http.count(chart), 2);
    // Every cycle fetches it while there is none.
    http.answer(chart, HttpError::Unreachable);
    launchAndSettle();
    queue.advance(90s);
    EXPECT_EQ(http.count(chart), 3);
}

TEST_F(Refresh, AnswersAllCallsDuringARefreshWithOneMore)
{
    launchAndSettle();
    EXPECT_FALSE(model->isRefreshing());
    http.hold(coinGecko);
    for (int asked = 0; asked < 1000; ++asked) {
        model->refresh();
        if (asked == 500) {
            queue.drain();
        }
    }
    queue.drain();
    EXPECT_EQ(http.names(), Names{coinGecko});
    EXPECT_TRUE(model->isRefreshing());
    const QByteArray price = R"({"solana": {"usd": 150}})";
    http.release(coinGecko, price);
    queue.drain();
    EXPECT_EQ(http.names(), (Names{coinGecko, balance, tokens, chart, coinGecko}));
    http.release(coinGecko, price);
    queue.drain();
    EXPECT_EQ(http.count(coinGecko), 2);
    EXPECT_FALSE(model->isRefreshing());
    model->refresh();
    queue.drain();
    EXPECT_EQ(http.count(coinGecko), 3) << "nothing is running any more";
}

TEST_F(Refresh, SleepsOnlyAfterASlowCycleAndPollsInOneLoopOnly)
{
    http.hold(chart);
    launch();
    queue.advance(100s);
    EXPECT_EQ(http.count(coinGecko), 1);
    http.release(chart, R"({"prices": [[0, 7], [1, 8]]})");
    EXPECT_TRUE(model->wave().isEmpty()) << "too short to be one";
    queue.advance(30s - 1ns);
    EXPECT_EQ(http.count(coinGecko), 1);
    queue.advance(1ns);
    EXPECT_EQ(http.count(coinGecko), 2);

    // The old loop may be in the middle of a cycle, or not started yet.
    http.forgetRequests();
    model->startPolling();
    model->startPolling();
    queue.drain();
    EXPECT_EQ(http.count(coinGecko), 1) << "the new loop starts immediately";
    while (http.heldRequests() > 0) {
        http.release(chart, HttpError::TimedOut);
        queue.drain();
    }
    EXPECT_EQ(queue.pendingTimers(), 1U);
    queue.advance(30s);
    EXPECT_EQ(http.count(coinGecko), 2);
}

TEST_F(Refresh, AWalletThatIsGoneAsksNoMoreAndTakesNoReply)
{
    // A reply that is valid for each of these requests.
    const QByteArray good = R"({"solana": {"usd": 1}, "result": {"value": []},)"
                            R"("prices": [[1], [2], [3]]})";
    for (const QString &held : {coinGecko, balance, tokens, chart, probe}) {
        for (const platform::HttpResult &late :
             {platform::HttpResult(HttpError::TimedOut),
              platform::HttpResult(platform::HttpReply{200, good})}) {
            SCOPED_TRACE(held.toStdString());
            http.hold(held);
            launch();
            queue.drain();
            ASSERT_EQ(http.heldRequests(), 1U);
            model.reset();
            EXPECT_EQ(queue.pendingTimers(), 0U);
            http.forgetRequests();
            http.release(held, late);
            queue.advance(60s);
            EXPECT_TRUE(http.names().empty());
        }
        http.answer(held, good);
    }
    // Tasks that were posted but not started.
    launch();
    model->setAddress(addressB);
    model->refresh();
    model.reset();
    queue.drain();
    EXPECT_TRUE(http.names().empty());
}

} // namespace
