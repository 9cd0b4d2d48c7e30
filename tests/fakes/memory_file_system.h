#pragma once

#include "platform/file_system.h"

#include <set>

namespace corvane::tests {

/// A file system that consists of file names only.
class MemoryFileSystem final : public platform::FileSystem
{
public:
    [[nodiscard]] QString homeDirectory() const override { return QStringLiteral("/home/ada"); }
    [[nodiscard]] bool exists(const QString &path) const override { return paths.contains(path); }

    std::set<QString> paths;
};

} // namespace corvane::tests
