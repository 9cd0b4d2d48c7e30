#pragma once

#include "core/sol_network.h"

#include <QString>
#include <QStringView>
#include <QUrl>

#include <optional>

namespace corvane::platform {
class FileSystem;
}

namespace corvane::core {

/// True when trimmed text begins with "http". Case-sensitive on purpose, and asked alike by the
/// choice of endpoint and by the label that names it.
[[nodiscard]] bool beginsLikeWebUrl(QStringView trimmed);

/// Which endpoint is in use, as the user is told.
enum class RpcSource {
    Custom,       ///< what the user typed
    HeliusCustom, ///< the same, and it names that provider
    Proxy,        ///< the RPC proxy of the wallet web app
    Public,       ///< the cluster's public endpoint, which limits how often it may be asked
};

/// Custom for everything that begins like a URL, even if it turns out not to be one.
[[nodiscard]] RpcSource rpcSource(QStringView customRPC, bool proxyOK);

/// The endpoint that the user typed, when it is a URL that names a host.
[[nodiscard]] std::optional<QUrl> customEndpoint(QStringView customRPC);

/// Where the wallet web app lives: the web URL or existing local path in `walletURL`, else
/// `defaultApp`. A local path gives a file URL. A URL may still lack a host, as while it is typed.
[[nodiscard]] std::optional<QUrl> walletSource(QStringView walletURL, const QString &defaultApp,
                                               const platform::FileSystem &files);

/// The RPC proxy of the web app at `source`: its scheme, host and port with a fixed path; none for
/// a local file or without a host.
[[nodiscard]] std::optional<QUrl> proxyEndpoint(const std::optional<QUrl> &source,
                                                SolNetwork network);

} // namespace corvane::core
