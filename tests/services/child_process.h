#pragma once

#include <sys/types.h>

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::tests {

inline constexpr std::chrono::seconds patience{20};

/// A program with its standard input and output as pipes; killed with this object.
class ChildProcess
{
public:
    /// `environment` is added to this process's own. With `user` the program runs as that user.
    explicit ChildProcess(std::vector<std::string> command,
                          std::map<std::string, std::string> environment = {},
                          std::optional<uid_t> user = std::nullopt);
    ~ChildProcess();
    ChildProcess(const ChildProcess &) = delete;
    ChildProcess &operator=(const ChildProcess &) = delete;

    [[nodiscard]] pid_t pid() const { return m_pid; }
    void write(std::string_view text);
    void closeInput();
    /// The next line of output without its line break; none at the end and after `patience`.
    [[nodiscard]] std::optional<std::string> readLine();
    void signal(int number) const;
    /// Waits for the end; the exit code, -1 after a signal.
    int waitForEnd();

private:
    pid_t m_pid = -1;
    int m_input = -1;
    int m_output = -1;
    std::string m_pending;
};

/// Asks again and again until `done` or `patience` runs out.
template <typename Done>
bool waitUntil(Done done)
{
    const auto end = std::chrono::steady_clock::now() + patience;
    while (!done()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        // Nothing tells when a service has got there, so it is asked at short intervals.
        const timespec interval{0, 2'000'000};
        nanosleep(&interval, nullptr);
    }
    return true;
}

/// A new folder under the system's temporary one, deleted with this object.
class TemporaryFolder
{
public:
    explicit TemporaryFolder(std::optional<uid_t> owner = std::nullopt);
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder &) = delete;
    TemporaryFolder &operator=(const TemporaryFolder &) = delete;

    [[nodiscard]] const std::string &path() const { return m_path; }

private:
    std::string m_path;
};

} // namespace corvane::tests
