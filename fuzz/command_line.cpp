// A command line, one argument a line: scripts and desktop entries put paths and addresses there.

#include "app/options.h"
#include "app/requests.h"
#include "fuzz/property.h"
#include "keys/base58.h"

#include <QDir>

using namespace corvane::app;
using corvane::fuzz::require;

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    corvane::fuzz::Input input(data, size);
    const QString program = QStringLiteral("corvane");
    QStringList arguments{program};
    while (!input.isAtEnd()) {
        arguments << input.takeText().remove(QChar::Null);
    }
    const auto parsed = parseOptions(arguments, {});
    const auto *options = std::get_if<Options>(&parsed);
    if (options == nullptr) {
        const auto &farewell = std::get<Farewell>(parsed);
        require(!farewell.text.isEmpty() && (farewell.status == 0 || farewell.status == 2));
        return 0;
    }
    require(!options->open || paneNamed(*options->open));
    require(!options->watch || corvane::keys::Base58::isValidAddress(*options->watch));
    require(!options->open || options->command == Options::Command::Run);

    // A relaunch is a run of the same kind.
    const auto again = parseOptions(QStringList{program} + relaunchArguments(*options), {});
    const auto *relaunch = std::get_if<Options>(&again);
    require(relaunch != nullptr && relaunch->takeOver && !relaunch->open);
    require(relaunch->command == Options::Command::Run);
    require(relaunch->demoKeychain == options->demoKeychain);
    require(relaunch->endpointsFile.has_value() == options->endpointsFile.has_value());
    // It may start in another folder.
    require(!relaunch->endpointsFile || relaunch->endpointsFile->isEmpty() ||
            QDir::isAbsolutePath(*relaunch->endpointsFile));
    require(!options->demoKeychain || relaunch->watch == options->watch);
    require(relaunchArguments(*relaunch) == relaunchArguments(*options));
    return 0;
}
