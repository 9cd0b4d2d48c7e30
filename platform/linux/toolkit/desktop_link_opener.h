#pragma once

#include "platform/link_opener.h"

namespace corvane::platform {

/// Opens links in the desktop's default program for them.
class DesktopLinkOpener final : public LinkOpener
{
public:
    void open(const QUrl &page) override;
};

} // namespace corvane::platform
