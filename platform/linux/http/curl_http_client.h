#pragma once

#include "platform/http_client.h"

#include <memory>

namespace corvane::platform {

/// HTTP and HTTPS by libcurl, on the main thread's event loop.
///
/// TLS certificates are verified, the proxy variables of the environment count. Follows up to five
/// redirects, never from https to http, and refuses replies of more than four megabytes. While no
/// request is under way nothing wakes the process.
class CurlHttpClient final : public HttpClient
{
public:
    /// Cheap: libcurl is initialised by the first request.
    CurlHttpClient();
    /// Resolves the requests under way as cancelled.
    ~CurlHttpClient() override;

    Completion<HttpResult> send(HttpRequest request) override;

    /// True while a request may wake the event loop.
    [[nodiscard]] bool isActive() const;

private:
    class Engine;

    std::shared_ptr<Engine> m_engine;
};

} // namespace corvane::platform
