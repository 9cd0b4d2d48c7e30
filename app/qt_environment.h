#pragma once

#include <QByteArray>

#include <optional>
#include <utility>
#include <vector>

namespace corvane::app {

/// What the environment tells Qt, for this process alone. Main thread.
class QtEnvironment
{
public:
    /// A variable's name and its value.
    using Variable = std::pair<QByteArray, QByteArray>;

    /// Sets `variables`. Before the application object is made.
    void prepare(const std::vector<Variable> &variables);
    /// Undoes that, so that programs started from here are not told the same. Qt reads the last of
    /// it with the first frame.
    void restore();

private:
    std::vector<std::pair<QByteArray, std::optional<QByteArray>>> m_before;
};

} // namespace corvane::app
