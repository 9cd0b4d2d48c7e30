#pragma once

#include "platform/http_client.h"

#include <QByteArray>

#include <cstdint>
#include <optional>

namespace corvane::platform {

/// A request on its way to the network process.
struct NetworkRequest
{
    /// Unique among the requests of a connection.
    std::uint32_t id = 0;
    HttpRequest request;
};

/// The network process's answer to the request with the same number.
struct NetworkAnswer
{
    std::uint32_t id = 0;
    HttpResult result;
};

/// In bytes, of a message without its length. An answer has a reply of at most four megabytes.
constexpr qsizetype maximumRequestMessage = 256 * 1024;
constexpr qsizetype maximumAnswerMessage = 4 * 1024 * 1024 + 64;
/// Requests that may be open at the same time.
constexpr std::size_t maximumOpenRequests = 64;

/// The message for a request, without its length. It may be longer than a message may be.
[[nodiscard]] QByteArray encoded(const NetworkRequest &request);
[[nodiscard]] QByteArray encoded(const NetworkAnswer &answer);

/// The request in a message; empty if the message is not exactly one request of this version.
[[nodiscard]] std::optional<NetworkRequest> decodedRequest(const QByteArray &message);
/// The answer in a message; empty if the message is not exactly one answer of this version.
[[nodiscard]] std::optional<NetworkAnswer> decodedAnswer(const QByteArray &message);

} // namespace corvane::platform
