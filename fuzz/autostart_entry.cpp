// A desktop entry in the autostart folder: whatever lies there, and the one that is written for a
// program, wherever that lies.

#include "fuzz/property.h"
#include "platform/linux/files/desktop_entry.h"

using namespace corvane::platform;
using corvane::fuzz::require;
using namespace Qt::StringLiterals;

namespace {

void checkFile(const QByteArray &text)
{
    const DesktopEntry entry = readDesktopEntry(text);
    for (auto it = entry.begin(); it != entry.end(); ++it) {
        require(!it.key().isEmpty() && !it.key().contains(u'=') && !it.key().contains(u'\n'));
    }
    const QString program = programOf(entry.value(u"Exec"_s));
    require(program.size() <= text.size());
    // A group of somebody else's says nothing, wherever it stands.
    require(readDesktopEntry("[Other]\nExec=/other\n" + text) == entry ||
            text.startsWith("\xEF\xBB\xBF"));
    require(readDesktopEntry(text + "\n[Other]\nExec=/other\n") == entry);
}

void checkProgram(const QString &path)
{
    const DesktopEntry entry = readDesktopEntry(autostartEntry(path));
    require(programOf(entry.value(u"Exec"_s)) == path);
    require(entry.value(u"TryExec"_s) == path);
    // No path makes keys of its own.
    require(entry.size() == 8 && entry.value(u"X-GNOME-Autostart-enabled"_s) == u"true");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes = corvane::fuzz::Input(data, size).rest();
    checkFile(bytes);
    checkProgram(u'/' + QString::fromUtf8(QByteArray(bytes).replace('\0', "")));
    return 0;
}
