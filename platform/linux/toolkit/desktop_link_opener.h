#pragma once

#include "platform/link_opener.h"

namespace corvane::platform {

/// Opens links in the desktop's default program for them, with xdg-open if it is installed.
class DesktopLinkOpener final : public LinkOpener
{
public:
    void open(const QUrl &page, std::function<void()> failed) override;
};

} // namespace corvane::platform
