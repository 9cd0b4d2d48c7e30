#pragma once

#include <QUrl>

#include <functional>

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
    /// Returns immediately. `failed` is called, possibly later, if nothing opens it.
    virtual void open(const QUrl &page, std::function<void()> failed) = 0;
};

} // namespace corvane::platform
