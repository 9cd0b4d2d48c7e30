#pragma once

#include <QString>
#include <QStringList>

#include <optional>
#include <variant>

namespace corvane::app {

/// What the command line and the environment ask for.
struct Options
{
    /// File with other base addresses than the built-in ones.
    std::optional<QString> endpointsFile;
    /// Run on a throw-away key in memory, with settings of its own.
    bool demoKeychain = false;
    /// Address to watch from now on.
    std::optional<QString> watch;
};

/// Nothing to run: what to print, and the exit status.
struct Farewell
{
    QString text;
    int status = 0;
};

/// Reads `arguments` (the program's name first). The endpoints file may also come from the
/// environment variable CORVANE_ENDPOINTS, given as `environmentEndpoints`.
[[nodiscard]] std::variant<Options, Farewell> parseOptions(const QStringList &arguments,
                                                           const QString &environmentEndpoints);

} // namespace corvane::app
