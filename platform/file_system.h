#pragma once

#include <QString>

namespace corvane::platform {

/// What the wallet needs to know about the user's files. Does not block.
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
