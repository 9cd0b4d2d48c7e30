#pragma once

#include "platform/clipboard.h"

namespace corvane::platform {

/// The clipboard of the running QGuiApplication.
class QtClipboard final : public Clipboard
{
public:
    void setText(const QString &text) override;
    void setSecret(QStringView text) override;
};

} // namespace corvane::platform
