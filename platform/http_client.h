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

/// A header's name and value, without line breaks; a header that contains one is not sent.
struct HttpHeader
{
    QByteArray name;
    QByteArray value;
};

/// A request. The body is sent only with POST. A user name and password in the URL are sent as the
/// header of basic authentication. After a redirect to another host, headers are not sent, except
/// the body's Content-Type.
struct HttpRequest
{
    HttpMethod method = HttpMethod::Get;
    QUrl url;
    QList<HttpHeader> headers;
    QByteArray body;
    /// Time limit for the whole request, from the call to the last byte of the reply.
    std::chrono::milliseconds timeout{12'000};
    /// If true, the client never sends the request twice. Other requests may be repeated if a
    /// reused connection turns out to be closed.
    bool once = false;
};

/// The server's reply, after redirects.
struct HttpReply
{
    int status = 0;
    QByteArray body;
};

/// Why a request has no reply. A reply with an HTTP error status is not an error.
enum class HttpError {
    BadUrl,          ///< not an absolute http or https URL
    Unreachable,     ///< connection failed or broken, or TLS failure
    TimedOut,        ///< the request's time limit expired
    TooLarge,        ///< the reply exceeds the client's limit
    RefusedRedirect, ///< too many redirects, or one from https to http
    Cancelled,       ///< the client was destroyed first
};

using HttpResult = std::variant<HttpReply, HttpError>;

/// The process-wide HTTP client. Sends no credentials but those of a request, and keeps no cookies.
class HttpClient
{
public:
    HttpClient() = default;
    HttpClient(const HttpClient &) = delete;
    HttpClient &operator=(const HttpClient &) = delete;
    virtual ~HttpClient() = default;

    /// Starts the request and returns immediately. Main thread; the result is delivered there too.
    /// Path and query are sent exactly as in the URL. Always resolves: at the latest when the time
    /// limit expires or the client is destroyed.
    virtual Completion<HttpResult> send(HttpRequest request) = 0;
};

} // namespace corvane::platform
