#pragma once

#include "platform/completion.h"

#include <QByteArray>
#include <QList>
#include <QUrl>

#include <chrono>
#include <variant>

namespace corvane::platform {

/// A redirect may turn a POST into a GET.
enum class HttpMethod { Get, Post };

/// A name and its value, without line breaks; a header that has one is left out.
struct HttpHeader
{
    QByteArray name;
    QByteArray value;
};

/// What to ask. The body goes with a POST only. A redirect takes headers to no other host, but for
/// the type of a body.
struct HttpRequest
{
    HttpMethod method = HttpMethod::Get;
    QUrl url;
    QList<HttpHeader> headers;
    QByteArray body;
    /// Bound on the whole request, from the call to the last byte of the reply.
    std::chrono::milliseconds timeout{12'000};
    /// Never sent again by the client itself. It may repeat others that were sent over a kept
    /// connection which turned out to be dead.
    bool once = false;
};

/// What the server answered, after redirects.
struct HttpReply
{
    int status = 0;
    QByteArray body;
};

/// Why a request brought no reply. An HTTP error status is a reply, not an error.
enum class HttpError {
    BadUrl,          ///< not an absolute http or https URL
    Unreachable,     ///< no connection, a broken one, or a TLS failure
    TimedOut,        ///< the request's bound ran out
    TooLarge,        ///< the reply is longer than the client accepts
    RefusedRedirect, ///< too many redirects, or one from https to http
    Cancelled,       ///< the client was torn down first
};

using HttpResult = std::variant<HttpReply, HttpError>;

/// The process-wide HTTP client. Sends no credentials and keeps no cookies.
class HttpClient
{
public:
    HttpClient() = default;
    HttpClient(const HttpClient &) = delete;
    HttpClient &operator=(const HttpClient &) = delete;
    virtual ~HttpClient() = default;

    /// Starts the request and returns at once. Called on the main thread, where the result is
    /// delivered too. Path and query go out as they stand in the URL. Always resolves: at the
    /// latest when the time-out runs out or the client is destroyed.
    virtual Completion<HttpResult> send(HttpRequest request) = 0;
};

} // namespace corvane::platform
