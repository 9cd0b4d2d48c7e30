// Balances, prices, refresh cycles, polling, and replies that come too late.

#include "tests/core/wallet_fixture.h"

#include "core/balances.h"
#include "core/json.h"

#include <QJsonObject>

using namespace corvane;
using namespace corvane::tests;
using core::SolNetwork;
using core::WalletModel;
using platform::HttpError;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using Names = std::vector<QString>;

/// Lets a task that yields a boolean finish and tells what it yielded.
template <typename Start>
std::optional<bool> outcome(HandDrivenQueue &queue, Start start)
{
    std::optional<bool> result;
    start().then([&result](bool value) { result = value; });
    queue.drain();
    return result;
}

QJsonValue paramsOf(const platform::HttpRequest &request)
{
    return core::parseJson(request.body).value_or(QJsonValue())[u"params"_s];
}

class Refresh : public WalletTest
{
protected:
    Refresh()
    {
        settings.values.insert_or_assign(u"corvane.address"_s, u" "_s + addressA + u"\t"_s);
    }

    std::optional<bool> refreshBalance()
    {
        return outcome(queue, [this] { return model->refreshBalance(); });
    }
    std::optional<bool> refreshPrice()
    {
        return outcome(queue, [this] { return model->refreshPrice(); });
    }
};

TEST_F(Refresh, AsksForBothBalancesOneAfterTheOther)
{
    for (const auto &[network, mint] :
         {std::pair(SolNetwork::Mainnet, u"EPjFWdd5AufqSSqeM2qN1xzybapC8G4wEGGkZwyTDt1v"_s),
          std::pair(SolNetwork::Devnet, u"4zMMC9srt5Ri5X14GAgXhaHii3GnPAEERYPJgZJDncDU"_s)}) {
        launchAndSettle();
        model->setNetwork(network);
        queue.drain();
        http.forgetRequests();
        http.hold(balance);

        model->refreshBalance();
        queue.drain();
        ASSERT_EQ(http.names(), Names{balance}) << "never in parallel";
        EXPECT_EQ(paramsOf(http.requests()[0]), QJsonArray{addressA});
        http.release(balance, HttpError::TimedOut);
        queue.drain();
        ASSERT_EQ(http.names(), (Names{balance, tokens})) << "also after a failure";
        EXPECT_EQ(paramsOf(http.requests()[1]),
                  (QJsonArray{addressA, QJsonObject{{u"mint"_s, mint}},
                              QJsonObject{{u"encoding"_s, u"jsonParsed"_s}}}));
        http.answer(balance, R"({"result": {"value": 1500000000}})");
    }
}

TEST_F(Refresh, WritesEachBalanceThatCameInAndKeepsTheOther)
{
    const QByteArray sol = R"({"result": {"value": 2000000000}})";
    const QByteArray bad = R"({"error": {"code": -32005}})";
    const struct
    {
        const char *what;
        QByteArray balanceReply;
        QByteArray tokenReply;
        bool result;
        double sol;
        double usdc;
    } cases[] = {
        {"both", sol, tokenReply("20"), true, 2, 20},
        {"only USDC", bad, tokenReply("20"), true, 1.5, 20},
        {"only SOL", sol, bad, true, 2, 10},
        {"neither", bad, bad, false, 1.5, 10},
        {"no token account", sol, R"({"result": {"value": []}})", true, 2, 0},
        {"shapes of nothing", R"({"result": {"value": "2"}})", R"({"result": {"value": [1]}})",
         false, 1.5, 10},
    };
    for (const auto &testCase : cases) {
        SCOPED_TRACE(testCase.what);
        http.answer(balance, R"({"result": {"value": 1500000000}})");
        http.answer(tokens, tokenReply("10"));
        launchAndSettle();
        http.answer(balance, testCase.balanceReply);
        http.answer(tokens, testCase.tokenReply);

        EXPECT_EQ(refreshBalance(), testCase.result);
        EXPECT_EQ(model->sol(), testCase.sol);
        EXPECT_EQ(model->usdc(), testCase.usdc);
    }
}

TEST_F(Refresh, AsksNothingWithoutAValidAddress)
{
    launchAndSettle();
    for (const QString &address : {u""_s, addressA + u"\n"_s, addressA.first(30)}) {
        model->setAddress(address);
        EXPECT_EQ(refreshBalance(), false);
    }
    EXPECT_TRUE(http.names().empty());
}

struct Change
{
    const char *name;
    void (*make)(WalletModel &);
    bool makesStale;
};

void PrintTo(const Change &change, std::ostream *out)
{
    *out << change.name;
}

class LateReply : public Refresh, public testing::WithParamInterface<std::tuple<Change, bool>>
{};

TEST_P(LateReply, IsDroppedOnlyForAnotherAddressOrNetwork)
{
    const auto &[change, balanceIsLate] = GetParam();
    launchAndSettle();
    // What the change itself fetches is held too, so that it cannot hide a late write.
    http.hold(balanceIsLate ? balance : tokens);
    std::optional<bool> result;
    model->refreshBalance().then([&result](bool value) { result = value; });
    queue.drain();
    for (const QString &name : {coinGecko, balance, tokens}) {
        http.hold(name);
    }
    change.make(*model);
    queue.drain();
    const std::optional<double> solBefore = model->sol();
    const std::optional<double> usdcBefore = model->usdc();

    if (balanceIsLate) {
        http.release(balance, R"({"result": {"value": 9000000000}})");
    }
    // The fetch for a new address has got no further than its own first request.
    http.release(tokens, tokenReply("99"));

    if (balanceIsLate) {
        const auto sent = std::ranges::find(http.names(), tokens);
        ASSERT_NE(sent, http.names().end());
        EXPECT_EQ(paramsOf(http.requests()[static_cast<std::size_t>(sent - http.names().begin())])
                      .toArray()[1],
                  (QJsonObject{{u"mint"_s, core::usdcMint(SolNetwork::Mainnet)}}))
            << "the mint is that of the network at the start";
    }
    const bool solWritten = balanceIsLate && !change.makesStale;
    EXPECT_EQ(model->sol(), solWritten ? std::optional(9.0) : solBefore);
    EXPECT_EQ(model->usdc(), change.makesStale ? usdcBefore : std::optional(99.0));
    EXPECT_EQ(result, !change.makesStale || !balanceIsLate)
        << "the SOL figure that came in before the change still counts";
}

TEST_F(Refresh, FallsBackFromOnePriceServiceToTheNext)
{
    const QByteArray wrong = "{}";
    const struct
    {
        const char *what;
        platform::HttpResult first;
        platform::HttpResult second;
        platform::HttpResult third;
        std::size_t asked;
        std::optional<double> price;
        std::optional<double> chg;
        bool result;
    } cases[] = {
        {"first", platform::HttpReply{500, R"({"solana": {"usd": 160}})"}, HttpError::Cancelled,
         HttpError::Cancelled, 1, 160, std::nullopt, true},
        {"second", platform::HttpReply{200, wrong},
         platform::HttpReply{200, R"({"lastPrice": "170.5", "priceChangePercent": "-1"})"},
         HttpError::Cancelled, 2, 170.5, -1, true},
        {"third", HttpError::TimedOut, platform::HttpReply{451, R"({"lastPrice": " 170.5"})"},
         platform::HttpReply{200, R"({"data": {"amount": "180"}})"}, 3, 180, std::nullopt, true},
        {"none", HttpError::TimedOut, HttpError::Unreachable, platform::HttpReply{200, "<html>"}, 3,
         150, 2.5, false},
    };
    const Names order{coinGecko, binance, coinbase};
    for (const auto &testCase : cases) {
        SCOPED_TRACE(testCase.what);
        http.answer(coinGecko, R"({"solana": {"usd": 150, "usd_24h_change": 2.5}})");
        launchAndSettle();
        http.answer(coinGecko, testCase.first);
        http.answer(binance, testCase.second);
        http.answer(coinbase, testCase.third);

        EXPECT_EQ(refreshPrice(), testCase.result);
        EXPECT_EQ(http.names(), Names(order.begin(),
                                      order.begin() + static_cast<std::ptrdiff_t>(testCase.asked)));
        EXPECT_EQ(model->price(), testCase.price);
        EXPECT_EQ(model->chg(), testCase.chg);
    }
}

TEST_F(Refresh, KeepsTheChartWhenNoNewOneComes)
{
    launchAndSettle();
    for (const platform::HttpResult &reply :
         {platform::HttpResult(HttpError::TimedOut),
          platform::HttpResult(platform::HttpReply{200, R"({"prices": [[0, 7], [1, 8]]})"})}) {
        http.answer(chart, reply);
        model->refreshWave();
        queue.drain();
        EXPECT_EQ(model->wave(), (QList<double>{1, 2, 3}));
    }
}

TEST_F(Refresh, StampsOnlyCyclesThatBroughtAPriceOrABalance)
{
    const struct
    {
        const char *what;
        bool price;
        bool balances;
        bool stamped;
    } cases[] = {{"both", true, true, true},
                 {"only the price", true, false, true},
                 {"only a balance", false, true, true},
                 {"only the chart", false, false, false}};
    http.answer(binance, HttpError::Unreachable);
    http.answer(coinbase, HttpError::Unreachable);
    for (const auto &[what, price, balances, stamped] : cases) {
        SCOPED_TRACE(what);
        http.answer(coinGecko, price ? R"({"solana": {"usd": 1}})" : "{}");
        http.answer(balance, balances ? R"({"result": {"value": 1}})" : "{}");
        http.answer(tokens, "{}");
        launch();
        queue.drain();
        ASSERT_EQ(model->wave().size(), 3);
        EXPECT_EQ(model->lastUpdated(), stamped ? std::optional(queue.wallTime()) : std::nullopt);
        model.reset();
        queue.advance(1s);
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
}

TEST_F(Refresh, AsksForTheChartInEveryCycleWhileThereIsNone)
{
    http.answer(chart, HttpError::Unreachable);
    launch();
    queue.advance(90s);
    EXPECT_EQ(http.count(chart), 4);
}

TEST_F(Refresh, AForcedCycleFetchesTheChartAndCountsForTheSchedule)
{
    launchAndSettle();
    model->refresh();
    EXPECT_TRUE(http.names().empty());
    queue.drain();
    EXPECT_EQ(http.names(), (Names{coinGecko, balance, tokens, chart}));
    http.forgetRequests();
    queue.advance(28 * 30s);
    EXPECT_EQ(http.count(chart), 0);
    queue.advance(30s);
    EXPECT_EQ(http.count(chart), 1);
}

TEST_F(Refresh, SleepsOnlyAfterASlowCycleIsOver)
{
    http.hold(chart);
    launch();
    queue.advance(100s);
    EXPECT_EQ(http.count(coinGecko), 1);
    http.release(chart, HttpError::TimedOut);
    queue.advance(30s - 1ns);
    EXPECT_EQ(http.count(coinGecko), 1);
    queue.advance(1ns);
    EXPECT_EQ(http.count(coinGecko), 2);
}

TEST_F(Refresh, StartingToPollAgainReplacesTheLoop)
{
    launchAndSettle();
    queue.advance(10s);
    model->startPolling();
    queue.drain();
    EXPECT_EQ(http.count(coinGecko), 1) << "the new loop starts at once";
    EXPECT_EQ(queue.pendingTimers(), 1U) << "the old loop's sleep is over";
    queue.advance(30s);
    EXPECT_EQ(http.count(coinGecko), 2);

    // Also when the old loop is in the middle of a cycle, or has not even begun.
    http.hold(coinGecko);
    queue.advance(30s);
    ASSERT_EQ(http.heldRequests(), 1U);
    http.answer(coinGecko, R"({"solana": {"usd": 150}})");
    http.forgetRequests();
    model->startPolling();
    model->startPolling();
    queue.drain();
    EXPECT_EQ(http.count(coinGecko), 1);
    http.release(coinGecko, R"({"solana": {"usd": 150}})");
    queue.drain();
    EXPECT_EQ(http.count(coinGecko), 1);
    EXPECT_EQ(queue.pendingTimers(), 1U);
}

TEST_F(Refresh, AWalletThatIsGoneStopsPollingAtOnce)
{
    launchAndSettle();
    ASSERT_EQ(queue.pendingTimers(), 1U);
    model.reset();
    EXPECT_EQ(queue.pendingTimers(), 0U);
    queue.advance(120s);
    EXPECT_TRUE(http.names().empty());
}

TEST_F(Refresh, AWalletThatIsGoneAsksNoMoreAndTakesNoReply)
{
    // A reply that every one of these requests would make use of.
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
            http.forgetRequests();
            http.release(held, late);
            queue.advance(60s);
            EXPECT_TRUE(http.names().empty());
        }
        http.answer(held, good);
    }
    // Tasks that were posted but have not begun.
    launch();
    model->setAddress(addressB);
    model->refresh();
    model.reset();
    queue.drain();
    EXPECT_TRUE(http.names().empty());
}

TEST_F(Refresh, WaitsEndWithTheClient)
{
    auto client = std::make_unique<FakeHttpClient>(queue);
    for (const QString &name : {coinGecko, probe}) {
        client->hold(name);
    }
    auto wallet = std::make_unique<WalletModel>(core::WalletServices{
        queue, *client, settings, keychain, signingKeys, background, formatter, files, endpoints});
    queue.drain();
    ASSERT_EQ(client->heldRequests(), 2U);
    wallet.reset();
    client.reset();
    queue.drain();
}

INSTANTIATE_TEST_SUITE_P(
    Wallet, LateReply,
    testing::Combine(
        testing::Values(
            Change{"Address", [](WalletModel &model) { model.setAddress(addressB); }, true},
            Change{"NoAddress", [](WalletModel &model) { model.setAddress(QString()); }, true},
            Change{"Network", [](WalletModel &model) { model.setNetwork(SolNetwork::Devnet); },
                   true},
            Change{"Blanks", [](WalletModel &model) { model.setAddress(addressA + u"  "_s); },
                   false},
            Change{"ThereAndBack",
                   [](WalletModel &model) {
                       model.setAddress(addressB);
                       model.setAddress(addressA);
                   },
                   false}),
        testing::Bool()),
    [](const auto &test) {
        return std::get<0>(test.param).name +
               std::string(std::get<1>(test.param) ? "BeforeSol" : "BeforeUsdc");
    });

} // namespace
