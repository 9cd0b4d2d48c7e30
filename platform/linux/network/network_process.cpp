#include "platform/linux/network/network_process.h"

#include "platform/linux/network/network_messages.h"

#include <QCoreApplication>
#include <QFile>
#include <QLoggingCategory>
#include <QMetaObject>

#include <algorithm>
#include <array>
#include <csignal>
#include <string>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace corvane::platform {

namespace {

using namespace std::chrono_literals;

Q_LOGGING_CATEGORY(networkLog, "corvane.network", QtWarningMsg)

/// The descriptor at which the network process finds its socket.
constexpr int childSocket = 3;
/// For which requests wait if nothing else starts the process.
constexpr auto longestWait = 1s;
constexpr auto shortestPause = 250ms;
constexpr auto longestPause = 60'000ms;

/// The variables that libcurl, the resolver and the loader read. The process gets no others.
constexpr std::array<std::string_view, 14> passedVariables{
    "ALL_PROXY=", "HTTPS_PROXY=",      "LD_LIBRARY_PATH=", "LOCALDOMAIN=",
    "NO_PROXY=",  "RES_OPTIONS=",      "SSL_CERT_DIR=",    "SSL_CERT_FILE=",
    "TZ=",        "all_proxy=",        "http_proxy=",      "https_proxy=",
    "no_proxy=",  "QT_LOGGING_RULES=",
};

std::vector<char *> childEnvironment()
{
    // Qt complains about a locale without UTF-8.
    static std::string locale = "LC_ALL=C.UTF-8";
    std::vector<char *> kept{locale.data()};
    for (char **variable = environ; *variable != nullptr; ++variable) {
        if (std::ranges::any_of(passedVariables, [&](std::string_view name) {
                return std::string_view(*variable).starts_with(name);
            })) {
            kept.push_back(*variable);
        }
    }
    kept.push_back(nullptr);
    return kept;
}

/// The socket of a new process of `program`, and the process in `process`; -1 if it cannot be
/// started.
int spawned(const QString &program, pid_t &process)
{
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        return -1;
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], childSocket);
    posix_spawn_file_actions_addclosefrom_np(&actions, childSocket + 1);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    // A group of its own: Ctrl-C in a terminal ends the program, which closes the socket.
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK |
                                              POSIX_SPAWN_SETSIGDEF);
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_setsigmask(&attributes, &none);
    sigset_t all;
    sigfillset(&all);
    posix_spawnattr_setsigdefault(&attributes, &all);
    std::string path = QFile::encodeName(program).toStdString();
    std::array<char *, 2> arguments{path.data(), nullptr};
    const int failure = posix_spawn(&process, path.c_str(), &actions, &attributes, arguments.data(),
                                    childEnvironment().data());
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    if (failure != 0) {
        close(ends[0]);
        return -1;
    }
    return ends[0];
}

} // namespace

NetworkProcess::NetworkProcess(QString program, std::chrono::milliseconds grace)
    : m_program(std::move(program))
    , m_grace(grace)
{
    m_starter.setSingleShot(true);
    QObject::connect(&m_starter, &QTimer::timeout, &m_starter, [this] { start(); });
    m_watch.setSingleShot(true);
    QObject::connect(&m_watch, &QTimer::timeout, &m_watch, [this] { endOverdue(); });
}

NetworkProcess::~NetworkProcess()
{
    m_shutDown = true;
    m_channel.reset();
    if (m_process != 0) {
        // It would also end by itself, because its socket is closed.
        kill(m_process, SIGKILL);
        m_killed.push_back(m_process);
    }
    reap();
    endAll(HttpError::Cancelled);
}

Completion<HttpResult> NetworkProcess::send(HttpRequest request)
{
    Completion<HttpResult> completion;
    if (m_shutDown) {
        completion.resolve(HttpError::Cancelled);
        return completion;
    }
    const std::uint32_t id = ++m_lastId;
    const QByteArray message = encoded(NetworkRequest{id, request});
    const bool fits =
        message.size() <= maximumRequestMessage && m_open.size() < maximumOpenRequests;
    const bool canBeSent = fits && (!m_mayStart || spawn());
    m_open.emplace(id, Open{completion, QDeadlineTimer(canBeSent ? request.timeout + m_grace : 0ms),
                            canBeSent});
    if (canBeSent && m_channel != nullptr) {
        m_channel->send(message);
    } else if (canBeSent) {
        m_waiting.push_back(message);
        if (!m_starter.isActive()) {
            m_starter.start(longestWait);
        }
    }
    watchNext();
    return completion;
}

void NetworkProcess::start()
{
    m_mayStart = true;
    m_starter.stop();
    const auto waiting = std::exchange(m_waiting, {});
    if (!spawn()) {
        endAll(HttpError::Unreachable);
        return;
    }
    for (const QByteArray &message : waiting) {
        m_channel->send(message);
    }
}

bool NetworkProcess::spawn()
{
    if (m_channel != nullptr) {
        return true;
    }
    reap();
    if (!m_mayStartAgain.hasExpired()) {
        return false;
    }
    // Until an answer proves that it works.
    m_pause = std::clamp(m_pause * 2, std::chrono::milliseconds(shortestPause),
                         std::chrono::milliseconds(longestPause));
    m_mayStartAgain.setRemainingTime(m_pause);
    const int socket = spawned(m_program, m_process);
    if (socket < 0) {
        m_process = 0;
        qCWarning(networkLog, "cannot start the network process");
        return false;
    }
    m_channel = std::make_unique<MessageChannel>(
        socket, maximumAnswerMessage,
        MessageChannel::Handlers{[this](const QByteArray &message) { receive(message); },
                                 [this] { abandon(); }});
    return true;
}

void NetworkProcess::receive(const QByteArray &message)
{
    auto answer = decodedAnswer(message);
    const auto found = answer ? m_open.find(answer->id) : m_open.end();
    if (found == m_open.end()) {
        abandon();
        return;
    }
    m_pause = {};
    m_mayStartAgain.setRemainingTime(0);
    const Open open = std::move(found->second);
    m_open.erase(found);
    if (m_open.empty()) {
        m_watch.stop();
    }
    open.completion.resolve(std::move(answer->result));
}

void NetworkProcess::abandon()
{
    qCWarning(networkLog, "the network process has ended or misbehaved");
    m_channel->close();
    // This may be a call from the channel.
    m_channel.release()->deleteLater();
    kill(m_process, SIGKILL);
    m_killed.push_back(std::exchange(m_process, 0));
    reap();
    // Not earlier than the pause after its start, and not at once where it had worked.
    m_pause = std::max(m_pause, std::chrono::milliseconds(shortestPause));
    m_mayStartAgain.setRemainingTime(m_pause);
    endAll(HttpError::Unreachable);
}

void NetworkProcess::reap()
{
    std::erase_if(m_killed, [](pid_t process) { return waitpid(process, nullptr, WNOHANG) != 0; });
}

void NetworkProcess::endOverdue()
{
    const auto isOver = [](const auto &open) { return open.second.limit.hasExpired(); };
    if (m_channel != nullptr && std::ranges::any_of(m_open, [&](const auto &open) {
            return isOver(open) && open.second.sent;
        })) {
        abandon();
        return;
    }
    std::vector<Completion<HttpResult>> ended;
    std::erase_if(m_open, [&](const auto &open) {
        if (isOver(open)) {
            ended.push_back(open.second.completion);
            return true;
        }
        return false;
    });
    watchNext();
    for (const auto &completion : ended) {
        completion.resolve(HttpError::Unreachable);
    }
}

void NetworkProcess::watchNext()
{
    if (m_open.empty()) {
        m_watch.stop();
        return;
    }
    qint64 next = m_open.begin()->second.limit.remainingTime();
    for (const auto &[id, open] : m_open) {
        next = std::min(next, open.limit.remainingTime());
    }
    m_watch.start(std::chrono::milliseconds(next));
}

void NetworkProcess::endAll(HttpError error)
{
    m_watch.stop();
    m_waiting.clear();
    const auto open = std::exchange(m_open, {});
    for (const auto &[id, request] : open) {
        request.completion.resolve(error);
    }
}

} // namespace corvane::platform
