#pragma once

#include "keys/address.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <variant>

namespace corvane::app {

/// What the command line and the environment ask for.
struct Options
{
    /// Whether to run, or only to ask something of the instance that runs.
    enum class Command { Run, Refresh, Quit };

    Command command = Command::Run;
    /// Name of the pane to open, here or in the instance that runs.
    std::optional<QString> open;
    /// Wait for the end of the instance that runs.
    bool takeOver = false;
    /// File with other base addresses than the built-in ones.
    std::optional<QString> endpointsFile;
    /// Run on a throw-away key in memory, with settings of its own.
    bool demoKeychain = false;
    /// Address to watch from now on.
    std::optional<keys::Address> watch;
};

/// Exit status of a start that asks for what cannot be.
inline constexpr int usageError = 2;

/// Why the process exits without running the program: the text to print and the exit status.
struct EarlyExit
{
    /// Printed to standard output if the status is 0, otherwise to standard error.
    QString text;
    int status = 0;
};

/// What starts the program again as `options` have it; what they want done once is left out.
[[nodiscard]] QStringList relaunchArguments(const Options &options);

/// Reads `arguments` (the program's name first). The endpoints file may also come from the
/// environment variable CORVANE_ENDPOINTS, given as `environmentEndpoints`.
[[nodiscard]] std::variant<Options, EarlyExit> parseOptions(const QStringList &arguments,
                                                            const QString &environmentEndpoints);

} // namespace corvane::app
