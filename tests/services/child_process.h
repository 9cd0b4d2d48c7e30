#pragma once

#include <QProcess>
#include <QTemporaryDir>

#include <sys/types.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace corvane::tests {

/// A program with its standard input and output as pipes; killed with this object. No wait for it
/// is longer than twenty seconds.
class ChildProcess
{
public:
    /// `environment` is added to this process's own. With `user` the program runs as that user.
    explicit ChildProcess(const std::vector<std::string> &command,
                          const std::map<std::string, std::string> &environment = {},
                          std::optional<uid_t> user = std::nullopt);
    ~ChildProcess();

    [[nodiscard]] pid_t pid() const { return static_cast<pid_t>(m_process.processId()); }
    void write(const std::string &text);
    void closeInput() { m_process.closeWriteChannel(); }
    /// The next line of output without its line break; none at the end.
    [[nodiscard]] std::optional<std::string> readLine();
    /// Writes a line and gives the one that answers it, or "died".
    std::string ask(const std::string &line);
    /// What has come out since the last reading.
    [[nodiscard]] QByteArray read();
    /// Waits for the end; the exit code, -1 after a signal.
    int waitForEnd();

private:
    QProcess m_process;
};

/// A new folder under the system's temporary one, deleted with this object.
class TemporaryFolder
{
public:
    explicit TemporaryFolder(std::optional<uid_t> owner = std::nullopt);

    [[nodiscard]] std::string path() const { return m_folder.path().toStdString(); }

private:
    QTemporaryDir m_folder;
};

} // namespace corvane::tests
