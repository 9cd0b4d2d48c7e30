#pragma once

#include "platform/http_client.h"

#include <QByteArray>

#include <curl/curl.h>

#include <memory>
#include <optional>

namespace corvane::platform {

/// One request, including its redirects, as one libcurl handle. Does not handle sockets or the
/// event loop. Must not be moved after `prepare`.
class CurlRequest
{
public:
    /// In bytes; longer replies are rejected.
    static constexpr qsizetype maximumReplySize = 4 * 1024 * 1024;
    static constexpr long maximumRedirects = 5;

    explicit CurlRequest(HttpRequest request);

    /// Null if libcurl could not create it.
    [[nodiscard]] CURL *handle() const { return m_easy.get(); }
    /// Sets the options of the handle; false if it is null.
    [[nodiscard]] bool prepare();
    /// The result of a transfer that finished with `code`.
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
    /// Sets the headers for the URL that the request is about to be sent to; false if it must not
    /// be sent.
    [[nodiscard]] bool mayHop();
    [[nodiscard]] HttpError errorOf(CURLcode code) const;

    HttpRequest m_request;
    /// The number of redirects before the request was last sent; empty before it was first sent.
    std::optional<long> m_sentAfter;
    QByteArray m_received;
    bool m_tooLarge = false;
    HeaderList m_headers;
    std::unique_ptr<CURL, FreeEasy> m_easy;
};

} // namespace corvane::platform
