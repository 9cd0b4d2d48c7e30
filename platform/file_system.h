#pragma once

#include <QString>

namespace corvane::platform {

/// The few questions that the wallet asks about the user's files. Answers at once.
class FileSystem
{
public:
    FileSystem() = default;
    FileSystem(const FileSystem &) = delete;
    FileSystem &operator=(const FileSystem &) = delete;
    virtual ~FileSystem() = default;

    /// The user's home directory, without a trailing slash.
    [[nodiscard]] virtual QString homeDirectory() const = 0;
    /// True when a file or directory exists at `path`.
    [[nodiscard]] virtual bool exists(const QString &path) const = 0;
};

} // namespace corvane::platform
