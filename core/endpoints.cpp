#include "core/endpoints.h"

#include "core/json.h"

#include <QJsonObject>
#include <QRegularExpression>
#include <QUrl>

#include <algorithm>
#include <array>

namespace corvane::core {

using namespace Qt::StringLiterals;

namespace {

struct Entry
{
    QLatin1StringView key;
    QString Endpoints::*address;
    /// True if paths are appended to the address.
    bool isBase;
};

constexpr std::array entries = {
    Entry{"mainnet"_L1, &Endpoints::mainnet, false},
    Entry{"devnet"_L1, &Endpoints::devnet, false},
    Entry{"walletApp"_L1, &Endpoints::walletApp, false},
    Entry{"coingecko"_L1, &Endpoints::coingecko, true},
    Entry{"binance"_L1, &Endpoints::binance, true},
    Entry{"coinbase"_L1, &Endpoints::coinbase, true},
    Entry{"explorer"_L1, &Endpoints::explorer, true},
};

bool isAbsoluteWebUrl(const QUrl &url)
{
    return url.isValid() && (url.scheme() == "http"_L1 || url.scheme() == "https"_L1) &&
           !url.host().isEmpty();
}

bool isLoopback(const QString &address)
{
    // Matches complete numbers only: a host name may start with the same digits, and a number with
    // a leading zero counts as a name.
    static const QRegularExpression loopbackNumber(
        uR"(\A127(\.(25[0-5]|2[0-4][0-9]|1[0-9]{2}|[1-9]?[0-9])){3}\z)"_s);
    const QString host = QUrl(address).host();
    return host == "localhost"_L1 || host == "::1"_L1 || loopbackNumber.match(host).hasMatch();
}

} // namespace

Endpoints::Endpoints()
    : mainnet(u"https://api.mainnet-beta.solana.com"_s)
    , devnet(u"https://api.devnet.solana.com"_s)
    , walletApp(QStringLiteral(CORVANE_WALLET_APP_URL))
    , coingecko(u"https://api.coingecko.com"_s)
    , binance(u"https://api.binance.com"_s)
    , coinbase(u"https://api.coinbase.com"_s)
    , explorer(u"https://solscan.io"_s)
{}

std::variant<Endpoints, QString> Endpoints::load(const QByteArray &json)
{
    const std::optional<QJsonValue> document = parseJson(json);
    if (!document || !document->isObject()) {
        return u"the endpoints are not a JSON object"_s;
    }

    Endpoints endpoints;
    const QJsonObject object = document->toObject();
    for (auto it = object.begin(); it != object.end(); ++it) {
        const auto entry = std::ranges::find(entries, it.key(), &Entry::key);
        if (entry == entries.end()) {
            return u"unknown endpoint \"%1\""_s.arg(it.key());
        }
        QString address = it.value().toString();
        const QUrl url(address, QUrl::StrictMode);
        if (!isAbsoluteWebUrl(url)) {
            return u"endpoint \"%1\" is not an absolute http or https URL"_s.arg(it.key());
        }
        if (entry->isBase) {
            if (url.hasQuery() || url.hasFragment()) {
                return u"endpoint \"%1\" must have neither a query nor a fragment"_s.arg(it.key());
            }
            while (address.endsWith(u'/')) {
                address.chop(1);
            }
        }
        endpoints.*(entry->address) = address;
    }
    return endpoints;
}

bool Endpoints::areLocal() const
{
    return isLoopback(mainnet) && isLoopback(devnet) && isLoopback(walletApp);
}

const QString &Endpoints::defaultRPC(SolNetwork network) const
{
    return network == SolNetwork::Devnet ? devnet : mainnet;
}

} // namespace corvane::core
