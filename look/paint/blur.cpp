#include "look/paint/blur.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

namespace corvane::look {

namespace {

/// From this sigma on (pixels), half the resolution is enough.
constexpr double halvedSigma = 1.5;
/// Variance that halving a picture and drawing it in double size adds, in pixels of the half.
constexpr double halvingVariance = 0.2;
/// The Gaussian is negligible beyond this many pixels at sigmas below `halvedSigma`.
constexpr int reach = 4;
/// Weights are in 256ths, so that a weighted sum of bytes fits into 16 bits.
constexpr int unity = 256;

/// The weights at distances of 0 to `reach` pixels.
using Weights = std::array<std::uint16_t, reach + 1>;

Weights gaussianWeights(double sigma)
{
    std::array<double, reach + 1> shares{};
    double total = 0;
    for (int distance = 0; distance <= reach; ++distance) {
        const double share = std::exp(-distance * distance / (2 * sigma * sigma));
        shares.at(static_cast<std::size_t>(distance)) = share;
        total += distance == 0 ? share : 2 * share;
    }
    Weights weights{};
    int rest = unity;
    for (std::size_t distance = reach; distance > 0; --distance) {
        weights.at(distance) =
            static_cast<std::uint16_t>(std::lround(unity * shares.at(distance) / total));
        rest -= 2 * weights.at(distance);
    }
    weights[0] = static_cast<std::uint16_t>(rest);
    return weights;
}

/// The weighted sum of `count` bytes at each of `lines`, which are the places from -reach to
/// +reach. A plain loop, which the compiler unrolls and vectorises.
void addWeighted(std::uint8_t *out, std::size_t count,
                 const std::array<const std::uint8_t *, 2 * reach + 1> &lines,
                 const Weights &weights)
{
    for (std::size_t index = 0; index < count; ++index) {
        auto sum = static_cast<std::uint16_t>(unity / 2 + weights[0] * lines[reach][index]);
        for (std::size_t distance = 1; distance <= reach; ++distance) {
            const auto pair = static_cast<std::uint16_t>(lines[reach - distance][index] +
                                                         lines[reach + distance][index]);
            sum = static_cast<std::uint16_t>(sum + weights[distance] * pair);
        }
        out[index] = static_cast<std::uint8_t>(sum >> 8);
    }
}

/// Convolves in both directions, for sigmas below `halvedSigma`.
QImage convolved(const QImage &source, double sigma)
{
    const Weights weights = gaussianWeights(sigma);
    const auto bytes = static_cast<std::size_t>(source.width()) * sizeof(QRgb);
    constexpr std::size_t margin = reach * sizeof(QRgb);
    const std::vector<std::uint8_t> transparent(bytes);
    std::vector<std::uint8_t> padded(bytes + 2 * margin);
    QImage result(source.size(), QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < source.height(); ++y) {
        std::array<const std::uint8_t *, 2 * reach + 1> lines{};
        for (int place = 0; place <= 2 * reach; ++place) {
            const int row = y + place - reach;
            lines.at(static_cast<std::size_t>(place)) =
                row >= 0 && row < source.height() ? source.constScanLine(row) : transparent.data();
        }
        addWeighted(padded.data() + margin, bytes, lines, weights);
        for (std::size_t place = 0; place < lines.size(); ++place) {
            lines.at(place) = padded.data() + place * sizeof(QRgb);
        }
        addWeighted(result.scanLine(y), bytes, lines, weights);
    }
    return result;
}

/// The mean of each channel of two pixels, rounded down.
constexpr QRgb mean(QRgb left, QRgb right)
{
    return (left & right) + (((left ^ right) & 0xfefefefe) >> 1);
}

/// Each pixel is the mean of two by two; pixels beyond the edges are transparent.
QImage halved(const QImage &source)
{
    QImage half((source.width() + 1) / 2, (source.height() + 1) / 2,
                QImage::Format_ARGB32_Premultiplied);
    const int pairs = source.width() / 2;
    const std::vector<QRgb> transparent(static_cast<std::size_t>(source.width()));
    for (int y = 0; y < half.height(); ++y) {
        const auto *upper = reinterpret_cast<const QRgb *>(source.constScanLine(2 * y));
        const auto *lower = 2 * y + 1 < source.height()
                                ? reinterpret_cast<const QRgb *>(source.constScanLine(2 * y + 1))
                                : transparent.data();
        auto *out = reinterpret_cast<QRgb *>(half.scanLine(y));
        for (int x = 0; x < pairs; ++x) {
            out[x] =
                mean(mean(upper[2 * x], upper[2 * x + 1]), mean(lower[2 * x], lower[2 * x + 1]));
        }
        if (pairs < half.width()) {
            out[pairs] = mean(mean(upper[2 * pairs], lower[2 * pairs]), 0);
        }
    }
    return half;
}

} // namespace

BlurredPicture blurred(const QImage &source, double sigma)
{
    BlurredPicture picture{source.convertToFormat(QImage::Format_ARGB32_Premultiplied)};
    while (sigma >= halvedSigma) {
        picture.image = halved(picture.image);
        picture.pixelSize *= 2;
        sigma = std::sqrt(std::max(sigma * sigma / 4 - halvingVariance, 0.0));
    }
    // Below, the weights of all but the pixel itself are zero.
    if (sigma > 0.25) {
        picture.image = convolved(picture.image, sigma);
    }
    return picture;
}

} // namespace corvane::look
