#pragma once

#include <QImage>
#include <QString>

#include <optional>

namespace corvane::panes {

/// QR codes as pictures. Thread-safe.
struct QR
{
    /// The QR code of `text` (UTF-8, error correction level M) with a quiet zone of one module, one
    /// pixel per module, black on white. Empty if the text is empty or too long for a code.
    [[nodiscard]] static std::optional<QImage> modules(const QString &text);

    /// The same with a width of `side` points, including the quiet zone, at `scale` pixels per
    /// point. Modules have integral widths in pixels, which differ by at most one pixel.
    [[nodiscard]] static std::optional<QImage> image(const QString &text, double side,
                                                     double scale = 1);
};

} // namespace corvane::panes
