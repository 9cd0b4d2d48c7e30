#pragma once

#include <QString>

namespace corvane::onboarding {

/// True when `bundlePath` counts as installed: a plain prefix, so any place below the folder does,
/// and so does a folder whose name only begins like it.
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
