#pragma once

#include "platform/http_client.h"
#include "platform/linux/network/message_channel.h"

#include <QDeadlineTimer>
#include <QString>
#include <QTimer>

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include <sys/types.h>

namespace corvane::platform {

/// HTTP by a process of its own, so that this one needs no internet socket and no TLS.
///
/// If the process cannot be started, ends, hangs or breaks the rules of the connection, all open
/// requests end as unreachable, and a new process is started with a request after a pause. Must not
/// be destroyed by the receiver of a result.
class NetworkProcess final : public HttpClient
{
public:
    /// `program`: absolute path of the network process's program. `grace`: time that it has for an
    /// answer beyond the request's own limit, which it applies itself. A busy machine may need some
    /// of it.
    explicit NetworkProcess(QString program,
                            std::chrono::milliseconds grace = std::chrono::seconds(5));
    /// Ends the process, and all open requests as cancelled.
    ~NetworkProcess() override;

    Completion<HttpResult> send(HttpRequest request) override;
    /// Starts the process, if requests are waiting for it or not. Requests start it by themselves
    /// a second after the first, so that they do not delay the program's start.
    void start();

private:
    struct Open
    {
        Completion<HttpResult> completion;
        /// When the process should have answered long ago.
        QDeadlineTimer limit;
        /// False if it could not be handed to a process; it then only waits for its result.
        bool sent;
    };

    [[nodiscard]] bool spawn();
    void receive(const QByteArray &message);
    void abandon();
    void reap();
    void endOverdue();
    void watchNext();
    void endAll(HttpError error);

    QString m_program;
    std::chrono::milliseconds m_grace;
    bool m_mayStart = false;
    bool m_shutDown = false;
    std::uint32_t m_lastId = 0;
    std::map<std::uint32_t, Open> m_open;
    /// Messages that wait for the start.
    std::vector<QByteArray> m_waiting;
    pid_t m_process = 0;
    /// Processes that have been killed, but may not have ended.
    std::vector<pid_t> m_killed;
    std::unique_ptr<MessageChannel> m_channel;
    std::chrono::milliseconds m_pause{0};
    QDeadlineTimer m_mayStartAgain{0};
    QTimer m_starter;
    QTimer m_watch;
};

} // namespace corvane::platform
