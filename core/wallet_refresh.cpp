// The asynchronous part of the wallet model. Each coroutine copies the values it needs and checks
// after every wait whether the model still exists.

#include "core/balances.h"
#include "core/cancellation.h"
#include "core/price_feeds.h"
#include "core/wallet_model.h"
#include "platform/http_client.h"
#include "platform/main_queue.h"

#include <QJsonObject>
#include <QPointer>

#include <utility>

namespace corvane::core {

using namespace Qt::StringLiterals;

namespace {

/// Fetches the chart about every quarter of an hour.
constexpr qint64 cyclesPerChart = 30;

} // namespace

QCoro::Task<JsonResult> WalletModel::rpc(QString method, QJsonArray params)
{
    const QPointer<WalletModel> self(this);
    const Silence asked{rpcURL(), m_services.queue.wallTime()};
    auto call = callRpc(m_services.http, asked.endpoint, std::move(method), std::move(params));
    JsonResult result = co_await call;
    if (self) {
        noteAnswer(asked, result);
    }
    co_return result;
}

void WalletModel::noteAnswer(const Silence &asked, const JsonResult &result)
{
    const bool isSilent = m_silence && m_silence->endpoint == asked.endpoint;
    const auto *error = std::get_if<CallError>(&result);
    const bool answers = std::holds_alternative<QJsonValue>(result) ||
                         (error != nullptr && *error == CallError::Refused);
    if (answers && isSilent) {
        publish(m_silence, std::optional<Silence>(), &WalletModel::endpointSilenceChanged);
    } else if (!answers && !isSilent && asked.endpoint == rpcURL()) {
        publish(m_silence, std::optional(asked), &WalletModel::endpointSilenceChanged);
    }
}

QCoro::Task<JsonResult> WalletModel::getJSON(QString url)
{
    std::optional<platform::HttpRequest> request = jsonRequest(url);
    if (!request) {
        co_return JsonResult(CallError::BadUrl);
    }
    const auto pending = m_services.http.send(*std::move(request));
    const platform::HttpResult result = co_await pending;
    co_return readJsonReply(result);
}

QCoro::Task<> WalletModel::probeProxy()
{
    const QPointer<WalletModel> self(this);
    const unsigned probe = ++m_probes;
    const std::optional<QUrl> url = proxyRPCURL();
    if (!url) {
        publish(m_proxyOK, false, &WalletModel::proxyOKChanged);
        co_return;
    }
    const auto pending = m_services.http.send(healthRequest(*url));
    const platform::HttpResult result = co_await pending;
    // Older probes may answer after newer ones, for example while a URL is being typed.
    if (self && self->m_probes == probe) {
        publish(m_proxyOK, isHealthy(result), &WalletModel::proxyOKChanged);
    }
}

QCoro::Task<bool> WalletModel::refreshBalance()
{
    const QPointer<WalletModel> self(this);
    const std::optional<keys::Address> owner = m_watched.address;
    if (!owner) {
        co_return false;
    }
    const SolNetwork net = m_network;
    const auto current = [self, owner, net] {
        return self && self->m_network == net && self->m_watched.address == owner;
    };
    bool solDone = false;

    auto balanceCall = rpc(u"getBalance"_s, {owner->text()});
    const JsonResult balance = co_await balanceCall;
    if (!self) {
        co_return false;
    }
    if (const auto *value = std::get_if<QJsonValue>(&balance)) {
        const std::optional<double> amount = readSolBalance(*value);
        if (amount && current()) {
            publish(m_sol, amount, &WalletModel::solChanged);
            solDone = true;
        }
    }

    const QJsonObject filter{{u"mint"_s, usdcMint(net)}};
    const QJsonObject configuration{{u"encoding"_s, u"jsonParsed"_s}};
    auto tokenCall = rpc(u"getTokenAccountsByOwner"_s, {owner->text(), filter, configuration});
    const JsonResult tokens = co_await tokenCall;
    if (!current()) {
        co_return solDone;
    }
    const auto *value = std::get_if<QJsonValue>(&tokens);
    const std::optional<double> amount = value != nullptr ? readTokenBalance(*value) : std::nullopt;
    if (!amount) {
        co_return solDone;
    }
    publish(m_usdc, amount, &WalletModel::usdcChanged);
    co_return true;
}

QCoro::Task<bool> WalletModel::refreshPrice()
{
    const QPointer<WalletModel> self(this);
    for (const PriceSource &source : priceSources()) {
        auto call = getJSON(m_services.endpoints.*source.base + source.pathAndQuery);
        const JsonResult result = co_await call;
        if (!self) {
            co_return false;
        }
        const auto *document = std::get_if<QJsonValue>(&result);
        const auto quote = document != nullptr ? source.read(*document) : std::nullopt;
        if (quote) {
            publish(m_price, std::optional(quote->price), &WalletModel::priceChanged);
            publish(m_chg, quote->change, &WalletModel::chgChanged);
            co_return true;
        }
    }
    co_return false;
}

QCoro::Task<> WalletModel::refreshWave()
{
    const QPointer<WalletModel> self(this);
    auto call = getJSON(m_services.endpoints.coingecko + chartPathAndQuery);
    const JsonResult result = co_await call;
    const auto *document = std::get_if<QJsonValue>(&result);
    if (!self || document == nullptr) {
        co_return;
    }
    if (const std::optional<QList<double>> points = readChart(*document)) {
        publish(m_wave, *points, &WalletModel::waveChanged);
    }
}

void WalletModel::countCycles(int change)
{
    publish(m_runningCycles, m_runningCycles + change, &WalletModel::refreshingChanged);
}

QCoro::Task<> WalletModel::refreshAll(bool force)
{
    const QPointer<WalletModel> self(this);
    countCycles(1);
    auto cycle = runCycle(force);
    co_await cycle;
    if (self) {
        countCycles(-1);
    }
}

QCoro::Task<> WalletModel::runCycle(bool force)
{
    const QPointer<WalletModel> self(this);

    auto price = refreshPrice();
    const bool priceDone = co_await price;
    if (!self) {
        co_return;
    }
    auto balance = refreshBalance();
    const bool balanceDone = co_await balance;
    if (!self) {
        co_return;
    }
    if (force || m_wave.isEmpty() || m_tick % cyclesPerChart == 0) {
        auto wave = refreshWave();
        co_await wave;
        if (!self) {
            co_return;
        }
    }
    ++m_tick;
    if (priceDone || balanceDone) {
        publish(m_lastUpdated, std::optional(m_services.queue.wallTime()),
                &WalletModel::lastUpdatedChanged);
    }
}

QCoro::Task<> WalletModel::refreshWhileAsked()
{
    const QPointer<WalletModel> self(this);
    while (std::exchange(m_refreshAsked, false)) {
        auto cycle = refreshAll(true);
        co_await cycle;
        if (!self) {
            co_return;
        }
    }
    m_refreshing = false;
}

void WalletModel::startPolling()
{
    if (m_pollTask) {
        m_pollTask->cancel();
    }
    m_pollTask = std::make_shared<Cancellation>();
    startTask([cancellation = m_pollTask](WalletModel &model) { poll(&model, cancellation); });
}

QCoro::Task<> WalletModel::poll(QPointer<WalletModel> model,
                                std::shared_ptr<Cancellation> cancellation)
{
    while (!cancellation->isCancelled() && model) {
        auto cycle = model->refreshAll(false);
        co_await cycle;
        if (model) {
            const auto sleep = cancellation->sleepFor(model->m_services.queue, pollInterval);
            if (co_await sleep == SleepEnd::Cancelled) {
                co_return;
            }
        }
    }
}

} // namespace corvane::core
