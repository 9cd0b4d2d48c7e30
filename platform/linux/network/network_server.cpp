#include "platform/linux/network/network_server.h"

#include <utility>

namespace corvane::platform {

NetworkServer::NetworkServer(int socket, HttpClient &http, std::function<void()> ended)
    : m_http(http)
    , m_ended(std::move(ended))
    , m_channel(socket, maximumRequestMessage,
                {[this](const QByteArray &message) { receive(message); }, m_ended})
{}

void NetworkServer::receive(const QByteArray &message)
{
    auto request = decodedRequest(message);
    if (!request || m_open == maximumOpenRequests) {
        m_channel.close();
        m_ended();
        return;
    }
    serve(*std::move(request));
}

QCoro::Task<> NetworkServer::serve(NetworkRequest request)
{
    const auto id = request.id;
    ++m_open;
    auto pending = m_http.send(std::move(request.request));
    const HttpResult result = co_await pending;
    --m_open;
    m_channel.send(encoded(NetworkAnswer{id, result}));
}

} // namespace corvane::platform
