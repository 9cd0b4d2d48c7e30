#pragma once

#include "platform/http_client.h"
#include "tests/fakes/hand_driven_queue.h"
#include "tests/transfers/local_cluster.h"

#include <QJsonObject>
#include <QString>

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <vector>

namespace corvane::tests {

/// Random numbers that are the same everywhere for the same seed.
class Dice
{
public:
    explicit Dice(std::uint64_t seed)
        : m_engine(seed)
    {}

    /// A number from 0 to `limit` - 1.
    [[nodiscard]] std::uint64_t below(std::uint64_t limit) { return m_engine() % limit; }
    /// True in `percent` of all cases.
    [[nodiscard]] bool chance(unsigned percent) { return below(100) < percent; }
    /// A time from `from` up to `to`.
    [[nodiscard]] std::chrono::milliseconds between(std::chrono::milliseconds from,
                                                    std::chrono::milliseconds to)
    {
        const auto span = static_cast<std::uint64_t>((to - from).count());
        return from + std::chrono::milliseconds(below(span + 1));
    }
    template <typename T>
    [[nodiscard]] const T &oneOf(const std::vector<T> &choices)
    {
        return choices[below(choices.size())];
    }

private:
    std::mt19937_64 m_engine;
};

/// What a signed transfer on the wire says.
struct WireTransfer
{
    explicit WireTransfer(const QByteArray &base64);

    QString signature;
    QString blockhash;
    QString recipient;
    std::uint64_t lamports = 0;
};

/// The wallet's HTTP client in a schedule: passes requests to the local cluster at the time of the
/// hand-driven clock, and lets them and their replies be lost, delayed, reordered and replaced.
///
/// A request reaches the cluster, or not, whatever the client is told about it: it may be executed
/// after its time-out, after its client is gone, or after the program has started again.
class UnreliableHttp final : public platform::HttpClient
{
public:
    UnreliableHttp(LocalCluster &cluster, HandDrivenQueue &queue, Dice &dice);

    platform::Completion<platform::HttpResult> send(platform::HttpRequest request) override;

    /// The share of requests that fare badly, in percent.
    void setTrouble(unsigned percent) { m_trouble = percent; }
    /// Resolves all requests as cancelled, as the end of the program does. What is on its way to
    /// the cluster still arrives.
    void cancelAll();
    /// True while a request has yet to arrive at the cluster.
    [[nodiscard]] bool isBusy() const { return m_onTheWay > 0; }
    /// Lets all blockhashes expire.
    void expireBlockhashes();

    /// Called with each transfer when it is sent, and with the URL it is sent to.
    std::function<void(const QUrl &, const WireTransfer &)> onTransfer;

private:
    struct Exchange;
    using ExchangePtr = std::shared_ptr<Exchange>;

    void sendTransfer(const ExchangePtr &exchange, const WireTransfer &transfer);
    void sendCall(const ExchangePtr &exchange, const QJsonObject &call);
    /// Lets the request arrive at the cluster.
    void deliver(const ExchangePtr &exchange, std::chrono::milliseconds delay);
    /// Gives the client what the cluster answered, or another result.
    void reply(const ExchangePtr &exchange, std::chrono::milliseconds delay,
               std::optional<platform::HttpResult> other = std::nullopt);
    void resolve(const ExchangePtr &exchange, platform::HttpResult result);

    void moveSlots(std::uint64_t slots);
    /// True if not every node needs to know of this transfer.
    [[nodiscard]] bool isRecent(const QString &signature) const;

    LocalCluster &m_cluster;
    HandDrivenQueue &m_queue;
    Dice &m_dice;
    unsigned m_trouble = 0;
    /// The cluster's slot since the start, and how much of it was skipped.
    std::uint64_t m_slot = 0;
    std::uint64_t m_skipped = 0;
    /// The slots in which transfers arrived.
    std::map<QString, std::uint64_t> m_deliveries;
    std::vector<ExchangePtr> m_open;
    int m_onTheWay = 0;
};

} // namespace corvane::tests
