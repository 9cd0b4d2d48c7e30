#include "app/options.h"

#include "keys/base58.h"

#include <QCommandLineParser>
#include <QCoreApplication>

namespace corvane::app {

namespace {

constexpr int usageError = 2;

/// The parser takes the program's name from an application. None is made when there is something to
/// run: the end of the first one would take away what Qt Quick has set up for assistive technology.
QString helpText(const QCommandLineParser &parser)
{
    int count = 1;
    char name[] = "corvane";
    char *arguments[] = {name, nullptr};
    const QCoreApplication application(count, arguments);
    return parser.helpText();
}

} // namespace

std::variant<Options, Farewell> parseOptions(const QStringList &arguments,
                                             const QString &environmentEndpoints)
{
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")},
                                  QStringLiteral("Show this help."));
    const QCommandLineOption version({QStringLiteral("v"), QStringLiteral("version")},
                                     QStringLiteral("Show the version."));
    const QCommandLineOption endpoints(
        QStringLiteral("endpoints"),
        QStringLiteral("Use the base addresses in the JSON object in FILE instead of the built-in "
                       "ones (also: CORVANE_ENDPOINTS)."),
        QStringLiteral("FILE"));
    const QCommandLineOption demo(
        QStringLiteral("demo-keychain"),
        QStringLiteral("Run on a fresh throw-away key in memory, with settings of its own. The "
                       "system keychain is not touched."));
    const QCommandLineOption watch(QStringLiteral("watch"),
                                   QStringLiteral("Watch ADDRESS from now on."),
                                   QStringLiteral("ADDRESS"));

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("A Solana wallet that lives in the notch of your screen."));
    parser.addOptions({help, version, endpoints, demo, watch});
    if (!parser.parse(arguments)) {
        return Farewell{parser.errorText() + QStringLiteral("\nTry --help.\n"), usageError};
    }
    if (parser.isSet(help)) {
        return Farewell{helpText(parser), 0};
    }
    if (parser.isSet(version)) {
        return Farewell{QStringLiteral("Corvane " CORVANE_VERSION "\n"), 0};
    }
    if (!parser.positionalArguments().isEmpty()) {
        return Farewell{QStringLiteral("Unexpected argument: %1\nTry --help.\n")
                            .arg(parser.positionalArguments().constFirst()),
                        usageError};
    }

    Options options;
    options.demoKeychain = parser.isSet(demo);
    if (parser.isSet(endpoints)) {
        options.endpointsFile = parser.value(endpoints);
    } else if (!environmentEndpoints.isEmpty()) {
        options.endpointsFile = environmentEndpoints;
    }
    if (parser.isSet(watch)) {
        const QString address = parser.value(watch);
        if (!keys::Base58::isValidAddress(address)) {
            return Farewell{QStringLiteral("--watch needs a Solana address\n"), usageError};
        }
        options.watch = address;
    }
    return options;
}

} // namespace corvane::app
