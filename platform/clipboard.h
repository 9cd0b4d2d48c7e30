#pragma once

#include <QString>
#include <QStringView>

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
    /// The same for a secret, which clipboard histories are asked not to keep. The clipboard has an
    /// ordinary copy from then on.
    virtual void setSecret(QStringView text) = 0;
};

} // namespace corvane::platform
