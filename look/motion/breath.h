#pragma once

namespace corvane::look {

/// How bright and how large the breathing mark is.
struct Breath
{
    double opacity = 0.55;
    /// Of the mark's full size.
    double scale = 0.96;
};

/// The breath `seconds` after the mark was first shown: it grows from dim and small to full within
/// `period` seconds, and back within another, along the ease-in-out curve.
[[nodiscard]] Breath breathAt(double seconds, double period);

} // namespace corvane::look
