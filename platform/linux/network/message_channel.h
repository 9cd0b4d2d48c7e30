#pragma once

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>

#include <functional>

namespace corvane::platform {

/// One end of a stream socket over which messages go, each after its length in four bytes.
///
/// Never blocks, and raises no SIGPIPE. A message longer than the bound, or the end of the stream,
/// closes the channel. Main thread.
class MessageChannel final : public QObject
{
public:
    struct Handlers
    {
        /// May close the channel, but not destroy it.
        std::function<void(const QByteArray &message)> received;
        /// The other end is gone or broke the rules. Called once, and not by `close`.
        std::function<void()> lost;
    };

    /// Takes ownership of `socket`. `bound`: of messages from the other end, in bytes.
    MessageChannel(int socket, qsizetype bound, Handlers handlers);
    ~MessageChannel() override;

    /// Sends the message, or queues what the socket does not take now.
    void send(const QByteArray &message);
    void close();

private:
    void read();
    void write();
    void takeMessages();
    void lose();

    int m_socket;
    qsizetype m_bound;
    Handlers m_handlers;
    QByteArray m_incoming;
    QByteArray m_outgoing;
    QSocketNotifier m_readable;
    QSocketNotifier m_writable;
};

} // namespace corvane::platform
