#pragma once

#include "platform/http_client.h"
#include "platform/linux/network/message_channel.h"
#include "platform/linux/network/network_messages.h"

#include <QCoroTask>

#include <functional>

namespace corvane::platform {

/// The network process's end: sends the requests that come over a socket, and answers them.
class NetworkServer
{
public:
    /// Takes ownership of `socket`. `ended`: called once when the other end is gone, or has sent
    /// something that is not a request.
    NetworkServer(int socket, HttpClient &http, std::function<void()> ended);

private:
    void receive(const QByteArray &message);
    QCoro::Task<> serve(NetworkRequest request);

    HttpClient &m_http;
    std::function<void()> m_ended;
    std::size_t m_open = 0;
    MessageChannel m_channel;
};

} // namespace corvane::platform
