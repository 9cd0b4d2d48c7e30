#pragma once

#include "platform/file_system.h"

namespace corvane::platform {

/// The local file system.
class LocalFileSystem final : public FileSystem
{
public:
    [[nodiscard]] QString homeDirectory() const override;
    [[nodiscard]] bool exists(const QString &path) const override;
};

} // namespace corvane::platform
