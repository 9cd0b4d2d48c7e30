#include "app/chosen_endpoints.h"

#include <QFile>
#include <QUrl>

#include <algorithm>

namespace corvane::app {

namespace {

bool isLoopback(const QString &address)
{
    const QString host = QUrl(address).host();
    // A name may begin like an address of this machine.
    const bool isNumeric =
        std::ranges::all_of(host, [](QChar c) { return c == u'.' || (c >= u'0' && c <= u'9'); });
    return host == QLatin1String("localhost") || host == QLatin1String("::1") ||
           (isNumeric && host.startsWith(QLatin1String("127.")));
}

/// True when every cluster in `endpoints`, and the proxy to them, is on this machine.
bool isLocalCluster(const core::Endpoints &endpoints)
{
    return isLoopback(endpoints.mainnet) && isLoopback(endpoints.devnet) &&
           isLoopback(endpoints.walletApp);
}

} // namespace

std::variant<core::Endpoints, Farewell> chosenEndpoints(const Options &options)
{
    core::Endpoints endpoints;
    if (options.endpointsFile) {
        QFile file(*options.endpointsFile);
        if (!file.open(QIODevice::ReadOnly)) {
            return Farewell{QStringLiteral("cannot read %1: %2\n")
                                .arg(*options.endpointsFile, file.errorString()),
                            usageError};
        }
        auto loaded = core::Endpoints::load(file.readAll());
        if (const auto *error = std::get_if<QString>(&loaded)) {
            return Farewell{QStringLiteral("%1: %2\n").arg(*options.endpointsFile, *error),
                            usageError};
        }
        endpoints = std::get<core::Endpoints>(std::move(loaded));
    }
    if (options.demoKeychain && !options.watch && !isLocalCluster(endpoints)) {
        return Farewell{
            QStringLiteral("--demo-keychain needs --endpoints on this machine, because "
                           "coins paid to its key are lost when it ends; or --watch to look "
                           "at an address\n"),
            usageError};
    }
    return endpoints;
}

} // namespace corvane::app
