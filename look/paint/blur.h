#pragma once

#include <QImage>

namespace corvane::look {

/// A blurred picture, which may have fewer pixels than its source: nobody sees the difference once
/// it is drawn in the source's size.
struct BlurredPicture
{
    QImage image;
    /// The width and the height of one pixel of `image` in pixels of the source: 1, 2, 4 and so on.
    /// At the right and at the bottom the picture may exceed the source by a part of such a pixel.
    int pixelSize = 1;
};

/// `source` blurred by a Gaussian of `sigma` pixels.
///
/// `source` has premultiplied 32-bit pixels; pixels beyond its edges are treated as transparent.
/// The cost decreases with sigma: a wide blur is computed from a smaller picture.
[[nodiscard]] BlurredPicture blurred(const QImage &source, double sigma);

} // namespace corvane::look
