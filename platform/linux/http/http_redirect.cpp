#include "platform/linux/http/http_redirect.h"

namespace corvane::platform {

bool isHttpUrl(const QUrl &url)
{
    return url.isValid() && !url.host().isEmpty() &&
           (url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https"));
}

bool isRedirect(int status)
{
    switch (status) {
    case 301:
    case 302:
    case 303:
    case 307:
    case 308:
        return true;
    default:
        return false;
    }
}

bool mayRedirect(const QUrl &from, const QUrl &to)
{
    return isHttpUrl(to) &&
           (from.scheme() != QLatin1String("https") || to.scheme() == QLatin1String("https"));
}

HttpMethod methodAfterRedirect(HttpMethod method, int status)
{
    return status == 307 || status == 308 ? method : HttpMethod::Get;
}

} // namespace corvane::platform
