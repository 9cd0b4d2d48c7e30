#pragma once

#include <QImage>

namespace corvane::look {

/// `source` blurred like a Gaussian of `sigma` pixels: three box passes in each direction with
/// running sums, whose cost does not depend on the radius.
///
/// Takes and gives premultiplied 32-bit pixels of the same size; beyond the edges the picture
/// counts as transparent. Returns `source` where the blur is too small to see.
[[nodiscard]] QImage boxBlurred(const QImage &source, double sigma);

} // namespace corvane::look
