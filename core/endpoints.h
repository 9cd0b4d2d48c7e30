#pragma once

#include "core/sol_network.h"

#include <QByteArray>
#include <QString>

#include <variant>

namespace corvane::core {

/// The base addresses of every service that the wallet talks to: absolute http or https URLs.
///
/// A default-constructed set holds the built-in addresses. To `coingecko`, `binance`, `coinbase`
/// and `explorer` fixed paths are appended, so these end without a slash; the two cluster addresses
/// are used as they are.
struct Endpoints
{
    Endpoints();

    /// The built-in addresses with those replaced that `json` names: an object whose keys are the
    /// members of this struct and whose values are URLs. Otherwise a sentence that says what is
    /// wrong, for the person who wrote the file.
    [[nodiscard]] static std::variant<Endpoints, QString> load(const QByteArray &json);

    /// The public JSON-RPC endpoint of a cluster.
    [[nodiscard]] const QString &defaultRPC(SolNetwork network) const;

    /// True when every cluster, and the web app with its proxy, is on this machine: named
    /// "localhost", ::1 or an address of 127.0.0.0/8.
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
