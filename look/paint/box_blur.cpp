#include "look/paint/box_blur.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

namespace corvane::look {

namespace {

/// The four channels of a pixel, 16 bits apart, so that one addition sums all of them. Exact for
/// boxes of up to 257 pixels.
using Channels = std::uint64_t;

Channels spread(QRgb pixel)
{
    const auto wide = static_cast<Channels>(pixel);
    return (wide & 0xff) | (wide & 0xff00) << 8 | (wide & 0xff0000) << 16 |
           (wide & 0xff000000) << 24;
}

/// Divides each channel by the box width, given as a 16-bit reciprocal.
QRgb average(Channels sum, std::uint32_t reciprocal)
{
    const auto channel = [&](int shift) {
        const auto total = static_cast<std::uint32_t>(sum >> shift & 0xffff);
        return (total * reciprocal + 0x8000) >> 16;
    };
    return channel(0) | channel(16) << 8 | channel(32) << 16 | channel(48) << 24;
}

/// One box pass over a line of `length` pixels at a distance of `stride`.
void blurLine(const QRgb *in, QRgb *out, int length, qsizetype stride, int radius,
              std::vector<Channels> &window)
{
    const int width = 2 * radius + 1;
    const auto reciprocal = static_cast<std::uint32_t>(0x10000 / width);
    for (int index = 0; index < length; ++index) {
        window[static_cast<std::size_t>(index)] = spread(in[index * stride]);
    }
    Channels sum = 0;
    for (int index = 0; index < std::min(radius, length); ++index) {
        sum += window[static_cast<std::size_t>(index)];
    }
    for (int index = 0; index < length; ++index) {
        if (index + radius < length) {
            sum += window[static_cast<std::size_t>(index) + static_cast<std::size_t>(radius)];
        }
        out[index * stride] = average(sum, reciprocal);
        if (index >= radius) {
            sum -= window[static_cast<std::size_t>(index - radius)];
        }
    }
}

} // namespace

QImage boxBlurred(const QImage &source, double sigma)
{
    // Three boxes of this width have the variance of the Gaussian: 3 (w² - 1) / 12 = sigma².
    const double width = std::sqrt(4 * sigma * sigma + 1);
    const int radius = std::min(static_cast<int>(std::lround((width - 1) / 2)), 128);
    if (radius < 1 || source.isNull()) {
        return source;
    }
    QImage image = source.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    image.detach();
    auto *pixels = reinterpret_cast<QRgb *>(image.bits());
    const qsizetype stride = image.bytesPerLine() / static_cast<qsizetype>(sizeof(QRgb));
    std::vector<Channels> window(static_cast<std::size_t>(std::max(image.width(), image.height())));
    for (int pass = 0; pass < 3; ++pass) {
        for (int y = 0; y < image.height(); ++y) {
            QRgb *line = pixels + y * stride;
            blurLine(line, line, image.width(), 1, radius, window);
        }
        for (int x = 0; x < image.width(); ++x) {
            QRgb *column = pixels + x;
            blurLine(column, column, image.height(), stride, radius, window);
        }
    }
    return image;
}

} // namespace corvane::look
