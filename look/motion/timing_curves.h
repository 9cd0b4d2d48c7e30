#pragma once

#include <QEasingCurve>

namespace corvane::look {

/// The standard timing curves, cubic Béziers from (0, 0) to (1, 1). Qt's values differ by at most
/// 0.0003 from the exact ones, a fifteenth of the smallest step of an 8-bit channel.
[[nodiscard]] const QEasingCurve &easeInCurve();
[[nodiscard]] const QEasingCurve &easeOutCurve();
[[nodiscard]] const QEasingCurve &easeInOutCurve();

} // namespace corvane::look
