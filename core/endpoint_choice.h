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

/// True if trimmed text starts with "http". Deliberately case-sensitive; used both for the choice
/// of the endpoint and for its label.
[[nodiscard]] bool beginsLikeWebUrl(QStringView trimmed);

/// The kind of endpoint in use, as shown to the user.
enum class RpcSource {
    Custom,       ///< typed by the user
    HeliusCustom, ///< typed by the user, and names that provider
    Proxy,        ///< the RPC proxy of the wallet web app
    Public,       ///< the cluster's public endpoint, which is rate-limited
};

/// Custom for every text that starts like a URL, even if it is not a valid one.
[[nodiscard]] RpcSource rpcSource(QStringView customRPC, bool proxyOK);

/// The endpoint typed by the user; empty unless it is a URL with a host.
[[nodiscard]] std::optional<QUrl> customEndpoint(QStringView customRPC);

/// The location of the wallet web app: the web URL or existing local path in `walletURL`, otherwise
/// `defaultApp`. A local path becomes a file URL. The URL may have no host, for example while it is
/// being typed.
[[nodiscard]] std::optional<QUrl> walletSource(QStringView walletURL, const QString &defaultApp,
                                               const platform::FileSystem &files);

/// The RPC proxy of the web app at `source`: its scheme, host and port with a fixed path; empty for
/// a local file or without a host.
[[nodiscard]] std::optional<QUrl> proxyEndpoint(const std::optional<QUrl> &source,
                                                SolNetwork network);

} // namespace corvane::core
