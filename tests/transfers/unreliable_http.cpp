#include "tests/transfers/unreliable_http.h"

#include "keys/base58.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtEndian>

#include <algorithm>

namespace corvane::tests {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using platform::HttpError;
using platform::HttpReply;
using platform::HttpResult;
using std::chrono::milliseconds;

namespace {

constexpr milliseconds slotLength = 400ms;
/// A node knows everything that is older than this many slots. They are fewer than those until the
/// expiry of a blockhash is final.
constexpr std::uint64_t lagOfNode = 25;
/// More than a blockhash lives.
constexpr std::uint64_t expirySlots = 200;

HttpReply resultReply(const QJsonValue &result)
{
    return {200, QJsonDocument(QJsonObject{{u"jsonrpc"_s, u"2.0"_s}, {u"result"_s, result}})
                     .toJson(QJsonDocument::Compact)};
}

HttpReply errorReply(int status)
{
    return {status,
            R"({"jsonrpc":"2.0","error":{"code":-32005,"message":"Node is behind"},"id":1})"};
}

HttpReply page(int status)
{
    return {status, "<html>Bad Gateway</html>"};
}

/// Of the right form, but of no transaction.
const QString otherSignature =
    u"5h6xBEauJ3PK6SWCZ1PGjBvj8vDdWG3KpwATGy1ARAXFSDwt8GFXM7W5Ncn16wmqokgpiKRLuS83KUxyZyv2sUYv"_s;

// A signature, then the message: header, three keys, the blockhash, and one instruction whose data
// ends with the amount. All lengths are single bytes.
constexpr qsizetype signatureOffset = 1;
constexpr qsizetype signatureSize = 64;
constexpr qsizetype recipientOffset = 101;
constexpr qsizetype blockhashOffset = 165;
constexpr qsizetype keySize = 32;
constexpr qsizetype amountOffset = 207;
constexpr qsizetype wireSize = 215;

} // namespace

WireTransfer::WireTransfer(const QByteArray &base64)
{
    const QByteArray bytes = QByteArray::fromBase64(base64);
    if (bytes.size() != wireSize) {
        qFatal("not a transfer");
    }
    const auto base58 = [&bytes](qsizetype offset, qsizetype size) {
        return keys::Base58::encode({reinterpret_cast<const std::uint8_t *>(bytes.data()) + offset,
                                     static_cast<std::size_t>(size)});
    };
    signature = base58(signatureOffset, signatureSize);
    recipient = base58(recipientOffset, keySize);
    blockhash = base58(blockhashOffset, keySize);
    lamports = qFromLittleEndian<std::uint64_t>(bytes.data() + amountOffset);
}

struct UnreliableHttp::Exchange
{
    platform::HttpRequest request;
    platform::Completion<HttpResult> completion{};
    /// The signature of the transfer in it; otherwise empty.
    QString transfer{};
    /// What the cluster answered, once the request has arrived.
    std::optional<HttpResult> answer{};
};

UnreliableHttp::UnreliableHttp(LocalCluster &cluster, HandDrivenQueue &queue, Dice &dice)
    : m_cluster(cluster)
    , m_queue(queue)
    , m_dice(dice)
{}

platform::Completion<HttpResult> UnreliableHttp::send(platform::HttpRequest request)
{
    const auto exchange = std::make_shared<Exchange>(std::move(request));
    m_open.push_back(exchange);
    const bool isForCluster = m_cluster.networkOf(exchange->request.url).has_value();
    if (!isForCluster) {
        m_queue.post([this, exchange] { resolve(exchange, HttpError::Unreachable); });
        return exchange->completion;
    }
    m_queue.after(exchange->request.timeout,
                  [this, exchange] { resolve(exchange, HttpError::TimedOut); });
    const QJsonObject call = QJsonDocument::fromJson(exchange->request.body).object();
    if (call["method"_L1] == u"sendTransaction"_s) {
        sendTransfer(exchange, WireTransfer(call["params"_L1][0].toString().toLatin1()));
    } else {
        sendCall(exchange, call);
    }
    return exchange->completion;
}

void UnreliableHttp::cancelAll()
{
    for (const ExchangePtr &exchange : std::vector(m_open)) {
        resolve(exchange, HttpError::Cancelled);
    }
}

void UnreliableHttp::expireBlockhashes()
{
    m_skipped += expirySlots;
    moveSlots(expirySlots);
}

void UnreliableHttp::moveSlots(std::uint64_t slots)
{
    if (slots > 0) {
        m_slot += slots;
        m_cluster.advanceSlots(slots);
    }
}

bool UnreliableHttp::isRecent(const QString &signature) const
{
    const auto delivery = m_deliveries.find(signature);
    return delivery != m_deliveries.end() && m_slot - delivery->second <= lagOfNode;
}

void UnreliableHttp::resolve(const ExchangePtr &exchange, HttpResult result)
{
    if (std::erase(m_open, exchange) > 0) {
        exchange->completion.resolve(std::move(result));
    }
}

void UnreliableHttp::deliver(const ExchangePtr &exchange, milliseconds delay)
{
    ++m_onTheWay;
    m_queue.after(delay, [this, exchange] {
        --m_onTheWay;
        const auto passed = static_cast<std::uint64_t>(m_queue.now() / slotLength);
        moveSlots(passed + m_skipped - m_slot);
        exchange->answer = m_cluster.forward(exchange->request);
        if (!exchange->transfer.isEmpty()) {
            m_deliveries.try_emplace(exchange->transfer, m_slot);
        }
    });
}

void UnreliableHttp::reply(const ExchangePtr &exchange, milliseconds delay,
                           std::optional<HttpResult> other)
{
    m_queue.after(delay, [this, exchange, other = std::move(other)] {
        if (const auto &result = other ? other : exchange->answer) {
            resolve(exchange, *result);
        }
    });
}

void UnreliableHttp::sendCall(const ExchangePtr &exchange, const QJsonObject &call)
{
    const milliseconds there = m_dice.between(5ms, 200ms);
    const milliseconds back = there + m_dice.between(5ms, 200ms);
    if (!m_dice.chance(m_trouble)) {
        deliver(exchange, there);
        reply(exchange, back);
        return;
    }
    switch (m_dice.below(8)) {
    case 0: // never answered
        break;
    case 1:
        reply(exchange, back, HttpError::Unreachable);
        break;
    case 2:
        reply(exchange, back, page(200));
        break;
    case 3:
        reply(exchange, back, page(502));
        break;
    case 4:
        reply(exchange, back, errorReply(200));
        break;
    case 5: // a node that lags behind
        deliver(exchange, there);
        reply(exchange, back,
              call["method"_L1] == u"getSignatureStatuses"_s &&
                      isRecent(call["params"_L1][0][0].toString())
                  ? std::optional(resultReply(QJsonObject{{u"value"_s, QJsonArray{{}}}}))
                  : std::nullopt);
        break;
    case 6: // asked late
        deliver(exchange, there + m_dice.between(1s, 10s));
        reply(exchange, there + 10'500ms);
        break;
    default: // answered late
        deliver(exchange, there);
        reply(exchange, back + m_dice.between(1s, 11s));
    }
}

void UnreliableHttp::sendTransfer(const ExchangePtr &exchange, const WireTransfer &transfer)
{
    exchange->transfer = transfer.signature;
    onTransfer(exchange->request.url, transfer);
    const milliseconds there = m_dice.between(5ms, 200ms);
    const milliseconds back = there + m_dice.between(5ms, 200ms);
    if (!m_dice.chance(m_trouble)) {
        deliver(exchange, there);
        reply(exchange, back);
        return;
    }
    const HttpReply accepted = resultReply(transfer.signature);
    switch (m_dice.below(17)) {
    case 0: // lost on the way
        break;
    case 1:
        reply(exchange, back, HttpError::Unreachable);
        break;
    case 2: // executed, and the reply is lost
        deliver(exchange, there);
        break;
    case 3:
        deliver(exchange, there);
        reply(exchange, back, HttpError::Unreachable);
        break;
    case 4:
        deliver(exchange, there);
        reply(exchange, back, page(200));
        break;
    case 5: // a gateway that had passed it on, or had not
        deliver(exchange, there);
        reply(exchange, back, errorReply(502));
        break;
    case 6:
        reply(exchange, back, errorReply(503));
        break;
    case 7: // refused
        reply(exchange, back, errorReply(m_dice.chance(50) ? 200 : 429));
        break;
    case 8: // after the client has given up
        deliver(exchange, m_dice.between(12s, 100s));
        break;
    case 9:
        deliver(exchange, m_dice.between(1s, 60s));
        reply(exchange, back, HttpError::Unreachable);
        break;
    case 10: // accepted, and executed later or never
        deliver(exchange, m_dice.between(1s, 60s));
        reply(exchange, back, accepted);
        break;
    case 11:
        reply(exchange, back, accepted);
        break;
    case 12: // executed, and told under another signature
        deliver(exchange, there);
        reply(exchange, back, resultReply(otherSignature));
        break;
    case 13:
        deliver(exchange, there);
        reply(exchange, back, resultReply(u"\u202Esent\n\x1b[2Jok"_s));
        break;
    case 14:
        deliver(exchange, there);
        reply(exchange, back, resultReply(m_dice.chance(50) ? QJsonValue() : QJsonValue(7)));
        break;
    case 15:
        deliver(exchange, there + m_dice.between(1s, 10s));
        reply(exchange, there + 10'500ms);
        break;
    default:
        deliver(exchange, there);
        reply(exchange, back + m_dice.between(1s, 11s));
    }
}

} // namespace corvane::tests
