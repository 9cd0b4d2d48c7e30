#include "platform/linux/files/whole_file.h"

#include <QSaveFile>

namespace corvane::platform {

bool replaceFile(const QString &path, const QByteArray &content,
                 QFileDevice::Permissions permissions)
{
    QSaveFile file(path);
    // Without this, QSaveFile would overwrite the file in place if it cannot create a new one.
    file.setDirectWriteFallback(false);
    // Flushed explicitly, because commit() does not detect that a full disk has rejected buffered
    // data, and would replace the old file with an empty one.
    return file.open(QIODevice::WriteOnly) && file.setPermissions(permissions) &&
           file.write(content) == content.size() && file.flush() && file.commit();
}

} // namespace corvane::platform
