#include "app/chosen_endpoints.h"

#include <QFile>

namespace corvane::app {

std::variant<core::Endpoints, EarlyExit> chosenEndpoints(const Options &options)
{
    core::Endpoints endpoints;
    if (options.endpointsFile) {
        QFile file(*options.endpointsFile);
        if (!file.open(QIODevice::ReadOnly)) {
            return EarlyExit{QStringLiteral("cannot read %1: %2\n")
                                 .arg(*options.endpointsFile, file.errorString()),
                             usageError};
        }
        auto loaded = core::Endpoints::load(file.readAll());
        if (const auto *error = std::get_if<QString>(&loaded)) {
            return EarlyExit{QStringLiteral("%1: %2\n").arg(*options.endpointsFile, *error),
                             usageError};
        }
        endpoints = std::get<core::Endpoints>(std::move(loaded));
    }
    // Without a local cluster, real coins could be paid to the demo's key, which is lost when the
    // demo exits.
    if (options.demoKeychain && !options.watch && !endpoints.areLocal()) {
        return EarlyExit{
            QStringLiteral("--demo-keychain needs --endpoints on this machine, because "
                           "coins paid to its key are lost when it ends; or --watch to look "
                           "at an address\n"),
            usageError};
    }
    return endpoints;
}

} // namespace corvane::app
