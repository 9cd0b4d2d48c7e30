#include "platform/linux/toolkit/desktop_link_opener.h"

#include <QDesktopServices>

namespace corvane::platform {

void DesktopLinkOpener::open(const QUrl &page)
{
    if (page.scheme() == QStringLiteral("https") || page.scheme() == QStringLiteral("http")) {
        QDesktopServices::openUrl(page);
    }
}

} // namespace corvane::platform
