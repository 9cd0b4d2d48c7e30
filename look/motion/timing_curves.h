#pragma once

#include <QEasingCurve>

namespace corvane::look {

/// The standard timing curves, cubic Béziers from (0, 0) to (1, 1). Qt's values are within 0.0003
/// of the exact ones, which is a fifteenth of a screen's smallest step in brightness.
[[nodiscard]] const QEasingCurve &easeInCurve();
[[nodiscard]] const QEasingCurve &easeOutCurve();
[[nodiscard]] const QEasingCurve &easeInOutCurve();

} // namespace corvane::look
