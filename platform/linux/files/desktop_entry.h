#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

namespace corvane::platform {

/// Keys and values, without escapes, of a desktop entry's "Desktop Entry" group.
using DesktopEntry = QMap<QString, QString>;

/// The entry in a file of these bytes, lenient: a line that is none says nothing, and of a key's
/// values the last one counts.
[[nodiscard]] DesktopEntry readDesktopEntry(const QByteArray &text);

/// The file that starts `executable`, an absolute path, at login (Desktop Entry Specification).
[[nodiscard]] QByteArray autostartEntry(const QString &executable);

/// The program that an Exec value starts.
[[nodiscard]] QString programOf(const QString &commandLine);

} // namespace corvane::platform
