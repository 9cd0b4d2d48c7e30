#pragma once

#include <QString>

namespace corvane::onboarding {

/// True if `bundlePath` counts as installed. Compares only the prefix: any path below the folder
/// counts, and also a folder whose name starts with the same text.
[[nodiscard]] inline bool isInApplications(const QString &bundlePath)
{
    return bundlePath.startsWith(QStringLiteral("/Applications"));
}

/// True for an application directory, false for the folder of a bare executable.
[[nodiscard]] inline bool isApplicationBundle(const QString &bundlePath)
{
    return bundlePath.endsWith(QStringLiteral(".app"));
}

} // namespace corvane::onboarding
