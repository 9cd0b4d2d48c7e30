#include "platform/linux/http/curl_request.h"

#include "platform/linux/http/http_redirect.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

// QUICK_EXIT came with it, and writes that cannot raise SIGPIPE.
#if LIBCURL_VERSION_NUM < 0x075700
#error "libcurl 7.87 or newer is needed"
#endif

namespace corvane::platform {

namespace {

/// Seconds that a connection is kept open for the next request.
constexpr long keptConnectionAge = 90;

bool isContentType(const HttpHeader &header)
{
    return header.name.compare("Content-Type", Qt::CaseInsensitive) == 0;
}

/// Some public services refuse requests that do not say who is asking.
QByteArray userAgent()
{
    const QByteArray version = QCoreApplication::applicationVersion().toUtf8();
    return version.isEmpty() ? QByteArrayLiteral("Corvane") : "Corvane/" + version;
}

} // namespace

CurlRequest::CurlRequest(HttpRequest request)
    : m_request(std::move(request))
    , m_deadline(Clock::now() + m_request.timeout)
    , m_url(m_request.url)
    , m_method(m_request.method)
    , m_easy(curl_easy_init())
{}

void CurlRequest::appendHeader(const QByteArray &line)
{
    // A line break would begin another header.
    if (line.contains('\r') || line.contains('\n')) {
        return;
    }
    if (curl_slist *longer = curl_slist_append(m_headers.get(), line.constData())) {
        // The old list has become a part of it.
        [[maybe_unused]] const curl_slist *const shorter = m_headers.release();
        m_headers.reset(longer);
    }
}

void CurlRequest::writeHeaders()
{
    m_headers.reset();
    const bool posts = m_method == HttpMethod::Post;
    // curl would wait for the server's permission before it sends a large body, and name a type
    // that nobody asked for.
    appendHeader("Expect:");
    if (posts && std::ranges::none_of(m_request.headers, isContentType)) {
        appendHeader("Content-Type:");
    }
    for (const HttpHeader &header : m_request.headers) {
        // A POST that a redirect turned into a GET has no body any more.
        if (isContentType(header) && !posts && m_redirects > 0) {
            continue;
        }
        appendHeader(header.value.isEmpty() ? header.name + ';'
                                            : header.name + ": " + header.value);
    }
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
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(m_deadline - Clock::now());
    m_received.clear();

    // The handle lets go of the old headers before they are replaced.
    curl_easy_reset(easy);
    writeHeaders();
    curl_easy_setopt(easy, CURLOPT_URL,
                     m_url.toEncoded(QUrl::RemoveUserInfo | QUrl::RemoveFragment).constData());
    curl_easy_setopt(easy, CURLOPT_PATH_AS_IS, 1L);
    curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(easy, CURLOPT_HTTP_VERSION, CURL_HTTP_VERSION_1_1);
    curl_easy_setopt(easy, CURLOPT_USERAGENT, userAgent().constData());
    curl_easy_setopt(easy, CURLOPT_HTTPHEADER, m_headers.get());
    if (m_method == HttpMethod::Post) {
        curl_easy_setopt(easy, CURLOPT_POST, 1L);
        curl_easy_setopt(easy, CURLOPT_POSTFIELDSIZE_LARGE,
                         static_cast<curl_off_t>(m_request.body.size()));
        curl_easy_setopt(easy, CURLOPT_POSTFIELDS, m_request.body.constData());
    }
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &onBody);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, this);
    curl_easy_setopt(easy, CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(maximumReplySize));
    // Zero would mean no bound at all.
    curl_easy_setopt(easy, CURLOPT_TIMEOUT_MS, std::max(static_cast<long>(left.count()), 1L));
    curl_easy_setopt(easy, CURLOPT_MAXAGE_CONN, keptConnectionAge);
    // On a connection of its own there is nothing that curl would try again.
    curl_easy_setopt(easy, CURLOPT_FRESH_CONNECT, m_request.once ? 1L : 0L);
    curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
    // Without this, a name that does not resolve would block the main thread beyond the bound.
    curl_easy_setopt(easy, CURLOPT_QUICK_EXIT, 1L);
    return true;
}

std::optional<HttpResult> CurlRequest::conclude(CURLcode code)
{
    if (code != CURLE_OK) {
        return errorOf(code);
    }
    long reported = 0;
    curl_easy_getinfo(handle(), CURLINFO_RESPONSE_CODE, &reported);
    const int status = static_cast<int>(reported);
    const char *location = nullptr;
    curl_easy_getinfo(handle(), CURLINFO_REDIRECT_URL, &location);
    if (location == nullptr || !isRedirect(status)) {
        return HttpReply{status, std::move(m_received)};
    }
    const QUrl target = QUrl::fromEncoded(location);
    if (m_redirects == maximumRedirects || !mayRedirect(m_url, target)) {
        return HttpError::RefusedRedirect;
    }
    if (Clock::now() >= m_deadline) {
        return HttpError::TimedOut;
    }
    ++m_redirects;
    m_method = methodAfterRedirect(m_method, status);
    m_url = target;
    return std::nullopt;
}

HttpError CurlRequest::errorOf(CURLcode code) const
{
    switch (code) {
    case CURLE_OPERATION_TIMEDOUT:
        return HttpError::TimedOut;
    case CURLE_FILESIZE_EXCEEDED:
        return HttpError::TooLarge;
    case CURLE_URL_MALFORMAT:
        return m_redirects > 0 ? HttpError::RefusedRedirect : HttpError::BadUrl;
    default:
        return m_tooLarge ? HttpError::TooLarge : HttpError::Unreachable;
    }
}

} // namespace corvane::platform
