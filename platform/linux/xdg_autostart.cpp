#include "platform/linux/xdg_autostart.h"

#include "platform/linux/whole_file.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMap>

#include <utility>

namespace corvane::platform {

namespace {

/// Longer files are not desktop entries.
constexpr qint64 maximumSize = qint64{64} * 1024;

/// A value of type string as it stands in the file.
QString escaped(QString value)
{
    return value.replace(u'\\', QStringLiteral("\\\\"))
        .replace(u'\n', QStringLiteral("\\n"))
        .replace(u'\t', QStringLiteral("\\t"))
        .replace(u'\r', QStringLiteral("\\r"));
}

QString unescaped(const QString &text)
{
    QString value;
    for (qsizetype at = 0; at < text.size(); ++at) {
        if (text[at] != u'\\' || at + 1 == text.size()) {
            value += text[at];
            continue;
        }
        switch (const QChar next = text[++at]; next.unicode()) {
        case u's':
            value += u' ';
            break;
        case u'n':
            value += u'\n';
            break;
        case u't':
            value += u'\t';
            break;
        case u'r':
            value += u'\r';
            break;
        default:
            value += next;
        }
    }
    return value;
}

/// `path` as the one argument of an Exec line.
QString commandLineOf(const QString &path)
{
    QString quoted;
    for (const QChar character : path) {
        if (QStringView(u"\"`$\\").contains(character)) {
            quoted += u'\\';
        }
        quoted += character == u'%' ? QStringLiteral("%%") : QString(character);
    }
    return u'"' + quoted + u'"';
}

/// The program that an Exec line starts.
QString programOf(const QString &commandLine)
{
    QString program;
    bool quoted = false;
    for (qsizetype at = 0; at < commandLine.size(); ++at) {
        const QChar character = commandLine[at];
        const bool hasNext = at + 1 < commandLine.size();
        if (character == u'"') {
            quoted = !quoted;
        } else if (character == u' ' && !quoted) {
            break;
        } else if (hasNext && ((character == u'\\' && quoted) ||
                               (character == u'%' && commandLine[at + 1] == u'%'))) {
            program += commandLine[++at];
        } else {
            program += character;
        }
    }
    return program;
}

/// The keys of the file's "Desktop Entry" group; none when it cannot be read.
QMap<QString, QString> readEntry(const QString &path)
{
    QFile file(path);
    QMap<QString, QString> values;
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        return values;
    }
    bool inGroup = false;
    const QString text = QString::fromUtf8(file.read(maximumSize));
    for (const QStringView line : QStringView(text).split(u'\n')) {
        const QStringView trimmed = line.trimmed();
        if (trimmed.startsWith(u'[')) {
            inGroup = trimmed == u"[Desktop Entry]";
        } else if (const qsizetype sign = trimmed.indexOf(u'='); inGroup && sign > 0) {
            values.insert(trimmed.first(sign).trimmed().toString(),
                          unescaped(trimmed.sliced(sign + 1).trimmed().toString()));
        }
    }
    return values;
}

/// True when the user has switched the entry off, which desktops write in one of these ways.
bool isSwitchedOff(const QMap<QString, QString> &entry)
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
    const auto entry = readEntry(m_path);
    return !isSwitchedOff(entry) && programOf(entry.value(QStringLiteral("Exec"))) == m_executable;
}

bool XdgAutostart::enable()
{
    if (isSwitchedOff(readEntry(m_path)) || !QDir().mkpath(QFileInfo(m_path).path())) {
        return false;
    }
    // With TryExec the desktop passes over the entry once the program has been taken away.
    const QString entry = QStringLiteral("[Desktop Entry]\n"
                                         "Type=Application\n"
                                         "Name=Corvane\n"
                                         "Comment=Solana wallet in the notch of the screen\n"
                                         "TryExec=%1\n"
                                         "Exec=%2\n"
                                         "Icon=org.corvane.Corvane\n"
                                         "Terminal=false\n"
                                         "X-GNOME-Autostart-enabled=true\n")
                              .arg(escaped(m_executable), escaped(commandLineOf(m_executable)));
    constexpr QFileDevice::Permissions readable = QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                                  QFileDevice::ReadGroup | QFileDevice::ReadOther;
    return replaceFile(m_path, entry.toUtf8(), readable);
}

} // namespace corvane::platform
