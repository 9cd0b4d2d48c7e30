#include "platform/linux/qt_clipboard.h"

#include <QClipboard>
#include <QGuiApplication>

namespace corvane::platform {

void QtClipboard::setText(const QString &text)
{
    if (QClipboard *clipboard = QGuiApplication::clipboard()) {
        clipboard->setText(text);
    }
}

} // namespace corvane::platform
