// State, settings, and the requests that each setter starts.

#include "keys/key_vault.h"
#include "tests/core/wallet_fixture.h"

#include <QStringList>

using namespace corvane;
using namespace corvane::tests;
using core::SolNetwork;
using core::WalletModel;
using platform::HttpError;
using platform::HttpReply;
using namespace Qt::StringLiterals;

namespace {

using Names = std::vector<QString>;

TEST_F(WalletTest, StartsEmptyWithoutWritingOrWaiting)
{
    launch();
    EXPECT_EQ(model->network(), SolNetwork::Mainnet);
    EXPECT_TRUE(model->displayUSD());
    EXPECT_FALSE(model->hasSigningKey());
    EXPECT_EQ(model->solLabel(), u"—"_s);
    EXPECT_TRUE(http.names().empty()) << "construction must not wait for the network";
    queue.drain();
    EXPECT_EQ(http.count(probe), 1);
    EXPECT_EQ(http.count(coinGecko), 1);
    EXPECT_EQ(http.count(balance), 0) << "there is no address";
    EXPECT_TRUE(settings.writes.empty());
}

TEST_F(WalletTest, StoresEverySettingAsTypedOnEverySetAndRestoresIt)
{
    launchAndSettle();
    const std::vector<std::pair<QString, MemorySettingsStore::Value>> written = {
        {u"corvane.address"_s, u" "_s + addressA}, {u"corvane.network"_s, u"devnet"_s},
        {u"corvane.rpc"_s, u"\trpc "_s},           {u"corvane.walletURL"_s, u" url"_s},
        {u"corvane.displayUSD"_s, false},          {u"corvane.hideAmounts"_s, true}};
    for (int round = 0; round < 2; ++round) {
        model->setAddress(u" "_s + addressA);
        model->setNetwork(SolNetwork::Devnet);
        model->setCustomRPC(u"\trpc "_s);
        model->setWalletURL(u" url"_s);
        model->setDisplayUSD(false);
        model->setHidesAmounts(true);
        EXPECT_EQ(std::exchange(settings.writes, {}), written);
    }
    ASSERT_EQ(keys::KeyVault(keychain).storeStatus(seedOf(1), *keys::Address::fromText(addressB)),
              platform::KeychainStatus::Success);
    launch();
    EXPECT_EQ(model->address(), u" "_s + addressA);
    EXPECT_TRUE(model->hasValidAddress());
    EXPECT_EQ(model->network(), SolNetwork::Devnet);
    EXPECT_EQ(model->customRPC(), u"\trpc "_s);
    EXPECT_EQ(model->walletURL(), u" url"_s);
    EXPECT_FALSE(model->displayUSD());
    EXPECT_TRUE(model->hidesAmounts());
    EXPECT_EQ(model->signingPubkey(), addressB);
}

TEST_F(WalletTest, ReplacesForeignSettingsByTheDefaultsWithoutRewritingThem)
{
    settings.values = {{u"corvane.address"_s, true}, {u"corvane.displayUSD"_s, u"false"_s}};
    for (const QString &network : {u"testnet"_s, u"Devnet"_s, u" devnet"_s}) {
        settings.values.insert_or_assign(u"corvane.network"_s, network);
        launch();
        EXPECT_EQ(model->network(), SolNetwork::Mainnet) << network.toStdString();
        EXPECT_EQ(model->address(), QString());
        EXPECT_TRUE(model->displayUSD());
    }
    EXPECT_TRUE(settings.writes.empty());
}

TEST_F(WalletTest, AnnouncesEachChangeBeforeItHappens)
{
    settings.values.insert_or_assign(u"corvane.address"_s, addressA);
    launchAndSettle();
    QStringList seen;
    QObject::connect(model.get(), &WalletModel::objectWillChange, model.get(), [&] {
        seen.append(u"%1 %2"_s.arg(model->address().left(4), model->solLabel()));
    });
    model->setAddress(addressB);
    EXPECT_EQ(seen, (QStringList{u"EPjF 1.5000 SOL"_s, u"4zMM 1.5000 SOL"_s, u"4zMM —"_s}));
}

TEST_F(WalletTest, ClearsAndFetchesOnlyWhenTheTrimmedAddressChanges)
{
    for (const auto &[address, clears, fetches] : Table<QString, bool, bool>{
             {addressA, false, false},
             {u" \t"_s + addressA + u"\u00A0"_s, false, false},
             {u" "_s + addressB, true, true},
             {addressA + u"\n"_s, true, false},
             {addressA.first(20), true, false},
             {QString(), true, false},
         }) {
        SCOPED_TRACE(address.toStdString());
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

TEST_F(WalletTest, TakesOnlyTheLastProbesAnswer)
{
    files.paths = {u"/srv/wallet"_s};
    for (const auto &[last, healthy] :
         Table<QString, bool>{{u"http://me.test:3000"_s, true}, {u"/srv/wallet"_s, false}}) {
        launchAndSettle();
        http.hold(probe);
        model->setWalletURL(u"http://me.test"_s);
        queue.drain();
        http.answer(probe, healthy ? "{}" : "no");
        model->setWalletURL(last);
        queue.drain();
        EXPECT_EQ(model->proxyOK(), healthy);
        http.release(probe, HttpReply{healthy ? 500 : 200, "{}"});
        queue.drain();
        EXPECT_EQ(model->proxyOK(), healthy) << last.toStdString();
        EXPECT_EQ(http.requests().front().url, QUrl(u"http://me.test/api/rpc"_s));
    }
}

TEST_F(WalletTest, ChoosesTheEndpointAfreshForEveryCall)
{
    files.paths = {u"/srv/wallet"_s};
    http.answer(u"getIt"_s, R"({"result": 7})");
    for (const auto &[customRPC, proxyOK, network, endpoint] :
         Table<QString, bool, SolNetwork, QString>{
             {u" http://mine.test/a "_s, true, SolNetwork::Devnet, u"http://mine.test/a"_s},
             {u"mine.test"_s, true, SolNetwork::Mainnet, u"http://app.test/api/rpc"_s},
             {u"http://"_s, true, SolNetwork::Devnet, u"http://app.test/api/rpc?network=devnet"_s},
             {u""_s, false, SolNetwork::Mainnet, u"http://mainnet.test"_s},
             {u"HTTP://mine.test"_s, false, SolNetwork::Devnet, u"http://devnet.test"_s},
         }) {
        SCOPED_TRACE(endpoint.toStdString());
        http.answer(probe, proxyOK ? "{}" : "no");
        launchAndSettle();
        http.forgetRequests();
        model->setCustomRPC(customRPC);
        queue.drain();
        EXPECT_TRUE(http.requests().empty()) << "an edited endpoint is asked only when needed";
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

} // namespace
