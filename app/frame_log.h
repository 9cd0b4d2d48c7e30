#pragma once

class QQuickWindow;

namespace corvane::app {

/// Logs each completed frame of `window` to the category "corvane.frames", with its time and the
/// CPU time of the main thread since the previous frame. No cost while the category is disabled.
void logFrames(QQuickWindow &window);

} // namespace corvane::app
