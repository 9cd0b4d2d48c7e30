#pragma once

#include "platform/clipboard.h"

#include <QMimeData>
#include <QPointer>

namespace corvane::platform {

/// The clipboard of the running QGuiApplication.
class QtClipboard final : public Clipboard
{
public:
    void setText(const QString &text) override;
    void setSecret(QStringView text) override;
    void clearSecret() override;

private:
    /// The content of the last setSecret, while the clipboard holds it.
    QPointer<QMimeData> m_secret;
};

} // namespace corvane::platform
