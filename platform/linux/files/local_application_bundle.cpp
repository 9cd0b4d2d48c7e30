#include "platform/linux/files/local_application_bundle.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane::platform {

namespace {

namespace fs = std::filesystem;

fs::path native(const QString &path)
{
    return QFile::encodeName(path).toStdString();
}

/// Creates an empty folder with a new hidden name beside `target`, for a later rename.
std::optional<fs::path> makeSibling(const fs::path &target)
{
    std::string name = target.parent_path() / ("." + target.filename().string() + ".XXXXXX");
    if (mkdtemp(name.data()) == nullptr) {
        return std::nullopt;
    }
    return name;
}

/// True if this user may empty the folder, if necessary after changing its permissions.
bool canEmpty(const fs::path &folder)
{
    struct stat info = {};
    return faccessat(AT_FDCWD, folder.c_str(), R_OK | W_OK | X_OK, AT_EACCESS) == 0 ||
           (stat(folder.c_str(), &info) == 0 && info.st_uid == geteuid());
}

/// True if this user may remove the whole tree at `path`.
bool canRemoveTree(const fs::path &path)
{
    std::error_code failed;
    if (!fs::is_directory(fs::symlink_status(path, failed))) {
        return true;
    }
    if (!canEmpty(path)) {
        return false;
    }
    // Folders without permissions get them when they are removed.
    for (fs::directory_iterator entry(path, fs::directory_options::skip_permission_denied, failed);
         !failed && entry != fs::directory_iterator(); entry.increment(failed)) {
        if (!canRemoveTree(entry->path())) {
            return false;
        }
    }
    return !failed;
}

void removeTree(const fs::path &path)
{
    std::error_code failed;
    if (fs::is_directory(fs::symlink_status(path, failed))) {
        fs::permissions(path, fs::perms::owner_all, fs::perm_options::add, failed);
        for (fs::directory_iterator entry(path, failed);
             !failed && entry != fs::directory_iterator(); entry.increment(failed)) {
            removeTree(entry->path());
        }
    }
    fs::remove(path, failed);
}

bool copyTree(const fs::path &from, const fs::path &to);

/// Copies the content of the folder `from` to the folder `to`; copies its permissions last, because
/// they may forbid writing.
bool copyFolder(const fs::path &from, const fs::path &to)
{
    std::error_code failed;
    fs::directory_iterator entry(from, failed);
    for (; !failed && entry != fs::directory_iterator(); entry.increment(failed)) {
        if (!copyTree(entry->path(), to / entry->path().filename())) {
            return false;
        }
    }
    if (!failed) {
        const fs::perms permissions = fs::status(from, failed).permissions();
        if (!failed) {
            fs::permissions(to, permissions, failed);
        }
    }
    return !failed;
}

bool copyTree(const fs::path &from, const fs::path &to)
{
    std::error_code failed;
    if (fs::is_directory(fs::symlink_status(from, failed))) {
        return fs::create_directory(to, failed) && copyFolder(from, to);
    }
    fs::copy(from, to, fs::copy_options::copy_symlinks, failed);
    return !failed;
}

} // namespace

LocalApplicationBundle::LocalApplicationBundle(const QString &executable,
                                               QStringList relaunchArguments)
    : m_path(QFileInfo(executable).path())
    , m_relaunchArguments(std::move(relaunchArguments))
{
    for (QString folder = m_path; folder.size() > 1; folder = QFileInfo(folder).path()) {
        if (folder.endsWith(QLatin1String(".app"))) {
            m_path = folder;
            m_program = executable.sliced(folder.size() + 1);
            return;
        }
    }
}

bool LocalApplicationBundle::exists(const QString &path) const
{
    std::error_code failed;
    return fs::exists(fs::symlink_status(native(path), failed));
}

bool LocalApplicationBundle::remove(const QString &path)
{
    const fs::path target = native(path);
    if (!exists(path) || isRunningBundle(target) || !canRemoveTree(target)) {
        return false;
    }
    const auto aside = makeSibling(target);
    if (!aside) {
        return false;
    }
    // A rename can replace an empty folder with a folder, but not with a file or a link.
    rmdir(aside->c_str());
    if (std::rename(target.c_str(), aside->c_str()) != 0) {
        return false;
    }
    removeTree(*aside);
    return true;
}

/// A link to the running bundle is not the bundle itself.
bool LocalApplicationBundle::isRunningBundle(const fs::path &target) const
{
    std::error_code failed;
    return !fs::is_symlink(target, failed) && fs::equivalent(target, native(m_path), failed);
}

bool LocalApplicationBundle::copy(const QString &from, const QString &to)
{
    const fs::path source = native(from);
    const fs::path target = native(to);
    std::error_code failed;
    if (exists(to) || !fs::is_directory(source, failed)) {
        return false;
    }
    const auto aside = makeSibling(target);
    if (!aside) {
        return false;
    }
    if (copyFolder(source, *aside) && std::rename(aside->c_str(), target.c_str()) == 0) {
        return true;
    }
    removeTree(*aside);
    return false;
}

void LocalApplicationBundle::openNewInstance(const QString &path)
{
    QProcess::startDetached(path + u'/' + m_program, m_relaunchArguments);
}

} // namespace corvane::platform
