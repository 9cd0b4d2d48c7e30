#include "platform/linux/files/xdg_autostart.h"

#include "platform/linux/files/whole_file.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <glib.h>

#include <memory>
#include <utility>

namespace corvane::platform {

namespace {

/// In bytes. Longer files are not treated as desktop entries.
constexpr qint64 maximumSize = qint64{64} * 1024;

constexpr const char *group = G_KEY_FILE_DESKTOP_GROUP;
constexpr const char *enabledKey = "X-GNOME-Autostart-enabled";

struct Release
{
    void operator()(GKeyFile *file) const { g_key_file_free(file); }
    void operator()(char *text) const { g_free(text); }
    void operator()(char **texts) const { g_strfreev(texts); }
};
using KeyFile = std::unique_ptr<GKeyFile, Release>;
using Text = std::unique_ptr<char, Release>;

/// The file's keys; null if it cannot be read.
KeyFile keysIn(const QString &path)
{
    KeyFile keys(g_key_file_new());
    QFile file(path);
    if (QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly)) {
        const QByteArray text = file.read(maximumSize);
        g_key_file_load_from_data(keys.get(), text.constData(), static_cast<gsize>(text.size()),
                                  G_KEY_FILE_NONE, nullptr);
    }
    return keys;
}

/// True if the user has disabled the entry, which desktops store in one of these ways.
bool isSwitchedOff(GKeyFile *keys)
{
    const Text enabled(g_key_file_get_string(keys, group, enabledKey, nullptr));
    return g_key_file_get_boolean(keys, group, G_KEY_FILE_DESKTOP_KEY_HIDDEN, nullptr) != FALSE ||
           g_strcmp0(enabled.get(), "false") == 0;
}

/// The program that the entry starts.
QString programIn(GKeyFile *keys)
{
    const Text line(g_key_file_get_string(keys, group, G_KEY_FILE_DESKTOP_KEY_EXEC, nullptr));
    char **words = nullptr;
    if (line == nullptr || g_shell_parse_argv(line.get(), nullptr, &words, nullptr) == FALSE) {
        return {};
    }
    const std::unique_ptr<char *, Release> owned(words);
    return QString::fromUtf8(words[0]).replace(QLatin1StringView("%%"), QLatin1StringView("%"));
}

/// `path` as the only argument of an Exec line (Desktop Entry Specification).
QByteArray commandLineOf(const QString &path)
{
    QString quoted;
    for (const QChar character : path) {
        if (QStringView(u"\"`$\\").contains(character)) {
            quoted += u'\\';
        }
        quoted += character == u'%' ? QStringLiteral("%%") : QString(character);
    }
    return (u'"' + quoted + u'"').toUtf8();
}

/// The file that starts `executable`, an absolute path, at login.
QByteArray entryFor(const QString &executable)
{
    const KeyFile keys(g_key_file_new());
    const QByteArray path = executable.toUtf8();
    const QByteArray commandLine = commandLineOf(executable);
    for (const auto &[key, value] : {
             std::pair(G_KEY_FILE_DESKTOP_KEY_TYPE, G_KEY_FILE_DESKTOP_TYPE_APPLICATION),
             {G_KEY_FILE_DESKTOP_KEY_NAME, "Corvane"},
             {G_KEY_FILE_DESKTOP_KEY_COMMENT, "Solana wallet in the notch of the screen"},
             // Makes the desktop ignore the entry if the program has been removed.
             {G_KEY_FILE_DESKTOP_KEY_TRY_EXEC, path.constData()},
             {G_KEY_FILE_DESKTOP_KEY_EXEC, commandLine.constData()},
             {G_KEY_FILE_DESKTOP_KEY_ICON, "org.corvane.Corvane"},
             {G_KEY_FILE_DESKTOP_KEY_TERMINAL, "false"},
             {enabledKey, "true"},
         }) {
        g_key_file_set_string(keys.get(), group, key, value);
    }
    const Text text(g_key_file_to_data(keys.get(), nullptr, nullptr));
    return text.get();
}

} // namespace

XdgAutostart::XdgAutostart(const QString &configFolder, QString executable)
    : m_path(configFolder + QStringLiteral("/autostart/org.corvane.Corvane.desktop"))
    , m_executable(std::move(executable))
{}

bool XdgAutostart::isEnabled() const
{
    const KeyFile keys = keysIn(m_path);
    return !isSwitchedOff(keys.get()) && programIn(keys.get()) == m_executable;
}

bool XdgAutostart::enable()
{
    if (isSwitchedOff(keysIn(m_path).get()) || !QDir().mkpath(QFileInfo(m_path).path())) {
        return false;
    }
    constexpr QFileDevice::Permissions readable = QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                                  QFileDevice::ReadGroup | QFileDevice::ReadOther;
    return replaceFile(m_path, entryFor(m_executable), readable);
}

} // namespace corvane::platform
