#include "core/endpoint_choice.h"
#include "core/endpoints.h"

#include "tests/fakes/memory_file_system.h"
#include "tests/fakes/table.h"

#include <gmock/gmock.h>

using namespace corvane::core;
using namespace Qt::StringLiterals;
using corvane::tests::Table;

namespace {

const QString none = u"none"_s;

QString textOf(const std::optional<QUrl> &url)
{
    return url ? url->toString(QUrl::FullyEncoded) : none;
}

TEST(Endpoints, ReplacesOnlyTheNamedAddresses)
{
    const auto loaded = Endpoints::load(R"({
        "mainnet": "http://127.0.0.1:9/?key=a/",
        "coingecko": "http://127.0.0.1:9/coingecko//"
    })");
    const auto *endpoints = std::get_if<Endpoints>(&loaded);
    ASSERT_NE(endpoints, nullptr);
    EXPECT_EQ(endpoints->defaultRPC(SolNetwork::Mainnet), u"http://127.0.0.1:9/?key=a/"_s);
    EXPECT_EQ(endpoints->coingecko, u"http://127.0.0.1:9/coingecko"_s);
    EXPECT_EQ(endpoints->defaultRPC(SolNetwork::Devnet), u"https://api.devnet.solana.com"_s);
    EXPECT_EQ(endpoints->binance, u"https://api.binance.com"_s);
}

TEST(Endpoints, AreLocalOnlyOnThisMachine)
{
    const auto areLocal = [](const QString &host) {
        Endpoints endpoints;
        for (QString *address : {&endpoints.mainnet, &endpoints.devnet, &endpoints.walletApp}) {
            EXPECT_FALSE(endpoints.areLocal());
            *address = u"http://"_s + host + u"/"_s;
        }
        return endpoints.areLocal();
    };
    for (const QString &host : {u"localhost"_s, u"LOCALHOST:8899"_s, u"127.0.0.1:8899"_s,
                                u"127.255.255.255"_s, u"[::1]:8899"_s, u"127.0.9.199"_s}) {
        EXPECT_TRUE(areLocal(host)) << host.toStdString();
    }
    for (const QString &host :
         {u"127.0.0.1.test"_s, u"127.test"_s, u"127.0.0.256"_s, u"127.08.81.0"_s, u"128.0.0.1"_s,
          u"localhost.test"_s, u"[::2]"_s}) {
        EXPECT_FALSE(areLocal(host)) << host.toStdString();
    }
}

TEST(Endpoints, NamesWhatIsWrong)
{
    for (const auto &[json, named] : Table<QByteArray, const char *>{
             {"", "JSON object"},
             {R"({"mainnet": "http://h", "testnet": "http://h"})", "\"testnet\""},
             {R"({"devnet": null})", "\"devnet\""},
             {R"({"walletApp": "h/wallet"})", "\"walletApp\""},
             {R"({"coingecko": "file:///etc/passwd"})", "\"coingecko\""},
             {R"({"binance": "https://a b"})", "\"binance\""},
             {R"({"coinbase": "https://h/?a"})", "\"coinbase\""},
             {R"({"explorer": "https://h/#a"})", "\"explorer\""},
         }) {
        const auto loaded = Endpoints::load(json);
        const auto *error = std::get_if<QString>(&loaded);
        ASSERT_NE(error, nullptr) << json.constData();
        EXPECT_THAT(error->toStdString(), testing::HasSubstr(named));
    }
}

TEST(EndpointChoice, TakesACustomEndpointOnlyWhenItCanBeReached)
{
    for (const auto &[typed, endpoint] : Table<QString, QString>{
             {u" \thttps://rpc.test/v1?api-key=a%2Fb \u00A0"_s,
              u"https://rpc.test/v1?api-key=a%2Fb"_s},
             {u"http://127.0.0.1:8899"_s, u"http://127.0.0.1:8899"_s},
             {u""_s, none},
             {u"HTTPS://rpc.test"_s, none},
             {u"wss://rpc.test"_s, none},
             {u"http://"_s, none},
             {u"https://rpc test"_s, none},
             {u"https://rpc.test\n"_s, none},
             {u"https://rpc.test:99999"_s, none},
         }) {
        EXPECT_EQ(textOf(customEndpoint(typed)), endpoint) << typed.toStdString();
    }
}

TEST(EndpointChoice, FindsTheWebAppAndItsProxy)
{
    corvane::tests::MemoryFileSystem files;
    files.paths = {u"/srv/wallet"_s, u"/home/ada"_s, u"/home/ada/wallet"_s,
                   u"/home/adaada/wallet"_s, u"httpd"_s};
    const QString app = u"https://app.test/wallet"_s;
    const QString appProxy = u"https://app.test/api/rpc"_s;
    for (const auto &[typed, source, proxy] : Table<QString, QString, QString>{
             {u"  "_s, app, appProxy},
             {u" https://me.test/a/b?c#d\t"_s, u"https://me.test/a/b?c#d"_s,
              u"https://me.test/api/rpc"_s},
             {u"http://me:pw@me.test:8080/wallet"_s, u"http://me:pw@me.test:8080/wallet"_s,
              u"http://me.test:8080/api/rpc"_s},
             {u"http://[::1]:3000"_s, u"http://[::1]:3000"_s, u"http://[::1]:3000/api/rpc"_s},
             {u"http"_s, u"http"_s, none},
             {u"/srv/wallet"_s, u"file:///srv/wallet"_s, none},
             {u"~"_s, u"file:///home/ada"_s, none},
             {u" ~/wallet "_s, u"file:///home/ada/wallet"_s, none},
             {u"~ada/wallet"_s, app, appProxy},
             {u"HTTPS://me.test"_s, app, appProxy},
             {u"https://a b"_s, app, appProxy},
         }) {
        SCOPED_TRACE(typed.toStdString());
        const std::optional<QUrl> url = walletSource(typed, app, files);
        EXPECT_EQ(textOf(url), source);
        EXPECT_EQ(textOf(proxyEndpoint(url, SolNetwork::Mainnet)), proxy);
        EXPECT_EQ(textOf(proxyEndpoint(url, SolNetwork::Devnet)),
                  proxy == none ? none : proxy + u"?network=devnet"_s);
    }
    EXPECT_EQ(textOf(proxyEndpoint(std::nullopt, SolNetwork::Mainnet)), none);
}

} // namespace
