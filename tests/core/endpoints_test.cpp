#include "core/endpoint_choice.h"
#include "core/endpoints.h"

#include "tests/fakes/memory_file_system.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace corvane::core;
using namespace Qt::StringLiterals;
using corvane::tests::MemoryFileSystem;

namespace {

QString textOf(const std::optional<QUrl> &url)
{
    return url ? url->toString(QUrl::FullyEncoded) : u"none"_s;
}

TEST(Endpoints, ReplacesOnlyTheNamedAddresses)
{
    const auto loaded = Endpoints::load(R"({
        "mainnet": "http://127.0.0.1:9/?key=a/",
        "coingecko": "http://127.0.0.1:9/coingecko//",
        "explorer": "https://explorer.test/"
    })");
    const auto *endpoints = std::get_if<Endpoints>(&loaded);
    ASSERT_NE(endpoints, nullptr);
    EXPECT_EQ(endpoints->defaultRPC(SolNetwork::Mainnet), u"http://127.0.0.1:9/?key=a/"_s);
    EXPECT_EQ(endpoints->coingecko, u"http://127.0.0.1:9/coingecko"_s);
    EXPECT_EQ(endpoints->explorer, u"https://explorer.test"_s);
    EXPECT_EQ(endpoints->defaultRPC(SolNetwork::Devnet), u"https://api.devnet.solana.com"_s);
    EXPECT_EQ(endpoints->binance, u"https://api.binance.com"_s);
}

TEST(Endpoints, NamesWhatIsWrong)
{
    const struct
    {
        QByteArray json;
        const char *named;
    } cases[] = {
        {"", "JSON object"},
        {"[]", "JSON object"},
        {"\"http://h\"", "JSON object"},
        {R"({"mainnet": "http://h", "testnet": "http://h"})", "\"testnet\""},
        {R"({"Mainnet": "http://h"})", "\"Mainnet\""},
        {R"({"mainnet": 1})", "\"mainnet\""},
        {R"({"devnet": null})", "\"devnet\""},
        {R"({"walletApp": ""})", "\"walletApp\""},
        {R"({"walletApp": "h/wallet"})", "\"walletApp\""},
        {R"({"coingecko": "ftp://h"})", "\"coingecko\""},
        {R"({"coingecko": "file:///etc/passwd"})", "\"coingecko\""},
        {R"({"binance": "http://"})", "\"binance\""},
        {R"({"binance": "https://a b"})", "\"binance\""},
        {R"({"coinbase": "https://h/?a"})", "\"coinbase\""},
        {R"({"explorer": "https://h/#a"})", "\"explorer\""},
    };
    for (const auto &[json, named] : cases) {
        SCOPED_TRACE(json.constData());
        const auto loaded = Endpoints::load(json);
        const auto *error = std::get_if<QString>(&loaded);
        ASSERT_NE(error, nullptr);
        EXPECT_THAT(error->toStdString(), testing::HasSubstr(named));
    }
}

TEST(EndpointChoice, TakesACustomEndpointOnlyWhenItCanBeReached)
{
    const struct
    {
        QString typed;
        QString endpoint;
    } cases[] = {
        {u" \thttps://rpc.test/v1?api-key=a%2Fb \u00A0"_s, u"https://rpc.test/v1?api-key=a%2Fb"_s},
        {u"http://127.0.0.1:8899"_s, u"http://127.0.0.1:8899"_s},
        {u""_s, u"none"_s},
        {u"rpc.test"_s, u"none"_s},
        {u"HTTPS://rpc.test"_s, u"none"_s},
        {u"wss://rpc.test"_s, u"none"_s},
        {u"http"_s, u"none"_s},
        {u"http://"_s, u"none"_s},
        {u"https:rpc.test"_s, u"none"_s},
        {u"https://rpc test"_s, u"none"_s},
        {u"https://rpc.test\n"_s, u"none"_s},
        {u"https://rpc.test:99999"_s, u"none"_s},
    };
    for (const auto &[typed, endpoint] : cases) {
        SCOPED_TRACE(typed.toStdString());
        EXPECT_EQ(textOf(customEndpoint(typed)), endpoint);
    }
}

TEST(EndpointChoice, FindsTheWebAppAndItsProxy)
{
    MemoryFileSystem files;
    files.paths = {u"/srv/wallet"_s, u"/home/ada"_s, u"/home/ada/wallet"_s, u"httpd"_s};
    const struct
    {
        QString typed;
        QString source;
        QString proxy;
    } cases[] = {
        {u""_s, u"https://app.test/wallet"_s, u"https://app.test/api/rpc"_s},
        {u"  "_s, u"https://app.test/wallet"_s, u"https://app.test/api/rpc"_s},
        {u" https://me.test/a/b?c#d\t"_s, u"https://me.test/a/b?c#d"_s,
         u"https://me.test/api/rpc"_s},
        {u"http://me:pw@me.test:8080/wallet"_s, u"http://me:pw@me.test:8080/wallet"_s,
         u"http://me.test:8080/api/rpc"_s},
        {u"http://[::1]:3000"_s, u"http://[::1]:3000"_s, u"http://[::1]:3000/api/rpc"_s},
        {u"http"_s, u"http"_s, u"none"_s},
        {u"https://"_s, u"https://"_s, u"none"_s},
        {u"/srv/wallet"_s, u"file:///srv/wallet"_s, u"none"_s},
        {u"~"_s, u"file:///home/ada"_s, u"none"_s},
        {u" ~/wallet "_s, u"file:///home/ada/wallet"_s, u"none"_s},
        {u"~ada/wallet"_s, u"https://app.test/wallet"_s, u"https://app.test/api/rpc"_s},
        {u"/srv/other"_s, u"https://app.test/wallet"_s, u"https://app.test/api/rpc"_s},
        {u"me.test"_s, u"https://app.test/wallet"_s, u"https://app.test/api/rpc"_s},
        {u"HTTPS://me.test"_s, u"https://app.test/wallet"_s, u"https://app.test/api/rpc"_s},
        {u"https://a b"_s, u"https://app.test/wallet"_s, u"https://app.test/api/rpc"_s},
    };
    for (const auto &[typed, sourceText, proxyText] : cases) {
        SCOPED_TRACE(typed.toStdString());
        const std::optional<QUrl> source = walletSource(typed, u"https://app.test/wallet"_s, files);
        EXPECT_EQ(textOf(source), sourceText);
        EXPECT_EQ(textOf(proxyEndpoint(source, SolNetwork::Mainnet)), proxyText);
        const QString onDevnet =
            proxyText == u"none"_s ? proxyText : proxyText + u"?network=devnet"_s;
        EXPECT_EQ(textOf(proxyEndpoint(source, SolNetwork::Devnet)), onDevnet);
    }
    EXPECT_EQ(textOf(proxyEndpoint(std::nullopt, SolNetwork::Mainnet)), u"none"_s);
}

} // namespace
