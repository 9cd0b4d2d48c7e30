#include "platform/linux/files/local_file_system.h"

#include <QDir>
#include <QFileInfo>

namespace corvane::platform {

QString LocalFileSystem::homeDirectory() const
{
    return QDir::homePath();
}

bool LocalFileSystem::exists(const QString &path) const
{
    return QFileInfo::exists(path);
}

} // namespace corvane::platform
