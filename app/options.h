#pragma once

#include "keys/address.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <variant>

namespace corvane::app {

/// The settings from the command line and the environment.
struct Options
{
    /// Run the program, or only send a request to the running instance.
    enum class Command { Run, Refresh, Quit };

    Command command = Command::Run;
    /// Name of the pane to open, in this process or in the running instance.
    std::optional<QString> open;
    /// Hide the amounts in this process, or hide or show them in the running instance.
    bool hideAmounts = false;
    /// Wait for the running instance to exit.
    bool takeOver = false;
    /// File with base addresses that replace the built-in ones.
    std::optional<QString> endpointsFile;
    /// Run with a throw-away key in memory and separate settings.
    bool demoKeychain = false;
    /// Address to watch from now on.
    std::optional<keys::Address> watch;
};

/// Exit status for invalid options.
inline constexpr int usageError = 2;

/// Why the process exits without running the program: the text to print and the exit status.
struct EarlyExit
{
    /// Printed to standard output if the status is 0, otherwise to standard error.
    QString text;
    int status = 0;
};

/// The arguments that restart the program with `options`, except those for one-time actions.
[[nodiscard]] QStringList relaunchArguments(const Options &options);

/// Parses `arguments` (the program's name first). `environmentEndpoints` is the value of the
/// environment variable CORVANE_ENDPOINTS, which may also specify the endpoints file.
[[nodiscard]] std::variant<Options, EarlyExit> parseOptions(const QStringList &arguments,
                                                            const QString &environmentEndpoints);

} // namespace corvane::app
