// Where a server sends a request on to: two addresses, as libcurl reports them.

#include "fuzz/property.h"
#include "platform/linux/http/http_redirect.h"

#include <curl/curl.h>

#include <memory>

using namespace corvane::platform;
using corvane::fuzz::require;

namespace {

/// The part of an address as libcurl understands it, which is who opens the connection.
QByteArray partOf(CURLU *address, CURLUPart part)
{
    char *text = nullptr;
    if (curl_url_get(address, part, &text, 0) != CURLUE_OK) {
        return {};
    }
    const QByteArray copy(text);
    curl_free(text);
    return copy;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    corvane::fuzz::Input input(data, size);
    // Without zero bytes, as libcurl hands them over.
    const QUrl from = QUrl::fromEncoded(input.takeLine().constData());
    const QUrl to = QUrl::fromEncoded(input.takeLine().constData());
    if (!isHttpUrl(from) || !mayRedirect(from, to)) {
        return 0;
    }
    const QByteArray opened = to.toEncoded(QUrl::RemoveUserInfo | QUrl::RemoveFragment);
    require(opened.startsWith("https://") ||
            (opened.startsWith("http://") && !from.toEncoded().startsWith("https:")));

    const std::unique_ptr<CURLU, decltype(&curl_url_cleanup)> address(curl_url(), curl_url_cleanup);
    if (curl_url_set(address.get(), CURLUPART_URL, opened.constData(), CURLU_PATH_AS_IS) ==
        CURLUE_OK) {
        // Both parsers agree on whom to ask.
        require(partOf(address.get(), CURLUPART_SCHEME) == to.scheme().toLatin1());
        QByteArray host = partOf(address.get(), CURLUPART_HOST).toLower();
        if (host.startsWith('[')) {
            host = host.sliced(1).chopped(1);
        }
        // libcurl tells an IPv6 address's zone apart.
        const QByteArray expected = to.host(QUrl::FullyEncoded).toLatin1().toLower();
        require(host == expected.split('%').first());
    }
    return 0;
}
