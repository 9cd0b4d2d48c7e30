#pragma once

#include <QByteArray>

#include <optional>
#include <utility>
#include <vector>

namespace corvane::app {

/// Environment variables for Qt in this process only. Main thread.
class QtEnvironment
{
public:
    /// A variable's name and value.
    using Variable = std::pair<QByteArray, QByteArray>;

    /// Sets `variables`. Must be called before the application object is created.
    void prepare(const std::vector<Variable> &variables);
    /// Restores the original values, so that child processes do not inherit the changes. Must be
    /// called after the first frame, with which Qt reads the last of the variables.
    void restore();

private:
    std::vector<std::pair<QByteArray, std::optional<QByteArray>>> m_before;
};

} // namespace corvane::app
