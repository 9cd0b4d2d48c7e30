#pragma once

#include <QByteArray>
#include <QFileDevice>
#include <QString>

namespace corvane::platform {

/// Gives the file at `path`, in an existing folder, this content and these permissions in one step.
/// False when the folder or the disk refuses; the file is then what it was. Any thread.
[[nodiscard]] bool replaceFile(const QString &path, const QByteArray &content,
                               QFileDevice::Permissions permissions);

} // namespace corvane::platform
