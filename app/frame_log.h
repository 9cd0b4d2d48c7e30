#pragma once

class QQuickWindow;

namespace corvane::app {

/// Writes when frames of `window` are done to the logging category "corvane.frames": the first
/// one, and for each the CPU time of the main thread since the frame before. Costs nothing while
/// the category is off.
void logFrames(QQuickWindow &window);

} // namespace corvane::app
