#include "platform/linux/http/curl_request.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

// This version added QUICK_EXIT, and writes that cannot raise SIGPIPE.
#if LIBCURL_VERSION_NUM < 0x075700
#error "libcurl 7.87 or newer is needed"
#endif

namespace corvane::platform {

namespace {

/// Seconds for which an idle connection may be reused.
constexpr long keptConnectionAge = 90;

bool isContentType(const HttpHeader &header)
{
    return header.name.compare("Content-Type", Qt::CaseInsensitive) == 0;
}

long redirectCount(CURL *easy)
{
    long count = 0;
    curl_easy_getinfo(easy, CURLINFO_REDIRECT_COUNT, &count);
    return count;
}

/// Some public services reject requests without a user agent.
QByteArray userAgent()
{
    const QByteArray version = QCoreApplication::applicationVersion().toUtf8();
    return version.isEmpty() ? QByteArrayLiteral("Corvane") : "Corvane/" + version;
}

} // namespace

CurlRequest::CurlRequest(HttpRequest request)
    : m_request(std::move(request))
    , m_easy(curl_easy_init())
{
    // As a header of the request, because curl would also use credentials of a redirect.
    if (const QUrl &url = m_request.url; !url.userInfo().isEmpty()) {
        const QString pair =
            url.userName(QUrl::FullyDecoded) + u':' + url.password(QUrl::FullyDecoded);
        m_request.headers.append({"Authorization", "Basic " + pair.toUtf8().toBase64()});
    }
}

CurlRequest::HeaderList CurlRequest::headersFor(const QUrl &url, bool posts, bool redirected) const
{
    HeaderList list;
    const bool sameHost = url.host() == m_request.url.host() && url.port() == m_request.url.port();
    const auto append = [&list](const QByteArray &line) {
        // A line break would start another header.
        if (line.contains('\r') || line.contains('\n')) {
            return;
        }
        if (curl_slist *longer = curl_slist_append(list.get(), line.constData())) {
            // The new list has taken ownership of the old one.
            [[maybe_unused]] const curl_slist *const shorter = list.release();
            list.reset(longer);
        }
    };
    // Without these, curl would wait for a "100 Continue" before it sends a large body, and would
    // add a Content-Type of its own.
    append("Expect:");
    if (posts && std::ranges::none_of(m_request.headers, isContentType)) {
        append("Content-Type:");
    }
    for (const HttpHeader &header : m_request.headers) {
        // Content-Type is sent whenever a body is sent; other headers only to the original host.
        if (!redirected || (isContentType(header) ? posts : sameHost)) {
            append(header.value.isEmpty() ? header.name + ';' : header.name + ": " + header.value);
        }
    }
    return list;
}

/// Called by libcurl when a connection is established, before the request is sent.
int CurlRequest::onHop(void *context, char *, char *, int, int)
{
    return static_cast<CurlRequest *>(context)->mayHop() ? CURL_PREREQFUNC_OK
                                                         : CURL_PREREQFUNC_ABORT;
}

bool CurlRequest::mayHop()
{
    CURL *easy = handle();
    const long redirects = redirectCount(easy);
    const char *address = nullptr;
    const char *method = nullptr;
    curl_easy_getinfo(easy, CURLINFO_EFFECTIVE_URL, &address);
    curl_easy_getinfo(easy, CURLINFO_EFFECTIVE_METHOD, &method);
    // curl repeats a request if a reused connection breaks.
    if (m_request.once && m_sentAfter == redirects) {
        return false;
    }
    m_sentAfter = redirects;
    const QUrl url = QUrl::fromEncoded(address);
    if (url.scheme() == QLatin1StringView("https")) {
        // After an https URL, a redirect to http is no longer allowed.
        curl_easy_setopt(easy, CURLOPT_REDIR_PROTOCOLS_STR, "https");
    }
    // The old headers are freed only after the handle no longer uses them.
    HeaderList headers = headersFor(url, QByteArrayView(method) == "POST", redirects > 0);
    curl_easy_setopt(easy, CURLOPT_HTTPHEADER, headers.get());
    m_headers = std::move(headers);
    return true;
}

size_t CurlRequest::onBody(char *data, size_t size, size_t count, void *context)
{
    auto &request = *static_cast<CurlRequest *>(context);
    const auto length = static_cast<qsizetype>(size) * static_cast<qsizetype>(count);
    if (request.m_received.size() + length > maximumReplySize) {
        request.m_tooLarge = true;
        return 0;
    }
    request.m_received.append(data, length);
    return size * count;
}

bool CurlRequest::prepare()
{
    CURL *easy = m_easy.get();
    if (easy == nullptr) {
        return false;
    }
    const QByteArray url = m_request.url.toEncoded(QUrl::RemoveUserInfo | QUrl::RemoveFragment);
    curl_easy_setopt(easy, CURLOPT_URL, url.constData());
    curl_easy_setopt(easy, CURLOPT_PATH_AS_IS, 1L);
    curl_easy_setopt(easy, CURLOPT_HTTPAUTH, CURLAUTH_NONE);
    curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(easy, CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(easy, CURLOPT_MAXREDIRS, maximumRedirects);
    curl_easy_setopt(easy, CURLOPT_PREREQFUNCTION, &onHop);
    curl_easy_setopt(easy, CURLOPT_PREREQDATA, this);
    curl_easy_setopt(easy, CURLOPT_HTTP_VERSION, CURL_HTTP_VERSION_1_1);
    curl_easy_setopt(easy, CURLOPT_USERAGENT, userAgent().constData());
    if (m_request.method == HttpMethod::Post) {
        curl_easy_setopt(easy, CURLOPT_POST, 1L);
        curl_easy_setopt(easy, CURLOPT_POSTFIELDSIZE_LARGE,
                         static_cast<curl_off_t>(m_request.body.size()));
        curl_easy_setopt(easy, CURLOPT_POSTFIELDS, m_request.body.constData());
    }
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &onBody);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, this);
    curl_easy_setopt(easy, CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(maximumReplySize));
    // Zero would mean no time limit.
    const auto bound = static_cast<long>(m_request.timeout.count());
    curl_easy_setopt(easy, CURLOPT_TIMEOUT_MS, std::max(bound, 1L));
    curl_easy_setopt(easy, CURLOPT_MAXAGE_CONN, keptConnectionAge);
    // A reused connection may turn out to be closed, and a request with `once` cannot be repeated.
    curl_easy_setopt(easy, CURLOPT_FRESH_CONNECT, m_request.once ? 1L : 0L);
    curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
    // Without this, destroying the handle during a slow name resolution would block the main
    // thread.
    curl_easy_setopt(easy, CURLOPT_QUICK_EXIT, 1L);
    return true;
}

HttpResult CurlRequest::conclude(CURLcode code)
{
    if (code != CURLE_OK) {
        return errorOf(code);
    }
    long status = 0;
    curl_easy_getinfo(handle(), CURLINFO_RESPONSE_CODE, &status);
    return HttpReply{static_cast<int>(status), std::move(m_received)};
}

HttpError CurlRequest::errorOf(CURLcode code) const
{
    if (m_sentAfter && redirectCount(handle()) > *m_sentAfter &&
        (code == CURLE_UNSUPPORTED_PROTOCOL || code == CURLE_URL_MALFORMAT)) {
        return HttpError::RefusedRedirect;
    }
    switch (code) {
    case CURLE_OPERATION_TIMEDOUT:
        return HttpError::TimedOut;
    case CURLE_FILESIZE_EXCEEDED:
        return HttpError::TooLarge;
    case CURLE_TOO_MANY_REDIRECTS:
        return HttpError::RefusedRedirect;
    case CURLE_URL_MALFORMAT:
        return HttpError::BadUrl;
    default:
        return m_tooLarge ? HttpError::TooLarge : HttpError::Unreachable;
    }
}

} // namespace corvane::platform
