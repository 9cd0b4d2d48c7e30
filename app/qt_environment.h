#pragma once

#include <QByteArray>

#include <optional>
#include <utility>
#include <vector>

namespace corvane::app {

/// What the environment tells Qt. Variables that somebody has set are left alone, but for a window
/// system that the island cannot live on. Main thread.
class QtEnvironment
{
public:
    /// Chooses the window system, and what makes a frame at rest cheap. Before the application
    /// object is made.
    void prepare();
    /// Undoes that, so that programs started from here are not told the same. Qt reads the last of
    /// it with the first frame.
    void restore();

private:
    void set(const char *variable, const QByteArray &value);

    std::vector<std::pair<const char *, std::optional<QByteArray>>> m_before;
};

} // namespace corvane::app
