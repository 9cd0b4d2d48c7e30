#pragma once

#include <QProcess>

#include <sys/types.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace corvane::tests {

/// A program with its standard input and output as pipes; killed with this object.
class ChildProcess
{
public:
    /// `environment` is added to this process's own.
    explicit ChildProcess(const std::vector<std::string> &command,
                          const std::map<std::string, std::string> &environment = {});
    ~ChildProcess();

    [[nodiscard]] pid_t pid() const { return static_cast<pid_t>(m_process.processId()); }
    void write(const std::string &text);
    void closeInput() { m_process.closeWriteChannel(); }
    /// The next line of output without its line break; none at the end.
    [[nodiscard]] std::optional<std::string> readLine();
    /// What has come out since the last reading.
    [[nodiscard]] QByteArray read();

private:
    QProcess m_process;
};

} // namespace corvane::tests
