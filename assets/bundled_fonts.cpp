#include "assets/bundled_fonts.h"

#include <QDir>
#include <QFontDatabase>
#include <QResource>

#include <utility>

// Resources of a static library are dropped by the linker unless somebody names them; the macro
// must stand outside any namespace.
static void initialiseResources()
{
    Q_INIT_RESOURCE(assets);
}

namespace corvane::assets {

void registerBundledFonts()
{
    static bool registered = false;
    if (std::exchange(registered, true)) {
        return;
    }
    initialiseResources();
    const QDir folder(QStringLiteral(":/corvane/fonts"));
    const QStringList names = folder.entryList();
    for (const QString &name : names) {
        // Embedded as they are, the files need no copy in memory.
        const QResource font(folder.filePath(name));
        QFontDatabase::addApplicationFontFromData(QByteArray::fromRawData(
            reinterpret_cast<const char *>(font.data()), static_cast<qsizetype>(font.size())));
    }
}

} // namespace corvane::assets
