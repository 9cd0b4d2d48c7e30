#pragma once

#include "platform/status_item.h"

namespace corvane::platform {

/// Status icons by the StatusNotifierItem protocol, or in an XEmbed tray if the desktop has only
/// that. Must be created after the QApplication.
class QtStatusBar final : public StatusBar
{
public:
    [[nodiscard]] std::unique_ptr<StatusItem> makeStatusItem(StatusPicture picture,
                                                             QList<MenuItem> menu) override;
};

} // namespace corvane::platform
