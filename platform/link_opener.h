#pragma once

#include <QUrl>

namespace corvane::platform {

/// Hands links to the desktop. Main thread.
class LinkOpener
{
public:
    LinkOpener() = default;
    LinkOpener(const LinkOpener &) = delete;
    LinkOpener &operator=(const LinkOpener &) = delete;
    virtual ~LinkOpener() = default;

    /// Opens a web page (http or https; nothing else is opened) with the user's browser. Returns at
    /// once and never fails visibly.
    virtual void open(const QUrl &page) = 0;
};

} // namespace corvane::platform
