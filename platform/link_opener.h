#pragma once

#include <QUrl>

namespace corvane::platform {

/// Opens links through the desktop. Main thread.
class LinkOpener
{
public:
    LinkOpener() = default;
    LinkOpener(const LinkOpener &) = delete;
    LinkOpener &operator=(const LinkOpener &) = delete;
    virtual ~LinkOpener() = default;

    /// Opens a web page in the user's browser; ignores URLs that are neither http nor https.
    /// Returns immediately; errors are ignored.
    virtual void open(const QUrl &page) = 0;
};

} // namespace corvane::platform
