#pragma once

#include <QByteArray>
#include <QFileDevice>
#include <QString>

namespace corvane::platform {

/// Atomically replaces the file at `path`, in an existing folder, with this content and these
/// permissions. Returns false on failure and then leaves the file unchanged. Thread-safe.
[[nodiscard]] bool replaceFile(const QString &path, const QByteArray &content,
                               QFileDevice::Permissions permissions);

} // namespace corvane::platform
