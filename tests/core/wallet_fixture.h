#pragma once

#include "core/wallet_model.h"

#include "platform/sodium_signing_keys.h"

#include "tests/fakes/english_number_formatter.h"
#include "tests/fakes/fake_http_client.h"
#include "tests/fakes/hand_driven_queue.h"
#include "tests/fakes/held_background_tasks.h"
#include "tests/fakes/memory_file_system.h"
#include "tests/fakes/memory_settings_store.h"
#include "tests/fakes/secrets.h"
#include "tests/fakes/stubborn_keychain.h"
#include "tests/fakes/table.h"

#include <gtest/gtest.h>

#include <memory>

namespace corvane::tests {

// The names of the wallet's requests in the fake HTTP client.
inline const QString coinGecko = QStringLiteral(
    "http://gecko.test/api/v3/simple/price?ids=solana&vs_currencies=usd&include_24hr_change=true");
inline const QString binance =
    QStringLiteral("http://binance.test/api/v3/ticker/24hr?symbol=SOLUSDT");
inline const QString coinbase = QStringLiteral("http://coinbase.test/v2/prices/SOL-USD/spot");
inline const QString chart =
    QStringLiteral("http://gecko.test/api/v3/coins/solana/market_chart?vs_currency=usd&days=1");
inline const QString probe = QStringLiteral("getHealth");
inline const QString balance = QStringLiteral("getBalance");
inline const QString tokens = QStringLiteral("getTokenAccountsByOwner");

inline const QString addressA = QStringLiteral("EPjFWdd5AufqSSqeM2qN1xzybapC8G4wEGGkZwyTDt1v");
inline const QString addressB = QStringLiteral("4zMMC9srt5Ri5X14GAgXhaHii3GnPAEERYPJgZJDncDU");

/// The reply to a request for a blockhash; `more` are further members of its value.
inline QByteArray blockhashReply(const QString &blockhash, const QByteArray &more = {})
{
    return R"({"result": {"value": {"blockhash": ")" + blockhash.toLatin1() + '"' + more + "}}}";
}

/// A wallet with services that all reply successfully unless a test changes that.
class WalletTest : public testing::Test
{
protected:
    WalletTest()
    {
        endpoints.mainnet = QStringLiteral("http://mainnet.test");
        endpoints.devnet = QStringLiteral("http://devnet.test");
        endpoints.walletApp = QStringLiteral("http://app.test/wallet");
        endpoints.coingecko = QStringLiteral("http://gecko.test");
        endpoints.binance = QStringLiteral("http://binance.test");
        endpoints.coinbase = QStringLiteral("http://coinbase.test");

        http.answer(coinGecko, R"({"solana": {"usd": 150, "usd_24h_change": 2.5}})");
        http.answer(chart, R"({"prices": [[0, 1], [1, 2], [2, 3]]})");
        http.answer(balance, R"({"result": {"value": 1500000000}})");
        http.answer(tokens, tokenReply("10"));
        http.answer(probe, platform::HttpError::Unreachable);
    }

    static QByteArray tokenReply(const QByteArray &amount)
    {
        return R"({"result": {"value": [{"account": {"data": {"parsed": {"info": {"tokenAmount":)"
               R"({"uiAmount": )" +
               amount + "}}}}}}]}}";
    }

    /// Creates the wallet, before its first requests.
    void launch()
    {
        model.reset();
        model = std::make_unique<core::WalletModel>(core::WalletServices{
            queue, http, settings, keychain, signingKeys, background, formatter, files, endpoints});
    }

    /// Creates the wallet, completes its first cycle and probe, and clears the recorded requests.
    void launchAndSettle()
    {
        launch();
        settle();
        http.forgetRequests();
        settings.writes.clear();
    }

    /// Runs all pending work of the background tasks and the main queue.
    void settle()
    {
        while (background.held() > 0) {
            background.runNext();
            queue.drain();
        }
        queue.drain();
    }

    /// The result of `task` after all pending work.
    template <typename Value>
    Value finish(QCoro::Task<Value> task)
    {
        settle();
        std::optional<Value> result;
        task.then([&](Value value) { result.emplace(std::move(value)); });
        EXPECT_TRUE(result) << "still waiting";
        return *std::move(result);
    }

    /// Creates a key and returns its backup text.
    platform::SecretBytes createKey()
    {
        auto created = finish(model->createWallet());
        return std::get<platform::SecretBytes>(std::move(created));
    }

    void removeKey()
    {
        model->removeWallet();
        settle();
    }

    // The client is destroyed before the queue and after the model, as in the program.
    HandDrivenQueue queue;
    FakeHttpClient http{queue};
    MemorySettingsStore settings;
    StubbornKeychain keychain;
    platform::SodiumSigningKeys signingKeys;
    HeldBackgroundTasks background;
    EnglishNumberFormatter formatter;
    MemoryFileSystem files;
    core::Endpoints endpoints;
    std::unique_ptr<core::WalletModel> model;
};

} // namespace corvane::tests
