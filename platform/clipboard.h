#pragma once

#include <QString>

namespace corvane::platform {

/// The desktop's clipboard. Main thread; never fails visibly.
class Clipboard
{
public:
    Clipboard() = default;
    Clipboard(const Clipboard &) = delete;
    Clipboard &operator=(const Clipboard &) = delete;
    virtual ~Clipboard() = default;

    /// Replaces whatever the clipboard holds with plain text, which may be empty.
    virtual void setText(const QString &text) = 0;
};

} // namespace corvane::platform
