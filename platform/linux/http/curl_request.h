#pragma once

#include "platform/http_client.h"

#include <QByteArray>

#include <curl/curl.h>

#include <memory>
#include <optional>

namespace corvane::platform {

/// One request on its way, redirects included, as one handle of libcurl. It knows nothing of
/// sockets and of the event loop. Stays where it is from `prepare` on.
class CurlRequest
{
public:
    /// Bytes; longer replies are refused.
    static constexpr qsizetype maximumReplySize = 4 * 1024 * 1024;
    static constexpr long maximumRedirects = 5;

    explicit CurlRequest(HttpRequest request);

    /// Null when libcurl has none left.
    [[nodiscard]] CURL *handle() const { return m_easy.get(); }
    /// Sets the handle up; false where there is none.
    [[nodiscard]] bool prepare();
    /// The result of a handle that has ended with `code`.
    [[nodiscard]] HttpResult conclude(CURLcode code);

private:
    struct FreeEasy
    {
        void operator()(CURL *easy) const { curl_easy_cleanup(easy); }
    };
    struct FreeList
    {
        void operator()(curl_slist *list) const { curl_slist_free_all(list); }
    };
    using HeaderList = std::unique_ptr<curl_slist, FreeList>;

    static int onHop(void *context, char *, char *, int, int);
    static size_t onBody(char *data, size_t size, size_t count, void *context);

    [[nodiscard]] HeaderList headersFor(const QUrl &url, bool posts, bool redirected) const;
    /// Sets the handle up for the address that it is about to send to; false when it must not.
    [[nodiscard]] bool mayHop();
    [[nodiscard]] HttpError errorOf(CURLcode code) const;

    HttpRequest m_request;
    /// After how many redirects the request was sent last; none before it was sent at all.
    std::optional<long> m_sentAfter;
    QByteArray m_received;
    bool m_tooLarge = false;
    HeaderList m_headers;
    std::unique_ptr<CURL, FreeEasy> m_easy;
};

} // namespace corvane::platform
