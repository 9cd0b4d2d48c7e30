#pragma once

#include <QString>
#include <QStringView>

namespace corvane::platform {

/// The desktop's clipboard. Main thread; errors are ignored.
class Clipboard
{
public:
    Clipboard() = default;
    Clipboard(const Clipboard &) = delete;
    Clipboard &operator=(const Clipboard &) = delete;
    virtual ~Clipboard() = default;

    /// Replaces whatever the clipboard holds with plain text, which may be empty.
    virtual void setText(const QString &text) = 0;
    /// Like setText, and asks clipboard histories not to record the text. The clipboard keeps an
    /// ordinary, unprotected copy.
    virtual void setSecret(QStringView text) = 0;
    /// Empties the clipboard if it still holds the text of the last setSecret.
    virtual void clearSecret() = 0;
};

} // namespace corvane::platform
