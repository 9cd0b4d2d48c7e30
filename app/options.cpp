#include "app/options.h"

#include "app/requests.h"
#include "keys/base58.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFileInfo>

namespace corvane::app {

namespace {

/// The parser needs an application object for the program's name. It is created only for the help
/// text: destroying a first application object would remove Qt Quick's set-up for assistive
/// technology.
QString helpText(const QCommandLineParser &parser)
{
    int count = 1;
    char name[] = "corvane";
    char *arguments[] = {name, nullptr};
    const QCoreApplication application(count, arguments);
    return parser.helpText();
}

} // namespace

std::variant<Options, EarlyExit> parseOptions(const QStringList &arguments,
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
    const QCommandLineOption open(
        QStringLiteral("open"),
        QStringLiteral("Open the island on PANE (balance, send, receive or settings); start the "
                       "program if it does not run."),
        QStringLiteral("PANE"));
    const QCommandLineOption refresh(QStringLiteral("refresh"),
                                     QStringLiteral("Refresh the figures of the running program."));
    const QCommandLineOption hideAmounts(
        QStringLiteral("hide-amounts"),
        QStringLiteral("Hide the amounts on all cards of the running program, or show them again; "
                       "start the program with hidden amounts if it does not run."));
    const QCommandLineOption quit(QStringLiteral("quit"),
                                  QStringLiteral("End the running program."));
    const QCommandLineOption takeOver(
        QStringLiteral("take-over"),
        QStringLiteral("Wait up to 10 seconds for the running program's end, and run then."));
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
    parser.addOptions(
        {open, refresh, hideAmounts, quit, takeOver, endpoints, demo, watch, help, version});
    if (!parser.parse(arguments)) {
        return EarlyExit{parser.errorText() + QStringLiteral("\nTry --help.\n"), usageError};
    }
    if (parser.isSet(help)) {
        return EarlyExit{helpText(parser), 0};
    }
    if (parser.isSet(version)) {
        return EarlyExit{QStringLiteral("Corvane " CORVANE_VERSION "\n"), 0};
    }
    if (!parser.positionalArguments().isEmpty()) {
        return EarlyExit{QStringLiteral("Unexpected argument: %1\nTry --help.\n")
                             .arg(parser.positionalArguments().constFirst()),
                         usageError};
    }

    if (parser.isSet(open) + parser.isSet(refresh) + parser.isSet(hideAmounts) +
            parser.isSet(quit) >
        1) {
        return EarlyExit{QStringLiteral("--open, --refresh, --hide-amounts and --quit exclude each "
                                        "other\n"),
                         usageError};
    }

    Options options;
    if (parser.isSet(refresh)) {
        options.command = Options::Command::Refresh;
    } else if (parser.isSet(quit)) {
        options.command = Options::Command::Quit;
    }
    if (parser.isSet(open)) {
        options.open = parser.value(open);
        if (!paneNamed(*options.open)) {
            return EarlyExit{QStringLiteral("--open needs balance, send, receive or settings\n"),
                             usageError};
        }
    }
    options.hideAmounts = parser.isSet(hideAmounts);
    options.takeOver = parser.isSet(takeOver);
    options.demoKeychain = parser.isSet(demo);
    if (parser.isSet(endpoints)) {
        options.endpointsFile = parser.value(endpoints);
    } else if (!environmentEndpoints.isEmpty()) {
        options.endpointsFile = environmentEndpoints;
    }
    if (parser.isSet(watch)) {
        options.watch = keys::Address::fromText(parser.value(watch));
        if (!options.watch) {
            return EarlyExit{QStringLiteral("--watch needs a Solana address\n"), usageError};
        }
    }
    return options;
}

QStringList relaunchArguments(const Options &options)
{
    QStringList arguments{QStringLiteral("--take-over")};
    if (options.endpointsFile) {
        arguments << QStringLiteral("--endpoints")
                  << QFileInfo(*options.endpointsFile).absoluteFilePath();
    }
    if (options.demoKeychain) {
        arguments << QStringLiteral("--demo-keychain");
        // With real clusters a demo starts only with an address to watch.
        if (options.watch) {
            arguments << QStringLiteral("--watch") << options.watch->text();
        }
    }
    return arguments;
}

} // namespace corvane::app
