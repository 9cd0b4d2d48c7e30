// State, settings and what each setter starts.

#include "tests/core/wallet_fixture.h"

#include <QStringList>

using namespace corvane;
using namespace corvane::tests;
using core::SolNetwork;
using core::WalletModel;
using platform::HttpError;
using platform::HttpReply;
using platform::SecretBytes;
using namespace Qt::StringLiterals;

namespace {

using Names = std::vector<QString>;
using Writes = std::vector<std::pair<QString, MemorySettingsStore::Value>>;

TEST_F(WalletTest, StartsEmptyOnTheFirstLaunch)
{
    launch();
    EXPECT_EQ(model->address(), QString());
    EXPECT_EQ(model->network(), SolNetwork::Mainnet);
    EXPECT_EQ(model->customRPC(), QString());
    EXPECT_EQ(model->walletURL(), QString());
    EXPECT_TRUE(model->displayUSD());
    EXPECT_FALSE(model->hasSigningKey());
    EXPECT_FALSE(model->hasPendingBackup());
    EXPECT_FALSE(model->sessionSecret());
    EXPECT_EQ(model->sol(), std::nullopt);
    EXPECT_EQ(model->usdc(), std::nullopt);
    EXPECT_EQ(model->price(), std::nullopt);
    EXPECT_EQ(model->chg(), std::nullopt);
    EXPECT_TRUE(model->wave().isEmpty());
    EXPECT_EQ(model->lastUpdated(), std::nullopt);
    EXPECT_FALSE(model->proxyOK());
    EXPECT_TRUE(http.names().empty()) << "construction must not wait for the network";
    EXPECT_TRUE(settings.writes.empty());

    queue.drain();
    EXPECT_EQ(http.count(probe), 1);
    EXPECT_EQ(http.count(coinGecko), 1);
    EXPECT_EQ(http.count(balance), 0) << "there is no address";
    EXPECT_TRUE(settings.writes.empty());
}

TEST_F(WalletTest, RestoresSettingsAndThePublicKey)
{
    settings.values = {{u"corvane.address"_s, u" "_s + addressA},
                       {u"corvane.network"_s, u"devnet"_s},
                       {u"corvane.rpc"_s, u"http://mine.test"_s},
                       {u"corvane.walletURL"_s, u"http://me.test"_s},
                       {u"corvane.displayUSD"_s, false}};
    keys::KeyVault vault(keychain);
    ASSERT_EQ(vault.storeStatus(SecretBytes(32), addressB), 0);
    launch();
    EXPECT_EQ(model->address(), u" "_s + addressA);
    EXPECT_EQ(model->network(), SolNetwork::Devnet);
    EXPECT_EQ(model->customRPC(), u"http://mine.test"_s);
    EXPECT_EQ(model->walletURL(), u"http://me.test"_s);
    EXPECT_FALSE(model->displayUSD());
    EXPECT_EQ(model->signingPubkey(), addressB);
    EXPECT_TRUE(model->hasSigningKey());
    EXPECT_TRUE(model->hasValidAddress());
}

TEST_F(WalletTest, ReplacesForeignSettingsByTheDefaultsWithoutRewritingThem)
{
    settings.values = {{u"corvane.address"_s, true}, {u"corvane.displayUSD"_s, u"false"_s}};
    for (const QString &network : {u"testnet"_s, u""_s, u"Devnet"_s, u" devnet"_s}) {
        settings.values.insert_or_assign(u"corvane.network"_s, network);
        launch();
        EXPECT_EQ(model->network(), SolNetwork::Mainnet) << network.toStdString();
        EXPECT_EQ(model->address(), QString());
        EXPECT_TRUE(model->displayUSD());
    }
    EXPECT_TRUE(settings.writes.empty());
}

TEST_F(WalletTest, StoresEverySettingAsTypedOnEverySet)
{
    launchAndSettle();
    for (int round = 0; round < 2; ++round) {
        model->setAddress(u" typed "_s);
        model->setNetwork(SolNetwork::Devnet);
        model->setCustomRPC(u"\trpc "_s);
        model->setWalletURL(u" url"_s);
        model->setDisplayUSD(false);
    }
    const Writes once = {{u"corvane.address"_s, u" typed "_s},
                         {u"corvane.network"_s, u"devnet"_s},
                         {u"corvane.rpc"_s, u"\trpc "_s},
                         {u"corvane.walletURL"_s, u" url"_s},
                         {u"corvane.displayUSD"_s, false}};
    Writes twice = once;
    twice.insert(twice.end(), once.begin(), once.end());
    EXPECT_EQ(settings.writes, twice);
}

TEST_F(WalletTest, AnnouncesEachChangeBeforeItHappens)
{
    settings.values.insert_or_assign(u"corvane.address"_s, addressA);
    launchAndSettle();
    QStringList seen;
    QObject::connect(model.get(), &WalletModel::objectWillChange, model.get(), [&] {
        seen.append(u"will %1 %2"_s.arg(model->address().left(4), model->solLabel()));
    });
    QObject::connect(model.get(), &WalletModel::addressChanged, model.get(),
                     [&] { seen.append(u"address %1"_s.arg(model->address().left(4))); });
    QObject::connect(model.get(), &WalletModel::solChanged, model.get(),
                     [&] { seen.append(u"sol %1"_s.arg(model->solLabel())); });
    QObject::connect(model.get(), &WalletModel::usdcChanged, model.get(),
                     [&] { seen.append(model->usdc() ? u"usdc"_s : u"no usdc"_s); });

    model->setAddress(addressB);

    EXPECT_EQ(seen,
              (QStringList{u"will EPjF 1.5000 SOL"_s, u"address 4zMM"_s, u"will 4zMM 1.5000 SOL"_s,
                           u"sol —"_s, u"will 4zMM —"_s, u"no usdc"_s}));
}

TEST_F(WalletTest, ClearsAndFetchesOnlyWhenTheTrimmedAddressChanges)
{
    const struct
    {
        const char *what;
        QString address;
        bool clears;
        bool fetches;
    } cases[] = {
        {"the same", addressA, false, false},
        {"blanks around it", u" \t"_s + addressA + u"\u00A0"_s, false, false},
        {"another address", u" "_s + addressB, true, true},
        {"a line break behind it", addressA + u"\n"_s, true, false},
        {"20 characters", addressA.first(20), true, false},
        {"nothing", QString(), true, false},
    };
    for (const auto &[what, address, clears, fetches] : cases) {
        SCOPED_TRACE(what);
        settings.values.insert_or_assign(u"corvane.address"_s, addressA);
        launchAndSettle();
        model->setAddress(address);

        EXPECT_EQ(model->sol().has_value(), !clears);
        EXPECT_EQ(model->usdc().has_value(), !clears);
        EXPECT_TRUE(model->price()) << "the price does not depend on the address";
        EXPECT_TRUE(http.names().empty()) << "the setter must not wait for the network";
        queue.drain();
        EXPECT_EQ(http.names(), fetches ? (Names{balance, tokens}) : Names{});
        EXPECT_EQ(model->sol().has_value(), !clears || fetches);
    }
}

TEST_F(WalletTest, FetchesEverythingAgainOnEveryChoiceOfNetwork)
{
    settings.values.insert_or_assign(u"corvane.address"_s, addressA);
    launchAndSettle();
    for (const SolNetwork network : {SolNetwork::Mainnet, SolNetwork::Devnet}) {
        model->setNetwork(network);
        EXPECT_EQ(model->sol(), std::nullopt);
        EXPECT_EQ(model->usdc(), std::nullopt);
        EXPECT_EQ(model->price(), 150);
        queue.drain();
        EXPECT_EQ(http.names(), (Names{coinGecko, balance, tokens, chart}));
        EXPECT_EQ(model->sol(), 1.5);
        http.forgetRequests();
    }
}

TEST_F(WalletTest, ProbesOncePerWalletURLAndNeverForACustomEndpoint)
{
    launchAndSettle();
    for (const QString &typed : {u"h"_s, u"ht"_s, u"ht"_s}) {
        model->setWalletURL(typed);
    }
    model->setCustomRPC(u"http://mine.test"_s);
    model->setDisplayUSD(false);
    queue.drain();
    EXPECT_EQ(http.names(), (Names{probe, probe, probe}));
}

TEST_F(WalletTest, TakesTheProxyForHealthyOnlyWithStatus200AndJson)
{
    const struct
    {
        platform::HttpResult reply;
        bool healthy;
    } cases[] = {
        {HttpReply{200, R"({"result": "ok"})"}, true},
        {HttpReply{200, R"({"error": {"code": 1}})"}, true},
        {HttpReply{200, "null"}, true},
        {HttpReply{200, "<html>"}, false},
        {HttpReply{200, ""}, false},
        {HttpReply{503, R"({"result": "ok"})"}, false},
        {HttpReply{204, "{}"}, false},
        {HttpError::TimedOut, false},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        SCOPED_TRACE(i);
        launchAndSettle();
        // Each probe must set the flag, whatever it was before.
        http.answer(probe, cases[i].healthy ? HttpReply{500, {}} : HttpReply{200, "{}"});
        model->setWalletURL(u"http://me.test"_s);
        queue.drain();
        ASSERT_EQ(model->proxyOK(), !cases[i].healthy);
        http.answer(probe, cases[i].reply);
        model->setWalletURL(u"http://me.test:1/x"_s);
        queue.drain();
        EXPECT_EQ(model->proxyOK(), cases[i].healthy);
        EXPECT_EQ(http.requests().back().url, QUrl(u"http://me.test:1/api/rpc"_s));
    }
}

TEST_F(WalletTest, HasNoProxyForALocalWalletApp)
{
    files.paths = {u"/srv/wallet"_s};
    http.answer(probe, "{}");
    launchAndSettle();
    ASSERT_TRUE(model->proxyOK());
    model->setWalletURL(u"/srv/wallet"_s);
    queue.drain();
    EXPECT_FALSE(model->proxyOK());
    EXPECT_TRUE(http.names().empty());
    EXPECT_EQ(model->rpcURL(), QUrl(u"http://mainnet.test"_s));
}

TEST_F(WalletTest, ChoosesTheEndpointAfreshForEveryCall)
{
    const struct
    {
        QString customRPC;
        bool proxyOK;
        SolNetwork network;
        QString endpoint;
    } cases[] = {
        {u" http://mine.test/a "_s, true, SolNetwork::Devnet, u"http://mine.test/a"_s},
        {u"mine.test"_s, true, SolNetwork::Mainnet, u"http://app.test/api/rpc"_s},
        {u"http://"_s, true, SolNetwork::Devnet, u"http://app.test/api/rpc?network=devnet"_s},
        {u""_s, false, SolNetwork::Mainnet, u"http://mainnet.test"_s},
        {u"HTTP://mine.test"_s, false, SolNetwork::Devnet, u"http://devnet.test"_s},
    };
    http.answer(u"getIt"_s, R"({"result": 7})");
    for (const auto &[customRPC, proxyOK, network, endpoint] : cases) {
        SCOPED_TRACE(endpoint.toStdString());
        http.answer(probe, proxyOK ? "{}" : "no");
        launchAndSettle();
        model->setCustomRPC(customRPC);
        model->setNetwork(network);
        queue.drain();
        http.forgetRequests();

        const auto call = model->rpc(u"getIt"_s, {1});
        queue.drain();
        EXPECT_TRUE(call.isReady());
        ASSERT_EQ(http.requests().size(), 1U);
        EXPECT_EQ(http.requests()[0].url, QUrl(endpoint));
    }
}

TEST_F(WalletTest, TellsWhenTheEndpointLabelChanges)
{
    launchAndSettle();
    QStringList labels;
    QObject::connect(model.get(), &WalletModel::rpcSourceLabelChanged, model.get(),
                     [&] { labels.append(model->rpcSourceLabel()); });
    http.answer(probe, "{}");
    model->setWalletURL(u"http://me.test"_s);
    queue.drain();
    model->setCustomRPC(u"http://mine.test"_s);
    EXPECT_EQ(labels, (QStringList{u"HELIUS · PROXIED VIA YOUR APP"_s, u"CUSTOM ENDPOINT"_s}));
}

} // namespace
