#pragma once

#include "platform/http_client.h"

#include <memory>

namespace corvane::platform {

/// HTTP and HTTPS by libcurl, on the main thread's event loop.
///
/// Verifies TLS certificates and uses the proxy environment variables. Follows up to five
/// redirects, never from https to http, and rejects replies of more than four megabytes. Causes no
/// wake-ups while no request is active.
class CurlHttpClient final : public HttpClient
{
public:
    /// Cheap: libcurl is initialised with the first request.
    CurlHttpClient();
    /// Resolves all active requests as cancelled.
    ~CurlHttpClient() override;

    Completion<HttpResult> send(HttpRequest request) override;

    /// True while a request may wake the event loop.
    [[nodiscard]] bool isActive() const;

private:
    class Engine;

    std::shared_ptr<Engine> m_engine;
};

} // namespace corvane::platform
