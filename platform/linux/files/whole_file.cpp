#include "platform/linux/files/whole_file.h"

#include <QSaveFile>

namespace corvane::platform {

bool replaceFile(const QString &path, const QByteArray &content,
                 QFileDevice::Permissions permissions)
{
    QSaveFile file(path);
    // Without this, QSaveFile would overwrite the file in place where it cannot make a new one.
    file.setDirectWriteFallback(false);
    // Flushed by hand, because commit() overlooks that a full disk has refused what was buffered,
    // and would put an empty file in the old one's place.
    return file.open(QIODevice::WriteOnly) && file.setPermissions(permissions) &&
           file.write(content) == content.size() && file.flush() && file.commit();
}

} // namespace corvane::platform
