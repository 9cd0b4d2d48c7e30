#pragma once

#include "platform/http_client.h"

#include <QUrl>

namespace corvane::platform {

/// True for an absolute http or https URL with a host.
[[nodiscard]] bool isHttpUrl(const QUrl &url);

/// True when a reply with this status asks to be followed by another request.
[[nodiscard]] bool isRedirect(int status);

/// Whether a reply from `from` may send the request on to `to`: only between http and https, and
/// never back to a connection that anybody can read.
[[nodiscard]] bool mayRedirect(const QUrl &from, const QUrl &to);

/// The method with which a redirect is followed, as browsers do it: only 307 and 308 repeat a POST.
[[nodiscard]] HttpMethod methodAfterRedirect(HttpMethod method, int status);

} // namespace corvane::platform
