#include "child_process.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <utility>

namespace corvane::tests {

ChildProcess::ChildProcess(std::vector<std::string> command,
                           std::map<std::string, std::string> environment,
                           std::optional<uid_t> user)
{
    // Everything that allocates is done before the fork: other threads may hold the heap's lock.
    for (char **entry = environ; *entry != nullptr; ++entry) {
        const std::string_view text(*entry);
        const auto equals = text.find('=');
        environment.emplace(text.substr(0, equals), text.substr(equals + 1));
    }
    std::vector<std::string> assignments;
    for (const auto &[name, value] : environment) {
        assignments.push_back(name + "=" + value);
    }
    const auto pointers = [](std::vector<std::string> &texts) {
        std::vector<char *> result;
        for (std::string &text : texts) {
            result.push_back(text.data());
        }
        result.push_back(nullptr);
        return result;
    };
    const auto arguments = pointers(command);
    const auto variables = pointers(assignments);

    int input[2];
    int output[2];
    if (pipe2(input, O_CLOEXEC) != 0 || pipe2(output, O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipes");
    }
    m_pid = fork();
    if (m_pid == 0) {
        dup2(input[0], STDIN_FILENO);
        dup2(output[1], STDOUT_FILENO);
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (!user || (setgid(*user) == 0 && setuid(*user) == 0)) {
            execvpe(arguments[0], arguments.data(), variables.data());
        }
        _exit(127);
    }
    close(input[0]);
    close(output[1]);
    m_input = input[1];
    m_output = output[0];
    std::signal(SIGPIPE, SIG_IGN);
}

ChildProcess::~ChildProcess()
{
    if (m_pid > 0) {
        signal(SIGKILL);
        waitForEnd();
    }
    closeInput();
    close(m_output);
}

void ChildProcess::write(std::string_view text)
{
    // A program that has been killed does not read; its end is what the tests look at.
    static_cast<void>(!::write(m_input, text.data(), text.size()));
}

void ChildProcess::closeInput()
{
    if (m_input >= 0) {
        close(std::exchange(m_input, -1));
    }
}

std::optional<std::string> ChildProcess::readLine()
{
    const auto end = std::chrono::steady_clock::now() + patience;
    for (;;) {
        if (const auto lineEnd = m_pending.find('\n'); lineEnd != std::string::npos) {
            std::string line = m_pending.substr(0, lineEnd);
            m_pending.erase(0, lineEnd + 1);
            return line;
        }
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        pollfd readable{m_output, POLLIN, 0};
        if (left.count() <= 0 || poll(&readable, 1, static_cast<int>(left.count())) <= 0) {
            return std::nullopt;
        }
        char buffer[4096];
        const auto count = read(m_output, buffer, sizeof buffer);
        if (count <= 0) {
            return std::nullopt;
        }
        m_pending.append(buffer, static_cast<std::size_t>(count));
    }
}

void ChildProcess::signal(int number) const
{
    kill(m_pid, number);
}

int ChildProcess::waitForEnd()
{
    int status = 0;
    waitpid(std::exchange(m_pid, -1), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TemporaryFolder::TemporaryFolder(std::optional<uid_t> owner)
    : m_path((std::filesystem::temp_directory_path() / "corvane-services-XXXXXX").string())
{
    if (mkdtemp(m_path.data()) == nullptr ||
        (owner && chown(m_path.c_str(), *owner, *owner) != 0)) {
        throw std::runtime_error("no temporary folder");
    }
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

} // namespace corvane::tests
