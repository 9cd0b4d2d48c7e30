#include "tests/transfers/local_cluster.h"

#include "core/endpoint_choice.h"
#include "platform/linux/http/curl_http_client.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>

namespace corvane::tests {

using namespace Qt::StringLiterals;
using core::SolNetwork;

namespace {

constexpr int startTimeoutMs = 60'000;
constexpr std::chrono::seconds callTimeout{60};

/// Longer than any run, so that only `advanceSlots` moves the slots.
const QString slotLength = u"3600000"_s;

} // namespace

LocalCluster::LocalCluster(const QString &node, const QString &folder)
    : m_http(std::make_unique<platform::CurlHttpClient>())
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(node, {folder + u"/server.mjs"_s, u"--slot-ms"_s, slotLength, u"--parent"_s,
                           QString::number(QCoreApplication::applicationPid())});
    QByteArray line;
    while (!line.endsWith('\n') && m_process.waitForReadyRead(startTimeoutMs)) {
        line += m_process.readLine();
    }
    m_url = QJsonDocument::fromJson(line)["url"_L1].toString();
    if (m_url.isEmpty()) {
        qFatal("the local cluster did not start: %s", qPrintable(m_process.errorString()));
    }
}

LocalCluster::~LocalCluster()
{
    m_process.terminate();
    m_process.waitForFinished(startTimeoutMs);
}

QUrl LocalCluster::endpoint(SolNetwork network) const
{
    return QUrl(m_url + u'/' + rawValue(network));
}

std::optional<SolNetwork> LocalCluster::networkOf(const QUrl &endpoint) const
{
    for (const SolNetwork network : core::allSolNetworks) {
        if (endpoint == this->endpoint(network) ||
            endpoint == core::proxyEndpoint(QUrl(walletApp()), network)) {
            return network;
        }
    }
    return std::nullopt;
}

platform::HttpResult LocalCluster::forward(const platform::HttpRequest &request)
{
    const auto pending = m_http->send(request);
    while (!pending.await_ready()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return pending.await_resume();
}

void LocalCluster::setBalance(const keys::Address &address, std::uint64_t lamports)
{
    for (const SolNetwork network : core::allSolNetworks) {
        control(platform::HttpMethod::Post, u"balance"_s,
                {{u"cluster"_s, rawValue(network)},
                 {u"address"_s, address.text()},
                 {u"lamports"_s, QString::number(lamports)}});
    }
}

void LocalCluster::advanceSlots(std::uint64_t slots)
{
    control(platform::HttpMethod::Post, u"advance-slots"_s, {{u"slots"_s, QString::number(slots)}});
}

std::vector<LedgerEntry> LocalCluster::ledger(SolNetwork network, std::uint64_t &after)
{
    std::vector<LedgerEntry> entries;
    const QJsonArray executed =
        control(platform::HttpMethod::Get,
                u"ledger?cluster=%1&after=%2"_s.arg(rawValue(network)).arg(after))
            .value("entries"_L1)
            .toArray();
    for (const auto &entry : executed) {
        after = static_cast<std::uint64_t>(entry["seq"_L1].toInteger());
        if (!entry["err"_L1].isNull()) {
            continue;
        }
        const QJsonArray transfers = entry["transfers"_L1].toArray();
        for (const auto &transfer : transfers) {
            entries.push_back({entry["signature"_L1].toString(), transfer["from"_L1].toString(),
                               transfer["to"_L1].toString(),
                               static_cast<std::uint64_t>(transfer["lamports"_L1].toInteger())});
        }
    }
    return entries;
}

QJsonObject LocalCluster::control(platform::HttpMethod method, const QString &name,
                                  const QJsonObject &body)
{
    const auto result = forward({
        .method = method,
        .url = QUrl(m_url + u"/control/"_s + name),
        .headers = {{"Content-Type", "application/json"}},
        .body = QJsonDocument(body).toJson(QJsonDocument::Compact),
        .timeout = callTimeout,
    });
    const auto *reply = std::get_if<platform::HttpReply>(&result);
    if (reply == nullptr || reply->status != 200) {
        qFatal("the local cluster refused %s: %s", qPrintable(name),
               reply != nullptr ? reply->body.constData() : "no reply");
    }
    return QJsonDocument::fromJson(reply->body).object();
}

} // namespace corvane::tests
