#include "platform/linux/toolkit/qt_clipboard.h"

#include <QClipboard>
#include <QGuiApplication>

#include <memory>

namespace corvane::platform {

void QtClipboard::setText(const QString &text)
{
    if (QClipboard *clipboard = QGuiApplication::clipboard()) {
        clipboard->setText(text);
    }
}

void QtClipboard::setSecret(QStringView text)
{
    QClipboard *clipboard = QGuiApplication::clipboard();
    if (clipboard == nullptr) {
        return;
    }
    auto content = std::make_unique<QMimeData>();
    content->setText(text.toString());
    // The hint that the clipboard histories of KDE and other desktops check.
    content->setData(QStringLiteral("x-kde-passwordManagerHint"), "secret");
    m_secret = content.get();
    clipboard->setMimeData(content.release());
}

void QtClipboard::clearSecret()
{
    QClipboard *clipboard = QGuiApplication::clipboard();
    // What another program has copied since comes as a different object.
    if (clipboard != nullptr && m_secret != nullptr && clipboard->mimeData() == m_secret) {
        clipboard->clear();
    }
}

} // namespace corvane::platform
