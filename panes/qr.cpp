#include "panes/qr.h"

#include <qrencode.h>

#include <cmath>
#include <memory>

namespace corvane::panes {

namespace {

constexpr int quietZone = 1;

} // namespace

std::optional<QImage> QR::modules(const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    const std::unique_ptr<QRcode, void (*)(QRcode *)> code(
        QRcode_encodeData(static_cast<int>(bytes.size()),
                          reinterpret_cast<const unsigned char *>(bytes.constData()), 0,
                          QR_ECLEVEL_M),
        &QRcode_free);
    if (!code) {
        return std::nullopt;
    }
    QImage image(code->width + 2 * quietZone, code->width + 2 * quietZone,
                 QImage::Format_Grayscale8);
    image.fill(Qt::white);
    for (int y = 0; y < code->width; ++y) {
        uchar *const line = image.scanLine(y + quietZone);
        for (int x = 0; x < code->width; ++x) {
            // The lowest bit is the colour (1 for black); the others are the module's function.
            if ((code->data[y * code->width + x] & 1) != 0) {
                line[x + quietZone] = 0;
            }
        }
    }
    return image;
}

std::optional<QImage> QR::image(const QString &text, double side, double scale)
{
    const auto code = modules(text);
    if (!code) {
        return std::nullopt;
    }
    const int pixels = static_cast<int>(std::lround(side * scale));
    QImage image(pixels, pixels, QImage::Format_Grayscale8);
    for (int y = 0; y < pixels; ++y) {
        const uchar *const from = code->constScanLine(y * code->height() / pixels);
        uchar *const to = image.scanLine(y);
        for (int x = 0; x < pixels; ++x) {
            to[x] = from[x * code->width() / pixels];
        }
    }
    image.setDevicePixelRatio(scale);
    return image;
}

} // namespace corvane::panes
