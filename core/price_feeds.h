#pragma once

#include "core/endpoints.h"

#include <QJsonValue>
#include <QLatin1StringView>
#include <QList>

#include <optional>
#include <span>

namespace corvane::core {

/// The price of one SOL from a price service.
struct PriceQuote
{
    double price = 0;             ///< US dollars
    std::optional<double> change; ///< over 24 hours, in percent; empty if not reported

    [[nodiscard]] bool operator==(const PriceQuote &) const = default;
};

/// A price service: the address of its document and the parser for it.
struct PriceSource
{
    /// The service's base address, to which `pathAndQuery` is appended.
    QString Endpoints::*base;
    QLatin1StringView pathAndQuery;
    /// Empty if the document has an unexpected structure.
    std::optional<PriceQuote> (*read)(const QJsonValue &document);
};

/// The price services in the order of the requests.
[[nodiscard]] std::span<const PriceSource> priceSources();

/// Path and query of the one-day chart at CoinGecko.
inline constexpr QLatin1StringView chartPathAndQuery{
    "/api/v3/coins/solana/market_chart?vs_currency=usd&days=1"};

/// The chart's prices in US dollars, oldest first, thinned by index to at most 72 points; the first
/// and last points are kept. Empty if there are fewer than three points or if the document has an
/// unexpected structure.
[[nodiscard]] std::optional<QList<double>> readChart(const QJsonValue &document);

} // namespace corvane::core
