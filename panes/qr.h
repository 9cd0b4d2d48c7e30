#pragma once

#include <QImage>
#include <QString>

#include <optional>

namespace corvane::panes {

/// QR codes as pictures. Any thread.
struct QR
{
    /// The QR code of `text` (UTF-8, error correction level M) with a quiet zone of one module, one
    /// pixel a module, black on white. None when the text is empty or too long for a code.
    [[nodiscard]] static std::optional<QImage> modules(const QString &text);

    /// The same, `side` points wide including the quiet zone, at `scale` pixels a point. Every
    /// module is whole pixels wide and at most one pixel wider than another.
    [[nodiscard]] static std::optional<QImage> image(const QString &text, double side,
                                                     double scale = 1);
};

} // namespace corvane::panes
