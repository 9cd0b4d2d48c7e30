#pragma once

#include "core/sol_network.h"
#include "keys/address.h"
#include "platform/http_client.h"

#include <QByteArray>
#include <QJsonObject>
#include <QProcess>
#include <QString>
#include <QUrl>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace corvane::tests {

/// A transfer that a cluster executed.
struct LedgerEntry
{
    QString signature;
    QString from;
    QString to;
    std::uint64_t lamports = 0;
};

/// The local cluster in a process of its own. Its slots stand still unless they are told to move.
///
/// Every call blocks for the real round trip and ends the program if the cluster does not answer as
/// it should.
class LocalCluster
{
public:
    /// Starts the cluster with the program `node` and the folder that contains it.
    LocalCluster(const QString &node, const QString &folder);
    ~LocalCluster();

    /// Where a network's JSON-RPC is.
    [[nodiscard]] QUrl endpoint(core::SolNetwork network) const;
    /// The wallet web app, which has a proxy for both networks.
    [[nodiscard]] QString walletApp() const { return m_url + QStringLiteral("/wallet"); }
    /// The network that an endpoint of this cluster belongs to; empty for any other URL.
    [[nodiscard]] std::optional<core::SolNetwork> networkOf(const QUrl &endpoint) const;

    /// Passes a request on as it is.
    [[nodiscard]] platform::HttpResult forward(const platform::HttpRequest &request);

    void setBalance(const keys::Address &address, std::uint64_t lamports);
    void advanceSlots(std::uint64_t slots);
    /// The transfers after entry `after` of the ledger, which is moved behind them.
    [[nodiscard]] std::vector<LedgerEntry> ledger(core::SolNetwork network, std::uint64_t &after);

private:
    QJsonObject control(platform::HttpMethod method, const QString &name,
                        const QJsonObject &body = {});

    QProcess m_process;
    QString m_url;
    std::unique_ptr<platform::HttpClient> m_http;
};

} // namespace corvane::tests
