#pragma once

#include <QImage>

namespace corvane::look {

/// `source` blurred like a Gaussian of `sigma` pixels: three box passes in each direction with
/// running sums, whose cost does not depend on the radius.
///
/// Input and output have premultiplied 32-bit pixels and the same size; pixels beyond the edges are
/// treated as transparent. Returns `source` if the blur is too small to be visible.
[[nodiscard]] QImage boxBlurred(const QImage &source, double sigma);

} // namespace corvane::look
