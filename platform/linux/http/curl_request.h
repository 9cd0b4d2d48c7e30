#pragma once

#include "platform/http_client.h"

#include <QByteArray>
#include <QUrl>

#include <curl/curl.h>

#include <chrono>
#include <memory>
#include <optional>

namespace corvane::platform {

/// One request on its way, redirects included, as one handle of libcurl. It knows nothing of
/// sockets and of the event loop. Stays where it is from its first `prepare` on.
class CurlRequest
{
public:
    /// Bytes; longer replies are refused.
    static constexpr qsizetype maximumReplySize = 4 * 1024 * 1024;
    static constexpr int maximumRedirects = 5;

    /// The bound on the whole request counts from here.
    explicit CurlRequest(HttpRequest request);

    /// Null when libcurl has none left.
    [[nodiscard]] CURL *handle() const { return m_easy.get(); }
    /// Sets the handle up for the first or the next address; false where there is no handle.
    [[nodiscard]] bool prepare();
    /// The result of a handle that has ended with `code`; none when a redirect is to be followed,
    /// after another `prepare`.
    [[nodiscard]] std::optional<HttpResult> conclude(CURLcode code);

private:
    using Clock = std::chrono::steady_clock;
    struct FreeEasy
    {
        void operator()(CURL *easy) const { curl_easy_cleanup(easy); }
    };
    struct FreeList
    {
        void operator()(curl_slist *list) const { curl_slist_free_all(list); }
    };

    static size_t onBody(char *data, size_t size, size_t count, void *context);

    void appendHeader(const QByteArray &line);
    void writeHeaders();
    [[nodiscard]] HttpError errorOf(CURLcode code) const;

    HttpRequest m_request;
    Clock::time_point m_deadline;
    QUrl m_url;
    HttpMethod m_method;
    int m_redirects = 0;
    QByteArray m_received;
    bool m_tooLarge = false;
    std::unique_ptr<curl_slist, FreeList> m_headers;
    std::unique_ptr<CURL, FreeEasy> m_easy;
};

} // namespace corvane::platform
