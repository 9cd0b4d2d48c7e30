#include "assets/bundled_fonts.h"

#include <QDir>
#include <QFontDatabase>
#include <QResource>

#include <utility>

// The linker drops resources of a static library that are not referenced. The macro must be used
// outside any namespace.
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
        // The files are embedded uncompressed, so that they need no copy in memory.
        const QResource font(folder.filePath(name));
        QFontDatabase::addApplicationFontFromData(QByteArray::fromRawData(
            reinterpret_cast<const char *>(font.data()), static_cast<qsizetype>(font.size())));
    }
}

} // namespace corvane::assets
