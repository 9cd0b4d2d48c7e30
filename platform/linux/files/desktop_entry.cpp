#include "platform/linux/files/desktop_entry.h"

#include <QStringView>

namespace corvane::platform {

namespace {

/// `text` without what readers of desktop entries skip around keys and values.
QStringView trimmingBlanks(QStringView text)
{
    constexpr QStringView blanks = u" \t\r";
    while (!text.empty() && blanks.contains(text.front())) {
        text = text.sliced(1);
    }
    while (!text.empty() && blanks.contains(text.back())) {
        text.chop(1);
    }
    return text;
}

/// A value of type string as it stands in the file. A blank at its end would be skipped.
QString escaped(QString value)
{
    value.replace(u'\\', QStringLiteral("\\\\"))
        .replace(u'\n', QStringLiteral("\\n"))
        .replace(u'\t', QStringLiteral("\\t"))
        .replace(u'\r', QStringLiteral("\\r"));
    if (value.endsWith(u' ')) {
        value.replace(value.size() - 1, 1, QStringLiteral("\\s"));
    }
    return value;
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

} // namespace

DesktopEntry readDesktopEntry(const QByteArray &text)
{
    DesktopEntry values;
    bool inGroup = false;
    const QString lines = QString::fromUtf8(text);
    for (const QStringView line : QStringView(lines).split(u'\n')) {
        const QStringView trimmed = trimmingBlanks(line);
        if (trimmed.startsWith(u'[')) {
            inGroup = trimmed == u"[Desktop Entry]";
        } else if (const qsizetype sign = trimmed.indexOf(u'='); inGroup && sign > 0) {
            values.insert(trimmingBlanks(trimmed.first(sign)).toString(),
                          unescaped(trimmingBlanks(trimmed.sliced(sign + 1)).toString()));
        }
    }
    return values;
}

QByteArray autostartEntry(const QString &executable)
{
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
                              .arg(escaped(executable), escaped(commandLineOf(executable)));
    return entry.toUtf8();
}

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

} // namespace corvane::platform
