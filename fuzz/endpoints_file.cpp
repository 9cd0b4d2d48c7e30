// The file that replaces built-in addresses.

#include "core/endpoints.h"
#include "core/json_calls.h"
#include "core/price_feeds.h"
#include "fuzz/property.h"
#include "platform/linux/http/http_redirect.h"

#include <arpa/inet.h>

using namespace corvane::core;
using corvane::fuzz::require;

namespace {

bool isThisMachine(const QString &address)
{
    const QByteArray host = QUrl(address).host().toLatin1();
    in_addr four{};
    in6_addr six{};
    if (inet_pton(AF_INET, host.constData(), &four) == 1) {
        return (ntohl(four.s_addr) >> 24) == 127;
    }
    if (inet_pton(AF_INET6, host.constData(), &six) == 1) {
        return IN6_IS_ADDR_LOOPBACK(&six);
    }
    return host == "localhost";
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto loaded = Endpoints::load(corvane::fuzz::Input(data, size).rest());
    const auto *endpoints = std::get_if<Endpoints>(&loaded);
    if (endpoints == nullptr) {
        require(!std::get<QString>(loaded).isEmpty());
        return 0;
    }
    for (const QString *address :
         {&endpoints->mainnet, &endpoints->devnet, &endpoints->walletApp, &endpoints->coingecko,
          &endpoints->binance, &endpoints->coinbase, &endpoints->explorer}) {
        require(corvane::platform::isHttpUrl(QUrl(*address, QUrl::StrictMode)));
    }
    // What is appended is asked of the same host, and is the request that was meant.
    for (const PriceSource &source : priceSources()) {
        const QString base = endpoints->*source.base;
        const auto request = jsonRequest(base + source.pathAndQuery);
        require(request.has_value());
        require(request->url.host() == QUrl(base).host());
        require(request->url.toString(QUrl::FullyEncoded).endsWith(source.pathAndQuery));
    }
    // A demo's throw-away key must be for this machine alone.
    require(!endpoints->areLocal() ||
            (isThisMachine(endpoints->mainnet) && isThisMachine(endpoints->devnet) &&
             isThisMachine(endpoints->walletApp)));
    return 0;
}
