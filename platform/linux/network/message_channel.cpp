#include "platform/linux/network/message_channel.h"

#include <QtEndian>

#include <array>
#include <cerrno>
#include <utility>

#include <sys/socket.h>
#include <unistd.h>

namespace corvane::platform {

namespace {

constexpr qsizetype lengthSize = sizeof(quint32);

bool mayContinueLater(int error)
{
    return error == EAGAIN || error == EINTR;
}

} // namespace

MessageChannel::MessageChannel(int socket, qsizetype bound, Handlers handlers)
    : m_socket(socket)
    , m_bound(bound)
    , m_handlers(std::move(handlers))
    , m_readable(socket, QSocketNotifier::Read)
    , m_writable(socket, QSocketNotifier::Write)
{
    m_writable.setEnabled(false);
    connect(&m_readable, &QSocketNotifier::activated, this, &MessageChannel::read);
    connect(&m_writable, &QSocketNotifier::activated, this, &MessageChannel::write);
}

MessageChannel::~MessageChannel()
{
    close();
}

void MessageChannel::send(const QByteArray &message)
{
    if (m_socket < 0) {
        return;
    }
    QByteArray length(lengthSize, Qt::Uninitialized);
    qToBigEndian(static_cast<quint32>(message.size()), length.data());
    m_outgoing.append(length);
    m_outgoing.append(message);
    write();
}

void MessageChannel::close()
{
    if (m_socket < 0) {
        return;
    }
    m_readable.setEnabled(false);
    m_writable.setEnabled(false);
    ::close(std::exchange(m_socket, -1));
    m_outgoing.clear();
}

void MessageChannel::read()
{
    // One piece an event, so that a flood does not keep the event loop from everything else.
    std::array<char, 64 * 1024> piece; // NOLINT(cppcoreguidelines-pro-type-member-init)
    const ssize_t length = recv(m_socket, piece.data(), piece.size(), MSG_DONTWAIT);
    if (length > 0) {
        m_incoming.append(piece.data(), length);
        takeMessages();
    } else if (length == 0 || !mayContinueLater(errno)) {
        lose();
    }
}

void MessageChannel::takeMessages()
{
    qsizetype taken = 0;
    while (m_socket >= 0 && m_incoming.size() - taken >= lengthSize) {
        const qsizetype length = qFromBigEndian<quint32>(m_incoming.constData() + taken);
        if (length > m_bound) {
            lose();
            return;
        }
        if (m_incoming.size() - taken - lengthSize < length) {
            break;
        }
        m_handlers.received(m_incoming.sliced(taken + lengthSize, length));
        taken += lengthSize + length;
    }
    m_incoming.remove(0, taken);
}

void MessageChannel::write()
{
    const ssize_t length =
        ::send(m_socket, m_outgoing.constData(), static_cast<std::size_t>(m_outgoing.size()),
               MSG_DONTWAIT | MSG_NOSIGNAL);
    if (length >= 0) {
        m_outgoing.remove(0, length);
    }
    // A failure is also seen by the next read, which is the place to report it.
    m_writable.setEnabled(!m_outgoing.isEmpty() && (length >= 0 || mayContinueLater(errno)));
}

void MessageChannel::lose()
{
    close();
    m_handlers.lost();
}

} // namespace corvane::platform
