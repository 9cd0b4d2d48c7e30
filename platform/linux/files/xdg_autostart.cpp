#include "platform/linux/files/xdg_autostart.h"

#include "platform/linux/files/desktop_entry.h"
#include "platform/linux/files/whole_file.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <utility>

namespace corvane::platform {

namespace {

/// Longer files are not desktop entries.
constexpr qint64 maximumSize = qint64{64} * 1024;

/// The entry in the file; empty when it cannot be read.
DesktopEntry entryIn(const QString &path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        return {};
    }
    return readDesktopEntry(file.read(maximumSize));
}

/// True when the user has switched the entry off, which desktops write in one of these ways.
bool isSwitchedOff(const DesktopEntry &entry)
{
    return entry.value(QStringLiteral("Hidden")) == QLatin1String("true") ||
           entry.value(QStringLiteral("X-GNOME-Autostart-enabled")) == QLatin1String("false");
}

} // namespace

XdgAutostart::XdgAutostart(const QString &configFolder, QString executable)
    : m_path(configFolder + QStringLiteral("/autostart/org.corvane.Corvane.desktop"))
    , m_executable(std::move(executable))
{}

bool XdgAutostart::isEnabled() const
{
    const DesktopEntry entry = entryIn(m_path);
    return !isSwitchedOff(entry) && programOf(entry.value(QStringLiteral("Exec"))) == m_executable;
}

bool XdgAutostart::enable()
{
    if (isSwitchedOff(entryIn(m_path)) || !QDir().mkpath(QFileInfo(m_path).path())) {
        return false;
    }
    constexpr QFileDevice::Permissions readable = QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                                  QFileDevice::ReadGroup | QFileDevice::ReadOther;
    return replaceFile(m_path, autostartEntry(m_executable), readable);
}

} // namespace corvane::platform
