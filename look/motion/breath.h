#pragma once

namespace corvane::look {

/// Brightness and size of the breathing mark.
struct Breath
{
    double opacity = 0.55;
    /// Relative to the mark's full size.
    double scale = 0.96;
};

/// The breath `seconds` after the mark was first shown: it grows from dim and small to full within
/// `period` seconds, and back within another, along the ease-in-out curve.
[[nodiscard]] Breath breathAt(double seconds, double period);

} // namespace corvane::look
