// Addresses that the user types or the settings hold: of an RPC endpoint and of the wallet web app.
// Both are read from every input.

#include "core/endpoint_choice.h"
#include "core/labels.h"
#include "fuzz/property.h"
#include "tests/fakes/memory_file_system.h"

#include <algorithm>

using namespace corvane::core;
using corvane::fuzz::require;

namespace {

const QString defaultApp = QStringLiteral("https://app.test/wallet");

void checkSource(const std::optional<QUrl> &source)
{
    for (const SolNetwork network : allSolNetworks) {
        const auto proxy = proxyEndpoint(source, network);
        if (!proxy) {
            require(!source || source->isLocalFile() || source->host().isEmpty() ||
                    !QUrl(source->toString()).isValid());
            continue;
        }
        // The same machine, and nothing of what else the address may hold.
        require(source && proxy->scheme() == source->scheme() && proxy->host() == source->host());
        require(proxy->port() == source->port() && proxy->userInfo().isEmpty());
        require(proxy->path() == u"/api/rpc" && proxy->fragment().isEmpty());
        require(proxy->hasQuery() == (network == SolNetwork::Devnet));
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text = corvane::fuzz::Input(data, size).takeText();
    const std::optional<QUrl> endpoint = customEndpoint(text);
    require(!endpoint || (endpoint->isValid() && !endpoint->host().isEmpty()));
    // Blanks around it are forgiven, and the label knows what is chosen.
    require(customEndpoint(QStringLiteral("\t ") + text + u'\u00a0') == endpoint);
    require(!endpoint || rpcSourceLabel(text, true).endsWith(u"CUSTOM ENDPOINT"));

    corvane::tests::MemoryFileSystem files;
    checkSource(walletSource(text, defaultApp, files));
    files.paths.insert(text);
    const auto source = walletSource(text, defaultApp, files);
    require(source.has_value());
    checkSource(source);

    // Shortened, an address keeps its ends.
    const QString shortened = shortAddress(text);
    require(shortened == shortAddress(u' ' + text));
    require(shortened.isEmpty() || text.contains(shortened.front()));
    return 0;
}
