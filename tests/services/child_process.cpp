#include "child_process.h"

#include "tests/platform/wait_until.h"

#include <sys/prctl.h>

#include <csignal>

namespace corvane::tests {

constexpr int patienceMs = patience.count();

ChildProcess::ChildProcess(const std::vector<std::string> &command,
                           const std::map<std::string, std::string> &environment)
{
    QStringList words;
    for (const std::string &word : command) {
        words.append(QString::fromStdString(word));
    }
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    for (const auto &[name, value] : environment) {
        variables.insert(QString::fromStdString(name), QString::fromStdString(value));
    }
    m_process.setProcessEnvironment(variables);
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    m_process.start(words.takeFirst(), words);
    m_process.waitForStarted(patienceMs);
}

ChildProcess::~ChildProcess()
{
    m_process.kill();
    m_process.waitForFinished(patienceMs);
}

void ChildProcess::write(const std::string &text)
{
    m_process.write(text.data(), static_cast<qint64>(text.size()));
    // A program that has been killed does not read; its end is what the tests look at.
    m_process.waitForBytesWritten(patienceMs);
}

std::optional<std::string> ChildProcess::readLine()
{
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead(patienceMs)) {
            return std::nullopt;
        }
    }
    return m_process.readLine().chopped(1).toStdString();
}

QByteArray ChildProcess::read()
{
    m_process.waitForReadyRead(1);
    return m_process.readAllStandardOutput();
}

} // namespace corvane::tests
