#include "core/balances.h"
#include "core/json_calls.h"
#include "core/key_session.h"
#include "core/price_feeds.h"
#include "core/transfer_session.h"
#include "core/wallet_model.h"
#include "platform/in_memory_keychain.h"
#include "platform/sodium_signing_keys.h"
#include "tests/fakes/english_number_formatter.h"
#include "tests/fakes/fake_http_client.h"
#include "tests/fakes/hand_driven_queue.h"
#include "tests/fakes/held_background_tasks.h"
#include "tests/fakes/memory_file_system.h"
#include "tests/fakes/memory_settings_store.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <stdexcept>

namespace {

using namespace corvane;
using namespace Qt::StringLiterals;

/// A one-day chart in the price service's format.
QByteArray chartDocument(std::int64_t points)
{
    QByteArray rows;
    for (std::int64_t point = 0; point < points; ++point) {
        const double price = 150 + static_cast<double>(point * 7919 % 1000) / 90.7;
        rows += (point == 0 ? "[" : ",[") +
                QByteArray::number(1'700'000'000'000 + point * 300'000) + ',' +
                QByteArray::number(price, 'g', 17) + ']';
    }
    return R"({"prices":[)" + rows + R"(],"market_caps":[],"total_volumes":[]})";
}

void parseChart(benchmark::State &state)
{
    const platform::HttpResult reply = platform::HttpReply{200, chartDocument(state.range(0))};
    for (auto _ : state) {
        const core::JsonResult document = core::readJsonReply(reply);
        if (!core::readChart(std::get<QJsonValue>(document))) {
            throw std::runtime_error("not read as a chart");
        }
    }
}
BENCHMARK(parseChart)->Arg(288)->Arg(20'000)->Unit(benchmark::kMicrosecond);

/// All of the wallet's own work for a transfer, with an unlocked key, from the typed recipient to
/// the signature that the cluster returns: the key pair is derived from the seed, the message built
/// and signed, the requests written, the replies read, and a copy of the transfer stored. The
/// cluster replies immediately; the transfer is settled outside the measured time.
void buildAndSignTransfer(benchmark::State &state)
{
    tests::HandDrivenQueue queue;
    tests::FakeHttpClient http(queue);
    tests::MemorySettingsStore settings;
    platform::InMemoryKeychain keychain;
    platform::SodiumSigningKeys signingKeys;
    tests::HeldBackgroundTasks background;
    const tests::EnglishNumberFormatter formatter;
    const QString typed = core::usdcMint(core::SolNetwork::Mainnet);
    const core::TransferRoute route{QUrl(u"http://mainnet.test"_s), core::SolNetwork::Mainnet};

    core::KeySession keys({queue, background, keychain, signingKeys});
    const auto creation = keys.create();
    while (background.held() > 0) {
        background.runNext();
        queue.drain();
    }
    http.answer(
        u"getLatestBlockhash"_s,
        R"({"result": {"value": {"blockhash": "4zMMC9srt5Ri5X14GAgXhaHii3GnPAEERYPJgZJDncDU",)"
        R"( "lastValidBlockHeight": 1150}}})");
    http.answer(u"sendTransaction"_s, R"({"result": ")" + QByteArray(88, '1') + R"("})");
    http.answer(u"getBlockHeight"_s, R"({"result": 1000})");
    http.answer(u"getSignatureStatuses"_s,
                R"({"result": {"value": [{"confirmationStatus": "confirmed", "err": null}]}})");

    core::TransferSession transfers({queue, http, settings, formatter, keys, route.endpoint});
    double amount = 1;
    for (auto _ : state) {
        const auto sending = transfers.send(*keys::Address::fromText(typed), amount, route);
        queue.drain();

        state.PauseTiming();
        if (!transfers.report().signature || settings.writes.size() != 1) {
            throw std::runtime_error("not sent");
        }
        amount += 0.001; // the same signature again would be refused
        queue.advance(std::chrono::seconds(3));
        transfers.markSeen();
        settings.writes.clear();
        http.forgetRequests();
        state.ResumeTiming();
    }
}
BENCHMARK(buildAndSignTransfer)->Unit(benchmark::kMicrosecond);

void sign(benchmark::State &state)
{
    platform::SodiumSigningKeys keys;
    const platform::SecretBytes seed = keys.makeSeed();
    const std::vector<std::uint8_t> message(150);
    for (auto _ : state) {
        benchmark::DoNotOptimize(keys.signer(seed)->sign(message));
    }
}
BENCHMARK(sign)->Unit(benchmark::kMicrosecond);

/// A complete polling cycle: price, chart and both balances, from the requests to the labels. The
/// replies are available immediately.
void refreshCycle(benchmark::State &state)
{
    tests::HandDrivenQueue queue;
    tests::FakeHttpClient http(queue);
    core::Endpoints endpoints;
    http.answer(endpoints.coingecko + core::priceSources()[0].pathAndQuery,
                R"({"solana": {"usd": 150.25, "usd_24h_change": 2.345}})");
    http.answer(endpoints.coingecko + core::chartPathAndQuery, chartDocument(288));
    http.answer(u"getBalance"_s, R"({"result": {"value": 8200000000}})");
    http.answer(u"getTokenAccountsByOwner"_s,
                R"({"result": {"value": [{"account": {"data": {"parsed": {"info": {"tokenAmount":)"
                R"({"uiAmount": 2}}}}}}]}})");
    http.answer(u"getHealth"_s, platform::HttpError::Unreachable);
    tests::MemorySettingsStore settings;
    settings.values[u"corvane.address"_s] = core::usdcMint(core::SolNetwork::Mainnet);
    platform::InMemoryKeychain keychain;
    platform::SodiumSigningKeys signingKeys;
    tests::HeldBackgroundTasks background;
    tests::EnglishNumberFormatter formatter;
    tests::MemoryFileSystem files;
    core::WalletModel wallet(
        {queue, http, settings, keychain, signingKeys, background, formatter, files, endpoints});
    queue.drain();
    for (auto _ : state) {
        wallet.refresh();
        queue.drain();
        http.forgetRequests();
    }
    if (!wallet.sol() || !wallet.price()) {
        throw std::runtime_error("no figures came in");
    }
}
BENCHMARK(refreshCycle)->Unit(benchmark::kMicrosecond);

} // namespace
