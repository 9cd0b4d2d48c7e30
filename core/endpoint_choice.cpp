#include "core/endpoint_choice.h"

#include "core/blank_trimming.h"
#include "platform/file_system.h"

namespace corvane::core {

using namespace Qt::StringLiterals;

namespace {

std::optional<QUrl> parsedUrl(QStringView text)
{
    const QUrl url(text.toString(), QUrl::StrictMode);
    return url.isValid() && !url.isEmpty() ? std::optional(url) : std::nullopt;
}

/// Expands "~" and "~/..." to the home directory. Other users' homes are not supported.
QString expandingTilde(QStringView path, const platform::FileSystem &files)
{
    if (path == "~"_L1 || path.startsWith("~/"_L1)) {
        return files.homeDirectory() + path.sliced(1).toString();
    }
    return path.toString();
}

} // namespace

bool beginsLikeWebUrl(QStringView trimmed)
{
    return trimmed.startsWith("http"_L1);
}

RpcSource rpcSource(QStringView customRPC, bool proxyOK)
{
    const QStringView trimmed = trimmingBlanks(customRPC);
    if (beginsLikeWebUrl(trimmed)) {
        return trimmed.contains("helius"_L1) ? RpcSource::HeliusCustom : RpcSource::Custom;
    }
    return proxyOK ? RpcSource::Proxy : RpcSource::Public;
}

std::optional<QUrl> customEndpoint(QStringView customRPC)
{
    const QStringView trimmed = trimmingBlanks(customRPC);
    if (!beginsLikeWebUrl(trimmed)) {
        return std::nullopt;
    }
    const std::optional<QUrl> url = parsedUrl(trimmed);
    return url && !url->host().isEmpty() ? url : std::nullopt;
}

std::optional<QUrl> walletSource(QStringView walletURL, const QString &defaultApp,
                                 const platform::FileSystem &files)
{
    const QStringView trimmed = trimmingBlanks(walletURL);
    if (beginsLikeWebUrl(trimmed)) {
        if (const std::optional<QUrl> url = parsedUrl(trimmed)) {
            return url;
        }
    }
    if (!trimmed.empty()) {
        const QString path = expandingTilde(trimmed, files);
        if (files.exists(path)) {
            return QUrl::fromLocalFile(path);
        }
    }
    return parsedUrl(defaultApp);
}

std::optional<QUrl> proxyEndpoint(const std::optional<QUrl> &source, SolNetwork network)
{
    if (!source || source->isLocalFile() || source->scheme().isEmpty() ||
        source->host().isEmpty()) {
        return std::nullopt;
    }
    QUrl url;
    url.setScheme(source->scheme());
    url.setHost(source->host());
    url.setPort(source->port());
    url.setPath(u"/api/rpc"_s);
    if (network == SolNetwork::Devnet) {
        url.setQuery(u"network=devnet"_s);
    }
    return url.isValid() ? std::optional(url) : std::nullopt;
}

} // namespace corvane::core
