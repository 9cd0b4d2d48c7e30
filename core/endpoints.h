#pragma once

#include "core/sol_network.h"

#include <QByteArray>
#include <QString>

#include <variant>

namespace corvane::core {

/// The base addresses of all services that the wallet uses: absolute http or https URLs.
///
/// A default-constructed object contains the built-in addresses. Fixed paths are appended to
/// `coingecko`, `binance`, `coinbase` and `explorer`, which have no trailing slash; the two cluster
/// addresses are used unchanged.
struct Endpoints
{
    Endpoints();

    /// The built-in addresses, some of them replaced by those in `json`: an object whose keys are
    /// the names of this struct's members and whose values are URLs. If it is invalid, returns an
    /// error message for the author of the file.
    [[nodiscard]] static std::variant<Endpoints, QString> load(const QByteArray &json);

    /// The public JSON-RPC endpoint of a cluster.
    [[nodiscard]] const QString &defaultRPC(SolNetwork network) const;

    /// True if both clusters and the web app with its proxy are on this machine: "localhost", ::1
    /// or an address in 127.0.0.0/8.
    [[nodiscard]] bool areLocal() const;

    QString mainnet;
    QString devnet;
    /// The wallet web app, whose host also serves the RPC proxy.
    QString walletApp;
    QString coingecko;
    QString binance;
    QString coinbase;
    QString explorer;
};

} // namespace corvane::core
